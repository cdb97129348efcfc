#include "reading/TextBlockReader.h"

#include "foundation/AsciiText.h"
#include "foundation/ByteScan.h"
#include "foundation/ExtendedAttributes.h"
#include "foundation/Utf8.h"
#include "reading/EncodingDetection.h"

#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr qsizetype LATER_CAPACITY = 1 << 18;
/// A buffer that a very long line made larger isn't kept for the next file.
constexpr qsizetype LARGEST_KEPT_CAPACITY = 1 << 22;
/// Shorter ones are the line reader's, which takes them in its own way.
constexpr qsizetype SMALLEST_FILE = 4;

int unitSizeOf(EncodingShape shape)
{
    switch (shape) {
    case EncodingShape::Utf16LittleEndian:
    case EncodingShape::Utf16BigEndian:
        return 2;
    case EncodingShape::Utf32LittleEndian:
    case EncodingShape::Utf32BigEndian:
        return 4;
    default:
        return 1;
    }
}

/// Behind the last line feed of whole units; a carriage return by itself doesn't count, which only makes
/// blocks longer.
qsizetype lengthUpToLastLineFeedUnit(const char *bytes, qsizetype count, int unitSize, bool littleEndian)
{
    char lineFeed[4] = {};
    lineFeed[littleEndian ? 0 : unitSize - 1] = '\n';
    for (qsizetype end = count - count % unitSize; end > 0; end -= unitSize) {
        if (std::memcmp(bytes + end - unitSize, lineFeed, size_t(unitSize)) == 0)
            return end;
    }
    return 0;
}

} // namespace

TextBlockReader::TextBlockReader()
    : _buffer(std::make_unique_for_overwrite<char[]>(size_t(FIRST_CAPACITY))), _capacity(FIRST_CAPACITY)
{}

TextBlockReader::~TextBlockReader()
{
    close();
}

void TextBlockReader::close()
{
    if (_descriptor >= 0)
        (void)::close(_descriptor);
    _descriptor = -1;
}

TextBlockReader::Outcome TextBlockReader::open(const FileToRead &file, StringEncoding encoding)
{
    close();
    if (_capacity > LARGEST_KEPT_CAPACITY) {
        _buffer = std::make_unique_for_overwrite<char[]>(size_t(FIRST_CAPACITY));
        _capacity = FIRST_CAPACITY;
    }
    if (_converted.capacity() > LARGEST_KEPT_CAPACITY)
        _converted = QByteArray();
    _start = _end = 0;
    _endOfFile = _hadByteOrderMarker = false;
    _modificationDate.reset();
    _descriptor = file.open();
    struct stat status;
    if (_descriptor < 0 || ::fstat(_descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return Outcome::NeedsLineReader;
    _modificationDate = FileDate::fromStatus(status);
    if (!_fill() || !_settleEncoding(encoding))
        return Outcome::NeedsLineReader;
    return Outcome::Block;
}

/// Reads once into what is free of the buffer, which grows when nothing is. False on a failure.
bool TextBlockReader::_fill()
{
    if (_start > 0) {
        std::memmove(_buffer.get(), _buffer.get() + _start, size_t(_end - _start));
        _end -= _start;
        _start = 0;
    }
    if (_end == _capacity || (_end > 0 && _capacity < LATER_CAPACITY)) {
        const qsizetype capacity = qMax(_end * 2, LATER_CAPACITY);
        auto larger = std::make_unique_for_overwrite<char[]>(size_t(capacity));
        std::memcpy(larger.get(), _buffer.get(), size_t(_end));
        _buffer = std::move(larger);
        _capacity = capacity;
    }
    const ssize_t count = ::read(_descriptor, _buffer.get() + _end, size_t(_capacity - _end));
    if (count < 0)
        return false;
    _endOfFile = count < _capacity - _end;
    _end += count;
    return true;
}

bool TextBlockReader::_settleEncoding(StringEncoding encoding)
{
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING) {
        if (_end < SMALLEST_FILE && _end > 0)
            return false;
        const QByteArrayView bytes(_buffer.get(), _end);
        const ByteOrderMark mark = byteOrderMarkAt(bytes);
        _hadByteOrderMarker = mark.length > 0;
        _start = mark.length;
        encoding = mark.encoding;
        if (!_hadByteOrderMarker)
            encoding = declaredEncoding(bytes.first(qMin(bytes.size(), TD_CONTENT_PROBE_SIZE)));
        if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING) {
            if (const auto value =
                    descriptorExtendedAttributeValueForKey(_descriptor, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING))
                encoding = encodingFromAttributeValue(*value);
        }
        if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING)
            encoding = defaultEncodingIdentifier();
    }
    if (encoding == TD_ENCODING_UTF8) {
        _converter.reset();
        _unitSize = 1;
    } else if (encoding != _encoding || !_converter) {
        _converter = TextConverter::converterForEncoding(encoding);
        if (!_converter || _converter->shape() == EncodingShape::Opaque)
            return false;
        _unitSize = unitSizeOf(_converter->shape());
    }
    _encoding = encoding;
    return true;
}

qsizetype TextBlockReader::_lengthOfWholeLines() const
{
    const char *bytes = _buffer.get() + _start;
    const qsizetype count = _end - _start;
    if (_unitSize > 1) {
        if (_endOfFile)
            return count - count % _unitSize;
        const EncodingShape shape = _converter->shape();
        return lengthUpToLastLineFeedUnit(bytes, count, _unitSize,
                                          shape == EncodingShape::Utf16LittleEndian ||
                                              shape == EncodingShape::Utf32LittleEndian);
    }
    if (_endOfFile || count == 0)
        return count;
    const qsizetype lineFeed = lastIndexOf('\n', QByteArrayView(bytes, count));
    if (lineFeed >= 0)
        return lineFeed + 1;
    // Whether a line feed belongs to the last carriage return shows only with the byte behind it.
    return lastIndexOf('\r', QByteArrayView(bytes, count - 1)) + 1;
}

TextBlockReader::Outcome TextBlockReader::nextBlock(QByteArrayView &block)
{
    qsizetype length = 0;
    while ((length = _lengthOfWholeLines()) == 0) {
        if (_endOfFile)
            return Outcome::EndOfFile;
        if (!_fill())
            return Outcome::NeedsLineReader;
    }
    const QByteArrayView bytes(_buffer.get() + _start, length);
    _start += length;
    return _asUtf8(bytes, block);
}

TextBlockReader::Outcome TextBlockReader::_asUtf8(QByteArrayView bytes, QByteArrayView &block)
{
    const bool isUtf8 = _converter ? _unitSize == 1 && isAscii(bytes) : isValidUtf8(bytes);
    if (isUtf8) {
        block = bytes;
        return Outcome::Block;
    }
    if (!_converter)
        return Outcome::NeedsLineReader;
    const std::optional<QString> text = _converter->decode(bytes);
    const std::optional<QByteArray> utf8 = text ? strictUtf8(*text) : std::nullopt;
    if (!utf8)
        return Outcome::NeedsLineReader;
    _converted = *utf8;
    block = _converted;
    return Outcome::Block;
}

} // namespace tidemark
