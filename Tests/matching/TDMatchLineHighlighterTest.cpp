#include "matching/TDMatchLineHighlighter.h"

#include "foundation/UserDefaults.h"
#include "matching/SearchContext.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::TemporaryFolder;

enum Reading { Plain, Expression };
constexpr CaseRule EXACT = CaseRule::Exact;
constexpr CaseRule IGNORE = CaseRule::Ignore;

/// "1:(0,2)(2,2) 4:(0,1)": line numbers and ranges.
QByteArray described(const MatchLines &lines)
{
    QByteArrayList parts;
    for (const auto &line : lines) {
        QByteArray part = QByteArray::number(line->lineNumber()) + ':';
        for (const TextRange &range : line->matchRanges())
            part += '(' + QByteArray::number(range.location) + ',' + QByteArray::number(range.length) + ')';
        parts << part;
    }
    return parts.join(' ');
}

class TDMatchLineHighlighterTest : public testing::Test
{
protected:
    void TearDown() override
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, {});
    }
    static void setReading(Reading reading)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, reading == Expression);
    }

    /// Searches a UTF-8 file line by line and in blocks, which must come to the same; "error" and the code
    /// when that fails.
    QByteArray found(const QByteArray &content, const QString &find, Reading reading,
                     CaseRule caseRule = EXACT)
    {
        setReading(reading);
        const FilePath file = folder.write("file", content);
        const TDFindPattern pattern(find, caseRule);
        error.clear();
        bool done = highlighter.processWithFile(file, TD_ENCODING_UTF8, error, pattern);
        const QByteArray byLines = _outcome(done);
        const QString description = error.localizedDescription();

        SearchContext context(pattern);
        error.clear();
        done = highlighter.processWithFile(FileToRead{file, -1, {}}, TD_ENCODING_UTF8, error, context);
        EXPECT_EQ(_outcome(done), byLines) << "in blocks: " << testing::PrintToString(find);
        EXPECT_EQ(error.localizedDescription(), description);
        return byLines;
    }

    TemporaryFolder folder;
    TDMatchLineHighlighter highlighter;
    TDError error;

private:
    QByteArray _outcome(bool done) const
    {
        EXPECT_EQ(done, error.isNull());
        return done ? described(highlighter.matchLines()) : "error " + QByteArray::number(error.code());
    }
};

TEST_F(TDMatchLineHighlighterTest, FindsTheseRanges)
{
    const struct
    {
        QByteArray content;
        QString find;
        Reading reading;
        CaseRule caseRule;
        QByteArray found;
    } cases[] = {
        {"aaaa", u"aa"_s, Plain, EXACT, "1:(0,2)(2,2)"},
        {"aaa", u"aa"_s, Plain, EXACT, "1:(0,2)"},
        {"aba", u""_s, Plain, EXACT, ""},
        {"abc a.c", u"a.c"_s, Plain, EXACT, "1:(4,3)"},
        {"abc a.c", u"a.c"_s, Expression, EXACT, "1:(0,3)(4,3)"},
        {"aAbB", u"AB"_s, Plain, IGNORE, "1:(1,2)"},
        {"aAbB", u"AB"_s, Plain, EXACT, ""},
        {"aAbB", u"AB"_s, Expression, IGNORE, "1:(1,2)"},
        {"aAbB", u"AB"_s, Expression, EXACT, ""},
        {"xe\xCC\x81y", u"\u00E9"_s, Plain, EXACT, "1:(1,2)"},
        {"\xC3\xA9 b", u"b"_s, Plain, EXACT, "1:(2,1)"},
        {"(", u"("_s, Plain, EXACT, "1:(0,1)"},

        // Lines: each has its number; line ends are never searched, other breaks within a line are.
        {"a\n\nb\r\na\r\ra", u"a"_s, Plain, EXACT, "1:(0,1) 4:(0,1) 6:(0,1)"},
        {"ab\r\nab\r", u"\r"_s, Plain, EXACT, ""},
        {"a\r\nb\n", u"[\\r\\n]"_s, Expression, EXACT, ""},
        {"a\vb\v\n", u"\v"_s, Plain, EXACT, "1:(1,1)"},
        {"abx\r\n", u"x$"_s, Expression, EXACT, "1:(2,1)"},
        // The breaks in front make the searched stretch end early.
        {"\xE2\x80\xA8"
         "abc\n",
         u"b"_s, Plain, EXACT, "1:(2,1)"},
        {"\xE2\x80\xA8"
         "abc\n",
         u"c"_s, Plain, EXACT, ""},
        {"\v\vab", u"a"_s, Plain, EXACT, ""},

        // The search resumes with nothing visible in front of it.
        {"aab", u"^a"_s, Expression, EXACT, "1:(0,1)(1,1)"},
        {"aa a", u"\\ba"_s, Expression, EXACT, "1:(0,1)(1,1)(3,1)"},
        {"aaa", u"(?<=a)a"_s, Expression, EXACT, "1:(1,1)"},
        {"aab", u"\\Aa"_s, Expression, EXACT, "1:(0,1)(1,1)"},
        {"ab", u"a(?=b)"_s, Expression, EXACT, "1:(0,1)"},

        // Empty matches: none at the start of a line, elsewhere the next search begins one further on.
        {"ba", u"a*"_s, Expression, EXACT, ""},
        {"ab", u"a*"_s, Expression, EXACT, "1:(0,1)(1,0)(2,0)"},
        {"abab", u"a*"_s, Expression, EXACT, "1:(0,1)(1,0)(2,1)(3,0)(4,0)"},
        {"ab\n", u"$"_s, Expression, EXACT, "1:(2,0)"},
        {"\n\nab", u"x*"_s, Expression, EXACT, ""},
        {"ab", u"(?=b)"_s, Expression, EXACT, "1:(1,0)"},
        {"abcb", u"(?=b)"_s, Expression, EXACT, "1:(1,0)(3,0)"},

        // Expressions see bytes: the stretch ends early and positions shift on other than ASCII lines.
        {"\xC3\xA9"
         "ab",
         u"a"_s, Expression, EXACT, "1:(2,1)"},
        {"\xC3\xA9"
         "ab",
         u"b"_s, Expression, EXACT, ""},
        {"\xC3\xA9"
         "aab",
         u"a"_s, Expression, EXACT, "1:(2,1)(3,1)"},
        {"a\xC3\xA9"
         "b",
         u"\u00E9"_s, Expression, EXACT, "1:(1,2)"},
        {"a\xC3\xA9", u"\u00E9"_s, Expression, EXACT, ""},
        {"\xC3\xA9\xC3\xA9", u"."_s, Expression, EXACT, "1:(0,1)(1,1)"},
        {"x\xC3\xA9", u"$"_s, Expression, EXACT, "1:(2,0)"},
        {"\xC3\x89\xC3\x89", u"\u00E9"_s, Expression, IGNORE, ""},
        {"\xC3\xA9\nab", u"b"_s, Expression, EXACT, "2:(1,1)"},
        // Characters of ASCII alone are letters and blanks.
        {"\xC3\xA9zz", u"\\w+"_s, Expression, EXACT, "1:(2,1)"},
    };
    for (const auto &[content, find, reading, caseRule, expected] : cases)
        EXPECT_EQ(found(content, find, reading, caseRule), expected)
            << testing::PrintToString(find) << " in " << testing::PrintToString(content);
}

TEST_F(TDMatchLineHighlighterTest, LinesAreNumberedAndMatchedAcrossTheBordersOfBlocks)
{
    for (const QByteArray lineEnd : {"\n", "\r\n", "\r"}) {
        for (const qsizetype border : {40960, 131072}) {
            for (const qsizetype before : {0, 1, 2}) {
                const qsizetype lines = (border - 100) / 10;
                QByteArray content = (QByteArray(10 - lineEnd.size(), 'x') + lineEnd).repeated(lines);
                content +=
                    QByteArray(border - before - content.size(), 'y') + lineEnd + "need" + lineEnd + "z need";
                const QByteArray expected =
                    QByteArray::number(lines + 2) + ":(0,4) " + QByteArray::number(lines + 3) + ":(2,4)";
                EXPECT_EQ(found(content, u"need"_s, Plain), expected) << border << ' ' << before;
                EXPECT_EQ(found(content, u"ne+d$"_s, Expression), expected) << border << ' ' << before;
            }
        }
    }
}

TEST_F(TDMatchLineHighlighterTest, TheReadingIsLookedUpAtEverySearch)
{
    const TDFindPattern pattern(u"a.c"_s, EXACT);
    const QString line = u"abc a.c"_s;
    setReading(Expression);
    EXPECT_EQ(TDFindPattern::Line(pattern, line).firstRange({0, 7}, error).location, 0);
    setReading(Plain);
    EXPECT_EQ(TDFindPattern::Line(pattern, line).firstRange({0, 7}, error).location, 4);
    EXPECT_FALSE(TDFindPattern::Line(pattern, line).firstRange({0, 6}, error).isFound());
    EXPECT_EQ(
        TDMatchLineHighlighter::firstRangeOfPatternInString(line, u"A"_s, IGNORE, {1, 6}, error).location, 4);
}

TEST_F(TDMatchLineHighlighterTest, MatchLinesKeepTheirWholeLine)
{
    EXPECT_EQ(found("x\r\n\tab\r\n", u"a"_s, Plain), QByteArray("2:(1,1)"));
    EXPECT_EQ(highlighter.matchLines().first()->matchLineString(), u"\tab\r\n"_s);
    EXPECT_EQ(highlighter.matchLines().first()->savedLineString(), u"\tab\r\n"_s);
}

TEST_F(TDMatchLineHighlighterTest, AMalformedExpressionShowsAtTheFirstLineSearched)
{
    EXPECT_EQ(found("", u"("_s, Expression), QByteArray(""));
    EXPECT_EQ(found("\n", u"("_s, Expression), QByteArray("error 36"));
    EXPECT_EQ(error.localizedDescription(),
              u"Sorry, a problem occured whilst attempting to search using the regular expression ‘(’.\n\n"
              "The find text regular expression is malformed.\n\nError Code: 36"_s);
    EXPECT_EQ(error.localizedRecoverySuggestion(),
              u"Review the regular expression in the find text field and ensure it is valid. Or uncheck the "
              u"Regular "
              "expression checkbox if you want to perform a normal text search."_s);
    for (const QString &malformed : {u"*"_s, u"[a"_s, u"a{2,1}"_s, u"(?<=a*)b"_s, u"\\"_s})
        EXPECT_EQ(found("a", malformed, Expression), QByteArray("error 36")) << malformed.toStdString();
}

TEST_F(TDMatchLineHighlighterTest, AnExpressionTooHardToSearchIsAnInternalError)
{
    EXPECT_EQ(found(QByteArray(60, 'x') + "yz", u"(x+x+)+(y)\\2"_s, Expression), QByteArray("error 36"));
    EXPECT_EQ(error.localizedFailureReason(),
              u"The find text regular expression caused an internal error."_s);
    EXPECT_EQ(error.localizedRecoverySuggestion(),
              u"Review the regular expression in the find text field and ensure it is valid.  Or uncheck the "
              u"Regular "
              "expression checkbox if you want to perform a normal text search."_s);
}

TEST_F(TDMatchLineHighlighterTest, LongLinesFailAFileOnlyTogetherWithAMatch)
{
    const QByteArray longest(24999, 'x');
    EXPECT_EQ(found(longest + "\na", u"a"_s, Plain), QByteArray("2:(0,1)"));
    EXPECT_EQ(found(longest + "\r\na", u"b"_s, Plain), QByteArray(""));
    EXPECT_EQ(found(longest + "\r\na", u"a"_s, Plain), QByteArray("error 1"));
    EXPECT_EQ(found("a\n" + longest + "xy", u"a"_s, Plain), QByteArray("error 1"));
    EXPECT_EQ(found(longest + "xy", u"y"_s, Plain), QByteArray("error 1"));
    EXPECT_EQ(error.localizedDescription(), u"Sorry, it was not possible to search file ‘"_s +
                                                folder.path("file").displayText() +
                                                u"’.\n\nSearch results cannot be shown and replacements will "
                                                u"not occur for this file as it contains "
                                                "lines of excessive length.\n\nError Code: 1"_s);
    // Units are counted, not bytes.
    EXPECT_EQ(found(QByteArray("\xC3\xA9").repeated(25000), u"\u00E9x"_s, Plain), QByteArray(""));
    EXPECT_EQ(found(QByteArray("\xC3\xA9").repeated(24999) + "a", u"a"_s, Plain), QByteArray("1:(24999,1)"));
}

TEST_F(TDMatchLineHighlighterTest, AReaderThatFailsInTheMiddleFailsTheFile)
{
    EXPECT_EQ(found("a\n\xFF\na\n", u"a"_s, Plain), QByteArray("error 4"));
    EXPECT_EQ(found("a\n" + QByteArray(25001, 'x') + "\n\xFF", u"a"_s, Plain), QByteArray("error 1"));
    EXPECT_EQ(found(QByteArray(25001, 'x') + "\n\xFF", u"a"_s, Plain), QByteArray("error 4"));
}

TEST_F(TDMatchLineHighlighterTest, EachFileStartsAfresh)
{
    setReading(Plain);
    const FilePath marked = folder.write("marked", "\xEF\xBB\xBF"
                                                   "a\n");
    EXPECT_TRUE(highlighter.processWithFile(marked, TD_FILE_COMMON_UNKNOWN_ENCODING, error, false, u"a"_s));
    EXPECT_EQ(described(highlighter.matchLines()), QByteArray("1:(0,1)"));
    EXPECT_TRUE(highlighter.includesBOM());
    highlighter.setShouldStop(true);
    EXPECT_EQ(found("b\na", u"a"_s, Plain), QByteArray("2:(0,1)"));
    EXPECT_FALSE(highlighter.includesBOM());
}

TEST_F(TDMatchLineHighlighterTest, AStoppedFileSucceedsWithoutMatchLines)
{
    const std::atomic<bool> stop = true;
    highlighter.setSearchShouldStop(&stop);
    EXPECT_EQ(found("a\n", u"a"_s, Plain), QByteArray(""));
    EXPECT_EQ(found("a\n", u"("_s, Expression), QByteArray(""));
    highlighter.setSearchShouldStop(nullptr);
    EXPECT_EQ(found("a\n", u"a"_s, Plain), QByteArray("1:(0,1)"));
}

} // namespace
} // namespace tidemark
