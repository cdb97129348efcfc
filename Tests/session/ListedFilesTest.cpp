#include "session/ListedFiles.h"

#include "replace/MatchLineReplacement.h"
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
    EXPECT_EQ(without->first()->encoding().encoding, TD_ENCODING_UTF8);
    EXPECT_EQ(without->last(), listed.last()) << "what wasn't changed is as it was";

    folder.write("a", "foo\n");
    const auto again = files.searchedAgain(*without, changed, terms, goOn);
    ASSERT_TRUE(again);
    EXPECT_EQ(pathsOf(*again), pathsOf(listed));
    EXPECT_FALSE(files.searchedAgain(*again, {}, terms, goOn));
}

/// "number:text" of each line, with = where it is replaced.
QString linesOf(const std::optional<FindResultItems> &files)
{
    QStringList lines;
    for (const auto &file : files.value_or(FindResultItems())) {
        for (const auto &item : file->children()) {
            const TDMatchLine &line = *item->matchLine();
            EXPECT_EQ(item->parent(), file.get());
            EXPECT_LT(line.highlightedMatchIndex(), 0);
            lines << QString::number(line.lineNumber()) + (line.isReplaced(0) ? u'=' : u':') +
                         line.matchLineString().trimmed();
        }
    }
    return lines.join(u' ');
}

TEST_F(ListedFilesTest, WhatIsReplacedStaysListedAndComesBack)
{
    const FilePath path = folder.write("a", "");
    const auto replaceIn = [](TDFindResultItem &item, const QString &text) {
        TDMatchLine &line = *item.matchLine();
        line.setFoundLineString(line.matchLineString());
        TDError error;
        (void)replaceMatches(
            line, {u"foo"_s, text, {}, ReplacementExtent::EveryOccurrence}, [] { return false; }, error);
        line.setSavedLineString(line.matchLineString());
    };
    ListedFiles files;
    std::optional<FindResultItems> listed;
    const auto listedWhenItReads = [&](const QByteArray &content) {
        folder.write("a", content);
        for (const auto &line : listed->first()->children())
            line->matchLine()->setHighlightedMatchIndex(0);
        listed = files.searchedAgain(*listed, {path}, {u"foo"_s, {}}, [] { return false; });
        return linesOf(listed);
    };
    listed = {fileNode(path.bytes(), {u"foo\n"_s, u"foo\n"_s})};
    replaceIn(*listed->first()->children()[0], u"bar"_s);
    replaceIn(*listed->first()->children()[1], u"baz"_s);
    const std::pair<QByteArray, QString> steps[] = {
        {"bar\nfoo\n", u"1=bar 2:foo"_s},
        {"foo\nfoo\n", u"1:foo 2:foo"_s},
        {"bar\nfoo\n", u"1=bar 2:foo"_s},
        {"bar\nbaz\n", u"1=bar 2=baz"_s},
        {"foo\nfoo\n", u"1:foo 2:foo"_s},
        {"bar\nbaz\n", u"1=bar 2=baz"_s},
        {"bar\nelse\n", u"1=bar"_s},
        {"bar\nbaz\nfoo\n", u"1=bar 3:foo"_s},
        {"other\n", {}},
    };
    for (const auto &[content, lines] : steps)
        EXPECT_EQ(listedWhenItReads(content), lines) << content.constData();

    // Lines move when one becomes several, and back.
    files.clear();
    listed = {fileNode(path.bytes(), {u"foo\n"_s, u"foo\n"_s})};
    replaceIn(*listed->first()->children()[0], u"b\nr"_s);
    replaceIn(*listed->first()->children()[1], u"bar"_s);
    listed->first()->children()[1]->matchLine()->setLineNumber(3);
    EXPECT_EQ(listedWhenItReads("foo\nbar\n"), u"1:foo 2=bar"_s);
    EXPECT_EQ(listedWhenItReads("b\nr\nbar\n"), u"1=b\nr 3=bar"_s);
    EXPECT_EQ(listedWhenItReads("foo\nbar\n"), u"1:foo 2=bar"_s);
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
