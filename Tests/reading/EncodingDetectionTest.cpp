#include "reading/EncodingDetection.h"

#include "foundation/ExtendedAttributes.h"
#include "foundation/UserDefaults.h"
#include "reading/TDFileReader.h"
#include "reading/TextBlockReader.h"
#include "support/Testing.h"

#include <unistd.h>

namespace tidemark::test {
namespace {

constexpr StringEncoding UNKNOWN = TD_FILE_COMMON_UNKNOWN_ENCODING;
constexpr StringEncoding LATIN1 = 5;
constexpr StringEncoding LATIN2 = 9;
constexpr StringEncoding MAC_ROMAN = 30;

const QByteArray XML_LATIN2 = "<?xml version='1.0' encoding='iso-8859-2'?>\n";
const QByteArray META_LATIN1 = "<META http-equiv=content-type content='text/html; charset=iso-8859-1'>\n";

class EncodingDetectionTest : public testing::Test
{
protected:
    EncodingDetectionTest()
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, qint64(MAC_ROMAN));
    }

    std::unique_ptr<TDFileReader> readerOf(const QByteArray &content)
    {
        return TDFileReader::fileReaderWithFile(folder.write("file", content), UNKNOWN, error);
    }
    QStringList linesOf(TDFileReader &reader)
    {
        QStringList lines;
        while (const auto line = reader.getNextLineWithEOLCharacters(true, error))
            lines << *line;
        if (error)
            lines << u"error %1"_s.arg(error.code());
        error.clear();
        EXPECT_TRUE(reader.closeFile(error));
        return lines;
    }

    TemporaryFolder folder;
    TDError error;
};

/// Whoever opens it, and by whatever name.
TEST_F(EncodingDetectionTest, AnAttributeIsTheOneOfTheFileThatALinkLeadsTo)
{
    const FilePath file = folder.write("file", "gr\x8An\n");
    ASSERT_EQ(symlink("file", folder.path("link").cString()), 0);
    if (!setPathValueForExtendedAttributeKey(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, u"cp437;1024"_s, 0))
        return; // no extended attributes here
    const auto lines = TDFileReader::fileReaderWithFile(folder.path("link"), UNKNOWN, error);
    ASSERT_TRUE(lines);
    EXPECT_EQ(linesOf(*lines), QStringList(u"gr\u00E8n\n"_s));
    TextBlockReader blocks;
    QByteArrayView block;
    ASSERT_EQ(blocks.open(FileToRead{folder.path("link")}, UNKNOWN), TextBlockReader::Outcome::Block);
    ASSERT_EQ(blocks.nextBlock(block), TextBlockReader::Outcome::Block);
    EXPECT_EQ(block, QByteArrayView("gr\xC3\xA8n\n"));
}

TEST_F(EncodingDetectionTest, EachFileIsReadInTheEncodingThatItTells)
{
    int number = 0;
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/files.tsv")) {
        SCOPED_TRACE(row.line);
        const FilePath file = folder.write(QByteArray::number(++number), row.bytes(2));
        if (!row.text(1).isEmpty() &&
            !setPathValueForExtendedAttributeKey(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, row.text(1), 0))
            continue; // no extended attributes here
        const StringEncoding asked = row.bytes(0) == "detect" ? UNKNOWN : row.number(0);
        const auto reader = TDFileReader::fileReaderWithFile(file, asked, error);
        ASSERT_TRUE(reader);
        EXPECT_EQ(reader->stringEncoding(), row.number(3));
        EXPECT_EQ(reader->hadByteOrderMarker(), row.flag(4));
        EXPECT_EQ(linesOf(*reader).join(u'|'), row.text(5));
    }
}

TEST_F(EncodingDetectionTest, BothReadersSayWhy)
{
    const QByteArray mark = "\xEF\xBB\xBF";
    const std::tuple<QByteArray, bool, SettledEncoding> cases[] = {
        {mark + XML_LATIN2, true, {TD_ENCODING_UTF8, EncodingSource::Mark}},
        {XML_LATIN2, true, {LATIN2, EncodingSource::Declaration}},
        {"text\n", true, {LATIN1, EncodingSource::Attribute}},
        {"text\n", false, {MAC_ROMAN, EncodingSource::Default}},
    };
    for (const auto &[content, hasAttribute, settled] : cases) {
        const FilePath file = folder.write(hasAttribute ? "noted" : "file", content);
        if (hasAttribute &&
            !setPathValueForExtendedAttributeKey(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, u";513"_s, 0))
            continue; // no extended attributes here
        const auto reader = TDFileReader::fileReaderWithFile(file, UNKNOWN, error);
        EXPECT_EQ(reader->settledEncoding(), settled);
        EXPECT_TRUE(reader->closeFile(error));
        TextBlockReader blocks;
        for (const StringEncoding given : {UNKNOWN, LATIN2, UNKNOWN}) {
            EXPECT_EQ(blocks.open(FileToRead{file}, given), TextBlockReader::Outcome::Block);
            EXPECT_EQ(blocks.encoding(),
                      given == UNKNOWN ? settled : (SettledEncoding{LATIN2, EncodingSource::Default}));
        }
    }
}

TEST_F(EncodingDetectionTest, ProbedBytesAreAllReadAgain)
{
    for (const int size : {5, 511, 512, 513, 40960, 50000}) {
        QByteArray content(size, 'x');
        for (int index = 7; index < size; index += 7)
            content[index] = '\n';
        EXPECT_TRUE(linesOf(*readerOf(content)).join(QString()) == QString::fromLatin1(content)) << size;
    }
}

TEST_F(EncodingDetectionTest, OnlyTheFirst512BytesAreExamined)
{
    const qsizetype lengthToName = META_LATIN1.indexOf("'>");
    for (const auto &[padding, encoding] :
         {std::pair(512 - lengthToName, LATIN1), {513 - lengthToName, MAC_ROMAN}, {512, MAC_ROMAN}}) {
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

TEST(EncodingSources, DeclarationsAndAttributesAreReadAsTheyAreMeant)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/encoding-sources.tsv")) {
        const StringEncoding encoding = row.bytes(2) == "unknown" ? UNKNOWN : row.number(2);
        if (row.bytes(0) == "attribute")
            EXPECT_EQ(encodingFromAttributeValue(row.text(1)), encoding) << row.line;
        else
            EXPECT_EQ(declaredEncoding(row.bytes(1)), encoding) << row.line;
    }
}

TEST(EncodingSources, DeclarationsInWiderUnitsAreFoundInTheMachinesOrder)
{
    constexpr bool MACHINE = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;
    for (const qsizetype size : {2, 4}) {
        EXPECT_EQ(declaredEncoding(asUnits(XML_LATIN2, size, MACHINE)), LATIN2) << size;
        EXPECT_EQ(declaredEncoding(asUnits("x " + META_LATIN1, size, MACHINE) + '<'), LATIN1) << size;
        EXPECT_EQ(declaredEncoding(asUnits("x " + XML_LATIN2, size, MACHINE)), UNKNOWN) << size;
        EXPECT_EQ(declaredEncoding(asUnits(XML_LATIN2, size, !MACHINE)), UNKNOWN) << size;
    }
}

TEST(EncodingSources, RecordedValuesReadBackAsTheSameEncoding)
{
    EXPECT_EQ(attributeValueForEncoding(LATIN1), u"iso-8859-1;513"_s);
    for (const StringEncoding encoding : availableStringEncodings()) {
        // Number 0 can't be told from a value that isn't a number.
        EXPECT_EQ(encodingFromAttributeValue(attributeValueForEncoding(encoding)),
                  encoding == MAC_ROMAN ? UNKNOWN : encoding);
    }
}

} // namespace
} // namespace tidemark::test
