#include "session/ListedFiles.h"

#include "support/ResultNodes.h"
#include "support/SearchFolder.h"

#include <QElapsedTimer>
#include <QTimer>

namespace tidemark::test {

namespace {

using ListedFilesTest = SearchFolderTest;

QSet<FilePath> pathsOf(const FindResultItems &files)
{
    QSet<FilePath> paths;
    for (const auto &file : files)
        paths.insert(file->path());
    return paths;
}

TEST_F(ListedFilesTest, AFileWithoutAMatchGoesAndComesBack)
{
    FindResultItems listed;
    for (const char *name : {"a", "b", "c"})
        listed << fileNode(folder.write(name, "foo\n").bytes(), {u"foo\n"_s});
    const QSet<FilePath> changed = pathsOf(listed.first(2));
    ListedFiles files;
    const SearchTerms terms{u"foo"_s, {}};
    const auto goOn = [] { return false; };
    folder.write("a", "bar\n");
    folder.write("b", "bar\nfoo foo\n");
    const auto without = files.searchedAgain(listed, changed, terms, goOn);
    ASSERT_TRUE(without && without->size() == 2);
    EXPECT_EQ(without->first()->matchCount(), 2);
    EXPECT_EQ(without->first()->matches()->encoding, TD_ENCODING_UTF8);
    EXPECT_EQ(without->last(), listed.last()) << "what wasn't changed is as it was";

    folder.write("a", "foo\n");
    const auto again = files.searchedAgain(*without, changed, terms, goOn);
    ASSERT_TRUE(again);
    EXPECT_EQ(pathsOf(*again), pathsOf(listed));
    EXPECT_FALSE(files.searchedAgain(*again, {}, terms, goOn));
}

TEST_F(ListedFilesTest, AStopIsHeardAndLeavesAMark)
{
    // This takes the expression two seconds.
    const FilePath path = folder.write("a", QByteArray(24'000, 'a') + "zc\n");
    const FindResultItems listed = {fileNode(path.bytes(), {u"foo\n"_s})};
    bool stop = false;
    QTimer::singleShot(0, [&stop] { stop = true; });
    QElapsedTimer timer;
    timer.start();
    const auto now = ListedFiles().searchedAgain(
        listed, {path}, {u"(?:a(?R)?b|a)*c"_s, {SearchMode::RegularExpression, CaseRule::Exact}},
        [&stop] { return stop; });
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_EQ(now, listed);
    EXPECT_EQ(listed.first()->remark(), u"Changed since the search"_s);
}

} // namespace

} // namespace tidemark::test
