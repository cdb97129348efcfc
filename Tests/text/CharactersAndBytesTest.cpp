#include "support/Testing.h"
#include "text/ByteScan.h"
#include "text/CharacterSets.h"
#include "text/LineEnds.h"
#include "text/TextEncoding.h"
#include "text/Utf8.h"

#include <random>

namespace tidemark::test {
namespace {

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

TEST(ByteScanTest, CountsLineEndsAndNeverOverlooksALongLine)
{
    for (const qsizetype size : {31, 32, 95, 20000, (1 << 20) + 70}) {
        EXPECT_EQ(countLineEnds(QByteArray(size, '\n')), size);
        EXPECT_EQ(countLineEnds(QByteArray("\r\nx").repeated(size)), size);
    }
    std::mt19937 random(3);
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes;
        for (int index = int(random() % 60); index > 0; --index)
            bytes += "xxxx\r\n"[random() % 6];
        // A line end is "\n", or "\r" with no "\n" behind it.
        int ends = 0;
        qsizetype start = 0;
        qsizetype longest = 0;
        for (qsizetype index = 0; index < bytes.size(); ++index) {
            if (bytes[index] == '\n' || (bytes[index] == '\r' && bytes.mid(index + 1, 1) != "\n")) {
                ++ends;
                longest = qMax(longest, index + 1 - start);
                start = index + 1;
            }
        }
        ASSERT_EQ(countLineEnds(bytes), ends) << testing::PrintToString(bytes);
        ASSERT_TRUE(qMax(longest, bytes.size() - start) <= 8 || mayHoldLineLongerThan(bytes, 8))
            << testing::PrintToString(bytes);
        qint64 lines = 0;
        for (QByteArrayView rest = bytes; !rest.isEmpty(); ++lines) {
            const QByteArrayView line = rest.first(lengthOfFirstLine(rest));
            rest = rest.sliced(line.size());
            ASSERT_EQ(indexOfLineEnd(withoutLineEnd(line)), -1) << testing::PrintToString(bytes);
        }
        ASSERT_EQ(lines, ends + (start < bytes.size() ? 1 : 0)) << testing::PrintToString(bytes);
        ASSERT_EQ(countLines(QString::fromLatin1(bytes)), lines) << testing::PrintToString(bytes);
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

TEST(Utf8Test, AcceptsExactlyWhatDecodes)
{
    std::mt19937 random(11);
    static constexpr unsigned char BYTES[] = {'a',  'b',  0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC1, 0xC2,
                                              0xDF, 0xE0, 0xE1, 0xED, 0xEF, 0xF0, 0xF1, 0xF4, 0xF5, 0xFF};
    for (int round = 0; round < 300000; ++round) {
        QByteArray bytes(qsizetype(random() % 3) * 40, 'x');
        const int size = 1 + int(random() % 5);
        for (int index = 0; index < size; ++index)
            bytes += char(BYTES[random() % sizeof BYTES]);
        ASSERT_EQ(isValidUtf8(bytes), textFromUtf8(bytes).has_value()) << bytes.toHex().constData();
    }
}

} // namespace
} // namespace tidemark::test
