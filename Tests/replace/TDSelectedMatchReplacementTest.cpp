#include "replace/TDSelectedMatchReplacement.h"

#include "replace/ReplaceTestSupport.h"

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using Ranges = QList<TextRange>;
using Outcome = TDSelectedMatchReplacement::Outcome;

class TDSelectedMatchReplacementTest : public ReplaceTest
{
protected:
    Outcome run(const LinesByFile &selected, const QString &findText, const QString &replaceText)
    {
        const auto betweenFiles = [this](quint64 filesDone) {
            // It is called while the disk is waited for, too.
            if (_filesDone.isEmpty() ? filesDone > 0 : _filesDone.last() != filesDone)
                _filesDone << filesDone;
            _stop = _stop || (_stopAfter > 0 && filesDone == _stopAfter);
        };
        TDSelectedMatchReplacement replacement(request(findText, replaceText), _stop, betweenFiles);
        return replacement.replaceSelectedMatches(selected);
    }
    Outcome run(const FindResultItems &selected, const QString &findText, const QString &replaceText)
    {
        return run(LinesByFile(selected), findText, replaceText);
    }
    static const TDMatchLine &lineOf(const std::shared_ptr<TDFindResultItem> &file, qsizetype index = 0)
    {
        return *file->matchLines().at(index)->matchLine();
    }

    std::atomic<bool> _stop = false;
    quint64 _stopAfter = 0;
    QList<quint64> _filesDone;
};

TEST_F(TDSelectedMatchReplacementTest, EveryMatchOfTheSelectedLinesIsReplacedAndEachFileSavedOnce)
{
    _folder.write("a.txt", "x x\nno\nxx");
    _folder.write("b.txt", "x--\n");
    _folder.write("c.txt", "x\r\nx\r");
    const FindResultItems files = search(_folder.path(), u"x"_s);
    ASSERT_EQ(files.size(), 3);
    FindResultItems selected = matchLinesOf(files);
    selected.removeLast();
    selected << files;
    const Outcome outcome = run(selected, u"x"_s, u"yz"_s);
    EXPECT_EQ(_folder.read("a.txt"), "yz yz\nno\nyzyz");
    EXPECT_EQ(_folder.read("b.txt"), "yz--\n");
    EXPECT_EQ(_folder.read("c.txt"), "yz\r\nx\r");
    EXPECT_EQ(outcome.filesRewritten, 3U);
    EXPECT_EQ(outcome.replacements, 6U);
    EXPECT_EQ(_filesDone, (QList<quint64>{1, 2, 3}));
    EXPECT_TRUE(lineOf(files[0]).matchRanges() == (Ranges{{0, 2}, {3, 2}}));
    EXPECT_FALSE(outcome.stopped);
    EXPECT_TRUE(outcome.error.isNull());
}

TEST_F(TDSelectedMatchReplacementTest, AFileSelectedInTwoStretchesIsSavedTwice)
{
    _folder.write("a.txt", "x1\nx2\n");
    _folder.write("b.txt", "x--\n");
    const FindResultItems files = search(_folder.path(), u"x"_s);
    ASSERT_EQ(files.size(), 2);
    const Outcome outcome = run(
        {files[0]->matchLines()[0], files[1]->matchLines()[0], files[0]->matchLines()[1]}, u"x"_s, u"y\n"_s);
    EXPECT_EQ(outcome.filesRewritten, 3U);
    EXPECT_EQ(_folder.read("a.txt"), "y\n1\ny\n2\n");
    EXPECT_EQ(backupNames(_folder).size(), 2);
}

TEST_F(TDSelectedMatchReplacementTest, WhatWasReplacedIsReplacedAgainOnlyOneByOne)
{
    setMode(SearchMode::RegularExpression);
    _folder.write("a.txt", "colour, colour\n");
    const FindResultItems files = search(_folder.path(), u"c(o)lour"_s);
    const FindResultItems lines = matchLinesOf(files);
    TDMatchLine &line = *lines[0]->matchLine();
    const ReplaceRequest single = request(u"c(o)lour"_s, u"[$&]"_s);
    const auto replaceFirst = [&] {
        TDError error;
        line.setHighlightedMatchIndex(0);
        TDReplaceEngine::performReplaceWithSave(TDReplaceEngine::Save::Yes, *lines[0], single, error);
        EXPECT_TRUE(error.isNull());
    };
    EXPECT_EQ(run(lines, u"c(o)lour"_s, u"$&"_s).unchangedMatches, 2U);
    EXPECT_EQ(line.numberOfReplacedMatches(), 0U) << "what stayed may be replaced later";
    replaceFirst();
    EXPECT_EQ(line.numberOfReplacedMatches(), 1U);
    EXPECT_EQ(run(lines, u"c(o)lour"_s, u"<$&>"_s).replacements, 1U);
    EXPECT_EQ(_folder.read("a.txt"), "[colour], <colour>\n");
    const Outcome outcome = run(lines, u"c(o)lour"_s, u"{$&}"_s);
    EXPECT_EQ(std::pair(outcome.replacements, outcome.filesRewritten), std::pair(quint64(0), quint64(0)));
    replaceFirst();
    EXPECT_EQ(_folder.read("a.txt"), "[[colour]], <colour>\n");
    EXPECT_TRUE(line.matchRanges() == (Ranges{{0, 10}, {12, 8}}));
}

TEST_F(TDSelectedMatchReplacementTest, FileNodesAndErrorNodesAloneReplaceNothing)
{
    const auto file = searchOne(_folder.write("a.txt", "x--\n"), u"x"_s);
    const auto failed =
        TDFindResultItem::initWithFailedFile(_folder.path("b.txt"), {}, TDError::posixError(EIO));
    const Outcome outcome = run({failed, failed->matchLines().first(), file}, u"x"_s, u"y"_s);
    EXPECT_EQ(outcome.filesRewritten + outcome.replacements, 0U);
    EXPECT_EQ(_folder.names(), QList<QByteArray>{"a.txt"});
}

TEST_F(TDSelectedMatchReplacementTest, LinesThatTookTooLongDontKeepTheOthersFromBeingReplaced)
{
    FindResultItems files;
    for (const char *name : {"a.txt", "b.txt"}) {
        files << searchOne(_folder.write(name, "x--\n--x\n"), u"x"_s);
        // As a search leaves it that gave up on some lines.
        const auto error = TDFindResultItem::initWithError(TDError::posixError(EIO), files.last().get());
        files.last()->setMatchLines(files.last()->matchLines() + FindResultItems{error});
    }
    // A filter shows nothing of it but its error.
    files[1]->setChildren({files[1]->matchLines().last()});
    const LinesByFile lines = LinesByFile::ofFiles(files);
    EXPECT_EQ(lines.size(), 1U);
    EXPECT_EQ(UndoSizeEstimate::of(lines), UndoSizeEstimate::of(matchLinesOf(files)));
    EXPECT_EQ(run(lines, u"x"_s, u"y"_s).replacements, 2U);
    EXPECT_EQ(_folder.read("a.txt"), "y--\n--y\n");
    EXPECT_EQ(_folder.read("b.txt"), "x--\n--x\n");
    EXPECT_EQ(files[0]->matchLines().size(), 3);
}

TEST_F(TDSelectedMatchReplacementTest, ExpressionsReplaceEveryOccurrenceWithinAMatch)
{
    setMode(SearchMode::RegularExpression);
    const FilePath path = _folder.write("a.txt", "aa\nb\n");
    const auto file = searchOne(path, u"a*"_s);
    ASSERT_EQ(file->matchCount().value_or(0), 1);
    run(file->matchLines(), u"a*"_s, u"X"_s);
    EXPECT_EQ(_folder.read("a.txt"), "XX\nb\n");

    writeFile(path, "aa\nb\n");
    const auto again = searchOne(path, u"a*"_s);
    again->matchLines().first()->matchLine()->setHighlightedMatchIndex(0);
    TDError error;
    TDReplaceEngine::performReplaceWithSave(TDReplaceEngine::Save::Yes, *again->matchLines().first(),
                                            request(u"a*"_s, u"X"_s), error);
    EXPECT_EQ(_folder.read("a.txt"), "X\nb\n") << "the single replacement takes the first only";
}

TEST_F(TDSelectedMatchReplacementTest, AFileThatCantBeSavedIsPutBackAndListedWhileOthersAreRewritten)
{
    for (const char *name : {"a.txt", "b.txt", "c.txt"})
        _folder.write(name, "x x\n");
    const FindResultItems files = search(_folder.path(), u"x"_s);
    ASSERT_EQ(files.size(), 3);
    for (const qsizetype index : {0, 2})
        setModificationDate(files[index]->path(), 1);
    const Outcome outcome = run(matchLinesOf(files), u"x"_s, QString());
    EXPECT_EQ(outcome.failedPaths(), (QList<FilePath>{files[0]->path(), files[2]->path()}));
    EXPECT_EQ(outcome.filesRewritten, 1U);
    EXPECT_EQ(outcome.replacements, 2U);
    EXPECT_TRUE(outcome.error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_WRITABLE_ERROR));
    EXPECT_EQ(outcome.error.localizedFailureReason(), u"a.txt, c.txt"_s);
    for (const qsizetype index : {0, 2}) {
        EXPECT_EQ(contentOfFile(files[index]->path()), "x x\n");
        EXPECT_EQ(lineOf(files[index]).matchLineString(), u"x x\n"_s);
        EXPECT_TRUE(lineOf(files[index]).matchRanges() == (Ranges{{0, 1}, {2, 1}}));
    }
    EXPECT_EQ(_folder.read("b.txt"), " \n");
}

TEST_F(TDSelectedMatchReplacementTest, OnlyTheLastFilesEmptiedRangesAreCleared)
{
    _folder.write("a.txt", "x1--\n");
    _folder.write("b.txt", "x1\n2x\n");
    const FindResultItems files = search(_folder.path(), u"x"_s);
    ASSERT_EQ(files.size(), 2);
    run(matchLinesOf(files), u"x"_s, QString());
    EXPECT_TRUE(lineOf(files[0]).matchRanges() == (Ranges{{0, 0}}));
    for (const qsizetype index : {0, 1}) {
        EXPECT_TRUE(lineOf(files[1], index).matchRanges().isEmpty());
        EXPECT_EQ(lineOf(files[1], index).highlightedMatchIndex(), TD_NO_HIGHLIGHTED_MATCH);
    }

    const auto date = files[1]->modificationDate();
    setModificationDate(files[1]->path(), date->nanoseconds);
    const Outcome again = run(files[1]->matchLines(), u"x"_s, QString());
    EXPECT_EQ(again.filesRewritten, 0U) << "there is nothing to save";
    EXPECT_TRUE(TDFileCommon::fileModificationDate(files[1]->path()) == date);
}

TEST_F(TDSelectedMatchReplacementTest, AStopBetweenFilesLeavesTheOthersAsTheyAre)
{
    for (const char *name : {"a.txt", "b.txt", "c.txt"})
        _folder.write(name, "x--\n");
    const FindResultItems files = search(_folder.path(), u"x"_s);
    ASSERT_EQ(files.size(), 3);
    _stopAfter = 1;
    const Outcome outcome = run(matchLinesOf(files), u"x"_s, u"y"_s);
    EXPECT_TRUE(outcome.stopped);
    EXPECT_EQ(outcome.filesRewritten, 1U);
    EXPECT_EQ(_folder.read("a.txt"), "y--\n");
    EXPECT_EQ(_folder.read("b.txt"), "x--\n");
    EXPECT_EQ(lineOf(files[1]).matchLineString(), u"x--\n"_s);

    EXPECT_EQ(run(matchLinesOf(files), u"x"_s, u"y"_s).replacements, 0U) << "still stopped";
    _stop = false;
    // What a stopped run left changed in memory is written by the next one.
    files[2]->matchLines().first()->matchLine()->setMatchLineString(u"left\n"_s);
    files[2]->matchLines().first()->matchLine()->setMatchRanges({});
    _stopAfter = 0;
    EXPECT_EQ(run(files[2]->matchLines(), u"x"_s, u"y"_s).filesRewritten, 1U);
    EXPECT_EQ(_folder.read("c.txt"), "left\n");
}

TEST_F(TDSelectedMatchReplacementTest, AStopWhileTheLastGroupGoesToTheDiskLeavesItAsItWas)
{
    // Groups begin with one file and four, so two are left for the third.
    for (const char *name : {"a", "b", "c", "d", "e", "f", "g"})
        _folder.write(QByteArray(name) + ".txt", "x--\n");
    const FindResultItems files = search(_folder.path(), u"x"_s);
    struct StoppingCalls : UnflushedCalls
    {
        explicit StoppingCalls(std::atomic<bool> &stopped) : stop(stopped) { setCurrent(this); }
        ~StoppingCalls() override { setCurrent(nullptr); }
        int syncFileSystem(int) override { return (stop = ++flushes == 3, 0); }
        std::atomic<bool> &stop;
        int flushes = 0;
    } const calls(_stop);
    const Outcome outcome = run(matchLinesOf(files), u"x"_s, QString());
    EXPECT_TRUE(outcome.stopped);
    EXPECT_EQ(outcome.filesRewritten, 5U);
    EXPECT_EQ(_folder.read("e.txt"), "--\n");
    EXPECT_EQ(_folder.read("f.txt"), "x--\n");
    for (const qsizetype index : {5, 6}) {
        EXPECT_EQ(lineOf(files[index]).matchLineString(), u"x--\n"_s);
        EXPECT_EQ(lineOf(files[index]).matchRanges().size(), 1);
    }
    EXPECT_EQ(backupNames(_folder).size(), 5);
}

TEST_F(TDSelectedMatchReplacementTest, AStopWithinAFileLeavesItsLinesToTheNextRun)
{
    _folder.write("a.txt", QByteArray("x--\n").repeated(1000));
    const FindResultItems files = search(_folder.path(), u"x"_s);
    TDSelectedMatchReplacement stopped(request(u"x"_s, u"y"_s), _stop,
                                       [&](quint64) { _stop = lineOf(files[0]).isUnsaved(); });
    EXPECT_TRUE(stopped.replaceSelectedMatches(matchLinesOf(files)).stopped);
    EXPECT_EQ(lineOf(files[0]).numberOfReplacedMatches(), 0U);
    _stop = false;
    EXPECT_EQ(run({files[0]->matchLines().last()}, u"x"_s, u"z"_s).replacements, 1U);
    EXPECT_EQ(_folder.read("a.txt"), QByteArray("x--\n").repeated(999) + "z--\n");
}

TEST_F(TDSelectedMatchReplacementTest, AFaultyReplacementEndsTheRunWithTheFileInHandUnsaved)
{
    setMode(SearchMode::RegularExpression);
    _folder.write("a.txt", "a\n\n\n");
    _folder.write("b.txt", "b\n\xC3\xA9\n");
    _folder.write("c.txt", "c\n\n\n");
    const FindResultItems files = search(_folder.path(), u"."_s);
    ASSERT_EQ(files.size(), 3);
    // Text between the two bytes of a character.
    const Outcome outcome = run(matchLinesOf(files), u"."_s, u"$&X"_s);
    EXPECT_TRUE(outcome.error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR));
    EXPECT_EQ(_folder.read("a.txt"), "aX\n\n\n");
    EXPECT_EQ(_folder.read("b.txt"), "b\n\xC3\xA9\n");
    EXPECT_EQ(_folder.read("c.txt"), "c\n\n\n");
    EXPECT_EQ(lineOf(files[1]).matchLineString(), u"b\n"_s);
    EXPECT_TRUE(outcome.failures.empty());
}

TEST_F(TDSelectedMatchReplacementTest, TheListOfFailedFilesIsCut)
{
    const QByteArray thousand(1000, 'n');
    const QString end = u"\n\nToo many files to list."_s;
    const QString long1000 = QString::fromLatin1(thousand);
    const struct
    {
        QList<FilePath> paths;
        QString list;
    } cases[] = {
        {{FilePath("/a/one"), FilePath("/b/t\xFFwo")}, u"one, t\uFFFDwo"_s},
        {{FilePath("/" + thousand), FilePath("/b")}, long1000 + u", b"_s},
        {{FilePath("/" + thousand), FilePath("/b"), FilePath("/c")}, long1000 + u", b"_s + end},
        {{FilePath("/n" + thousand)}, u'n' + long1000},
        {{FilePath("/n" + thousand), FilePath("/b"), FilePath("/c")}, u'n' + long1000 + end},
    };
    for (const auto &test : cases) {
        const TDError error = TDSelectedMatchReplacement::failedFilesError(test.paths);
        EXPECT_EQ(error.localizedFailureReason(), test.list);
        EXPECT_EQ(
            error.localizedRecoverySuggestion(),
            u"Review the permissions, ownership and lock status of the above files and peform the search and "
            "replace again."_s);
    }
}

} // namespace
} // namespace tidemark::test
