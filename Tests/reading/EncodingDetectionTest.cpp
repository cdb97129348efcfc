#include "reading/EncodingDetection.h"

#include "foundation/ExtendedAttributes.h"
#include "foundation/UserDefaults.h"
#include "reading/TDFileReader.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::TemporaryFolder;

constexpr StringEncoding UNKNOWN = TD_FILE_COMMON_UNKNOWN_ENCODING;
constexpr StringEncoding LATIN1 = 5;
constexpr StringEncoding LATIN2 = 9;
constexpr StringEncoding WINDOWS_CYRILLIC = 11;
constexpr StringEncoding MAC_ROMAN = 30;
constexpr StringEncoding UTF16LE = TD_ENCODING_UTF16_LITTLE_ENDIAN;
constexpr StringEncoding UTF16BE = TD_ENCODING_UTF16_BIG_ENDIAN;
constexpr StringEncoding UTF32LE = TD_ENCODING_UTF32_LITTLE_ENDIAN;
constexpr StringEncoding UTF32BE = TD_ENCODING_UTF32_BIG_ENDIAN;

const QByteArray MARK = "\xEF\xBB\xBF";
const QByteArray XML_LATIN2 = "<?xml version='1.0' encoding='iso-8859-2'?>\n";
const QByteArray META_LATIN1 = "<META http-equiv=content-type content='text/html; charset=iso-8859-1'>\n";

class EncodingDetectionTest : public testing::Test
{
protected:
    void TearDown() override { setDefault(QVariant()); }
    static void setDefault(const QVariant &encoding)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, encoding);
    }

    std::unique_ptr<TDFileReader> readerOf(const QByteArray &content)
    {
        TDError error;
        return TDFileReader::fileReaderWithFile(folder.write("file", content), UNKNOWN, error);
    }
    static QStringList linesOf(TDFileReader &reader)
    {
        TDError error;
        QStringList lines;
        while (const auto line = reader.getNextLineWithEOLCharacters(true, error))
            lines << *line;
        EXPECT_TRUE(reader.closeFile(error));
        return lines;
    }
    TemporaryFolder folder;
};

TEST_F(EncodingDetectionTest, MarkBeforeDeclarationBeforeAttributeBeforeDefault)
{
    const QString worthless = u"utf-8;0"_s;
    const QString cyrillic = u"nonsense;1282"_s; // the name doesn't count, the number does
    const struct
    {
        QByteArray content;
        QString attribute;
        StringEncoding encoding;
        bool hadMark;
    } cases[] = {
        {"plain", {}, MAC_ROMAN, false},
        {"", {}, MAC_ROMAN, false},
        {"plain", worthless, MAC_ROMAN, false},
        {"plain", cyrillic, WINDOWS_CYRILLIC, false},
        {META_LATIN1, {}, LATIN1, false},
        {META_LATIN1, cyrillic, LATIN1, false},
        {XML_LATIN2 + META_LATIN1, cyrillic, LATIN2, false},
        {MARK + "plain", {}, TD_ENCODING_UTF8, true},
        {MARK + XML_LATIN2, cyrillic, TD_ENCODING_UTF8, true},
        {"\xFF\xFE<\0"_ba, cyrillic, UTF16LE, true},
        {"\xFE\xFF\0<"_ba, cyrillic, UTF16BE, true},
    };
    for (const auto &[content, value, encoding, hadMark] : cases) {
        TDError error;
        const TemporaryFolder own;
        const FilePath file = own.write("file", content);
        if (!value.isNull() &&
            !setPathValueForExtendedAttributeKey(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, value, 0))
            GTEST_SKIP() << "no extended attributes here";
        setDefault(qint64(MAC_ROMAN));
        const auto reader = TDFileReader::fileReaderWithFile(file, UNKNOWN, error);
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->stringEncoding(), encoding)
            << testing::PrintToString(content) << value.toStdString();
        EXPECT_EQ(reader->hadByteOrderMarker(), hadMark) << testing::PrintToString(content);
        EXPECT_TRUE(reader->closeFile(error));
    }
}

TEST_F(EncodingDetectionTest, ReadingStartsBehindTheMarkAndShortFilesBeginWithUnfilledSlots)
{
    const struct
    {
        QByteArray content;
        StringEncoding encoding;
        QStringList lines;
    } cases[] = {
        {"", 4, {}},
        {"a", 4, {QString(1, u'\0')}},
        {"ab", 4, {QString(2, u'\0')}},
        {"abc", 4, {u"bc"_s + QChar(u'\0')}},
        {"a\nb", 4, {u"\n"_s, u"b"_s + QChar(u'\0')}},
        {"abcd", 4, {u"abcd"_s}},
        {"a\r\nbc", 4, {u"a\r\n"_s, u"bc"_s}},
        {MARK, 4, {}},
        {MARK + "a", 4, {u"a"_s}},
        {MARK + MARK + "a",
         4,
         {u"\uFEFF"
          "a"_s}},
        {"\xEF\xBB"_ba, 4, {QString(2, u'\0')}},
        {"\xFF\xFE"_ba, UTF16LE, {}},
        {"\xFF\xFE"
         "a"_ba,
         UTF16LE,
         {}},
        {"\xFF\xFE"
         "a\0"_ba,
         UTF16LE,
         {u"a"_s}},
        {"\xFE\xFF\0a\0b"_ba, UTF16BE, {u"ab"_s}},
        {"\xFF\xFE\0\0"_ba, UTF32LE, {}},
        {"\xFF\xFE\0\0a\0\0\0"_ba, UTF32LE, {u"a"_s}},
        {"\0\0\xFE\xFF\0\0\0a"_ba, UTF32BE, {u"a"_s}},
    };
    for (const auto &[content, encoding, lines] : cases) {
        const auto reader = readerOf(content);
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->stringEncoding(), encoding) << testing::PrintToString(content);
        EXPECT_EQ(linesOf(*reader), lines) << testing::PrintToString(content);
    }
}

TEST_F(EncodingDetectionTest, ProbedBytesAreAllReadAgain)
{
    for (const int size : {5, 511, 512, 513, 40960, 50000}) {
        QByteArray content(size, 'x');
        for (int index = 7; index < size; index += 7)
            content[index] = '\n';
        const auto reader = readerOf(content);
        EXPECT_TRUE(linesOf(*reader).join(QString()) == QString::fromLatin1(content)) << size;
    }
}

TEST_F(EncodingDetectionTest, OnlyTheFirst512BytesAreExamined)
{
    const qsizetype lengthToName = META_LATIN1.indexOf("'>");
    const std::pair<qsizetype, StringEncoding> cases[] = {
        {512 - lengthToName, LATIN1}, {513 - lengthToName, TD_ENCODING_UTF8}, {512, TD_ENCODING_UTF8}};
    for (const auto &[padding, encoding] : cases) {
        const auto reader = readerOf(QByteArray(padding, 'x') + META_LATIN1);
        EXPECT_EQ(reader->stringEncoding(), encoding) << padding;
        linesOf(*reader);
    }
}

QByteArray asUnits(const QByteArray &ascii, qsizetype size, bool littleEndian)
{
    QByteArray bytes;
    for (const char character : ascii) {
        QByteArray unit(size, '\0');
        unit[littleEndian ? 0 : size - 1] = character;
        bytes += unit;
    }
    return bytes;
}

TEST_F(EncodingDetectionTest, DeclarationsInBytes)
{
    const struct
    {
        QByteArray bytes;
        StringEncoding encoding;
    } cases[] = {
        {XML_LATIN2, LATIN2},
        {"\r\n\t " + XML_LATIN2, LATIN2},
        {"<?XML\nENCODING = \"ISO-8859-2\" ?>", LATIN2},
        {"x" + XML_LATIN2, UNKNOWN},
        {"\n<!-- -->" + XML_LATIN2, UNKNOWN},
        {"<?xml encoding='iso-8859-2'", UNKNOWN},
        {"<?xml a='>' encoding='iso-8859-2'?>", UNKNOWN},
        {"<?xml encoding=iso-8859-2?>", UNKNOWN},
        {META_LATIN1, LATIN1},
        {"text\n< <met<mEtA charset = iso-8859-1>", LATIN1},
        {"<META>charset=iso-8859-1>", UNKNOWN},
        {"<metacharset=iso-8859-1>", UNKNOWN},
        {"<?xml encoding='no-such-set'?>" + META_LATIN1, LATIN1},
        {"<meta charset=no-such-set>" + META_LATIN1, UNKNOWN},
        {"<?xml encoding='\xFF'?>" + META_LATIN1, LATIN1},
        {"<meta charset=windows-1251>", WINDOWS_CYRILLIC},
        {"", UNKNOWN},
        {"<", UNKNOWN},
        {"<META", UNKNOWN},
    };
    for (const auto &[bytes, encoding] : cases)
        EXPECT_EQ(declaredEncoding(bytes), encoding) << testing::PrintToString(bytes);
}

TEST_F(EncodingDetectionTest, DeclarationsInWiderUnitsAreFoundInTheMachinesOrder)
{
    constexpr bool MACHINE = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;
    for (const qsizetype size : {2, 4}) {
        EXPECT_EQ(declaredEncoding(asUnits(XML_LATIN2, size, MACHINE)), LATIN2) << size;
        EXPECT_EQ(declaredEncoding(asUnits("x " + META_LATIN1, size, MACHINE) + '<'), LATIN1) << size;
        EXPECT_EQ(declaredEncoding(asUnits("x " + XML_LATIN2, size, MACHINE)), UNKNOWN) << size;
        EXPECT_EQ(declaredEncoding(asUnits(XML_LATIN2, size, !MACHINE)), UNKNOWN) << size;
    }
    EXPECT_EQ(declaredEncoding(asUnits("<?xml encoding='utf-16le'?>", 2, MACHINE)), UTF16LE);
    EXPECT_EQ(declaredEncoding(asUnits("<?xml encoding='utf-16'?>", 2, MACHINE)), TD_ENCODING_UTF16);
}

TEST_F(EncodingDetectionTest, AttributeValuesGoByTheNumberBehindTheFirstSemicolon)
{
    const struct
    {
        QString value;
        StringEncoding encoding;
    } cases[] = {
        {u"utf-8;134217984"_s, TD_ENCODING_UTF8},
        {u";513"_s, LATIN1},
        {u"x; 513 and more;4"_s, LATIN1},
        {u"x;+513"_s, LATIN1},
        {u"utf-16le;335544576"_s, UTF16LE},
        {u"macintosh;0"_s, UNKNOWN},
        {u"utf-8"_s, UNKNOWN},
        {u"134217984"_s, UNKNOWN},
        {u"utf-8;"_s, UNKNOWN},
        {u"utf-8;utf-8"_s, UNKNOWN},
        {u"x;-1"_s, UNKNOWN},
        {u"x;99999999999999999999"_s, UNKNOWN},
        {u""_s, UNKNOWN},
    };
    for (const auto &[value, encoding] : cases)
        EXPECT_EQ(encodingFromAttributeValue(value), encoding) << value.toStdString();
}

TEST_F(EncodingDetectionTest, RecordedValuesReadBackAsTheSameEncoding)
{
    EXPECT_EQ(attributeValueForEncoding(TD_ENCODING_UTF8), u"utf-8;134217984"_s);
    EXPECT_EQ(attributeValueForEncoding(LATIN1), u"iso-8859-1;513"_s);
    const QList<StringEncoding> encodings = availableStringEncodings();
    for (const StringEncoding encoding : encodings) {
        const QString value = attributeValueForEncoding(encoding);
        // Number 0 can't be told from a value that isn't a number.
        const StringEncoding expected = encoding == MAC_ROMAN ? UNKNOWN : encoding;
        EXPECT_EQ(convertStringEncodingToCoreFoundation(encoding) == 0, encoding == MAC_ROMAN) << encoding;
        EXPECT_EQ(encodingFromAttributeValue(value), expected) << value.toStdString();
    }
}

} // namespace
} // namespace tidemark
