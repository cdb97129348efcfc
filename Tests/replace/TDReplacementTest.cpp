#include "replace/TDReplacement.h"

#include "replace/MatchLineReplacement.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr auto FIRST = ReplacementExtent::FirstOccurrence;
constexpr auto EVERY = ReplacementExtent::EveryOccurrence;
const QString MALFORMED = u"are malformed."_s;
const QString INTERNAL = u"caused an internal error."_s;

struct Case
{
    QString findText;
    QString format;
    QString matched;
    QString first;
    QString every;
    CaseRule caseRule = CaseRule::Exact;
};

TEST(TDReplacementTest, ExpressionsSeeOnlyTheMatchedText)
{
    const Case cases[] = {
        {u"(a+)-(b+)"_s, u"$2-$1"_s, u"aa-b"_s, u"b-aa"_s, u"b-aa"_s},
        {u"a*"_s, u"X"_s, u"aa"_s, u"X"_s, u"XX"_s},
        {u"a"_s, u"X"_s, u"aba"_s, u"Xba"_s, u"XbX"_s},
        {u"^b"_s, u"X"_s, u"bb"_s, u"Xb"_s, u"Xb"_s},
        {u"b$"_s, u"<$&>"_s, u"b"_s, u"<b>"_s, u"<b>"_s},
        {u"(?<=a)b"_s, u"X"_s, u"b"_s, u"b"_s, u"b"_s},
        {u"b"_s, u"1\\n2\\t\\$1"_s, u"b"_s, u"1\n2\t$1"_s, u"1\n2\t$1"_s},
        {u"AB"_s, u"X"_s, u"abAB"_s, u"abX"_s, u"abX"_s},
        {u"AB"_s, u"X"_s, u"abAB"_s, u"XAB"_s, u"XX"_s, CaseRule::Ignore},
        {u"\u00C9"_s, u"X"_s, u"\u00E9"_s, u"\u00E9"_s, u"\u00E9"_s, CaseRule::Ignore},
        {u"(\u6F22)(.*)"_s, u"$2\u00E9$1"_s, u"\u6F22\u8A9E"_s, u"\u8A9E\u00E9\u6F22"_s,
         u"\u8A9E\u00E9\u6F22"_s},
    };
    for (const Case &test : cases) {
        TDError error;
        const auto replaced = [&](ReplacementExtent extent) {
            const TDReplacement replacement(test.findText, test.format,
                                            {SearchMode::RegularExpression, test.caseRule}, extent);
            return replacement.replacementForMatchedText(test.matched, error).value_or(u"nothing"_s);
        };
        EXPECT_EQ(replaced(FIRST), test.first) << test.findText.toStdString();
        EXPECT_EQ(replaced(EVERY), test.every) << test.findText.toStdString();
        EXPECT_TRUE(error.isNull());
    }
}

TEST(TDReplacementTest, PlainTextIsTakenAsItIs)
{
    const TDReplacement replacement(u"("_s, u"$1\\n"_s, {SearchMode::PlainText, CaseRule::Exact}, EVERY);
    TDError error;
    EXPECT_EQ(replacement.replacementForMatchedText(u"(", error), u"$1\\n"_s);
}

TEST(TDReplacementTest, FaultsAreToldApart)
{
    const struct
    {
        QString findText;
        QString format;
        QString matched;
        QString reason;
    } cases[] = {
        {u"(b"_s, u"X"_s, u"b"_s, MALFORMED},
        {u"[b-a]"_s, u"X"_s, u"b"_s, MALFORMED},
        {u"(?:(?=a*)a)*b"_s, u"X"_s, QString(25000, u'a'), INTERNAL}, // would take an hour
        {u"."_s, u"$&X"_s, u"\u00E9"_s, INTERNAL},                    // between the bytes of a character
        {u"b"_s, u"X"_s, QString(QChar(0xD83D)), INTERNAL},
        {u"b"_s, QString(QChar(0xDE00)), u"b"_s, INTERNAL},
    };
    for (const auto &test : cases) {
        TDError error;
        const TDReplacement replacement(test.findText, test.format,
                                        {SearchMode::RegularExpression, CaseRule::Exact}, EVERY);
        EXPECT_FALSE(replacement.replacementForMatchedText(test.matched, error));
        EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR));
        EXPECT_EQ(error.localizedFailureReason(),
                  u"The find text regular expression and/or replace text format string "_s + test.reason);
        const QString blanks = test.reason == MALFORMED ? u" "_s : u"  "_s;
        EXPECT_EQ(
            error.localizedRecoverySuggestion(),
            u"Review the find and replace text fields and ensure they are valid."_s + blanks +
                u"Or uncheck the Regular expression checkbox if you want to perform a normal text search."_s);
    }
}

TEST(MatchLineReplacementTest, RangesAreCutToTheLine)
{
    const struct
    {
        TextRange range;
        QString text;
    } cases[] = {{{3, 10}, u"abcX"_s}, {{4, 1}, u"abcdX"_s}, {{90, 1}, u"abcdX"_s}, {{0, 2}, u"Xcd"_s}};
    const TDReplacement replacement(u"a"_s, u"X"_s, {SearchMode::PlainText, CaseRule::Exact}, FIRST);
    for (const auto &test : cases) {
        TDError error;
        TDMatchLine one;
        one.setMatchLineString(u"abcd"_s);
        one.setMatchRanges({test.range});
        TDMatchLine all;
        all.setMatchLineString(u"abcd"_s);
        all.setMatchRanges({test.range});
        EXPECT_TRUE(replaceMatch(one, 0, replacement, error));
        EXPECT_EQ(replaceMatches(
                      all, replacement, [] { return false; }, error)
                      .count,
                  1);
        EXPECT_EQ(one.matchLineString(), test.text);
        EXPECT_EQ(all.matchLineString(), test.text);
        EXPECT_TRUE(one.matchRanges() == all.matchRanges());
        EXPECT_TRUE(one.matchRanges().first() == (TextRange{test.text.indexOf(u'X'), 1}));
    }
}

TEST(MatchLineReplacementTest, AStopBetweenMatchesLeavesTheRestInPlace)
{
    TDMatchLine line;
    line.setMatchLineString(u"a-a-a\n"_s);
    line.setMatchRanges({{0, 1}, {2, 1}, {4, 1}});
    const TDReplacement replacement(u"a"_s, u"XYZ"_s, {SearchMode::PlainText, CaseRule::Exact}, EVERY);
    TDError error;
    int asked = 0;
    const ReplacedMatches done = replaceMatches(
        line, replacement, [&] { return ++asked == 3; }, error);
    EXPECT_EQ(done.count, 2);
    EXPECT_EQ(line.matchLineString(), u"XYZ-XYZ-a\n"_s);
    EXPECT_TRUE(line.matchRanges() == (QList<TextRange>{{0, 3}, {4, 3}, {8, 1}}));
}

} // namespace
} // namespace tidemark::test
