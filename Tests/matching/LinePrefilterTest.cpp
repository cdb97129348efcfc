#include "matching/LinePrefilter.h"

#include "matching/ExpressionGenerator.h"
#include "matching/RegularExpression.h"
#include "matching/UnicodeExpression.h"
#include "support/Testing.h"
#include "text/SearchAlphabet.h"
#include "text/Utf8.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <ostream>

namespace tidemark {

void PrintTo(LineSpan line, std::ostream *stream)
{
    *stream << '[' << line.start << ',' << line.end << ')';
}

} // namespace tidemark

namespace tidemark::test {
namespace {

using testing::ElementsAre;

std::optional<std::vector<LineSpan>> candidates(const LinePrefilter *prefilter, QByteArrayView block)
{
    std::vector<LineSpan> lines;
    if (!prefilter || !LinePrefilter::Scanner(*prefilter).candidateLines(block, lines))
        return std::nullopt;
    return lines;
}

std::vector<LineSpan> linesWith(const QString &findText, const QByteArray &block)
{
    return candidates(LinePrefilter::forPlainText({findText, CaseRule::Ignore}).get(), block).value();
}

std::vector<LineSpan> linesMatching(const char *expression, const QByteArray &block)
{
    return candidates(LinePrefilter::forExpression(expression, CaseRule::Exact).get(), block).value();
}

/// Lines without their ends, and the block made of them.
class Block
{
public:
    void add(const QByteArray &line, const QByteArray &lineEnd)
    {
        const qsizetype start = bytes.size();
        // Else the two would end one line.
        bytes +=
            bytes.endsWith('\r') && (line + lineEnd).startsWith('\n') ? ' ' + line + lineEnd : line + lineEnd;
        lines.push_back(bytes.sliced(start, bytes.size() - start - lineEnd.size()));
        spans.push_back({start, bytes.size()});
    }

    /// That no line with a match is passed over, and that the candidates are lines, each once and in order.
    void expectComplete(const LinePrefilter &prefilter,
                        const std::function<bool(const QByteArray &)> &hasMatch)
    {
        const std::optional<std::vector<LineSpan>> chosen = candidates(&prefilter, bytes);
        if (!chosen)
            return;
        size_t next = 0;
        for (size_t i = 0; i < lines.size(); ++i) {
            const bool isChosen = next < chosen->size() && (*chosen)[next] == spans[i];
            next += isChosen ? 1 : 0;
            EXPECT_TRUE(isChosen || !hasMatch(lines[i])) << lines[i].toPercentEncoding().toStdString();
        }
        EXPECT_EQ(next, chosen->size());
    }

    QByteArray bytes;
    std::vector<QByteArray> lines;
    std::vector<LineSpan> spans;
};

TEST(LinePrefilter, GivesWholeLinesWhateverEndsThem)
{
    EXPECT_THAT(linesWith(u"ab"_s, "ab\nxx\nAB"), ElementsAre(LineSpan{0, 3}, LineSpan{6, 8}));
    EXPECT_THAT(linesWith(u"ab"_s, "x\rab\rab\r\rab"),
                ElementsAre(LineSpan{2, 5}, LineSpan{5, 8}, LineSpan{9, 11}));
    EXPECT_THAT(linesWith(u"ab"_s, "ab\r\nx\r\nxab\r\n\nab\r\n"),
                ElementsAre(LineSpan{0, 4}, LineSpan{7, 12}, LineSpan{13, 17}));
    EXPECT_THAT(linesWith(u"ab"_s, "ab ab abab\rx\nab\r\nab\r"),
                ElementsAre(LineSpan{0, 11}, LineSpan{13, 17}, LineSpan{17, 20}));
    EXPECT_THAT(linesWith(u"ab"_s, ""), ElementsAre());
    EXPECT_THAT(linesMatching("a\\s*b|^c$", "a\nb\nab\r\na\vb\rc\rd\r"),
                ElementsAre(LineSpan{4, 8}, LineSpan{8, 12}, LineSpan{12, 14}));
}

TEST(LinePrefilter, AppendsToTheLinesOfEarlierBlocks)
{
    const auto prefilter = LinePrefilter::forExpression("b+c?", CaseRule::Exact);
    LinePrefilter::Scanner scanner(*prefilter);
    std::vector<LineSpan> lines;
    ASSERT_TRUE(scanner.candidateLines("a\nbb\n", lines));
    ASSERT_TRUE(scanner.candidateLines("b\n", lines));
    EXPECT_THAT(lines, ElementsAre(LineSpan{2, 5}, LineSpan{0, 2}));
}

TEST(LinePrefilter, IsNoneWhenNothingCanBeSaid)
{
    EXPECT_FALSE(LinePrefilter::forPlainText({QString(), CaseRule::Exact}));
    EXPECT_FALSE(LinePrefilter::forPlainText({QString(QChar(0xD800)), CaseRule::Exact}));
    EXPECT_FALSE(LinePrefilter::forExpression("x*", CaseRule::Exact));
    EXPECT_FALSE(LinePrefilter::forExpression("(", CaseRule::Exact));
}

TEST(LinePrefilter, GivesUpWhereChoosingDoesNotPay)
{
    const QByteArray everyLine = QByteArray("some text\n").repeated(2000);
    const QByteArray manyInALine = (QByteArray(5000, 'a') + '\n').repeated(5);
    EXPECT_FALSE(candidates(LinePrefilter::forPlainText({u"text"_s, CaseRule::Exact}).get(), everyLine));
    EXPECT_FALSE(candidates(LinePrefilter::forExpression("t.*t", CaseRule::Exact).get(), everyLine));
    EXPECT_FALSE(candidates(LinePrefilter::forExpression("aa", CaseRule::Exact).get(), manyInALine));
    EXPECT_EQ(linesMatching("3\\d*7", QByteArray("some 4567\n").repeated(2000) + "37\n").size(), 1U);
}

TEST(LinePrefilter, PassesOverNoLineThatAnExpressionMatchesIn)
{
    ExpressionGenerator generator(2012);
    int prefilters = 0;
    for (int round = 0; round < 1500 && !HasFailure(); ++round) {
        const QByteArray expression = generator.expression();
        const CaseRule caseRule = generator.below(2) ? CaseRule::Ignore : CaseRule::Exact;
        SCOPED_TRACE(expression.toPercentEncoding(" ()[]{}<>*+?.|^$:=!\\'").toStdString());
        const auto prefilter = LinePrefilter::forExpression(expression, caseRule);
        if (!prefilter)
            continue;
        ++prefilters;
        Block block;
        for (int i = 0; i < 40; ++i)
            block.add(generator.line(), generator.lineEnd());
        const boost::regex compiled = compiledExpression(expression, caseRule);
        block.expectComplete(*prefilter, [&](const QByteArray &line) {
            const unsigned start = generator.below(4) ? 0 : generator.below(unsigned(line.size()) + 1);
            const unsigned end =
                generator.below(2) ? unsigned(line.size()) : generator.below(unsigned(line.size()) + 1);
            try {
                return start <= end && boost::regex_search(line.data() + start, line.data() + end, compiled);
            } catch (const std::runtime_error &) {
                return false;
            }
        });
    }
    EXPECT_GT(prefilters, 300);
}

TEST(LinePrefilter, PassesOverNoLineThatAnExpressionOverCharactersMatchesIn)
{
    ExpressionGenerator generator(1969);
    int prefilters = 0;
    for (int round = 0; round < 1000 && !HasFailure(); ++round) {
        QByteArray expression = generator.expression();
        // Over characters the block matcher takes up to a second to compile one of these: a few are enough.
        if (round % 32 != 0)
            expression.replace("{70}", "{7}").replace("{0,200}", "{0,20}");
        const CaseRule caseRule = generator.below(2) ? CaseRule::Ignore : CaseRule::Exact;
        SCOPED_TRACE(expression.toPercentEncoding(" ()[]{}<>*+?.|^$:=!\\'").toStdString());
        TextFault fault;
        const auto compiled = UnicodeExpression::compiled(QString::fromUtf8(expression), caseRule, fault);
        const auto prefilter = compiled ? LinePrefilter::forUnicodeExpression(expression, caseRule) : nullptr;
        if (!prefilter)
            continue;
        ++prefilters;
        Block block;
        for (int i = 0; i < 100; ++i)
            block.add(generator.line(), generator.lineEnd());
        block.expectComplete(*prefilter, [&](const QByteArray &line) {
            SearchEffort effort(line.size());
            return compiled->search(line, 0, UnicodeExpression::EmptyAtStart::Allowed, effort) ==
                   LineSearch::Found;
        });
    }
    EXPECT_GT(prefilters, 50);
}

/// What chance seldom brings together.
TEST(LinePrefilter, KnowsWhichCharactersBeyondAsciiCountAsAscii)
{
    const std::pair<const char *, const char *> cases[] = {{"1k2", "1\u212A2"},     {"1s2", "1\u017F2"},
                                                           {"1[j-l]2", "1\u212A2"}, {"1\\w2", "1\u044F2"},
                                                           {"1\\d2", "1\u06632"},   {"1\\s2", "1\u00A02"}};
    for (const auto &[expression, line] : cases) {
        SCOPED_TRACE(expression);
        TextFault fault;
        const auto compiled =
            UnicodeExpression::compiled(QString::fromUtf8(expression), CaseRule::Ignore, fault);
        const auto prefilter = LinePrefilter::forUnicodeExpression(expression, CaseRule::Ignore);
        ASSERT_TRUE(compiled && prefilter);
        SearchEffort effort(qsizetype(qstrlen(line)));
        EXPECT_EQ(compiled->search(line, 0, UnicodeExpression::EmptyAtStart::Allowed, effort),
                  LineSearch::Found);
        EXPECT_EQ(candidates(prefilter.get(), QByteArrayView(line)).value().size(), 1U);
    }
}

TEST(LinePrefilter, PassesOverNoLineThatHoldsAPlainText)
{
    SearchAlphabet alphabet;
    ExpressionGenerator generator(234);
    for (int round = 0; round < 600 && !HasFailure(); ++round) {
        alphabet.chooseAlphabet();
        const PlainTextPattern pattern(alphabet.text(4),
                                       generator.below(3) ? CaseRule::Ignore : CaseRule::Exact);
        const auto prefilter = LinePrefilter::forPlainText(pattern);
        if (!prefilter)
            continue;
        SCOPED_TRACE(pattern.findText().toUtf8().toPercentEncoding().toStdString());
        Block block;
        for (int i = 0; i < 30; ++i) {
            const QString line = alphabet.text(8);
            if (line.isValidUtf16() && !line.contains(u'\n') && !line.contains(u'\r'))
                block.add(line.toUtf8(), generator.lineEnd());
        }
        block.expectComplete(*prefilter, [&](const QByteArray &line) {
            const QString text = QString::fromUtf8(line);
            const qsizetype length =
                generator.below(2) ? text.size() : generator.below(unsigned(text.size()) + 1);
            return pattern.firstRange(text, {0, length}) != TextRange::notFound();
        });
    }
}

} // namespace
} // namespace tidemark::test
