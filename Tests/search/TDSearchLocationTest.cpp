#include "search/TDSearchLocation.h"
#include "search/VKFileSystemCommon.h"
#include "support/Testing.h"

#include <unistd.h>

namespace tidemark::test {
namespace {

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
    const TemporaryFolder folder;
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
    EXPECT_EQ(location("/caf\xC3\xA9/").comparisonKey(), location("/cafe\xCC\x81").comparisonKey());
    EXPECT_NE(location("/a\xFF").comparisonKey(), location("/a\xFE").comparisonKey());
    EXPECT_FALSE(location("/a/b").isEqual(location("/a/B")));
    // Both would show as the same text.
    EXPECT_FALSE(location("/a\xFF").isEqual(location("/a\xFE")));
    EXPECT_TRUE(location("/a\xFF").isEqual(location("/a\xFF")));
}

TEST(TDSearchLocation, ScopeRules)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/scopes.tsv")) {
        const Scope scope = row.bytes(2) == "file"     ? Scope::File
                            : row.bytes(2) == "folder" ? Scope::Folder
                                                       : Scope::FolderWithSubFolders;
        EXPECT_EQ(
            location(row.bytes(0)).isInScopeOfLocations({location("/other"), location(row.bytes(1), scope)}),
            row.flag(3))
            << row.line;
    }
    EXPECT_FALSE(location("/a").isInScopeOfLocations({}));
}

TEST(TDSearchLocation, ArchiveKeepsTheFourFieldsAndADamagedOneNone)
{
    TDSearchLocation original = location("/fold\xFF er/%41?#\xC3\xA9", Scope::FolderWithSubFolders);
    original.fileTypes = QStringList{u"uti:public.text"_s};
    const TDSearchLocation copy = TDSearchLocation::unarchived(original.archived());
    EXPECT_EQ(copy.path().bytes(), original.path().bytes());
    EXPECT_TRUE(copy.isFolder && copy.includeSubFolders);
    EXPECT_EQ(copy.fileTypes.toStringList(), original.fileTypes.toStringList());
    EXPECT_FALSE(TDSearchLocation::unarchived(location("/a").archived()).fileTypes.isValid());
    for (const char *archive : {"", "[]", "{\"url\":", R"({"url":3,"isFolder":"x","fileTypes":null})"}) {
        const TDSearchLocation decoded = TDSearchLocation::unarchived(archive);
        EXPECT_TRUE(decoded.url.isEmpty() && !decoded.isFolder && !decoded.fileTypes.isValid()) << archive;
    }
}

TEST(VKFileSystemCommon, LinksAnywhereInThePathCount)
{
    const TemporaryFolder folder;
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
} // namespace tidemark::test
