// Searching for plain text, by the definition.

#include "Fuzzing.h"

#include "matching/LinePrefilter.h"
#include "text/PlainTextOracle.h"
#include "text/PlainTextPattern.h"
#include "text/SearchAlphabet.h"
#include "text/TextEncoding.h"
#include "text/Utf8.h"

namespace tidemark::fuzz {

namespace {

/// Mostly letters of one alphabet, so that matches are likely, and now and then any unit.
QString text(Input &input, const std::vector<std::u32string> &letters, qsizetype longest)
{
    QString text;
    for (qsizetype count = input.below(unsigned(longest) + 1); count > 0 && !input.isEmpty(); --count) {
        const unsigned choice = input.below(256);
        if (choice < 240)
            text += SearchAlphabet::fromCharacters(letters[choice % letters.size()]);
        else
            text += QChar(char16_t(input.below(0x10000)));
    }
    return text;
}

void checkPrefilter(const PlainTextPattern &pattern, const QString &line)
{
    const std::optional<QByteArray> bytes = strictUtf8(line);
    const auto prefilter = LinePrefilter::forPlainText(pattern);
    if (!bytes || !prefilter || line.contains(u'\n') || line.contains(u'\r'))
        return;
    std::vector<LineSpan> lines;
    const bool scanned = LinePrefilter::Scanner(*prefilter).candidateLines("\n" + *bytes + "\n", lines);
    const LineSpan expected = {1, 2 + bytes->size()};
    require(!scanned || (lines.size() == 1 && lines.front() == expected),
            "the prefilter passes over no line with a match");
}

} // namespace

void run(Input &input)
{
    static PlainTextOracle oracle;
    const auto &alphabets = SearchAlphabet::alphabets();
    const auto &letters = alphabets[input.below(unsigned(alphabets.size()))];
    const CaseRule caseRule = input.flag() ? CaseRule::Ignore : CaseRule::Exact;
    const QString findText = text(input, letters, 5);
    const QString line = text(input, letters, 14);
    const PlainTextPattern pattern(findText, caseRule);
    const TextRange found = pattern.firstRange(line, {0, line.size()});
    require(found == oracle.find(line, findText, caseRule), "the definition's match",
            findText.toUtf8().toPercentEncoding() + " in " + line.toUtf8().toPercentEncoding());
    if (found.isFound())
        checkPrefilter(pattern, line);
}

} // namespace tidemark::fuzz
