#include "reading/TextBlockReader.h"

#include "foundation/StopFlag.h"
#include "reading/TDFileReader.h"
#include "text/ByteScan.h"
#include "text/Utf8.h"

#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr qsizetype LATER_CAPACITY = 1 << 18;
/// One read of so much takes about a millisecond, and can't be broken off.
constexpr qsizetype LARGEST_READ = 1 << 22;
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

/// Behind the last line feed of whole units that ends behind `start`; a carriage return by itself doesn't
/// count, which only makes blocks longer.
qsizetype lengthUpToLastLineFeedUnit(const char *bytes, qsizetype start, qsizetype count, int unitSize,
                                     bool littleEndian)
{
    char lineFeed[4] = {};
    lineFeed[littleEndian ? 0 : unitSize - 1] = '\n';
    for (qsizetype end = count - count % unitSize; end > start; end -= unitSize) {
        if (std::memcmp(bytes + end - unitSize, lineFeed, size_t(unitSize)) == 0)
            return end;
    }
    return 0;
}

/// About so many bytes are decoded at a time, unless they are ASCII: enough to make each call worth its
/// while.
constexpr qsizetype DECODED_LENGTH = 4096;

/// As many lines as fit into a piece to be decoded, but at least one; everything when no line feed is left.
qsizetype lengthOfLinesToDecode(QByteArrayView bytes)
{
    const qsizetype lineFeed = lastIndexOf('\n', bytes.first(qMin(bytes.size(), DECODED_LENGTH)));
    if (lineFeed >= 0)
        return lineFeed + 1;
    const void *next = std::memchr(bytes.data(), '\n', size_t(bytes.size()));
    return next != nullptr ? static_cast<const char *>(next) + 1 - bytes.data() : bytes.size();
}

} // namespace

TextBlockReader::TextBlockReader()
{
    _allocate(FIRST_CAPACITY);
}

void TextBlockReader::close()
{
    (void)_descriptor.close();
}

TextBlockReader::Outcome TextBlockReader::open(const FileToRead &file, StringEncoding encoding)
{
    close();
    if (_capacity > LARGEST_KEPT_CAPACITY)
        _allocate(FIRST_CAPACITY);
    if (_converted.capacity() > LARGEST_KEPT_CAPACITY)
        _converted = QByteArray();
    _start = _end = _withoutLineEnd = 0;
    _endOfFile = _hadByteOrderMarker = false;
    _modificationDate.reset();
    _descriptor = file.open();
    struct stat status;
    if (!_descriptor.isOpen() || ::fstat(_descriptor.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return Outcome::NeedsLineReader;
    if (file.gate && !file.gate->admits(file, status))
        return Outcome::EndOfFile;
    _modificationDate = FileDate::fromStatus(status);
    _device = status.st_dev;
    _bytesLeft = bytesToRead(status);
#ifdef POSIX_FADV_SEQUENTIAL
    // The system then reads further ahead of us.
    if (status.st_size > LARGEST_READ)
        (void)::posix_fadvise(_descriptor.number(), 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
    if (!_fill() || !_settleEncoding(encoding))
        return Outcome::NeedsLineReader;
    return Outcome::Block;
}

void TextBlockReader::_allocate(qsizetype capacity)
{
    char *larger = static_cast<char *>(std::realloc(_buffer.get(), size_t(capacity)));
    if (larger == nullptr)
        throw std::bad_alloc();
    (void)_buffer.release();
    _buffer.reset(larger);
    _capacity = capacity;
}

/// Reads once into what is free of the buffer, which grows when nothing is. False on a failure, and for a
/// line that is too long.
bool TextBlockReader::_fill()
{
    if (_start > 0) {
        std::memmove(_buffer.get(), _buffer.get() + _start, size_t(_end - _start));
        _end -= _start;
        _start = 0;
    }
    if (_end >= TD_LONGEST_READ_LINE)
        return false;
    if (_end == _capacity || (_end > 0 && _capacity < LATER_CAPACITY))
        _allocate(qMax(_end * 2, LATER_CAPACITY));
    checkForStop();
    const qsizetype asked = qMin<qint64>(qMin(_capacity - _end, LARGEST_READ), _bytesLeft);
    const ssize_t count = ::read(_descriptor.number(), _buffer.get() + _end, size_t(asked));
    if (count < 0)
        return false;
    _bytesLeft -= count;
    _endOfFile = count < asked || _bytesLeft == 0;
    _end += count;
    return true;
}

bool TextBlockReader::_settleEncoding(StringEncoding encoding)
{
    _encodingSource = EncodingSource::Default;
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING) {
        if (_end < SMALLEST_FILE && _end > 0)
            return false;
        const QByteArrayView bytes(_buffer.get(), _end);
        const ByteOrderMark mark = byteOrderMarkAt(bytes);
        _hadByteOrderMarker = mark.length > 0;
        _start = mark.length;
        const SettledEncoding settled = encodingOfContent(mark, bytes.sliced(_start), [this] {
            return _attributes.value(_descriptor.number(), _device, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
        });
        encoding = settled.encoding;
        _encodingSource = settled.source;
    }
    if (encoding == TD_ENCODING_UTF8) {
        _converter.reset();
        _unitSize = 1;
    } else if (encoding != _encoding || !_converter) {
        _converter = TextConverter::converterForEncoding(encoding);
        if (!_converter || !_converter->keepsLines()) {
            // The next file of the encoding before must not be taken for one of this.
            _converter.reset();
            return false;
        }
        _unitSize = unitSizeOf(_converter->shape());
    }
    _encoding = encoding;
    return true;
}

qsizetype TextBlockReader::_lengthOfWholeLines() const
{
    const QByteArrayView bytes(_buffer.get() + _start, _end - _start);
    if (_unitSize > 1)
        return _lengthOfWholeLinesOfUnits(bytes);
    if (_endOfFile || bytes.isEmpty())
        return bytes.size();
    const qsizetype lineFeed = lastIndexOf('\n', bytes.sliced(_withoutLineEnd));
    if (lineFeed >= 0)
        return _withoutLineEnd + lineFeed + 1;
    // Whether a line feed belongs to the last carriage return shows only with the byte behind it.
    const qsizetype unsettled = qMax(_withoutLineEnd - 1, qsizetype(0));
    const qsizetype carriageReturn = lastIndexOf('\r', bytes.sliced(unsettled).chopped(1));
    return carriageReturn < 0 ? 0 : unsettled + carriageReturn + 1;
}

qsizetype TextBlockReader::_lengthOfWholeLinesOfUnits(QByteArrayView bytes) const
{
    if (_endOfFile)
        return bytes.size() - bytes.size() % _unitSize;
    const EncodingShape shape = _converter->shape();
    return lengthUpToLastLineFeedUnit(
        bytes.data(), _withoutLineEnd - _withoutLineEnd % _unitSize, bytes.size(), _unitSize,
        shape == EncodingShape::Utf16LittleEndian || shape == EncodingShape::Utf32LittleEndian);
}

TextBlockReader::Outcome TextBlockReader::nextBlock(QByteArrayView &block)
{
    qsizetype length = 0;
    while ((length = _lengthOfWholeLines()) == 0) {
        if (_endOfFile)
            return Outcome::EndOfFile;
        _withoutLineEnd = _end - _start;
        if (!_fill())
            return Outcome::NeedsLineReader;
    }
    const QByteArrayView bytes(_buffer.get() + _start, length);
    _start += length;
    _withoutLineEnd = 0;
    return _asUtf8(bytes, block);
}

TextBlockReader::Outcome TextBlockReader::_asUtf8(QByteArrayView bytes, QByteArrayView &block)
{
    const bool isUtf8 = _converter ? _converter->keepsAscii() && isAscii(bytes) : isValidUtf8(bytes);
    if (isUtf8) {
        block = bytes;
        return Outcome::Block;
    }
    if (!_converter || !_convert(bytes))
        return Outcome::NeedsLineReader;
    block = _converted;
    return Outcome::Block;
}

/// False when the encoding doesn't allow the bytes.
bool TextBlockReader::_convert(QByteArrayView bytes)
{
    _converted.resize(0);
    while (!bytes.isEmpty()) {
        const qsizetype length = _converter->keepsAscii() ? lengthOfLinesToDecode(bytes) : bytes.size();
        const QByteArrayView piece = bytes.first(length);
        bytes = bytes.sliced(length);
        // Most of most files is.
        if (_converter->keepsAscii() && isAscii(piece)) {
            _converted.append(piece);
            continue;
        }
        const std::optional<QString> text = _converter->decode(piece);
        const std::optional<QByteArray> utf8 = text ? strictUtf8(*text) : std::nullopt;
        if (!utf8)
            return false;
        _converted.append(*utf8);
    }
    return true;
}

} // namespace tidemark
