#include "text/TextEncoding.h"
#include "support/Testing.h"
#include "text/ByteTextConverter.h"
#include "text/TextEncodingTable.h"
#include "text/Utf8.h"

#include <QRegularExpression>

#include <algorithm>
#include <iconv.h>
#include <thread>

namespace tidemark::test {
namespace {

constexpr StringEncoding LATIN_1 = 0x5;
constexpr StringEncoding MAC_ROMAN = 0x1E;
constexpr StringEncoding NON_LOSSY_ASCII = 0x7;
constexpr StringEncoding EUC_JP = 0x3;
constexpr StringEncoding CP932 = 0x8;
constexpr StringEncoding ISO_2022_JP = 0x15;
constexpr StringEncoding CP936 = 0x80000421;
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
    return TextConverter::converterForEncoding(encoding)->decode(bytes);
}

std::optional<QByteArray> encoded(StringEncoding encoding, QStringView text)
{
    return TextConverter::converterForEncoding(encoding)->encode(text);
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
    EXPECT_EQ(availableStringEncodings().first(), MAC_ROMAN);
    EXPECT_EQ(availableStringEncodings().size(), 80);
    for (const StringEncoding encoding : availableStringEncodings()) {
        EXPECT_FALSE(localizedNameOfStringEncoding(encoding).isEmpty()) << std::hex << encoding;
        EXPECT_EQ(TextConverter::converterForEncoding(encoding)->encoding(), encoding);
        EXPECT_EQ(shown(decoded(encoding, {})), "") << std::hex << encoding;
        EXPECT_EQ(encoded(encoding, {}).value_or("nothing").size(), encoding == ISO_2022_KR ? 4 : 0)
            << std::hex << encoding;
    }
}

TEST(TextEncodingTest, NumbersOfBothKindsNameTheSameEncodings)
{
    for (const TextEncodingRow &row : allTextEncodings()) {
        EXPECT_EQ(convertStringEncodingToCoreFoundation(row.stringEncoding), row.coreFoundationEncoding);
        EXPECT_EQ(convertCoreFoundationToStringEncoding(row.coreFoundationEncoding), row.stringEncoding);
        EXPECT_FALSE(localizedNameOfStringEncoding(row.stringEncoding).isEmpty()) << row.stringEncoding;
    }
    // The long form of an encoding with a small number, and an encoding that isn't known.
    EXPECT_EQ(convertStringEncodingToCoreFoundation(0x80000420), 0x420U);
    EXPECT_EQ(convertStringEncodingToCoreFoundation(0x80000ABC), 0xABCU);
    for (const StringEncoding none : {777ULL, 0ULL, 0x180000420ULL, TD_FILE_COMMON_UNKNOWN_ENCODING})
        EXPECT_EQ(convertStringEncodingToCoreFoundation(none), TD_INVALID_CORE_FOUNDATION_ENCODING);
    for (const CoreFoundationEncoding unknown : {0x20CU, 0xABCU, TD_INVALID_CORE_FOUNDATION_ENCODING})
        EXPECT_EQ(convertCoreFoundationToStringEncoding(unknown), TD_FILE_COMMON_UNKNOWN_ENCODING);
    for (const StringEncoding none : {TD_FILE_COMMON_UNKNOWN_ENCODING, StringEncoding(0x80000001)})
        EXPECT_FALSE(TextConverter::converterForEncoding(none));
    EXPECT_TRUE(localizedNameOfStringEncoding(777).isEmpty());
}

/// The bytes that are refused when they stand alone.
QByteArray refusedBytes(TextConverter &converter)
{
    QByteArray refused;
    for (int byte = 0; byte < 0x100; ++byte) {
        if (!converter.decode(singleByte(byte)))
            refused += static_cast<char>(byte);
    }
    return refused;
}

void expectRefused(TextConverter &converter, const QByteArray &bytes)
{
    const auto before = converter.decode("abcd");
    QByteArrayList texts = {bytes};
    // Within text, and beyond the reach of vector code.
    if (converter.encoding() == TD_ENCODING_UTF8)
        texts << "abc" + bytes << bytes + "abc" << QByteArray(200, 'x') + bytes + QByteArray(100, 'y');
    for (const QByteArray &text : texts)
        EXPECT_EQ(shown(converter.decode(text)), "nothing") << shown(text);
    EXPECT_EQ(shown(converter.decode("abcd")), shown(before)) << "the refusal left something behind";
}

TEST(TextEncodingTest, ReadsAndWritesWhatTheEncodingSays)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/encoding-vectors.tsv")) {
        SCOPED_TRACE(row.line);
        const auto converter = TextConverter::converterForEncoding(row.number(0));
        ASSERT_TRUE(converter);
        const QByteArray bytes = row.bytes(2);
        const QString text = row.text(3);
        switch (row.bytes(1).front()) {
        case '=':
            EXPECT_EQ(shown(converter->encode(text)), shown(bytes));
            [[fallthrough]];
        case '>':
            EXPECT_EQ(shown(converter->decode(bytes)), shown(text));
            break;
        case '<':
            EXPECT_EQ(shown(converter->encode(text)), "nothing");
            break;
        case '?':
            EXPECT_EQ(shown(refusedBytes(*converter)), shown(bytes));
            EXPECT_EQ(converter->decode("abc" + bytes).has_value(), bytes.isEmpty());
            break;
        default:
            for (const QByteArray &refused : bytes.split(' '))
                expectRefused(*converter, QByteArray::fromHex(refused));
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

/// What the C library reads the bytes as.
std::optional<QString> decodedBySystem(iconv_t iconvOf, QByteArray bytes)
{
    QString text(8, Qt::Uninitialized);
    char *source = bytes.data();
    size_t left = size_t(bytes.size());
    char *target = reinterpret_cast<char *>(text.data());
    size_t room = 16;
    iconv(iconvOf, nullptr, nullptr, nullptr, nullptr);
    if (iconv(iconvOf, &source, &left, &target, &room) != 0 ||
        iconv(iconvOf, nullptr, nullptr, &target, &room) != 0)
        return {};
    text.truncate(qsizetype(8 - room / 2));
    return text;
}

/// Where both have a character for the code, and not the same.
QStringList differencesFromSystem(StringEncoding encoding, int first, int last)
{
    const CoreFoundationEncoding number = convertStringEncodingToCoreFoundation(encoding);
    const QByteArray name = convertEncodingToIANACharSetName(number).toLatin1();
    const iconv_t system = name.isEmpty() ? iconv_t(-1) : iconv_open("UTF-16LE", name.constData());
    QStringList differences;
    const auto converter = TextConverter::converterForEncoding(encoding);
    for (int code = first; code <= last && system != iconv_t(-1); ++code) {
        const QByteArray bytes = (code > 0xFF ? singleByte(code >> 8) : QByteArray()) + singleByte(code);
        const auto own = converter->decode(bytes);
        const auto expected = decodedBySystem(system, bytes);
        if (own && expected && own != expected)
            differences << QString::fromLatin1(name + ' ' + bytes.toHex()) + u' ' +
                               QString::fromStdString(shown(own) + "/" + shown(expected));
    }
    if (system != iconv_t(-1))
        iconv_close(system);
    return differences;
}

TEST(TextEncodingTest, CodesAreThoseOfThePublishedTables)
{
    QStringList differences = differencesFromSystem(EUC_KR, 0xA1A1, 0xFEFE);
    for (const StringEncoding encoding : availableStringEncodings()) {
        if (hasSingleBytes(encoding))
            differences << differencesFromSystem(encoding, 0, 0xFF);
    }
    // The system's tables are other editions of these four.
    differences.removeIf([](const QString &difference) {
        return difference.contains(QRegularExpression(u"^(macintosh|cp851|cp864|cp869) "_s));
    });
    EXPECT_EQ(differences, QStringList());
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

TEST(TextEncodingTest, ValidityIsThatOfTheWholeTextWhereverItIsCut)
{
    const QStringList units = {u"a"_s, QString(QChar(0xD83D)), QString(QChar(0xDE00)), u"\U0001F600"_s};
    for (qsizetype before = 1015; before < 1030; ++before) {
        for (const QString &first : units) {
            for (const QString &second : units) {
                const QString text = QString(before, u'b') + first + second + QString(90, u'c');
                ASSERT_EQ(isWellFormed(text), text.isValidUtf16()) << before;
            }
        }
        for (const char *bytes :
             {"a", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xE2\x82", "\x80", "\xED\xA0\x80"}) {
            const QByteArray text = QByteArray(before, 'b') + bytes + QByteArray(90, 'c');
            ASSERT_EQ(isValidUtf8(text), QUtf8StringView(text).isValidUtf8()) << before << bytes;
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
} // namespace tidemark::test
