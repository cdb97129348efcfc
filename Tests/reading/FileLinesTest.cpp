#include "reading/FileLines.h"

#include "foundation/UserDefaults.h"
#include "reading/TDFileReader.h"
#include "support/Testing.h"

#include <random>

namespace tidemark::test {
namespace {

constexpr qsizetype STRETCH = 1 << 18;

struct Encoded
{
    const char *name;
    StringEncoding encoding;
    QByteArray mark;
};

const Encoded ENCODINGS[] = {{"UTF-8", TD_ENCODING_UTF8, {}},
                             {"UTF-8 with a mark", TD_ENCODING_UTF8, "\xEF\xBB\xBF"},
                             {"UTF-16LE", TD_ENCODING_UTF16_LITTLE_ENDIAN, "\xFF\xFE"},
                             {"UTF-16BE", TD_ENCODING_UTF16_BIG_ENDIAN, "\xFE\xFF"},
                             {"UTF-32LE", TD_ENCODING_UTF32_LITTLE_ENDIAN, QByteArray("\xFF\xFE\0\0", 4)}};

/// Lines with every kind of end, so that some are cut by the end of a stretch.
QString randomText(std::mt19937 &random, qsizetype length)
{
    const QString pieces[] = {u"\n"_s, u"\r"_s, u"\r\n"_s, u"ä"_s, u"\U0001F30A"_s, u"some words "_s};
    QString text;
    while (text.size() < length)
        text += pieces[random() % std::size(pieces)];
    return text;
}

QStringList linesOfReader(const FilePath &path)
{
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(path, TD_FILE_COMMON_UNKNOWN_ENCODING, error);
    QStringList lines;
    while (const auto line = reader->getNextLineWithEOLCharacters(false, error))
        lines << *line;
    EXPECT_FALSE(error);
    (void)reader->closeFile(error);
    return lines;
}

std::unique_ptr<FileLines> lookedThrough(const FilePath &path,
                                         StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING)
{
    TDError error;
    auto lines = FileLines::open(path, encoding, error);
    EXPECT_TRUE(lines);
    while (lines && !lines->isLookedThrough())
        lines->lookFurther();
    return lines;
}

QStringList texts(const QList<FileLine> &lines)
{
    QStringList texts;
    for (const FileLine &line : lines)
        texts << line.text;
    return texts;
}

TEST(FileLines, AreThoseOfTheLineReaderWhereverTheyAre)
{
    const TemporaryFolder folder;
    std::mt19937 random(7);
    for (const Encoded &encoded : ENCODINGS) {
        for (const qsizetype length : {qsizetype(10), STRETCH, STRETCH / 2 + 1, 3 * STRETCH}) {
            const auto converter = TextConverter::converterForEncoding(encoded.encoding);
            QString text = randomText(random, length);
            // A pair that the end of the first stretch parts.
            if (encoded.encoding == TD_ENCODING_UTF8 && length == STRETCH)
                text = QString(STRETCH - 1, u'x') + u"\r\nbehind\n"_s;
            const FilePath path = folder.write("a.txt", encoded.mark + *converter->encode(text));
            UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, qint64(4));
            const QStringList expected = linesOfReader(path);
            const auto lines = lookedThrough(path);
            EXPECT_EQ(lines->knownLines(), expected.size()) << encoded.name << ' ' << length;
            EXPECT_TRUE(texts(lines->lines(1, expected.size() + 5)) == expected)
                << encoded.name << ' ' << length;
            for (int count = 0; count < 20; ++count) {
                const qsizetype first = qsizetype(random()) % expected.size();
                EXPECT_EQ(texts(lines->lines(first + 1, 3)), expected.mid(first, 3)) << encoded.name;
            }
        }
    }
}

TEST(FileLines, AreKnownAsFarAsSomebodyLooked)
{
    const TemporaryFolder folder;
    const FilePath path = folder.write("a.txt", QByteArray("a line of sixteen\n").repeated(100000));
    TDError error;
    const auto lines = FileLines::open(path, TD_ENCODING_UTF8, error);
    EXPECT_TRUE(lines->lines(1, 1).isEmpty());
    lines->lookFurther();
    EXPECT_EQ(lines->lines(14000, 1).size(), 1);
    EXPECT_TRUE(lines->lines(90000, 1).isEmpty());
    EXPECT_NEAR(double(lines->estimatedLines()), 100000, 10);
}

TEST(FileLines, WhatIsNoTextOrTooLongIsShownAsFarAsItCan)
{
    const TemporaryFolder folder;
    const FilePath bytes = folder.write("a.txt", "plain\n\xFF\xFE!\nbehind\n");
    EXPECT_EQ(texts(lookedThrough(bytes, TD_ENCODING_UTF8)->lines(1, 3)),
              QStringList({u"plain"_s, u"\uFFFD\uFFFD!"_s, u"behind"_s}));
    const FilePath longest =
        folder.write("b.txt", "x" + QByteArray("ä").repeated(FileLines::LONGEST_LINE) + "\nbehind\n");
    const QList<FileLine> lines = lookedThrough(longest, TD_ENCODING_UTF8)->lines(1, 2);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_FALSE(lines[0].isWhole);
    EXPECT_EQ(lines[0].text.size(), FileLines::LONGEST_LINE / 2);
    EXPECT_EQ(lines[1].text, u"behind"_s);
    EXPECT_EQ(lookedThrough(folder.write("empty.txt", {}))->knownLines(), 0);
    TDError error;
    EXPECT_FALSE(FileLines::open(folder.path(), TD_ENCODING_UTF8, error));
    EXPECT_TRUE(error);
    EXPECT_FALSE(FileLines::open(folder.path("gone"), TD_ENCODING_UTF8, error));
    EXPECT_TRUE(error);
}

} // namespace
} // namespace tidemark::test
