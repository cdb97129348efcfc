#include "search/TDSearchLocation.h"
#include "search/VKFileSystemCommon.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

enum class Scope { File, Folder, FolderWithSubFolders };

TDSearchLocation location(const QByteArray &path, Scope scope = Scope::File)
{
    TDSearchLocation result;
    result.url = FilePath(path).toUrl();
    result.isFolder = scope != Scope::File;
    result.includeSubFolders = scope == Scope::FolderWithSubFolders;
    return result;
}

TEST(TDSearchLocation, SetURLAsksTheFileSystem)
{
    const test::TemporaryFolder folder;
    const FilePath file = folder.write("a.txt", "");
    ASSERT_EQ(symlink(folder.path().cString(), folder.path("link").cString()), 0);

    TDSearchLocation location;
    const auto isFolderAt = [&](const FilePath &path) {
        location.setURL(path.toUrl());
        EXPECT_EQ(location.includeSubFolders, location.isFolder);
        return location.isFolder;
    };
    EXPECT_TRUE(isFolderAt(folder.path()));
    EXPECT_FALSE(isFolderAt(file));
    EXPECT_TRUE(isFolderAt(folder.path("link")));
    EXPECT_FALSE(isFolderAt(folder.path("missing")));
    EXPECT_TRUE(isFolderAt(folder.makeFolder("not \xFF utf8")));
    EXPECT_FALSE(isFolderAt(FilePath()));
}

TEST(TDSearchLocation, EqualityGoesByPathUpToCanonicalEquivalence)
{
    EXPECT_TRUE(location("/a/b").isEqual(location("/a/b", Scope::FolderWithSubFolders)));
    EXPECT_TRUE(location("/a/b/").isEqual(location("/a/b")));
    EXPECT_TRUE(location("/caf\xC3\xA9").isEqual(location("/cafe\xCC\x81")));
    EXPECT_FALSE(location("/a/b").isEqual(location("/a/B")));
    // Both would show as the same text.
    EXPECT_FALSE(location("/a\xFF").isEqual(location("/a\xFE")));
    EXPECT_TRUE(location("/a\xFF").isEqual(location("/a\xFF")));
}

TEST(TDSearchLocation, ScopeRules)
{
    const struct
    {
        QByteArray path;
        QByteArray location;
        Scope scope;
        bool isInScope;
    } cases[] = {
        {"/a/b", "/a/b", Scope::File, true},
        {"/a/b/c", "/a/b", Scope::File, false},
        {"/a/b/c", "/a/b", Scope::Folder, true},
        {"/a/b/c/", "/a/b/", Scope::Folder, true},
        {"/a/b/c/d", "/a/b", Scope::Folder, false},
        {"/a/b", "/a/b", Scope::Folder, false},
        {"/c", "/", Scope::Folder, true},
        {"/a/b/c/d", "/a/b", Scope::FolderWithSubFolders, true},
        {"/a/b", "/a/b", Scope::FolderWithSubFolders, true},
        {"/a/bc", "/a/b", Scope::FolderWithSubFolders, true},
        {"/x/a/b", "/a/b", Scope::FolderWithSubFolders, false},
        {"/a", "/a/b", Scope::FolderWithSubFolders, false},
        {"/A/b/c", "/a/b", Scope::FolderWithSubFolders, false},
        {"/a/b", "/", Scope::FolderWithSubFolders, true},
        {"/cafe\xCC\x81/x", "/caf\xC3\xA9", Scope::FolderWithSubFolders, true},
        // The accent belongs to the letter: the shorter name isn't found in the longer one.
        {"/cafe\xCC\x81", "/cafe", Scope::FolderWithSubFolders, false},
        {"/a\xFF/x", "/a\xFF", Scope::FolderWithSubFolders, true},
        {"/a\xFE/x", "/a\xFF", Scope::FolderWithSubFolders, false},
        {"/a\xFE/x", "/a", Scope::FolderWithSubFolders, true},
        {"/a", "", Scope::FolderWithSubFolders, false},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(location(c.path).isInScopeOfLocations({location("/other"), location(c.location, c.scope)}),
                  c.isInScope)
            << c.path.constData() << " in " << c.location.constData();
    }
    EXPECT_FALSE(location("/a").isInScopeOfLocations({}));
}

TEST(TDSearchLocation, ArchiveKeepsTheFourFields)
{
    TDSearchLocation original = location("/fold\xFF er/%41?#\xC3\xA9", Scope::FolderWithSubFolders);
    original.fileTypes = QStringList{u"uti:public.text"_s};
    const TDSearchLocation copy = TDSearchLocation::unarchived(original.archived());
    EXPECT_EQ(copy.path().bytes(), original.path().bytes());
    EXPECT_TRUE(copy.isFolder);
    EXPECT_TRUE(copy.includeSubFolders);
    EXPECT_EQ(copy.fileTypes.toStringList(), original.fileTypes.toStringList());
    EXPECT_FALSE(TDSearchLocation::unarchived(location("/a").archived()).fileTypes.isValid());
}

TEST(TDSearchLocation, DamagedArchiveDecodesToEmptyFields)
{
    for (const char *archive : {"", "[]", "{\"url\":", R"({"url":3,"isFolder":"x","fileTypes":null})"}) {
        const TDSearchLocation decoded = TDSearchLocation::unarchived(archive);
        EXPECT_TRUE(decoded.url.isEmpty()) << archive;
        EXPECT_FALSE(decoded.isFolder) << archive;
        EXPECT_FALSE(decoded.fileTypes.isValid()) << archive;
    }
}

TEST(ContainedInArray, ComparesCanonically)
{
    EXPECT_TRUE(containedInArray(u"caf\u00E9"_s, {u"x"_s, u"cafe\u0301"_s}));
    EXPECT_FALSE(containedInArray(u"X"_s, {u"x"_s}));
    EXPECT_FALSE(containedInArray(u"x"_s, {}));
}

TEST(VKFileSystemCommon, LinksAnywhereInThePathCount)
{
    const test::TemporaryFolder folder;
    folder.write("real/a.txt", "");
    ASSERT_EQ(symlink("real", folder.path("link").cString()), 0);
    ASSERT_EQ(symlink("nowhere", folder.path("dangling").cString()), 0);

    const struct
    {
        QByteArray name;
        bool isLink;
    } cases[] = {
        {"real/a.txt", false}, {"real", false},      {"real/", false},   {".//real/../real/a.txt", false},
        {"link", true},        {"link/a.txt", true}, {"dangling", true}, {"missing", false}};
    for (const auto &c : cases)
        EXPECT_EQ(VKFileSystemCommon::pathIsSymbolicLink(folder.path(c.name)), c.isLink)
            << c.name.constData();
    EXPECT_FALSE(VKFileSystemCommon::pathIsSymbolicLink(FilePath("/")));
    EXPECT_FALSE(VKFileSystemCommon::pathIsAlias(folder.path("link")));
}

} // namespace
} // namespace tidemark
