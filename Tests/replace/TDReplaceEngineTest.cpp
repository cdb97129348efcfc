#include "replace/TDReplaceEngine.h"

#include "replace/ReplaceTestSupport.h"
#include "replace/TDFileModifier.h"

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using Save = TDReplaceEngine::Save;
using Ranges = QList<TextRange>;

class TDReplaceEngineTest : public ReplaceTest
{
protected:
    /// Replaces the match at the index of the file's line at the index, counted among its match lines.
    bool replace(TDFindResultItem &file, qsizetype line, qint64 match, const QString &findText,
                 const QString &replaceText, Save save = Save::Yes)
    {
        _error.clear();
        TDFindResultItem &item = *file.matchLines().at(line);
        item.matchLine()->setHighlightedMatchIndex(match);
        return TDReplaceEngine::performReplaceWithSave(save, item, request(findText, replaceText), _error);
    }
    TDError _error;
};

TEST_F(TDReplaceEngineTest, LaterRangesMoveAndTheReplacementStaysHighlighted)
{
    const auto file = searchOne(_folder.write("a.txt", "  abc...\tabc\n"), u"abc"_s);
    EXPECT_FALSE(replace(*file, 0, 0, u"abc"_s, u"fiver"_s, Save::No));
    const TDMatchLine &line = *file->matchLines().first()->matchLine();
    EXPECT_EQ(line.matchLineString(), u"  fiver...\tabc\n"_s);
    EXPECT_TRUE(line.matchRanges() == (Ranges{{2, 5}, {11, 3}}));
    EXPECT_EQ(line.highlightedMatchIndex(), 0);
    EXPECT_EQ(_folder.read("a.txt"), "  abc...\tabc\n");
}

TEST_F(TDReplaceEngineTest, AnEmptiedMatchIsRemovedAndTheNextOneHighlighted)
{
    const auto file = searchOne(_folder.write("a.txt", "x1x2x3\n"), u"x"_s);
    const TDMatchLine &line = *file->matchLines().first()->matchLine();
    EXPECT_TRUE(replace(*file, 0, 1, u"x"_s, QString()));
    EXPECT_EQ(line.highlightedMatchIndex(), 1);
    EXPECT_TRUE(line.matchRanges() == (Ranges{{0, 1}, {3, 1}}));
    EXPECT_FALSE(replace(*file, 0, 1, u"x"_s, QString()));
    EXPECT_EQ(line.highlightedMatchIndex(), TD_NO_HIGHLIGHTED_MATCH);
    EXPECT_TRUE(line.matchRanges() == (Ranges{{0, 1}}));
    EXPECT_TRUE(_error.isNull());
    EXPECT_EQ(_folder.read("a.txt"), "x123\n");
    EXPECT_FALSE(replace(*file, 0, TD_NO_HIGHLIGHTED_MATCH, u"x"_s, u"y"_s));
    EXPECT_EQ(_folder.read("a.txt"), "x123\n") << "no match is highlighted";
}

TEST_F(TDReplaceEngineTest, OnlyTheHighlightedMatchIsRewritten)
{
    setMode(SearchMode::RegularExpression);
    setCaseRule(CaseRule::Ignore);
    const auto file = searchOne(_folder.write("a.txt", "k=v K=V k=v\r\nk=v\r"), u"(k)=(v)"_s);
    EXPECT_FALSE(replace(*file, 0, 1, u"(k)=(v)"_s, u"$2<-$1"_s));
    EXPECT_EQ(_folder.read("a.txt"), "k=v V<-K k=v\r\nk=v\r");
    EXPECT_FALSE(replace(*file, 1, 0, u"^(k)=(v)$"_s, u"x"_s));
    EXPECT_EQ(_folder.read("a.txt"), "k=v V<-K k=v\r\nx\r");
    EXPECT_TRUE(_error.isNull());
}

TEST_F(TDReplaceEngineTest, AFaultyExpressionChangesNothing)
{
    setMode(SearchMode::RegularExpression);
    const FilePath path = _folder.write("a.txt", "one\n");
    const auto file = searchOne(path, u"one"_s);
    const auto date = file->modificationDate();
    setModificationDate(path, 1);
    EXPECT_FALSE(replace(*file, 0, 0, u"(one"_s, u"x"_s));
    EXPECT_TRUE(_error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR));
    EXPECT_EQ(file->matchLines().first()->matchLine()->matchLineString(), u"one\n"_s);
    EXPECT_TRUE(file->modificationDate() == date) << "it would hide the change from outside";
    EXPECT_EQ(_folder.read("a.txt"), "one\n");
}

TEST_F(TDReplaceEngineTest, AFailedSaveIsUndoneAndTheNextAttemptSucceeds)
{
    const FilePath path = _folder.write("a.txt", "x x\nlast\n");
    const auto file = searchOne(path, u"x"_s);
    writeFile(path, "x x\nchanged outside\n");
    setModificationDate(path, file->modificationDate()->nanoseconds + 1);
    EXPECT_FALSE(replace(*file, 0, 0, u"x"_s, QString()));
    EXPECT_TRUE(_error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR));
    const TDMatchLine &line = *file->matchLines().first()->matchLine();
    EXPECT_EQ(line.matchLineString(), u"x x\n"_s);
    EXPECT_TRUE(line.matchRanges() == (Ranges{{0, 1}, {2, 1}}));
    EXPECT_EQ(line.highlightedMatchIndex(), 0);
    EXPECT_EQ(_folder.read("a.txt"), "x x\nchanged outside\n");

    EXPECT_FALSE(replace(*file, 0, 0, u"x"_s, u"yy"_s));
    EXPECT_TRUE(_error.isNull());
    EXPECT_EQ(_folder.read("a.txt"), "yy x\nchanged outside\n");

    writeFile(path, "inserted\nyy x\n");
    EXPECT_FALSE(replace(*file, 0, 1, u"x"_s, u"z"_s));
    EXPECT_FALSE(replace(*file, 0, 1, u"x"_s, u"z"_s)) << "the date is known now, but the line is another";
    EXPECT_TRUE(_error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR));
    EXPECT_EQ(_folder.read("a.txt"), "inserted\nyy x\n");
}

TEST_F(TDReplaceEngineTest, OtherLinesChangedInMemoryAreNotSavedAlong)
{
    const auto file = searchOne(_folder.write("a.txt", "x1\nx2\nx3\n"), u"x"_s);
    replace(*file, 0, 0, u"x"_s, u"a\nb"_s, Save::No);
    replace(*file, 1, 0, u"x"_s, u"y"_s, Save::No);
    replace(*file, 2, 0, u"x"_s, u"z"_s);
    EXPECT_EQ(_folder.read("a.txt"), "x1\nx2\nz3\n");
    EXPECT_EQ(file->matchLines()[2]->matchLine()->lineNumber(), 3);

    TDError error;
    EXPECT_TRUE(saveToDiskFindResultItem(
        *file, [](const FilePath &) { return false; }, error));
    EXPECT_EQ(_folder.read("a.txt"), "a\nb1\ny2\nz3\n");
    EXPECT_EQ(file->matchLines()[2]->matchLine()->lineNumber(), 4);
}

TEST_F(TDReplaceEngineTest, LineEndsInReplacementsMoveTheLaterLines)
{
    setMode(SearchMode::RegularExpression);
    const QString find = u"[xk]"_s;
    for (const QByteArray end : {"\n", "\r", "\r\n"}) {
        SCOPED_TRACE(end.toHex().constData());
        const auto file = searchOne(_folder.write("a.txt", "x" + end + ("k" + end).repeated(3)), find);
        // Equal lines, so that a wrong number isn't noticed by the text.
        replace(*file, 0, 0, find, u"1\\n2\\r\\n\\r3"_s);
        replace(*file, 2, 0, find, u"z"_s);
        EXPECT_EQ(_folder.read("a.txt"), "1\n2\r\n\r3" + end + "k" + end + "z" + end + "k" + end);
        EXPECT_EQ(file->matchLines()[2]->matchLine()->lineNumber(), 6);

        setMode(SearchMode::PlainText);
        replace(*file, 0, 0, find, u"y"_s);
        replace(*file, 3, 0, find, u"w\n"_s);
        replace(*file, 1, 0, find, u"v"_s);
        setMode(SearchMode::RegularExpression);
        EXPECT_EQ(_folder.read("a.txt"), "y" + end + "v" + end + "z" + end + "w\n" + end);
        EXPECT_TRUE(_error.isNull());
    }
}

TEST_F(TDReplaceEngineTest, ErrorNodesAreLeftAlone)
{
    const auto file =
        TDFindResultItem::initWithFailedFile(_folder.path("a.txt"), {}, TDError::posixError(EIO));
    EXPECT_FALSE(TDReplaceEngine::performReplaceWithSave(Save::Yes, *file->matchLines().first(),
                                                         request(u"a"_s, u"b"_s), _error));
    EXPECT_FALSE(TDReplaceEngine::performReplaceWithSave(Save::Yes, *file, request(u"a"_s, u"b"_s), _error));
    EXPECT_TRUE(_error.isNull());
}

} // namespace
} // namespace tidemark::test
