#include "matching/ExpressionTranslation.h"

#include <gtest/gtest.h>

namespace tidemark {
namespace {

constexpr const char *NONE = "none";

struct Case
{
    const char *expression;
    const char *translated;
};

void expectTranslated(std::initializer_list<Case> cases, CaseRule caseRule)
{
    for (const Case &c : cases) {
        const std::optional<QByteArray> translated = translatedExpression(c.expression, caseRule);
        EXPECT_EQ(translated.value_or(NONE).toStdString(), c.translated) << c.expression;
    }
}

TEST(ExpressionTranslation, KeepsWhatAMatchMustHold)
{
    expectTranslated(
        {
            {"one two", "one two"},
            {"a.b", R"(a[\x00-\x09\x0B-\x0C\x0E-\xFF]b)"},
            {"\\.\\x41\\x{42}\\0103\\cA\\t", R"(\x2EABC\x01\x09)"},
            {"\u00E9", R"(\xC3\xA9)"},
            {"[[:digit:]a-c\\]-]", R"([\x2D0-9\x5Da-c])"},
            {"[^\\W\\d]x", "[A-Z_a-z]x"},
            {"[]a]b", R"([\x5Da]b)"},
            {"a|bc|d[e]", "(?:a|bc|de)"},
            {"a(b|c)d", "a(?:b|c)d"},
            {"x(ab*c){2}y", "x(?:ab*c){2}y"},
            {"xa{2,}y", "xa{2,}y"},
            {"struct { }", R"(struct \x7B \x7D)"},
        },
        CaseRule::Exact);
    expectTranslated(
        {{"a1\\w[^a]\\x62", R"([Aa]1[0-9A-Z_a-z][\x00-\x09\x0B-\x0C\x0E-\x40B-\x60b-\xFF][Bb])"}},
        CaseRule::Ignore);
}

TEST(ExpressionTranslation, LoosensWhatLooksAroundOrBack)
{
    expectTranslated(
        {
            {"^a\\b(?=b)(?!c)(?<=d)(?<!e)\\Bb$", "ab"},
            {"(?:^|\\s)a", "a"},
            {"(?:\\b)*a(?:)+b(?>c|d)e++f+?g", "ab(?:c|d)e+f+g"},
            {"(?<name>a)(b)\\g{-1}c\\k<name>d",
             R"(ab[\x00-\x09\x0B-\x0C\x0E-\xFF]*c[\x00-\x09\x0B-\x0C\x0E-\xFF]*d)"},
            {"a(?i:b)", "[Aa][Bb]"},
            {"(?i)a(?-i)b", "[Aa][Bb]"},
            {"xa{100}y", "xa{64,}y"},
            {"x(ab){0,100}y", "x(?:ab)*y"},
        },
        CaseRule::Exact);
}

TEST(ExpressionTranslation, TakesAwayOptionalEnds)
{
    expectTranslated(
        {
            {"\\w*ab?c*", "a"},
            {"a+b+", "ab"},
            {"a{2,5}", "a{2}"},
            {"(x?(a|b?c+))+", "(?:a|c)"},
        },
        CaseRule::Exact);
}

TEST(ExpressionTranslation, LeavesAloneWhatItIsNotSureOf)
{
    for (const char *expression :
         {"",        "a*",           "a|",         "(a|b?)",  "^$",      "(",       "a**",         "[b-a]",
          "\\Qa\\E", "a\\K",         "a\\R",       "a\\X",    "a(?#b)",  "(?x)a b", "a(*ACCEPT)b", "(a)(?1)",
          "a(?R)?b", "(a)(?(1)b|c)", "[[.a.]]",    "[[=a=]]", "[!-[:a]", "a{+2}",   "a{1,-1}",     "a{,2}",
          "a{1x}",   "a\\x6",        "\\N{space}", "a\\E",    "[a\\E]"})
        EXPECT_FALSE(translatedExpression(expression, CaseRule::Exact)) << expression;
}

} // namespace
} // namespace tidemark
