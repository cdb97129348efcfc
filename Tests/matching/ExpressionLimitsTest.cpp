#include "matching/ExpressionComplexity.h"
#include "matching/RegularExpression.h"
#include "matching/TDFindPattern.h"

#include <gtest/gtest.h>

#include <ctime>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

double secondsOfThread()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

TEST(ExpressionLimits, WhatWouldCompileForMinutesIsFaulty)
{
    const QByteArray expressions[] = {
        "(?:" + QByteArray("(?:|)").repeated(40) + ")*",
        "(?:" + QByteArray("(?:|a|\\b|[x]?|(?:(?=y)|))").repeated(40) + ")*",
        "(?x)(?:" + QByteArray("( | # )\n )").repeated(40) + ")*",
        "(?<=" + QByteArray("(?:a|b)").repeated(40) + ")c",
        "(?<!(?'n'(?i:" + QByteArray("[)|]|[^]|)]|\\||\\)").repeated(20) + QByteArray("(a|b)").repeated(20) +
            ")))c",
        QByteArray("\\<").repeated(200'000) + 'a',
        QByteArray("$").repeated(200'000),
        "(?:" + QByteArray("(?:|a)").repeated(50'000) + ")*",
        // The library's compiler runs in circles.
        "a++(?#c)b",
        "(?x)a {2} + (?#c) b",
        "(?:[)]|a?)*+(?#c)(?#d)[b]",
    };
    const double start = secondsOfThread();
    for (const QByteArray &expression : expressions) {
        const auto compile = [&] { compiledExpression(expression, CaseRule::Exact); };
        EXPECT_EQ(expressionFaultOf(compile), ExpressionFault::Internal) << expression.left(60).toStdString();
    }
    EXPECT_LT(secondsOfThread() - start, 2);
}

TEST(ExpressionLimits, WhatCompilesSoonIsLeftAlone)
{
    const QByteArray expressions[] = {
        "word|" + QByteArray("another|").repeated(20'000) + "last",
        "(?:" + QByteArray("(?:a|b|cd?|)[|(]\\|\\(").repeated(50) + ")*",
        QByteArray("(?=a|b|)(?<=c|d|e)").repeated(7),
        "(?x)" + QByteArray("( a | b ) # one (| or another\n").repeated(50),
        "(?#" + QByteArray("(|)").repeated(1) + QByteArray("|").repeated(50) + ")\\Q" +
            QByteArray("(|)").repeated(50) + "\\E[" + QByteArray("(|)").repeated(50) + "]",
        QByteArray("^|$|\\b|").repeated(300) + "x",
        "(a|)" + QByteArray("(?1)").repeated(40),
        "(?<n>a)" + QByteArray("(?&n)").repeated(300),
        QByteArray("(?<=a|b)c|").repeated(300),
        QByteArray("(?<=jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec)x").repeated(40),
        "\\++(?#c)b[a++](?#c)b",
        R"((?(DEFINE)(?<value>\s*(?:(?&object)|(?&array)|(?&string)|(?&number)|true|false|null)\s*))"
        R"((?<object>\{(?:(?&pair)(?:,(?&pair))*)?\s*\})(?<pair>\s*(?&string)\s*:(?&value)))"
        R"((?<array>\[(?:(?&value)(?:,(?&value))*)?\s*\])(?<string>"(?:[^"\\]|\\.)*"))"
        R"((?<number>-?(?:0|[1-9]\d*)(?:\.\d+)?))^(?&value)$)",
    };
    for (const QByteArray &expression : expressions)
        EXPECT_FALSE(ExpressionComplexity(expression).isTooComplexToCompile)
            << expression.left(60).toStdString();
}

TEST(ExpressionLimits, OnlyExpressionsThatCannotExplodeGoUnwatched)
{
    const auto harmless = [](const char *expression) {
        return ExpressionComplexity(expression).harmlessLineSize;
    };
    EXPECT_GE(harmless("needle"), 1'000'000);
    EXPECT_GE(harmless("^(?:foo|bar)?\\s*#[[:alnum:]*+]\\("), 1000);
    // The braces of an escape repeat nothing.
    EXPECT_GE(harmless("(?:\\x{41}b)*"), 1000);
    for (const char *expression :
         {"(a*)*", "(a|b)+", "(a?b){2}", "(?:(?:x+)y)*", "a(?R)?", "(?x)a *", "(?>a+)*"})
        EXPECT_EQ(harmless(expression), 0) << expression;
    EXPECT_LT(harmless("a*a*a*a*a*a*"), 20);
    EXPECT_LT(harmless("(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)(a|b)"), 4000);
    EXPECT_LT(harmless("(a*)\\1\\1"), 1000);
}

TEST(ExpressionLimits, WhatThePrefilterRulesOutIsNotReported)
{
    // The library gives the first up on this line, and this program the second.
    for (const auto &[find, line] :
         {std::pair(u"(x+x+)+y"_s, QString(63, u'x')), {u"(?:(?=x*)x)*y"_s, QString(25'000, u'x')}}) {
        const TDFindPattern pattern(find, {SearchMode::RegularExpression, CaseRule::Exact});
        TDError error;
        EXPECT_FALSE(TDFindPattern::Line(pattern, line).nextMatch(error).isFound());
        EXPECT_EQ(error.isNull(), pattern.prefilter() != nullptr) << find.toStdString();
        error.clear();
        TDFindPattern::Line(pattern, line + u"zxxy"_s).nextMatch(error);
        EXPECT_FALSE(error.isNull()) << find.toStdString();
    }
}

TEST(ExpressionLimits, ALineIsSearchedForTwoSecondsAtMost)
{
    // Of the library's own limits the first reaches none for hours, the second one after many seconds, and
    // each of the third's matches stays below them.
    const QString lines[] = {QString(24'000, u'a') + u"zb"_s, QString(24'000, u'a') + u"zc"_s,
                             QString(60, u'a').repeated(400)};
    const QString expressions[] = {u"(?:(?=a*)a)*b"_s, u"(?:a(?R)?b|a)*c"_s, u"(?:(?=a*+)a)*+b|a"_s};
    for (size_t index = 0; index < std::size(expressions); ++index) {
        const TDFindPattern pattern(expressions[index], {SearchMode::RegularExpression, CaseRule::Exact});
        TDFindPattern::Line line(pattern, lines[index]);
        TDError error;
        const double start = secondsOfThread();
        for (qint64 at = 0; at < lines[index].size() && !error; ++at)
            line.firstRange({at, lines[index].size() - at}, error);
        EXPECT_LT(secondsOfThread() - start, 2) << expressions[index].toStdString();
        EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR));
    }
}

} // namespace
} // namespace tidemark
