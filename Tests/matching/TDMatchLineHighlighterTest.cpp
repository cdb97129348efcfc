#include "matching/TDMatchLineHighlighter.h"

#include "foundation/UserDefaults.h"
#include "matching/SearchContext.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

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
        const TDFindPattern pattern(find, FindOptions::withUserDefaults(caseRule));
        error.clear();
        bool done = highlighter.processWithFile(file, TD_ENCODING_UTF8, error, pattern);
        const QByteArray byLines = _outcome(done);
        const QString description = error.localizedDescription();

        SearchContext context(pattern);
        error.clear();
        done = highlighter.processWithFile(FileToRead{file}, TD_ENCODING_UTF8, error, context);
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
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/found-ranges.tsv"))
        EXPECT_EQ(found(row.bytes(0), row.text(1), row.bytes(2).startsWith("plain") ? Plain : Expression,
                        row.bytes(2).endsWith("ignoring case") ? IGNORE : EXACT),
                  row.bytes(3))
            << row.line;
}

TEST_F(TDMatchLineHighlighterTest, LinesAreNumberedAndMatchedAcrossTheBordersOfBlocks)
{
    // The reader of lines takes 40 kB at once; that of blocks 128 kB, and then what 256 kB have room for
    // beside the line that was begun.
    for (const qsizetype border : {40960, 131072, 131072 + 262144 - 131072 % 20}) {
        for (const QByteArray lineEnd : {"\n", "\r\n", "\r", "\r\r\n"}) {
            for (qsizetype shift = -3; shift <= 3; ++shift) {
                const int ends = lineEnd.size() > 2 ? 2 : 1;
                const qsizetype lines = (border - 100) / 20;
                QByteArray content = (QByteArray(20 - lineEnd.size(), 'x') + lineEnd).repeated(lines);
                content +=
                    QByteArray(border + shift - content.size(), 'y') + lineEnd + "need" + lineEnd + "z need";
                const qint64 line = (lines + 1) * ends + 1;
                const QByteArray expected =
                    QByteArray::number(line) + ":(0,4) " + QByteArray::number(line + ends) + ":(2,4)";
                EXPECT_EQ(found(content, u"need"_s, Plain), expected) << border << ' ' << shift;
                EXPECT_EQ(found(content, u"ne+d$"_s, Expression), expected) << border << ' ' << shift;
            }
        }
    }
}

TEST_F(TDMatchLineHighlighterTest, APatternKeepsTheReadingThatItWasMadeWith)
{
    const QString line = u"abc a.c"_s;
    setReading(Expression);
    const TDFindPattern expression(u"a.c"_s, FindOptions::withUserDefaults(EXACT));
    setReading(Plain);
    const TDFindPattern plain(u"a.c"_s, FindOptions::withUserDefaults(EXACT));
    EXPECT_EQ(TDFindPattern::Line(expression, line).firstRange({0, 7}, error).location, 0);
    EXPECT_EQ(TDFindPattern::Line(plain, line).firstRange({0, 7}, error).location, 4);
    EXPECT_FALSE(TDFindPattern::Line(plain, line).firstRange({0, 6}, error).isFound());
    EXPECT_EQ(
        TDMatchLineHighlighter::firstRangeOfPatternInString(line, u"A"_s, IGNORE, {1, 6}, error).location, 4);
}

TEST_F(TDMatchLineHighlighterTest, ExpressionsAtFaultAreExplained)
{
    const QString advice =
        u"Review the regular expression in the find text field and ensure it is valid.%1 Or "
        "uncheck the Regular expression checkbox if you want to perform a normal text search."_s;
    EXPECT_EQ(found("\n", u"("_s, Expression), QByteArray("error 36"));
    EXPECT_EQ(error.localizedDescription(),
              u"Sorry, a problem occured whilst attempting to search using the regular expression ‘(’.\n\n"
              "The find text regular expression is malformed.\n\nError Code: 36"_s);
    EXPECT_EQ(error.localizedRecoverySuggestion(), advice.arg(QString()));
    EXPECT_EQ(found(QByteArray(60, 'x') + "yz", u"(x+x+)+(y)\\2"_s, Expression), QByteArray("error 36"));
    EXPECT_EQ(error.localizedFailureReason(),
              u"The find text regular expression caused an internal error."_s);
    EXPECT_EQ(error.localizedRecoverySuggestion(), advice.arg(u" "_s));
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
    EXPECT_EQ(found("a\n" + longest + "xy\n\xFF", u"a"_s, Plain), QByteArray("error 1"));
    EXPECT_EQ(found(longest + "xy\n\xFF", u"a"_s, Plain), QByteArray("error 4"));
    // Units are counted, not bytes.
    EXPECT_EQ(found(QByteArray("\xC3\xA9").repeated(25000), u"\u00E9x"_s, Plain), QByteArray(""));
    EXPECT_EQ(found(QByteArray("\xC3\xA9").repeated(24999) + "a", u"a"_s, Plain), QByteArray("1:(24999,1)"));
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
    EXPECT_EQ(found("b\r\n\tab\r\n", u"a"_s, Plain), QByteArray("2:(1,1)"));
    EXPECT_FALSE(highlighter.includesBOM());
    EXPECT_EQ(highlighter.matchLines().first()->matchLineString(), u"\tab\r\n"_s);
    EXPECT_EQ(highlighter.matchLines().first()->savedLineString(), u"\tab\r\n"_s);
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

/// Longer lines are searched in a way that can be stopped.
TEST_F(TDMatchLineHighlighterTest, ExpressionsFindTheSameInLongLines)
{
    const QByteArray line = "the the tide rose_and rose 12-34 (fell) aaaab";
    for (const QString &find :
         {u"(\\w+) \\1"_s, u"^t.e"_s, u"\\bro\\w*?_"_s, u"(?<=\\()f.*?(?=\\))"_s, u"[0-9]+-|(a|aa)+b"_s,
          u"(?i)ROSE\\>"_s, u"a{2,3}"_s, u"e(?!_)"_s, u"\\Athe"_s})
        EXPECT_EQ(found(line + QByteArray(2000, ' '), find, Expression), found(line + " ", find, Expression))
            << find.toStdString();
}

} // namespace
} // namespace tidemark::test
