#include "window/results/MatchLineDisplay.h"

#include "matching/TDMatchLine.h"
#include "session/ReplacementPreview.h"
#include "support/Testing.h"

#include <algorithm>

namespace tidemark::test {
namespace {

constexpr StyledColor YELLOW = {0.9450980392156862, 0.8784313725490196, 0.6627450980392157};
constexpr StyledColor ORANGE = {1.0, 0.5764705882352941, 0.12549019607843137};
constexpr StyledColor GREEN = {168 / 255.0, 222 / 255.0, 178 / 255.0};
constexpr StyledColor GREY = {0.7058823529411765, 0.7058823529411765, 0.7058823529411765};

TDMatchLine lineWith(qint64 number, const QString &text, const QList<TextRange> &ranges)
{
    TDMatchLine line;
    line.setLineNumber(number);
    line.setMatchLineString(text);
    line.setMatchRanges(ranges);
    return line;
}

/// One letter for each character: its background, or its foreground where it has none.
QString looks(const StyledText &text)
{
    const auto letter = [](const StyledColor &color) {
        return color == YELLOW           ? u'y'
               : color == ORANGE         ? u'o'
               : color == GREEN          ? u'r'
               : color == GREY           ? u'g'
               : color == TD_COLOR_WHITE ? u'w'
               : color == TD_COLOR_BLACK ? u'b'
                                         : u'?';
    };
    QString letters;
    for (qsizetype index = 0; index < text.text.size(); ++index) {
        const auto background = text.backgroundAt(index);
        const auto foreground = text.foregroundAt(index);
        EXPECT_TRUE(foreground.has_value());
        EXPECT_TRUE(!background || foreground == TD_COLOR_BLACK) << index;
        letters += letter(background.value_or(foreground.value_or(StyledColor())));
    }
    return letters;
}

TEST(MatchLineDisplay, DisplayTextIsNumberAndLineWithControlsAsBullets)
{
    const struct
    {
        QString line;
        QString shown;
    } cases[] = {
        {u"\tfoo = 1;\n"_s, u"7: •foo = 1;"_s},
        {u"  a  \r\n"_s, u"7:   a  "_s},
        {u"\u2028\v\r\n"_s, u"7: "_s},
        {u"\na\vb\u0085\u00ADc\uFEFF\r"_s, u"7: a•b••c•"_s},
        {u"a\u2028b"_s, u"7: a\u2028b"_s},
        {u"😀\U000E0001x"_s, u"7: 😀•x"_s},
        {QString(40000, u'x'), u"7: "_s + QString(40000, u'x')},
    };
    for (const auto &[line, shown] : cases)
        EXPECT_EQ(buildMatchLineAttributedString(lineWith(7, line, {}), false).text, shown);
}

TEST(MatchLineDisplay, MatchesAreColouredOverBaseAndNumber)
{
    TDMatchLine line = lineWith(12, u"\tab ab\n"_s, {{1, 2}, {4, 2}});
    const struct
    {
        qint64 highlighted;
        bool selected;
        QString looks;
    } cases[] = {{-1, false, u"ggggbyybyy"_s},
                 {0, false, u"ggggboobyy"_s},
                 {1, true, u"ggggwyywoo"_s},
                 {2, true, u"ggggwyywyy"_s}};
    for (const auto &[highlighted, selected, expected] : cases) {
        line.setHighlightedMatchIndex(highlighted);
        EXPECT_EQ(looks(buildMatchLineAttributedString(line, selected)), expected);
    }
    EXPECT_EQ(looks(buildMatchLineAttributedString(lineWith(3, u"ab"_s, {}), false)), u"bbbbb"_s);
    // Not shifted for the line break that is left out in front.
    EXPECT_EQ(looks(buildMatchLineAttributedString(lineWith(3, u"\u2028abc"_s, {{1, 1}}), false)),
              u"gggbyb"_s);

    line.setHighlightedMatchIndex(1);
    line.setReplaced(0);
    line.setReplaced(1);
    const StyledText text = buildMatchLineAttributedString(line, false);
    EXPECT_EQ(looks(text), u"ggggbrrboo"_s);
    EXPECT_TRUE(text.runs[1].underline && text.runs[2].underline) << "told apart without colours";
    EXPECT_EQ(text.font.family, u"Lucida Grande"_s);
    EXPECT_EQ(text.font.pointSize, 11);
    EXPECT_EQ(text.lineBreakMode, LineBreakMode::WrapByCharacter);
}

TEST(MatchLineDisplay, ReplacementsStandBehindTheirMatches)
{
    const TDMatchLine line = lineWith(3, u"ab ab x"_s, {{0, 2}, {3, 2}, {7, 0}});
    const auto shownWith = [&line](const QString &replaceText) {
        const LinePreview preview =
            ReplacementPreview(u"ab"_s, replaceText, FindOptions()).ofLine(line, TD_ENCODING_ASCII);
        const MatchLineLook look = matchLineLook(line, false, &preview);
        QString shown;
        for (qsizetype index = 0; index < look.styled.text.size(); ++index) {
            const bool isStruck =
                std::any_of(look.styled.runs.begin(), look.styled.runs.end(), [index](const StyledRun &run) {
                    return run.strikeOut && run.range.location <= index && index < run.range.end();
                });
            shown += isStruck ? u'-' : look.styled.text[index];
        }
        for (const TextRange &range : look.matches)
            shown += u' ' + QString::number(range.location);
        return shown;
    };
    EXPECT_EQ(shownWith(u"cde"_s), u"3: --cde --cde xcde 3 9 16"_s);
    EXPECT_EQ(shownWith(u""_s), u"3: -- -- x 3 6 10"_s);
    EXPECT_EQ(shownWith(u"a\r\n\t\n"_s), u"3: --a↵\t↵ --a↵\t↵ xa↵\t↵ 3 10 18"_s);
    // What stays as it is isn't a replacement.
    EXPECT_EQ(shownWith(u"ab"_s), u"3: ab ab xab 3 6 10"_s);
    EXPECT_EQ(shownWith(u"é"_s), u"3: --é --é xé   ⚠ Western (ASCII) cannot hold ‘é’ 3 7 12"_s);
}

TEST(MatchLineDisplay, LongLinesAreExcerptsAroundTheirFirstMatchUntilTheyAreWanted)
{
    const auto shown = [](const QString &text, TextRange match, LineExtent extent) {
        return shownLine(lineWith(7, text, {match, {900, 2}}), nullptr, extent);
    };
    const QString line = QString(500, u'a') + u"foo"_s + QString(500, u'b');
    const ShownLine excerpt = shown(line, {500, 3}, LineExtent::Excerpt);
    EXPECT_TRUE(excerpt.isLong);
    const StyledText &styled = excerpt.look.styled;
    EXPECT_EQ(styled.text.size(), 202);
    EXPECT_TRUE(styled.text.startsWith(u"…aaa"_s) && styled.text.endsWith(u"bb…"_s));
    const TextRange match = excerpt.look.matches[0];
    EXPECT_EQ(styled.text.mid(match.location, match.length), u"foo"_s);
    EXPECT_EQ(styled.backgroundAt(match.location), YELLOW);
    EXPECT_EQ(excerpt.look.matches[1], TextRange());
    EXPECT_EQ(shown(line, {500, 3}, LineExtent::Whole).look.styled.text, line);
    // At both ends nothing is left out, and characters stay whole.
    EXPECT_EQ(shown(line, {0, 3}, LineExtent::Excerpt).look.styled.text, line.left(200) + u'…');
    EXPECT_EQ(shown(line, {1000, 3}, LineExtent::Excerpt).look.styled.text, u'…' + line.right(200));
    const QString pairs = u"x"_s + u"😀"_s.repeated(400);
    for (const qint64 place : {301, 303}) {
        const QString text = shown(pairs, {place, 2}, LineExtent::Excerpt).look.styled.text;
        EXPECT_FALSE(text[1].isLowSurrogate() || text[text.size() - 2].isHighSurrogate());
    }
    const ShownLine brief = shown(u"\tfoo"_s, {1, 3}, LineExtent::Excerpt);
    EXPECT_EQ(brief.look.styled.text, u"\tfoo"_s);
    EXPECT_FALSE(brief.isLong);
}

} // namespace
} // namespace tidemark::test
