#include "reading/TDFileReader.h"

#include "reading/TextBlockReader.h"
#include "support/PlainUser.h"
#include "support/Testing.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <limits>
#include <random>

namespace tidemark::test {
namespace {

constexpr StringEncoding LATIN1_ENCODING = 5;

/// How a text lies in a file, written without the converters that the reader uses.
struct Layout
{
    const char *name;
    StringEncoding encoding;
    int size;
    bool littleEndian;

    QByteArray bytes(const QString &text) const
    {
        QByteArray bytes;
        for (const QChar character : text) {
            QByteArray unit(size, '\0');
            const int low = littleEndian ? 0 : size - 1;
            unit[low] = char(character.unicode());
            if (size > 1)
                unit[littleEndian ? 1 : size - 2] = char(character.unicode() >> 8);
            bytes += unit;
        }
        return bytes;
    }
};

const std::array<Layout, 5> LAYOUTS = {{{"Latin 1", LATIN1_ENCODING, 1, true},
                                        {"UTF-16LE", TD_ENCODING_UTF16_LITTLE_ENDIAN, 2, true},
                                        {"UTF-16BE", TD_ENCODING_UTF16_BIG_ENDIAN, 2, false},
                                        {"UTF-32LE", TD_ENCODING_UTF32_LITTLE_ENDIAN, 4, true},
                                        {"UTF-32BE", TD_ENCODING_UTF32_BIG_ENDIAN, 4, false}}};

/// What a reader must make of a text: each line with its line end, which is `ends` characters long.
struct ExpectedLines
{
    explicit ExpectedLines(const QString &text)
    {
        qsizetype start = 0;
        for (qsizetype index = 0; index < text.size(); ++index) {
            const bool pair = text.mid(index, 2) == u"\r\n"_s;
            if (text[index] != u'\r' && text[index] != u'\n')
                continue;
            index += pair ? 1 : 0;
            _add(text.mid(start, index + 1 - start), pair ? 2 : 1);
            start = index + 1;
        }
        if (start < text.size())
            _add(text.mid(start), 0);
    }
    QStringList whole;
    QStringList stripped;

private:
    void _add(const QString &line, int ends)
    {
        whole << line;
        stripped << line.chopped(ends);
    }
};

/// All lines, and behind them the error that reading ended in.
QStringList linesOf(const FilePath &path, StringEncoding encoding, bool keepLineEnds = true)
{
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(path, encoding, error);
    if (!reader)
        return {u"no reader: "_s + error.localizedDescription()};
    QStringList lines;
    while (const std::optional<QString> line = reader->getNextLineWithEOLCharacters(keepLineEnds, error))
        lines << *line;
    if (error)
        lines << u"error %1"_s.arg(error.code());
    EXPECT_TRUE(reader->closeFile(error));
    return lines;
}

class TDFileReaderTest : public testing::Test
{
protected:
    void expectLines(const Layout &layout, const QString &text)
    {
        const FilePath file = folder.write("file", layout.bytes(text));
        const ExpectedLines expected(text);
        ASSERT_EQ(linesOf(file, layout.encoding), expected.whole) << layout.name;
        ASSERT_EQ(linesOf(file, layout.encoding, false), expected.stripped) << layout.name;
    }
    TemporaryFolder folder;
};

TEST_F(TDFileReaderTest, EveryShortTextIsSplitAtLfCrLfAndLoneCr)
{
    EXPECT_EQ(ExpectedLines(u"a\r\nb\rc\nd"_s).whole, QStringList({u"a\r\n"_s, u"b\r"_s, u"c\n"_s, u"d"_s}));
    const QStringView characters = u"a\r\n";
    QStringList texts = {QString()};
    for (qsizetype index = 0; index < texts.size() && texts[index].size() < 5; ++index) {
        for (const QChar character : characters)
            texts << texts[index] + character;
    }
    for (const Layout &layout : LAYOUTS) {
        for (const QString &text : texts)
            expectLines(layout, text);
    }
}

TEST_F(TDFileReaderTest, UnitsThatOnlyHoldTheBytesOfLineEndsAreText)
{
    for (const Layout &layout : LAYOUTS) {
        if (layout.size > 1)
            expectLines(layout, u"\u0A0D\u0D0A\u0D00\u0A00\u0D0D\r\u0A00\r\n\u000D\u0D00\u0A0A\n\u0A0D"_s);
    }
}

TEST_F(TDFileReaderTest, LineEndsAreSeenAcrossTheBordersOfBlocks)
{
    for (const Layout &layout : LAYOUTS) {
        const qsizetype block = TDReadBuffer::BLOCK_SIZE / layout.size;
        for (const QString &tail : {u"\r\n"_s, u"\r"_s, u"\ra"_s, u"\r\ra"_s, u"\n\r\na"_s, u"a\r\nb\nc"_s}) {
            for (const qsizetype before : {0, 1, 2, 3}) {
                expectLines(layout, QString(block - before, u'x') + tail);
                expectLines(layout, u"\n"_s + QString(2 * block - 1 - before, u'x') + tail);
            }
        }
    }
}

TEST_F(TDFileReaderTest, CharactersAndLongLinesCrossTheBordersOfBlocks)
{
    for (const qsizetype before : {0, 1, 2, 3}) {
        const QByteArray line = QByteArray(TDReadBuffer::BLOCK_SIZE - before, 'x') + "\xF0\x9F\x98\x80\n";
        const FilePath file = folder.write("file", line + QByteArray(200000, 'y'));
        EXPECT_TRUE(linesOf(file, TD_ENCODING_UTF8) ==
                    QStringList({QString::fromUtf8(line), QString(200000, u'y')}))
            << before;
    }
}

TEST_F(TDFileReaderTest, LinesThatArePassedOverAreThoseThatWouldHaveBeenRead)
{
    std::mt19937 random(7);
    QString text;
    for (int line = 0; line < 20000; ++line) {
        text += QString(qsizetype(random() % 16), u'x') + (random() % 500 == 0 ? u"\u00E9"_s : QString());
        text += QStringList({u"\n"_s, u"\r\n"_s, u"\r"_s})[qsizetype(random() % 3)];
    }
    const QStringList lines = ExpectedLines(text).whole;
    const FilePath file = folder.write("file", text.toLatin1());
    for (const qint64 most : {qint64(1), qint64(7), std::numeric_limits<qint64>::max()}) {
        TDError error;
        const auto reader = TDFileReader::fileReaderWithFile(file, LATIN1_ENCODING, error);
        qint64 passedCount = 0;
        qint64 count = 0;
        while (const auto line = reader->getNextLineWithEOLCharacters(true, error)) {
            ASSERT_EQ(*line, lines.value(count));
            const PassedLines passed = reader->passAsciiLines(most);
            const QStringList expected = lines.mid(count + 1, passed.count);
            ASSERT_EQ(passed.length, expected.join(QString()).size());
            ASSERT_FALSE(expected.join(QString()).contains(u'\u00E9'));
            ASSERT_LE(passed.count, most);
            passedCount += passed.count;
            count += 1 + passed.count;
        }
        EXPECT_EQ(count, lines.size());
        EXPECT_GT(passedCount, lines.size() / 5);
        EXPECT_TRUE(reader->closeFile(error));
    }
}

TEST_F(TDFileReaderTest, WhatCannotBeReadSaysWhy)
{
    const FilePath missing = folder.path("missing");
    EXPECT_EQ(linesOf(missing, TD_ENCODING_UTF8),
              QStringList({u"no reader: Sorry, a problem occured whilst attempting to open file ‘"_s +
                           missing.displayText() + u"’.\n\nError 2 occured.\n\nError Code: 1"_s}));
    // A folder opens, and fails later.
    for (const StringEncoding encoding : {TD_ENCODING_UTF8, TD_FILE_COMMON_UNKNOWN_ENCODING})
        EXPECT_EQ(linesOf(folder.path(), encoding), QStringList(u"error %1"_s.arg(EISDIR)));
    EXPECT_EQ(TDFileReader::encodingError(TD_ENCODING_UTF8).localizedDescription(),
              u"Sorry, a problem occured whilst attempting to read a file.\n\nThe chosen character encoding "
              "‘Unicode (UTF-8)’ is unable to read the contents of the file. Check in Preferences that the "
              "default character encoding is appropriate for this file.\n\nError Code: 4"_s);
}

TEST_F(TDFileReaderTest, MissingPermissionIsNamed)
{
    const FilePath file = folder.write("file", "a");
    ASSERT_EQ(chmod(file.cString(), 0), 0);
    TDError error;
    {
        const PlainUser user;
        EXPECT_FALSE(TDFileReader::fileReaderWithFile(file, TD_ENCODING_UTF8, error));
    }
    EXPECT_TRUE(error.hasCode(TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR));
    EXPECT_EQ(error.localizedFailureReason(), u"You do not have permission to open the file."_s);
}

TEST_F(TDFileReaderTest, AFileThatGrowsAsFastAsItIsReadEndsWhereItDidWhenItWasOpened)
{
    const QByteArray lines = QByteArray("line\n").repeated(100000);
    const FilePath file = folder.write("file", lines);
    const auto grow = [&file, &lines] {
        std::ofstream(file.cString(), std::ios::app).write(lines.constData(), lines.size());
    };
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(file, TD_ENCODING_UTF8, error);
    int count = 0;
    for (; reader->nextLineBytes(error) && count <= 100000; ++count) {
        if (count % 10000 == 0)
            grow();
    }
    EXPECT_EQ(count, 100000);
    EXPECT_TRUE(reader->closeFile(error));

    writeFile(file, lines);
    TextBlockReader blocks;
    ASSERT_EQ(blocks.open(FileToRead{file}, TD_ENCODING_UTF8), TextBlockReader::Outcome::Block);
    qsizetype size = 0;
    for (QByteArrayView block; blocks.nextBlock(block) == TextBlockReader::Outcome::Block;
         size += block.size()) {
        grow();
        ASSERT_LE(size, lines.size());
    }
    EXPECT_EQ(size, lines.size());
}

} // namespace
} // namespace tidemark::test
