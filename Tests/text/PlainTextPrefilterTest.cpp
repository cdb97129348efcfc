#include "text/PlainTextPrefilter.h"

#include "SearchAlphabet.h"
#include "support/Testing.h"
#include "text/PlainTextPattern.h"

#include <algorithm>

namespace tidemark::test {
namespace {

/// True when the text holds one spelling of each part, side by side.
bool holdsParts(const QByteArray &text, const std::vector<PlainTextPrefilter::Spellings> &parts)
{
    std::vector<qsizetype> places;
    for (qsizetype i = 0; i <= text.size(); ++i)
        places.push_back(i);
    for (const PlainTextPrefilter::Spellings &part : parts) {
        std::vector<qsizetype> next;
        for (const qsizetype place : places) {
            for (const QString &spelling : part) {
                if (text.sliced(place).startsWith(spelling.toUtf8()))
                    next.push_back(place + spelling.toUtf8().size());
            }
        }
        places = std::move(next);
    }
    return !places.empty();
}

TEST(PlainTextPrefilter, SpellsOutWhatAMatchMayBe)
{
    const auto sorted = [](std::vector<QString> texts) {
        std::sort(texts.begin(), texts.end());
        return texts;
    };
    struct Case
    {
        QString findText;
        CaseRule caseRule;
        std::vector<QString> texts;
    };
    const Case cases[] = {
        {u""_s, CaseRule::Exact, {}},
        {u"error"_s, CaseRule::Exact, {u"error"_s}},
        {u"Ke"_s, CaseRule::Exact, {u"Ke"_s, u"\u212Ae"_s}},
        {u"\u00E9"_s, CaseRule::Exact, {u"e\u0301"_s, u"e\u0341"_s, u"\u00E9"_s}},
        {u"\u0301"_s, CaseRule::Exact, {u"\u0301"_s, u"\u0341"_s}},
        {u"q\u0323\u0307"_s, CaseRule::Exact, {u"q\u0307\u0323"_s, u"q\u0323\u0307"_s}},
        {u"\u00DF"_s,
         CaseRule::Ignore,
         {u"SS"_s, u"Ss"_s, u"S\u017F"_s, u"sS"_s, u"ss"_s, u"s\u017F"_s, u"\u00DF"_s, u"\u017FS"_s,
          u"\u017Fs"_s, u"\u017F\u017F"_s, u"\u1E9E"_s}},
        {QString(QChar(0xDE00)), CaseRule::Exact, {}},
    };
    for (const Case &c : cases) {
        const PlainTextPrefilter prefilter(PlainTextPattern(c.findText, c.caseRule));
        EXPECT_EQ(sorted(prefilter.requiredTexts(100)), sorted(c.texts)) << c.findText.toStdString();
    }
}

TEST(PlainTextPrefilter, NarrowsToAStretchWithFewTexts)
{
    const PlainTextPrefilter prefilter(PlainTextPattern(u"assessed by 1984 dormice"_s, CaseRule::Ignore));
    EXPECT_EQ(prefilter.requiredTexts(1), std::vector<QString>{u" 1984 "_s});
    EXPECT_EQ(prefilter.requiredTexts(0), std::vector<QString>{});
    for (const QString &text : prefilter.requiredTexts(32))
        EXPECT_TRUE(text.contains(u" 1984 "_s) && text.size() > 8) << text.toStdString();
}

TEST(PlainTextPrefilter, NeverLosesAMatch)
{
    SearchAlphabet alphabet;
    int useful = 0;
    for (int round = 0; round < 12000; ++round) {
        alphabet.chooseAlphabet();
        const QString findText = alphabet.text(4);
        const QString text = alphabet.text(12);
        const QByteArray bytes = text.toUtf8();
        for (const CaseRule caseRule : {CaseRule::Exact, CaseRule::Ignore}) {
            const PlainTextPattern pattern(findText, caseRule);
            const PlainTextPrefilter prefilter(pattern);
            const std::vector<QString> required = prefilter.requiredTexts(20);
            const bool passes =
                required.empty() || std::any_of(required.begin(), required.end(),
                                                [&](const QString &s) { return bytes.contains(s.toUtf8()); });
            useful += !passes;
            if (pattern.firstRange(text, {0, text.size()}).isFound()) {
                ASSERT_TRUE(holdsParts(bytes, prefilter.parts()))
                    << text.toStdString() << '/' << findText.toStdString();
                ASSERT_TRUE(passes) << text.toStdString() << '/' << findText.toStdString();
            }
        }
    }
    EXPECT_GT(useful, 5000);
}

} // namespace
} // namespace tidemark::test
