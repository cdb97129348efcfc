#include "search/LeaveOutPattern.h"

#include "search/IgnorePatterns.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

TDSearchLocation folderAt(const char *path)
{
    TDSearchLocation location;
    location.url = FilePath(path).toUrl();
    location.isFolder = true;
    return location;
}

TEST(LeaveOutPatternTest, MatchesTheFolderAndItsKindOfFileOnly)
{
    const QList<TDSearchLocation> locations = {folderAt("/x/other"), folderAt("/x/y")};
    for (const QByteArray &name :
         {QByteArray("a"), QByteArray("a*[b]? ,\\c"), QByteArray("!é"), QByteArray("\xFF ")}) {
        const IgnorePatterns patterns = IgnorePatterns::ofField(
            patternForFolderOf(FilePath("/x/y/b/" + name + "/f"), locations), CaseRule::Exact);
        ASSERT_EQ(patterns.all().size(), 1U);
        EXPECT_EQ(patterns.lastMatch(name, "b/" + name, EntryKind::Folder), 0) << name.constData();
        EXPECT_EQ(patterns.lastMatch("ab", "b/ab", EntryKind::Folder), -1);
        const IgnorePatterns like =
            IgnorePatterns::ofField(patternForFilesLike(FilePath("/x/y/" + name)), CaseRule::Exact);
        EXPECT_EQ(like.lastMatch(name, name, EntryKind::File), 0) << name.constData();
    }
    EXPECT_EQ(patternForFolderOf(FilePath("/x/y/f"), locations), QString());
    EXPECT_EQ(patternForFolderOf(FilePath("/x/yz/a/f"), locations), QString());
    EXPECT_EQ(patternForFilesLike(FilePath("/x/.bashrc")), u".bashrc"_s);
    EXPECT_EQ(patternForFilesLike(FilePath("/x/a.b c")), u"*.b\\ c"_s);
}

TEST(LeaveOutPatternTest, APatternIsAddedOnce)
{
    EXPECT_EQ(withPattern({}, u"*.o"_s), u"*.o"_s);
    EXPECT_EQ(withPattern(u"a, "_s, u"*.o"_s), u"a, *.o"_s);
    EXPECT_EQ(withPattern(u"*.o a"_s, u"*.o"_s), u"*.o a"_s);
}

} // namespace
} // namespace tidemark::test
