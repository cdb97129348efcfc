#include "foundation/TextEncoding.h"
#include "foundation/ByteTextConverter.h"
#include "foundation/TextEncodingTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace tidemark {
namespace {

constexpr StringEncoding WINDOWS_1252 = 0xC;
constexpr StringEncoding LATIN_1 = 0x5;
constexpr StringEncoding MAC_ROMAN = 0x1E;
constexpr StringEncoding NEXTSTEP = 0x2;
constexpr StringEncoding NON_LOSSY_ASCII = 0x7;
constexpr StringEncoding EUC_JP = 0x3;
constexpr StringEncoding CP932 = 0x8;
constexpr StringEncoding ISO_2022_JP = 0x15;
constexpr StringEncoding CP437 = 0x80000400;
constexpr StringEncoding CP936 = 0x80000421;
constexpr StringEncoding WINDOWS_1253 = 0xD;
constexpr StringEncoding GB18030 = 0x80000632;
constexpr StringEncoding ISO_2022_KR = 0x80000840;
constexpr StringEncoding EUC_CN = 0x80000930;
constexpr StringEncoding EUC_TW = 0x80000931;
constexpr StringEncoding EUC_KR = 0x80000940;
constexpr StringEncoding BIG5_HKSCS = 0x80000A06;
constexpr StringEncoding UTF_7 = 0x84000100;
constexpr StringEncoding EBCDIC = 0x80000C02;

/// Readable on a mismatch: "nothing", or the units in hexadecimal.
std::string shown(const std::optional<QString> &text)
{
    if (!text)
        return "nothing";
    std::string units;
    for (const QChar unit : *text)
        units += QString::number(unit.unicode(), 16).rightJustified(4, u'0').toStdString() + ' ';
    return units;
}

std::string shown(const std::optional<QByteArray> &bytes)
{
    return bytes ? bytes->toHex(' ').toStdString() : "nothing";
}

std::optional<QString> decoded(StringEncoding encoding, QByteArrayView bytes)
{
    const auto converter = TextConverter::converterForEncoding(encoding);
    EXPECT_TRUE(converter) << std::hex << encoding;
    return converter ? converter->decode(bytes) : std::nullopt;
}

std::optional<QByteArray> encoded(StringEncoding encoding, QStringView text)
{
    const auto converter = TextConverter::converterForEncoding(encoding);
    EXPECT_TRUE(converter) << std::hex << encoding;
    return converter ? converter->encode(text) : std::nullopt;
}

QByteArray singleByte(int byte)
{
    return QByteArray(1, static_cast<char>(byte));
}

QByteArray everyAsciiByte()
{
    QByteArray bytes;
    for (int byte = 0; byte < 0x80; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

TEST(TextEncodingTest, EveryAvailableEncodingHasANameAndAConverterForItself)
{
    const QList<StringEncoding> encodings = availableStringEncodings();
    EXPECT_EQ(encodings.first(), MAC_ROMAN);
    EXPECT_EQ(encodings.size(), 79);
    for (const StringEncoding encoding : encodings) {
        EXPECT_FALSE(localizedNameOfStringEncoding(encoding).isEmpty()) << std::hex << encoding;
        const auto converter = TextConverter::converterForEncoding(encoding);
        ASSERT_TRUE(converter) << std::hex << encoding;
        EXPECT_EQ(converter->encoding(), encoding);
        EXPECT_EQ(shown(converter->decode({})), "") << std::hex << encoding;
        EXPECT_EQ(converter->encode({}).value_or("nothing").size(), encoding == ISO_2022_KR ? 4 : 0)
            << std::hex << encoding;
    }
    EXPECT_EQ(localizedNameOfStringEncoding(TD_ENCODING_UTF8), QStringLiteral("Unicode (UTF-8)"));
}

TEST(TextEncodingTest, NumbersOfBothKindsNameTheSameEncodings)
{
    for (const TextEncodingRow &row : allTextEncodings()) {
        EXPECT_EQ(convertStringEncodingToCoreFoundation(row.stringEncoding), row.coreFoundationEncoding);
        EXPECT_EQ(convertCoreFoundationToStringEncoding(row.coreFoundationEncoding), row.stringEncoding);
    }
    const struct
    {
        StringEncoding stringEncoding;
        CoreFoundationEncoding coreFoundationEncoding;
    } cases[] = {
        {0x80000420, 0x420}, // the long form of an encoding with a small number
        {0x80000ABC, 0xABC},
        {777, TD_INVALID_CORE_FOUNDATION_ENCODING},
        {0, TD_INVALID_CORE_FOUNDATION_ENCODING},
        {0x180000420, TD_INVALID_CORE_FOUNDATION_ENCODING},
        {TD_FILE_COMMON_UNKNOWN_ENCODING, TD_INVALID_CORE_FOUNDATION_ENCODING},
    };
    for (const auto &[stringEncoding, coreFoundationEncoding] : cases)
        EXPECT_EQ(convertStringEncodingToCoreFoundation(stringEncoding), coreFoundationEncoding);
    for (const CoreFoundationEncoding unknown : {0x20CU, 0xABCU, TD_INVALID_CORE_FOUNDATION_ENCODING})
        EXPECT_EQ(convertCoreFoundationToStringEncoding(unknown), TD_FILE_COMMON_UNKNOWN_ENCODING);
    EXPECT_FALSE(TextConverter::converterForEncoding(TD_FILE_COMMON_UNKNOWN_ENCODING));
    EXPECT_FALSE(TextConverter::converterForEncoding(0x80000001)) << "known, but there is no converter";
    EXPECT_TRUE(localizedNameOfStringEncoding(777).isEmpty());
}

TEST(TextEncodingTest, Utf8IsStrict)
{
    const QByteArray refused = "c080 c1bf e08080 e09fbf f08fbfbf eda080 edbfbf eda0bdedb880 f4908080 "
                               "f5808080 f888808080 fc8480808080 "
                               "80 a9 bf fe ff c3 e282 f09f98 c341 e228a1";
    for (const QByteArray &hexadecimal : refused.split(' ')) {
        const QByteArray bytes = QByteArray::fromHex(hexadecimal);
        // Alone, after text, before text, and beyond the reach of vector code.
        for (const QByteArray &text :
             {bytes, "abc" + bytes, bytes + "abc", QByteArray(200, 'x') + bytes + QByteArray(100, 'y')})
            EXPECT_EQ(shown(decoded(TD_ENCODING_UTF8, text)), "nothing") << shown(text);
    }
    const struct
    {
        QByteArray bytes;
        QString text;
    } accepted[] = {
        {"\xEF\xBB\xBF|", QStringLiteral("\uFEFF|")},
        {"\xEF\xBB\xBF\xEF\xBB\xBF", QStringLiteral("\uFEFF\uFEFF")},
        {"\xEF\xBF\xBE\xEF\xBF\xBF", QStringLiteral("\uFFFE\uFFFF")},
        {QByteArray("a\0b", 3), QString::fromLatin1("a\0b", 3)},
        {"\xF4\x8F\xBF\xBF", QString::fromUcs4(U"\U0010FFFF", 1)},
        {"\xED\x9F\xBF\xEE\x80\x80", QStringLiteral("\uD7FF\uE000")},
    };
    for (const auto &[bytes, text] : accepted) {
        EXPECT_EQ(shown(decoded(TD_ENCODING_UTF8, bytes)), shown(text));
        EXPECT_EQ(shown(encoded(TD_ENCODING_UTF8, text)), shown(bytes));
    }
    const QChar loneSurrogate[] = {u'a', QChar(0xD83D)};
    EXPECT_EQ(shown(encoded(TD_ENCODING_UTF8, QStringView(loneSurrogate, 2))), "nothing");
}

TEST(TextEncodingTest, WideEncodingsKeepMarksAndDropTheRestOfAUnit)
{
    const struct
    {
        StringEncoding encoding;
        QByteArray bytes;
        const char *text;
    } cases[] = {
        {TD_ENCODING_UTF16, QByteArray::fromHex("fffe6100"), "feff 0061 "},
        {TD_ENCODING_UTF16, QByteArray::fromHex("feff0061"), "fffe 6100 "},
        {TD_ENCODING_UTF16, QByteArray::fromHex("61"), ""},
        {TD_ENCODING_UTF16_LITTLE_ENDIAN, QByteArray::fromHex("fffe3dd861"), "feff d83d "},
        {TD_ENCODING_UTF16_LITTLE_ENDIAN, QByteArray::fromHex("61"), "nothing"},
        {TD_ENCODING_UTF16_BIG_ENDIAN, QByteArray::fromHex("feffde00d83d"), "feff de00 d83d "},
        {TD_ENCODING_UTF32, QByteArray::fromHex("0000feff0001f600"), "feff d83d de00 "},
        {TD_ENCODING_UTF32, QByteArray::fromHex("fffe0000"), "nothing"},
        {TD_ENCODING_UTF32_BIG_ENDIAN, QByteArray::fromHex("0000006100"), "0061 "},
        {TD_ENCODING_UTF32_BIG_ENDIAN, QByteArray::fromHex("00110000"), "nothing"},
        {TD_ENCODING_UTF32_LITTLE_ENDIAN, QByteArray::fromHex("fffe0000"), "feff "},
        {TD_ENCODING_UTF32_LITTLE_ENDIAN, QByteArray::fromHex("00d80000"), "nothing"},
        {TD_ENCODING_UTF32_LITTLE_ENDIAN, QByteArray::fromHex("616161"), "nothing"},
    };
    for (const auto &[encoding, bytes, expected] : cases) {
        const auto text = decoded(encoding, bytes);
        EXPECT_EQ(shown(text), expected) << std::hex << encoding << ' ' << shown(bytes);
        const qsizetype unit = bytes.size() >= 4 && encoding != TD_ENCODING_UTF16 ? 4 : 2;
        if (text && bytes.size() % unit == 0) {
            EXPECT_EQ(shown(encoded(encoding, *text)), shown(bytes)) << std::hex << encoding;
        }
    }
    const QChar loneSurrogate(0xDE00);
    EXPECT_EQ(shown(encoded(TD_ENCODING_UTF32, QStringView(&loneSurrogate, 1))), "nothing");
}

TEST(TextEncodingTest, BytesThatAnEncodingLeavesOpenAreRefused)
{
    const struct
    {
        StringEncoding encoding;
        QByteArray refused; ///< each byte by itself
    } cases[] = {
        {LATIN_1, {}},
        {MAC_ROMAN, {}},
        {TD_ENCODING_ASCII, {}},
        {WINDOWS_1252, "\x81\x8D\x8F\x90\x9D"},
        {WINDOWS_1253, "\xD2\xFF"},
        {NEXTSTEP, "\xFE\xFF"},
        {0x80000505, "\xCA\xD9\xDA\xDB\xDC\xDD\xDE\xDF\xFB\xFC\xFF"},
        {0x80000507, "\xA1\xA5"},
        {0x80000203, "\xA5\xAE\xBE\xC3\xD0\xE3\xF0"},
        {0x80000207, "\xAE\xD2\xFF"},
        {0x8000020B, "\xDB\xDC\xDD\xDE\xFC\xFD\xFE\xFF"},
        {0x80000419, "\x9B\x9C\xA6\xA7\xFF"},
        {0x8000041C, "\x80\x81\x82\x83\x84\x85\x87\x93\x94"},
        {CP437, {}},
    };
    for (const auto &[encoding, expected] : cases) {
        QByteArray refused;
        for (int byte = 0; byte < 0x100; ++byte) {
            if (!decoded(encoding, singleByte(byte)))
                refused += static_cast<char>(byte);
        }
        EXPECT_EQ(shown(refused), shown(expected)) << std::hex << encoding;
        EXPECT_EQ(decoded(encoding, "abc" + refused).has_value(), refused.isEmpty());
    }
}

TEST(TextEncodingTest, ReadsAndWritesWhatTheEncodingSays)
{
    const struct
    {
        StringEncoding encoding;
        QByteArray bytes;
        QString text;
    } cases[] = {
        {WINDOWS_1252, "\x80\x9F", QStringLiteral("\u20AC\u0178")},
        {LATIN_1, "\x81\xE9", QStringLiteral("\u0081\u00E9")},
        {MAC_ROMAN, "\xDB\xF0", QStringLiteral("\u20AC\uF8FF")},
        {NEXTSTEP, "\x80\xAE\xFD", QStringLiteral("\u00A0\uFB01\u00FF")},
        {CP437, "\x1A\x1C\x7F\x80", QStringLiteral("\u001A\u001C\u007F\u00C7")},
        {CP932, "\x1A\x1C\x7F\x82\xA0\\~", QStringLiteral("\u001A\u001C\u007F\u3042\\~")},
        {CP936, "\x80\x81\x40", QStringLiteral("\u20AC\u4E02")},
        {EUC_JP, "a\xA4\xA2\x80", QStringLiteral("a\u3042\u0080")},
        {GB18030, "\x81\x30\x81\x30\x90\x30\x81\x30", QStringLiteral("\u0080\U00010000")},
        {ISO_2022_JP, "a\x1B$B$\"\x1B(Bb", QStringLiteral("a\u3042b")},
        {ISO_2022_KR, "\x1B$)Ca\x1A\x1C\x7F", QStringLiteral("a\u001A\u001C\u007F")},
        {UTF_7, "+AOk-", QStringLiteral("\u00E9")},
        {EBCDIC, "\xC1\x81\xF0", QStringLiteral("Aa0")},
        {NON_LOSSY_ASCII, "a\\\\\\351\\001\t\\u0430\\ud83d",
         QStringLiteral("a\\\u00E9\u0001\t\u0430") + QChar(0xD83D)},
    };
    for (const auto &[encoding, bytes, text] : cases) {
        EXPECT_EQ(shown(decoded(encoding, bytes)), shown(text)) << std::hex << encoding;
        EXPECT_EQ(shown(encoded(encoding, text)), shown(bytes)) << std::hex << encoding;
    }
    EXPECT_EQ(shown(decoded(TD_ENCODING_ASCII, "a\x80\xFF")), "0061 0080 00ff ");
    EXPECT_EQ(shown(decoded(NON_LOSSY_ASCII, "\\U00E9")), "00e9 ");
    EXPECT_EQ(shown(decoded(ISO_2022_KR, "a\n")), "0061 000a ") << "a line without the text's header";
}

TEST(TextEncodingTest, MalformedTextGivesNothing)
{
    const struct
    {
        StringEncoding encoding;
        QByteArray texts; ///< separated by commas
    } cases[] = {
        {CP932, "\x82,\x82 ,\x82\xF2,\x85\x40,\x80,\xA0,\xFD"},
        {EUC_JP, "\xA4 ,\xA9\xA1,\xFF,abc\xA4"},
        {EUC_KR, "\xB0 "},
        {GB18030, "\x80,\xFF,\x81\x30\x81 ,\xE3\x32\x9A\x36"},
        {ISO_2022_JP, "\x1B$,\x1B$B$,\x1B[0m,\x0E,\x80,\x1B$(D\x22\x2F"},
        {NON_LOSSY_ASCII, "\\x,\\,\\u12,\\u12g4,\\38,\\777,\xE9,\\u\xB2\xB2\xB2\xB2"},
    };
    for (const auto &[encoding, texts] : cases) {
        const auto converter = TextConverter::converterForEncoding(encoding);
        for (const QByteArray &bytes : texts.split(',')) {
            EXPECT_EQ(shown(converter->decode(bytes)), "nothing")
                << std::hex << encoding << ' ' << shown(bytes);
            EXPECT_EQ(shown(converter->decode("ab")), "0061 0062 ") << "the refusal left something behind";
        }
    }
}

TEST(TextEncodingTest, NothingIsSubstitutedComposedOrDropped)
{
    const QString joined = QStringLiteral("a\u200D|\uFEFFa|\uFE0F|e\u0301|\u2126|\u03BC|\u0081|\u00AD|\uFF21|"
                                          "\uFF76|\uE000|\uF8FF|\uFFFD|\u00A5|\u203E|"
                                          "\U0001F600|\u0432\u001A\u0432|\u3042\r\n\u3042|");
    const QStringList texts = (joined + QChar(0xDE00)).split(u'|');
    for (const StringEncoding encoding : availableStringEncodings()) {
        const auto converter = TextConverter::converterForEncoding(encoding);
        for (const QString &text : texts) {
            if (const auto bytes = converter->encode(text)) {
                EXPECT_EQ(shown(converter->decode(*bytes)), shown(text)) << std::hex << encoding;
            }
        }
    }
    for (const QStringView text : {u"\u0081", u"\u2126", u"\u03BC", u"e\u0301", u"\u200D", u"\u20AC\uFEFF"})
        EXPECT_EQ(shown(encoded(WINDOWS_1252, text)), "nothing") << shown(text.toString());
    EXPECT_EQ(shown(encoded(EUC_JP, u"a\u200Db")), "nothing");
    EXPECT_EQ(shown(encoded(TD_ENCODING_ASCII, u"\u0080")), "nothing");
}

bool hasSingleBytes(StringEncoding encoding)
{
    return sharedByteTable(*textEncodingRow(convertStringEncodingToCoreFoundation(encoding))) != nullptr;
}

TEST(TextEncodingTest, EverySingleByteComesBackAsItWas)
{
    for (const StringEncoding encoding : availableStringEncodings()) {
        const auto converter = TextConverter::converterForEncoding(encoding);
        for (int byte = 0; byte < 0x100 && hasSingleBytes(encoding); ++byte) {
            const auto character = converter->decode(singleByte(byte));
            const bool isReadOnly = encoding == TD_ENCODING_ASCII && byte >= 0x80;
            if (character && !isReadOnly) {
                EXPECT_EQ(shown(converter->encode(*character)), shown(singleByte(byte)))
                    << std::hex << encoding;
            }
        }
    }
}

TEST(TextEncodingTest, NearlyEveryPairOfBytesComesBackAsItWas)
{
    for (const StringEncoding encoding :
         {EUC_JP, CP932, CP936, GB18030, EUC_CN, EUC_TW, EUC_KR, BIG5_HKSCS}) {
        const auto converter = TextConverter::converterForEncoding(encoding);
        int readable = 0;
        int changed = 0;
        int wrong = 0;
        for (int pair = 0x8000; pair < 0x10000; ++pair) {
            const QByteArray bytes = singleByte(pair >> 8) + singleByte(pair & 0xFF);
            const auto text = converter->decode(bytes);
            const auto written = text ? converter->encode(*text) : std::nullopt;
            readable += text.has_value();
            changed += text && written != bytes;
            wrong += written && converter->decode(*written) != text;
        }
        EXPECT_GT(readable, 11000) << std::hex << encoding;
        EXPECT_LT(changed, readable / 50)
            << std::hex << encoding << ": only the characters that have two codes";
        EXPECT_EQ(wrong, 0) << std::hex << encoding;
    }
}

/// A byte below 0x80 that isn't its character, or such a character out of other bytes.
int violationsOfAsciiBytes(TextConverter &converter, int first, int second, const char *rest)
{
    const auto text = converter.decode(singleByte(first) + singleByte(second) + rest);
    if (!text)
        return 0;
    qsizetype asciiCharacters = std::ranges::count_if(*text, [](QChar unit) { return unit < u'\x80'; });
    asciiCharacters -= *rest == '0' ? 1 : 0;
    const bool startsInAscii = second < 0x80;
    return asciiCharacters != startsInAscii || (startsInAscii && !text->contains(QChar(second)));
}

TEST(TextEncodingTest, ShapesAreTrue)
{
    QList<StringEncoding> opaque;
    for (const StringEncoding encoding : availableStringEncodings()) {
        const auto converter = TextConverter::converterForEncoding(encoding);
        if (converter->shape() == EncodingShape::Opaque)
            opaque.append(encoding);
        if (converter->shape() != EncodingShape::AsciiBytes)
            continue;
        EXPECT_EQ(converter->decode(everyAsciiByte()), QString::fromLatin1(everyAsciiByte()))
            << std::hex << encoding;
        int violations = 0;
        for (int first = 0x80; first < 0x100; ++first) {
            for (int second = 0; second < (hasSingleBytes(encoding) ? 1 : 0x100); ++second) {
                for (const char *rest : {"", "0", "\xA1", "\xA1\xA1"})
                    violations += violationsOfAsciiBytes(*converter, first, second, rest);
            }
        }
        EXPECT_EQ(violations, 0) << std::hex << encoding;
    }
    const QList<StringEncoding> expected = {
        TD_ENCODING_UTF16, UTF_7,      TD_ENCODING_UTF32, CP932,           CP936,
        0x80000422,        0x80000423, 0x80000631,        GB18030,         ISO_2022_JP,
        0x80000821,        0x80000822, 0x80000830,        ISO_2022_KR,     0x80000A01,
        0x80000A03,        0x80000A05, BIG5_HKSCS,        NON_LOSSY_ASCII, EBCDIC};
    EXPECT_EQ(opaque, expected);
    const std::pair<StringEncoding, EncodingShape> wide[] = {
        {TD_ENCODING_UTF16_BIG_ENDIAN, EncodingShape::Utf16BigEndian},
        {TD_ENCODING_UTF16_LITTLE_ENDIAN, EncodingShape::Utf16LittleEndian},
        {TD_ENCODING_UTF32_BIG_ENDIAN, EncodingShape::Utf32BigEndian},
        {TD_ENCODING_UTF32_LITTLE_ENDIAN, EncodingShape::Utf32LittleEndian},
    };
    for (const auto &[encoding, shape] : wide)
        EXPECT_EQ(TextConverter::converterForEncoding(encoding)->shape(), shape) << std::hex << encoding;
}

TEST(TextEncodingTest, AsciiShortcutsEndAtTheFirstOtherUnit)
{
    for (const StringEncoding encoding : {LATIN_1, EUC_CN, CP936, TD_ENCODING_UTF8}) {
        const QByteArray character = encoded(encoding, u"\u00E0").value_or("");
        ASSERT_FALSE(character.isEmpty());
        for (qsizetype before = 0; before < 140; ++before) {
            const QByteArray bytes = QByteArray(before, 'a') + character + QByteArray(70, 'b');
            const QString text = QString(before, u'a') + QChar(0xE0) + QString(70, u'b');
            ASSERT_EQ(decoded(encoding, bytes), text) << before;
            ASSERT_EQ(encoded(encoding, text), bytes) << before;
        }
    }
}

TEST(TextEncodingTest, ThreadsConvertAtTheSameTime)
{
    const auto convert = [] {
        for (int round = 0; round < 200; ++round) {
            for (const StringEncoding encoding : {EUC_JP, CP932, ISO_2022_JP, GB18030}) {
                const QString text = QStringLiteral("\u3042a\u4E00").repeated(round);
                ASSERT_EQ(decoded(encoding, encoded(encoding, text).value_or("")), text);
            }
            ASSERT_EQ(decoded(0x80000410, "\x80"), QStringLiteral("\u00C7"));
        }
    };
    std::thread other(convert);
    convert();
    other.join();
}

} // namespace
} // namespace tidemark
