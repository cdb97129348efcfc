#include "text/PlainTextPattern.h"

#include "PlainTextOracle.h"
#include "SearchAlphabet.h"
#include "support/Testing.h"
#include "support/TimeLimit.h"

#include <QElapsedTimer>

#include <map>

namespace tidemark {

void PrintTo(const TextRange &range, std::ostream *stream)
{
    if (range.isFound())
        *stream << range.location << ',' << range.length;
    else
        *stream << "none";
}

} // namespace tidemark

namespace tidemark::test {
namespace {

TextRange rangeFrom(const QString &field)
{
    const QStringList numbers = field.split(u',');
    return numbers.size() < 2 ? TextRange::notFound()
                              : TextRange{numbers[0].toLongLong(), numbers[1].toLongLong()};
}

std::string escaped(const QString &text)
{
    QString result;
    for (const QChar unit : text)
        result += u"\\u"_s + QString::number(unit.unicode(), 16).rightJustified(4, u'0');
    return result.toStdString();
}

TextRange find(const QString &text, const QString &findText, CaseRule caseRule)
{
    return PlainTextPattern(findText, caseRule).firstRange(text, {0, text.size()});
}

TEST(PlainTextPattern, GivesTheResultsOfThePlatform)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/find-vectors.tsv")) {
        const QString text = row.text(0);
        const PlainTextPattern pattern(row.text(1),
                                       row.bytes(2) == "CI" ? CaseRule::Ignore : CaseRule::Exact);
        const TextRange range = row.bytes(3) == "-" ? TextRange{0, text.size()} : rangeFrom(row.text(3));
        EXPECT_EQ(pattern.firstRange(text, range), rangeFrom(row.text(4))) << row.line;
    }
}

TEST(PlainTextPattern, AgreesWithTheDefinitionOnRandomTexts)
{
    PlainTextOracle oracle;
    SearchAlphabet alphabet;
    int found = 0;
    for (int round = 0; round < 12000; ++round) {
        alphabet.chooseAlphabet();
        const QString findText = alphabet.text(3);
        const QString text = alphabet.text(9);
        for (const CaseRule caseRule : {CaseRule::Exact, CaseRule::Ignore}) {
            const TextRange expected = oracle.find(text, findText, caseRule);
            found += expected.isFound();
            ASSERT_EQ(find(text, findText, caseRule), expected)
                << escaped(text) << " / " << escaped(findText)
                << (caseRule == CaseRule::Ignore ? " ignoring case" : "");
        }
    }
    EXPECT_GT(found, 2000);
}

TEST(PlainTextPattern, FindsEveryCharacterByItsKeyAndItsKeyByEveryCharacter)
{
    for (const CaseRule caseRule : {CaseRule::Exact, CaseRule::Ignore}) {
        std::map<QString, std::vector<QString>> charactersOf;
        for (char32_t c = 0; c < 0x2FA20; c += IS_SANITIZED ? 5 : 1) {
            const QString character = SearchAlphabet::fromCharacters({c});
            const QString key = PlainTextOracle::key(character, caseRule);
            QString own;
            for (const KeyCharacter part : CharacterFolding::forRule(caseRule).keyOf(c))
                own += QChar::fromUcs4(part.value);
            ASSERT_EQ(own, key) << escaped(character);
            if (key != character)
                charactersOf[key].push_back(character);
        }
        for (const auto &[key, characters] : charactersOf) {
            const PlainTextPattern pattern(key, caseRule);
            for (const QString &character : characters) {
                const TextRange whole = {0, character.size()};
                ASSERT_EQ(pattern.firstRange(character, whole), whole) << escaped(character);
            }
            ASSERT_TRUE(find(key, characters.front(), caseRule).isFound()) << escaped(characters.front());
        }
    }
}

TEST(PlainTextPattern, FindsAMatchAtEveryDistance)
{
    for (const QString &match : {u"Strasse"_s, u"strA\u00DFE"_s, u"\uFB06rasse"_s}) {
        const PlainTextPattern pattern(u"stra\u00DFe"_s, CaseRule::Ignore);
        for (int before = 0; before < 80; ++before) {
            for (const int after : {0, 1, 40}) {
                const QString text = QString(before, u's') + match + QString(after, u't');
                const TextRange expected = {before, match.size()};
                ASSERT_EQ(pattern.firstRange(text, {0, text.size()}), expected);
                ASSERT_EQ(pattern.firstRange(text, expected), expected);
                const TextRange tooShort = {before, match.size() - 1};
                ASSERT_EQ(pattern.firstRange(text, tooShort), TextRange::notFound());
            }
        }
    }
}

TEST(PlainTextPattern, LongRunsOfMarksTakeLinearTime)
{
    const QString text = u"e"_s + QString(300000, QChar(0x0301)) + QString(300000, QChar(0x0323));
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(find(text, u"e\u0301"_s, CaseRule::Ignore), TextRange::notFound());
    EXPECT_EQ(find(text, u"\u0301\u0301x"_s, CaseRule::Ignore), TextRange::notFound());
    EXPECT_EQ(find(text, text + u'x', CaseRule::Exact), TextRange::notFound());
    const TextRange lastMark = {600000, 1};
    EXPECT_EQ(find(text, u"\u0323"_s, CaseRule::Exact), lastMark);
    EXPECT_LT(timer.elapsed(), timeLimit(2500));
}

} // namespace
} // namespace tidemark::test
