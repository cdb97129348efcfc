#include "replace/PerlOracle.h"
#include "matching/TDFindPattern.h"
#include "replace/MatchLineReplacement.h"
#include "support/Testing.h"
#include "support/TimeLimit.h"
#include "text/Utf8.h"

#include <algorithm>

namespace tidemark::test {
namespace {

/// All replaced at once, or one after the other in a random order, must come to the same.
QString replaced(const QByteArray &utf8, const std::vector<TextRange> &found,
                 const TDReplacement &replacement, bool atOnce, CaseMaker &maker)
{
    TDMatchLine line(1, utf8, found);
    TDError error;
    if (atOnce) {
        replaceMatches(
            line, replacement, [] { return false; }, error);
    } else {
        std::vector<qint64> order(found.size());
        for (size_t index = 0; index < order.size(); ++index)
            order[index] = qint64(index);
        for (size_t index = order.size(); index > 1; --index)
            std::swap(order[index - 1], order[size_t(maker.below(int(index)))]);
        for (const qint64 index : order)
            EXPECT_TRUE(replaceMatch(line, index, replacement, error));
    }
    EXPECT_TRUE(error.isNull());
    return line.matchLineString();
}

void check(Perl &perl, const Expression &expression, const QString &format, const QString &line,
           bool ignoresCase, CaseMaker &maker)
{
    const Perl::Answer answer = perl.ask(ignoresCase, expression.perl, format, line);
    const FindOptions options = {SearchMode::UnicodeExpression,
                                 ignoresCase ? CaseRule::Ignore : CaseRule::Exact};
    const TDFindPattern pattern(expression.own, options);
    ASSERT_EQ(pattern.expression() == nullptr, answer.isMalformed) << expression.own.toStdString();
    if (pattern.expression() == nullptr)
        return;
    const TDReplacement replacement(expression.own, format, options, ReplacementExtent::EveryOccurrence);
    TDFindPattern::Line search(pattern, line);
    TDReplacement::InLine expansion(replacement, line);
    std::vector<TextRange> found;
    QList<Perl::Match> matches;
    TDError error;
    for (TextRange match = search.nextMatch(error); match.isFound(); match = search.nextMatch(error))
        found.push_back(match);
    for (const TextRange match : found)
        matches << Perl::Match{match, expansion.replacementFor(match, {}, error).value_or(u"?"_s)};
    const std::string description =
        QStringList{expression.own, format, line, ignoresCase ? u"without case"_s : u"with case"_s}
            .join(u"\n  "_s)
            .toStdString();
    ASSERT_TRUE(matches == answer.matches) << description;
    const QByteArray utf8 = line.toUtf8();
    const QString allReplaced = replacedBy(line, matches, 0, matches.size());
    EXPECT_EQ(replaced(utf8, found, replacement, true, maker), allReplaced) << description;
    EXPECT_EQ(replaced(utf8, found, replacement, false, maker), allReplaced) << description;
}

TEST(PerlOracle, MatchesAndReplacementsAreThoseOfPerl)
{
    Perl perl;
    if (!MAY_START_PROGRAMS)
        GTEST_SKIP() << "perl can't be started";
    ASSERT_TRUE(perl.isThere()) << "perl is missing";
    CaseMaker maker(7);
    for (int number = 0; number < oracleCases() && !testing::Test::HasFailure(); ++number) {
        const Expression expression = maker.expression();
        const QString format = maker.format(maker.groups());
        const bool ignoresCase = maker.below(3) == 0;
        for (int lines = 0; lines < 4; ++lines)
            check(perl, expression, format, maker.line(), ignoresCase, maker);
    }
}

} // namespace
} // namespace tidemark::test
