#include "reading/TextBlockReader.h"

#include "foundation/StopFlag.h"
#include "reading/TDFileReader.h"
#include "text/ByteScan.h"

#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tidemark {

namespace {

constexpr qsizetype LATER_CAPACITY = 1 << 18;
/// One read of so much takes about a millisecond, and can't be broken off.
constexpr qsizetype LARGEST_READ = 1 << 22;
/// A buffer that a very long line made larger isn't kept for the next file.
constexpr qsizetype LARGEST_KEPT_CAPACITY = 1 << 22;
/// Shorter ones are the line reader's, which takes them in its own way.
constexpr qsizetype SMALLEST_FILE = 4;
/// No file system's dates are coarser.
constexpr qint64 COARSEST_DATE = 2'000'000'000;

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

} // namespace

void TextBlockReader::Buffer::setCapacity(qsizetype capacity)
{
    char *larger = static_cast<char *>(std::realloc(_memory.get(), size_t(capacity)));
    if (larger == nullptr)
        throw std::bad_alloc();
    (void)_memory.release();
    _memory.reset(larger);
    _capacity = capacity;
}

TextBlockReader::TextBlockReader()
{
    _buffer.setCapacity(FIRST_CAPACITY);
}

void TextBlockReader::close()
{
    (void)_descriptor.close();
}

TextBlockReader::Outcome TextBlockReader::open(const FileToRead &file, StringEncoding encoding)
{
    close();
    if (_buffer.capacity() > LARGEST_KEPT_CAPACITY)
        _buffer.setCapacity(FIRST_CAPACITY);
    _decoder.shrink();
    _start = _end = _withoutLineEnd = 0;
    _endOfFile = _hadByteOrderMarker = false;
    _modificationDate.reset();
    _readUnaskedAt.reset();
    if (!_readUnasked(file)) {
        if (const Outcome outcome = _askStatus(file); outcome != Outcome::Block)
            return outcome;
        if (!_fill())
            return Outcome::NeedsLineReader;
    }
    return _settleEncoding(encoding) ? Outcome::Block : Outcome::NeedsLineReader;
}

/// One read gets all of a small file, and tells that it does. It is one at a place, which takes nothing from
/// a pipe that may stand there by now. False, and nothing is lost, where that isn't enough.
bool TextBlockReader::_readUnasked(const FileToRead &file)
{
    if (!file.isReadUnasked())
        return false;
    checkForStop();
    const FileDate now = FileDate::now();
    _descriptor = file.openListed();
    if (!_descriptor.isOpen()) {
        if (file.gate)
            file.gate->didNotOpen(file);
        return false;
    }
    const qsizetype asked = qMin(_buffer.capacity(), LARGEST_READ);
    const ssize_t count = ::pread(_descriptor.number(), _buffer.data(), size_t(asked), 0);
    if (count < 0 || count == asked)
        return false;
    _end = count;
    _bytesLeft = 0;
    _endOfFile = true;
    _device = file.listed->device;
    _readUnaskedAt = now;
    return true;
}

TextBlockReader::Outcome TextBlockReader::_askStatus(const FileToRead &file)
{
    if (!_descriptor.isOpen())
        _descriptor = file.open();
    if (!_descriptor.isOpen() && file.gate && file.listed)
        file.gate->didNotOpen(file);
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
    return Outcome::Block;
}

bool TextBlockReader::settleDate()
{
    if (!_readUnaskedAt)
        return true;
    struct stat status;
    if (::fstat(_descriptor.number(), &status) != 0)
        return false;
    const FileDate date = FileDate::fromStatus(status);
    const FileDate settledBy{_readUnaskedAt->nanoseconds - COARSEST_DATE};
    if (date >= settledBy || FileDate::ofStatusChange(status) >= settledBy)
        return false;
    _modificationDate = date;
    return true;
}

/// Reads once into what is free of the buffer, which grows when nothing is. False on a failure, and for a
/// line that is too long.
bool TextBlockReader::_fill()
{
    if (_start > 0) {
        std::memmove(_buffer.data(), _buffer.data() + _start, size_t(_end - _start));
        _end -= _start;
        _start = 0;
    }
    if (_end >= TD_LONGEST_READ_LINE)
        return false;
    if (_end == _buffer.capacity() || (_end > 0 && _buffer.capacity() < LATER_CAPACITY))
        _buffer.setCapacity(qMax(_end * 2, LATER_CAPACITY));
    checkForStop();
    const qsizetype asked = qMin<qint64>(qMin(_buffer.capacity() - _end, LARGEST_READ), _bytesLeft);
    const ssize_t count = ::read(_descriptor.number(), _buffer.data() + _end, size_t(asked));
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
        const QByteArrayView bytes(_buffer.data(), _end);
        const ByteOrderMark mark = byteOrderMarkAt(bytes);
        _hadByteOrderMarker = mark.length > 0;
        _start = mark.length;
        const SettledEncoding settled = encodingOfContent(mark, bytes.sliced(_start), [this] {
            return _attributes.value(_descriptor.number(), _device, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
        });
        encoding = settled.encoding;
        _encodingSource = settled.source;
    }
    if (!_decoder.setEncoding(encoding))
        return false;
    _encoding = encoding;
    return true;
}

qsizetype TextBlockReader::_lengthOfWholeLines() const
{
    const QByteArrayView bytes(_buffer.data() + _start, _end - _start);
    if (_decoder.unitSize() > 1)
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
    const int unitSize = _decoder.unitSize();
    if (_endOfFile)
        return bytes.size() - bytes.size() % unitSize;
    return lengthUpToLastLineFeedUnit(bytes.data(), _withoutLineEnd - _withoutLineEnd % unitSize,
                                      bytes.size(), unitSize, _decoder.isLittleEndian());
}

TextBlockReader::Outcome TextBlockReader::_nextLines(QByteArrayView &bytes)
{
    qsizetype length = 0;
    while ((length = _lengthOfWholeLines()) == 0) {
        if (_endOfFile)
            return Outcome::EndOfFile;
        _withoutLineEnd = _end - _start;
        if (!_fill())
            return Outcome::NeedsLineReader;
    }
    bytes = QByteArrayView(_buffer.data() + _start, length);
    _start += length;
    _withoutLineEnd = 0;
    return Outcome::Block;
}

TextBlockReader::Outcome TextBlockReader::nextBlock(QByteArrayView &block)
{
    QByteArrayView bytes;
    const Outcome outcome = _nextLines(bytes);
    if (outcome != Outcome::Block)
        return outcome;
    return _decoder.toUtf8(bytes, block) ? Outcome::Block : Outcome::NeedsLineReader;
}

TextBlockReader::Outcome TextBlockReader::takeBytes(Buffer &buffer, QByteArrayView &bytes)
{
    const Outcome outcome = _nextLines(bytes);
    if (outcome != Outcome::Block)
        return outcome;
    const qsizetype rest = _end - _start;
    if (buffer.capacity() < qMax(rest, LATER_CAPACITY))
        buffer.setCapacity(qMax(rest, LATER_CAPACITY));
    std::memcpy(buffer.data(), _buffer.data() + _start, size_t(rest));
    std::swap(_buffer, buffer);
    _start = 0;
    _end = rest;
    return Outcome::Block;
}

} // namespace tidemark
