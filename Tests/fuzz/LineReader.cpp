// The two readers agree, and no byte of a file gets lost.

#include "Fuzzing.h"

#include "foundation/UserDefaults.h"
#include "reading/EncodingDetection.h"
#include "reading/TDFileReader.h"
#include "reading/TextBlockReader.h"
#include "text/Utf8.h"

namespace tidemark::fuzz {

namespace {

struct Lines
{
    QByteArray bytes;
    QByteArray text; ///< in UTF-8
    bool failed = false;
    bool hadMark = false;
    StringEncoding encoding = 0;
};

Lines linesOf(const FilePath &path, StringEncoding encoding)
{
    Lines lines;
    TDError error;
    const auto reader = TDFileReader::fileReaderWithFile(path, encoding, error);
    require(reader != nullptr, "the file can be opened");
    lines.hadMark = reader->hadByteOrderMarker();
    lines.encoding = reader->stringEncoding();
    while (const std::optional<LineBytes> line = reader->nextLineBytes(error)) {
        require(!line->bytes.isEmpty(), "no line is empty");
        lines.bytes += line->bytes;
        const std::optional<QString> text = reader->decode(line->bytes, error);
        require(text.has_value() == error.isNull(), "a line or an error");
        if (!text)
            break;
        lines.text += generalizedUtf8(*text);
    }
    lines.failed = !error.isNull();
    require(!lines.failed || error.hasCode(TD_ERROR_CODE_TD_FILE_READER_FILE_ENCODING_ERROR),
            "only decoding fails");
    require(reader->closeFile(error), "the file can be closed");
    return lines;
}

void checkBytes(const QByteArray &content, StringEncoding encoding, const Lines &lines)
{
    // Detection has a quirk of its own with files that are shorter than a mark.
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING && content.size() < 4)
        return;
    require(!lines.hadMark || encoding == TD_FILE_COMMON_UNKNOWN_ENCODING, "a mark is found by detection");
    const qsizetype start = lines.hadMark ? byteOrderMarkAt(content).length : 0;
    require(content.sliced(start).startsWith(lines.bytes), "lines are the bytes behind the mark");
    const qsizetype rest = content.size() - start - lines.bytes.size();
    require(lines.failed || rest < 4, "every byte but a partial unit is in a line");
}

void checkBlocks(TextBlockReader &reader, const FilePath &path, StringEncoding encoding, const Lines &lines)
{
    TextBlockReader::Outcome outcome = reader.open(FileToRead{path, -1, {}}, encoding);
    QByteArray text;
    QByteArrayView block;
    while (outcome != TextBlockReader::Outcome::NeedsLineReader &&
           (outcome = reader.nextBlock(block)) == TextBlockReader::Outcome::Block) {
        require(!block.isEmpty(), "no block is empty");
        require(text.isEmpty() || text.endsWith('\n') || text.endsWith('\r'), "blocks end with lines");
        text += block;
    }
    if (outcome == TextBlockReader::Outcome::EndOfFile) {
        require(!lines.failed, "what a line can't be decoded from isn't delivered in blocks",
                QByteArray::number(lines.encoding, 16));
        require(reader.hadByteOrderMarker() == lines.hadMark, "the same mark");
        require(text == lines.text, "the same text", QByteArray::number(lines.encoding, 16));
    }
    require(lines.failed || lines.text.startsWith(text), "blocks are a first part of the lines");
    reader.close();
}

/// Puts the interesting bytes where the readers' buffers end.
QByteArray padding(Input &input)
{
    constexpr unsigned BUFFERS[32] = {40'960, 131'072};
    const unsigned buffer = BUFFERS[input.below(32)];
    QByteArray bytes;
    if (buffer > 0)
        bytes = QByteArray(qsizetype(buffer - input.below(12)), 'x');
    if (input.flag()) {
        for (qsizetype index = 99; index < bytes.size(); index += 100)
            bytes[index] = '\n';
    }
    return bytes;
}

} // namespace

void run(Input &input)
{
    TextBlockReader blocks;
    // What one file leaves behind must not show in the next one.
    for (int count = 0; count < 4 && !input.isEmpty(); ++count) {
        const StringEncoding known = input.encoding();
        const StringEncoding encoding = input.flag() ? known : TD_FILE_COMMON_UNKNOWN_ENCODING;
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, known);
        const QByteArray start = padding(input);
        const QByteArray content = start + input.some();
        const FilePath path = writeFile("file", content);
        const Lines lines = linesOf(path, encoding);
        checkBytes(content, encoding, lines);
        checkBlocks(blocks, path, encoding, lines);
    }
}

} // namespace tidemark::fuzz
