#include "foundation/ByteScan.h"
#include "foundation/CharacterSets.h"
#include "foundation/StyledText.h"
#include "foundation/Utf8.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(CharacterSetsTest, NewlinesAndControlsAreTheseAndNoOthers)
{
    QList<int> newlines;
    for (int unit = 0; unit < 0x10000; ++unit) {
        if (isNewlineCharacter(char16_t(unit)))
            newlines << unit;
    }
    EXPECT_EQ(newlines, QList<int>({0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029}));

    for (const char32_t control : {0x00, 0x09, 0x1F, 0x7F, 0x85, 0xAD, 0x200B, 0x200E, 0xFEFF, 0xE0001})
        EXPECT_TRUE(isControlCharacter(control)) << std::hex << quint32(control);
    for (const char32_t other : {0x20, 0xA0, 0x2028, 0x2029, 0x3000, 0xE000, 0xD800, 0xFFFF, 0x1F600})
        EXPECT_FALSE(isControlCharacter(other)) << std::hex << quint32(other);
}

TEST(CharacterSetsTest, OnlyNewlinesAtTheEndsAreTakenOff)
{
    const struct
    {
        QString text;
        TextRange range;
    } cases[] = {
        {u"ab\r\n"_s, {0, 2}}, {u"\u2028a\nb\u0085"_s, {1, 3}}, {u" a \t\n"_s, {0, 4}}, {u"a"_s, {0, 1}},
        {u""_s, {0, 0}},
    };
    for (const auto &[text, range] : cases)
        EXPECT_TRUE(rangeWithoutNewlinesAtEnds(text) == range) << testing::PrintToString(text);
    EXPECT_EQ(rangeWithoutNewlinesAtEnds(u"\r\n\v\n").length, 0);
}

TEST(ByteScanTest, FindsTheFirstLineEndAtEveryPlaceAmongBytesThatResembleIt)
{
    // One more or less than a line end, or one with the high bit set, is where word-wise tests go wrong.
    for (const char filler : {'a', '\x0B', '\x0C', '\x0E', '\x09', '\x8A', '\x8D', '\0', '\xFF'}) {
        for (qsizetype size = 0; size < 26; ++size) {
            QByteArray bytes(size, filler);
            EXPECT_EQ(indexOfLineEnd(bytes), -1) << testing::PrintToString(bytes);
            for (qsizetype place = size - 1; place >= 0; --place) {
                bytes[place] = place % 2 == 0 ? '\r' : '\n';
                EXPECT_EQ(indexOfLineEnd(bytes), place) << testing::PrintToString(bytes);
            }
        }
    }
}

TEST(Utf8Test, LoneSurrogatesTakeThreeBytesAndPairsFour)
{
    EXPECT_EQ(generalizedUtf8(u"aé😀"), QByteArray("a\xC3\xA9\xF0\x9F\x98\x80"));
    const char16_t units[] = {0xD83D, u'a', 0xDE00, 0xD83D, 0xD83D, 0xDE00, 0xDC00};
    EXPECT_EQ(generalizedUtf8(QStringView(units, 7)), QByteArray("\xED\xA0\xBD"
                                                                 "a"
                                                                 "\xED\xB8\x80"
                                                                 "\xED\xA0\xBD"
                                                                 "\xF0\x9F\x98\x80"
                                                                 "\xED\xB0\x80"));
}

TEST(StyledTextTest, LaterRunsWinWhereTheyGiveAColour)
{
    StyledText text;
    text.text = u"abcd"_s;
    text.runs << StyledRun{{0, 3}, TD_COLOR_BLACK, {}, false, {}}
              << StyledRun{{1, 1}, TD_COLOR_RED, {}, false, {}}
              << StyledRun{{0, 2}, {}, TD_COLOR_WHITE, false, {}};
    EXPECT_TRUE(text.foregroundAt(0) == TD_COLOR_BLACK);
    EXPECT_TRUE(text.foregroundAt(1) == TD_COLOR_RED);
    EXPECT_TRUE(text.backgroundAt(1) == TD_COLOR_WHITE);
    EXPECT_FALSE(text.backgroundAt(2).has_value());
    EXPECT_FALSE(text.foregroundAt(3).has_value());
}

} // namespace
} // namespace tidemark
