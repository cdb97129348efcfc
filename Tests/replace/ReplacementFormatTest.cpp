#include "replace/ReplacementFormat.h"
#include "replace/MatchLineReplacement.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

constexpr auto ALL = ReplacementExtent::EveryOccurrence;

QString replaced(const QString &find, const QString &format, const QString &text)
{
    const FindOptions options = {SearchMode::UnicodeExpression, CaseRule::Exact};
    const TDFindPattern pattern(find, options);
    TDFindPattern::Line search(pattern, text);
    TDError error;
    TDMatchLine line;
    line.setMatchLineString(text);
    for (TextRange found = search.nextMatch(error); found.isFound(); found = search.nextMatch(error))
        line.appendMatchRange(found);
    replaceMatches(
        line, TDReplacement(find, format, options, ALL), [] { return false; }, error);
    return error ? u"error %1"_s.arg(error.code()) : line.matchLineString();
}

// What Perl has the tests against it cover.
TEST(ReplacementFormat, GoesBeyondPerlWhereFormatsDo)
{
    EXPECT_EQ(replaced(u"(?<n>a)(b)?"_s, u"${n}${2}|"_s, u"ab a"_s), u"ab| a|"_s);
    EXPECT_EQ(replaced(u"(?J)(?<n>a)|(?<n>b)"_s, u"<${n}>"_s, u"ab"_s), u"<a><b>"_s);
    EXPECT_EQ(replaced(u"ß|ǆ|ﬁ"_s, u"\\u$&\\U$&\\E$&"_s, u"ß ǆ ﬁ"_s), u"SsSSß ǅǄǆ FiFIﬁ"_s);
    EXPECT_EQ(replaced(u"$"_s, u"$$0\\$\\!"_s, u"😀"_s), u"😀$0$!"_s);
}

TEST(ReplacementFormat, BrokenFormsAreRefusedWithTheirPlace)
{
    TextFault fault;
    const auto expression = UnicodeExpression::compiled(u"(?<n>a)(b)"_s, CaseRule::Exact, fault);
    for (const auto &[format, position] : {std::pair(u"a$"_s, 1),
                                           {u"é$3"_s, 1},
                                           {u"$+{m}"_s, 0},
                                           {u"${n"_s, 0},
                                           {u"${}"_s, 0},
                                           {u"$ 5"_s, 0},
                                           {u"x\\"_s, 1},
                                           {u"\\q"_s, 0},
                                           {u"\\1"_s, 0},
                                           {u"\\x{D800}"_s, 0},
                                           {u"\\x{110000}"_s, 0},
                                           {u"\\x{41"_s, 0},
                                           {u"$99999999999"_s, 0}}) {
        fault = {};
        EXPECT_FALSE(ReplacementFormat::parsed(format, *expression, fault)) << format.toStdString();
        EXPECT_EQ(fault.position, position) << format.toStdString();
        EXPECT_FALSE(fault.message.isEmpty());
        EXPECT_EQ(replaced(u"(?<n>a)(b)"_s, format, u"ab"_s), u"error 36"_s);
    }
}

TEST(ReplacementFormat, MatchesThatAreNotFoundAgainStayAsTheyAre)
{
    const QByteArray utf8 = "ab ab";
    const std::vector<TextRange> ranges = {{0, 2}, {3, 2}};
    TDMatchLine line(1, utf8, ranges);
    TDError error;
    const FindOptions options = {SearchMode::UnicodeExpression, CaseRule::Exact};
    replaceMatches(
        line, TDReplacement(u"b|ab$"_s, u"X"_s, options, ALL), [] { return false; }, error);
    EXPECT_TRUE(error.isNull());
    EXPECT_EQ(line.matchLineString(), u"ab X"_s);
    // A match is replaced again from the line as it was found.
    EXPECT_TRUE(replaceMatch(line, 1, TDReplacement(u"(?<= )a(b)"_s, u"$1-$`"_s, options, ALL), error));
    EXPECT_EQ(line.matchLineString(), u"ab b-ab "_s);
    line.removeMatchRange(0);
    EXPECT_TRUE(replaceMatch(line, 0, TDReplacement(u"ab"_s, u"Y"_s, options, ALL), error));
    EXPECT_EQ(line.matchLineString(), u"ab Y"_s);
}

} // namespace
} // namespace tidemark::test
