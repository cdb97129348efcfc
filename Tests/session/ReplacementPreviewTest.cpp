#include "session/ReplacementPreview.h"

#include "support/Testing.h"

#include <QElapsedTimer>

namespace tidemark::test {

namespace {

TDMatchLine lineWith(const QString &text, const QList<TextRange> &ranges)
{
    TDMatchLine line;
    line.setMatchLineString(text);
    line.setMatchRanges(ranges);
    return line;
}

TEST(ReplacementPreview, WhatCantBeWrittenIsTold)
{
    const FindOptions expression{SearchMode::RegularExpression, CaseRule::Exact};
    const FindOptions characters{SearchMode::UnicodeExpression, CaseRule::Exact};
    const struct
    {
        QString findText;
        QString replaceText;
        FindOptions options;
        StringEncoding encoding;
        QString problem;
    } cases[] = {
        {u"a"_s, u"é"_s, {}, TD_ENCODING_ASCII, u"Western (ASCII) cannot hold ‘é’"_s},
        {u"a"_s, u"x😀"_s, {}, 0x5, u"Western (ISO Latin 1) cannot hold ‘😀’"_s},
        {u"a"_s, u"x😀"_s, {}, TD_ENCODING_UTF16, {}},
        {u"a"_s, QString(QChar(0xD800)), {}, TD_ENCODING_UTF8, u"Unicode (UTF-8) cannot hold"_s},
        {u"a"_s, u"é"_s, {}, TD_FILE_COMMON_UNKNOWN_ENCODING, {}},
        {u"(a)"_s, u"[$1]"_s, expression, TD_ENCODING_ASCII, {}},
        {u"(a"_s, u"b"_s, expression, TD_ENCODING_ASCII, u"The find text regular expression and/or"_s},
        {u"a"_s, u"$9"_s, characters, TD_ENCODING_ASCII, u"The find text regular expression and/or"_s},
    };
    for (const auto &[findText, replaceText, options, encoding, problem] : cases) {
        const LinePreview preview =
            ReplacementPreview(findText, replaceText, options).ofLine(lineWith(u"a"_s, {{0, 1}}), encoding);
        EXPECT_TRUE(preview.problem.startsWith(problem) && preview.problem.isEmpty() == problem.isEmpty())
            << qPrintable(findText) << ' ' << qPrintable(preview.problem);
    }
}

TEST(ReplacementPreview, WhatWasReplacedStaysAsItIs)
{
    TDMatchLine line = lineWith(u"a a"_s, {{0, 1}, {2, 1}});
    line.setReplaced(0);
    const LinePreview preview =
        ReplacementPreview(u"a"_s, u"b"_s, {}).ofLine(line, TD_FILE_COMMON_UNKNOWN_ENCODING);
    EXPECT_EQ(preview.replacements[0], std::nullopt);
    EXPECT_EQ(preview.replacements[1], u"b"_s);
}

TEST(ReplacementPreview, AnExpressionThatTakesLongIsTriedOnce)
{
    const QString text = QString(24'000, u'a') + u"zb"_s;
    const TDMatchLine line = lineWith(text, {{0, text.size()}});
    QElapsedTimer timer;
    timer.start();
    for (const SearchMode mode : {SearchMode::RegularExpression, SearchMode::UnicodeExpression}) {
        const ReplacementPreview preview(u"(?:(?=a*)a)*b"_s, u"x"_s, {mode, CaseRule::Exact});
        for (int row = 0; row < 50; ++row)
            EXPECT_FALSE(preview.ofLine(line, TD_ENCODING_UTF8).problem.isEmpty());
        EXPECT_TRUE(preview.hasGivenUp());
    }
    EXPECT_LT(timer.elapsed(), 3000);
}

} // namespace

} // namespace tidemark::test
