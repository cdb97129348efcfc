#include "reading/FileLines.h"

#include "reading/FileToRead.h"
#include "reading/TDFileReader.h"
#include "text/ByteScan.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tidemark {

namespace {

/// A multiple of every unit.
constexpr qint64 STRETCH = 1 << 18;
/// As much as any encoding takes for a character that is cut in two.
constexpr int LONGEST_CHARACTER = 8;
/// Of lines nobody has seen yet.
constexpr qint64 USUAL_LINE = 40;

int unitSizeOf(StringEncoding encoding)
{
    switch (encoding) {
    case TD_ENCODING_UTF16_LITTLE_ENDIAN:
    case TD_ENCODING_UTF16_BIG_ENDIAN:
        return 2;
    case TD_ENCODING_UTF32_LITTLE_ENDIAN:
    case TD_ENCODING_UTF32_BIG_ENDIAN:
        return 4;
    default:
        return 1;
    }
}

bool isBigEndian(StringEncoding encoding)
{
    return encoding == TD_ENCODING_UTF16_BIG_ENDIAN || encoding == TD_ENCODING_UTF32_BIG_ENDIAN;
}

int lengthOfMark(StringEncoding encoding, int unitSize)
{
    return encoding == TD_ENCODING_UTF8 ? 3 : unitSize;
}

/// The character of the unit at the place, 0 for any that isn't ASCII.
char unitAt(QByteArrayView bytes, qsizetype place, int unitSize, int endUnitByte)
{
    for (int index = 0; index < unitSize; ++index) {
        if (index != endUnitByte && bytes[place + index] != '\0')
            return '\0';
    }
    return bytes[place + endUnitByte];
}

} // namespace

std::unique_ptr<FileLines> FileLines::open(const FilePath &path, StringEncoding encoding, TDError &error)
{
    error.clear();
    struct stat status = {};
    Descriptor descriptor = FileToRead{path}.open();
    if (!descriptor.isOpen() || ::fstat(descriptor.number(), &status) != 0) {
        error = TDFileReader::openError(path, errno);
        return nullptr;
    }
    std::unique_ptr<FileLines> lines(
        new FileLines(std::move(descriptor), status.st_size, FileDate::fromStatus(status)));
    if (!S_ISREG(status.st_mode))
        error = TDFileReader::openError(path, S_ISDIR(status.st_mode) ? EISDIR : ENXIO);
    else
        lines->_settleEncoding(path, encoding, error);
    return error ? nullptr : std::move(lines);
}

FileLines::FileLines(Descriptor descriptor, qint64 size, FileDate date)
    : _descriptor(std::move(descriptor)), _size(size), _date(date)
{}

void FileLines::_settleEncoding(const FilePath &path, StringEncoding encoding, TDError &error)
{
    FileToRead file{path};
    file.openDescriptor = _descriptor.number();
    const auto reader = TDFileReader::fileReaderWithFile(file, encoding, error);
    if (!reader)
        return;
    _encoding = reader->stringEncoding();
    _unitSize = unitSizeOf(_encoding);
    _endUnitByte = isBigEndian(_encoding) ? _unitSize - 1 : 0;
    _textStart = reader->hadByteOrderMarker() ? lengthOfMark(_encoding, _unitSize) : 0;
    _converter = TextConverter::converterForEncoding(_encoding);
    (void)reader->closeFile(error);
    _isLookedThrough = _size <= _textStart;
}

QByteArray FileLines::_read(qint64 offset, qint64 length) const
{
    QByteArray bytes(qsizetype(std::max(qint64(0), std::min(length, _size - offset))), Qt::Uninitialized);
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            ::pread(_descriptor.number(), bytes.data() + done, size_t(bytes.size() - done), offset + done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += count;
    }
    bytes.truncate(done);
    return bytes;
}

/// Of a CR LF it is the LF that counts, also where it is in the next stretch.
qint64 FileLines::_countEndsIn(qint64 number) const
{
    const QByteArray bytes = _read(_textStart + number * STRETCH, STRETCH + 1);
    const QByteArrayView own = QByteArrayView(bytes).first(std::min(bytes.size(), qsizetype(STRETCH)));
    const bool endsLater = bytes.size() > own.size() && own.back() == '\r' && bytes.back() == '\n';
    return countLineEnds(own) - (endsLater ? 1 : 0);
}

const FileLines::Stretch &FileLines::_stretch(qint64 number)
{
    if (_last.number == number)
        return _last;
    _last = {number, {}};
    const qint64 offset = _textStart + number * STRETCH;
    const QByteArray bytes = _read(offset, STRETCH + _unitSize);
    const auto unit = [&](qsizetype place) { return unitAt(bytes, place, _unitSize, _endUnitByte); };
    const qsizetype end = std::min(bytes.size(), qsizetype(STRETCH));
    for (qsizetype place = 0; place + _unitSize <= end; place += _unitSize) {
        if (_unitSize == 1) {
            const qsizetype distance = indexOfLineEnd(QByteArrayView(bytes).first(end).sliced(place));
            if (distance < 0)
                break;
            place += distance;
        }
        const char character = unit(place);
        const qsizetype next = place + _unitSize;
        const bool endsLater = character == '\r' && next + _unitSize <= bytes.size() && unit(next) == '\n';
        if ((character == '\n' || character == '\r') && !endsLater)
            _last.starts.push_back(offset + next);
    }
    return _last;
}

void FileLines::lookFurther()
{
    if (_isLookedThrough)
        return;
    const auto number = qint64(_endsUntil.size());
    const qint64 ends = _unitSize == 1 ? _countEndsIn(number) : qint64(_stretch(number).starts.size());
    _endsUntil.push_back(_knownLines + ends);
    _knownLines = _endsUntil.back();
    _isLookedThrough = _textStart + (number + 1) * STRETCH >= _size;
    // What follows the last line end is a line unless it is nothing.
    if (_isLookedThrough && _startOfLine(_knownLines).value_or(_size) < _size)
        ++_knownLines;
}

qint64 FileLines::estimatedLines() const
{
    if (_isLookedThrough)
        return _knownLines;
    const qint64 lookedAt = qint64(_endsUntil.size()) * STRETCH;
    const double perByte = _knownLines > 0 ? double(_knownLines) / double(lookedAt) : 1.0 / USUAL_LINE;
    return _knownLines + qint64(double(_size - _textStart - lookedAt) * perByte);
}

/// Of the line that so many lines are before; nothing where it isn't known.
std::optional<qint64> FileLines::_startOfLine(qint64 index)
{
    if (index == 0)
        return _textStart;
    const auto stretch = std::lower_bound(_endsUntil.begin(), _endsUntil.end(), index);
    if (stretch == _endsUntil.end())
        return {};
    const qint64 before = stretch == _endsUntil.begin() ? 0 : *(stretch - 1);
    const std::vector<qint64> &starts = _stretch(stretch - _endsUntil.begin()).starts;
    const auto place = size_t(index - before - 1);
    return place < starts.size() ? std::optional(starts[place]) : std::nullopt;
}

QList<FileLine> FileLines::lines(qint64 first, qint64 count)
{
    QList<FileLine> lines;
    const qint64 end = std::min(first - 1 + count, _knownLines);
    std::optional<qint64> start = first >= 1 && first <= end ? _startOfLine(first - 1) : std::nullopt;
    for (qint64 index = first; index <= end && start; ++index) {
        const std::optional<qint64> next = _startOfLine(index);
        lines << _line(*start, next.value_or(_size));
        start = next;
    }
    return lines;
}

/// One line after the other is asked for, as a rule.
QByteArray FileLines::_readNear(qint64 offset, qint64 length)
{
    if (length > STRETCH)
        return _read(offset, length);
    if (offset < _nearOffset || offset + length > _nearOffset + _near.size()) {
        _near = _read(offset, STRETCH);
        _nearOffset = offset;
    }
    return _near.mid(offset - _nearOffset, length);
}

FileLine FileLines::_line(qint64 start, qint64 end)
{
    const bool isWhole = end - start <= LONGEST_LINE;
    QByteArray bytes = _readNear(start, isWhole ? end - start : LONGEST_LINE);
    const auto endsWith = [&](char character) {
        return bytes.size() >= _unitSize &&
               unitAt(bytes, bytes.size() - _unitSize, _unitSize, _endUnitByte) == character;
    };
    for (const char character : {'\n', '\r'}) {
        if (isWhole && endsWith(character))
            bytes.chop(_unitSize);
    }
    if (isWhole)
        return {_decoded(bytes), true};
    for (int cut = 0; cut < LONGEST_CHARACTER && _converter; ++cut) {
        if (const auto text = _converter->decode(QByteArrayView(bytes).chopped(cut)))
            return {*text, false};
    }
    return {_decoded(bytes), false};
}

QString FileLines::_decoded(QByteArrayView bytes) const
{
    if (_converter) {
        if (const auto text = _converter->decode(bytes))
            return *text;
    }
    QString text;
    text.reserve(bytes.size() / _unitSize);
    for (qsizetype place = 0; place + _unitSize <= bytes.size(); place += _unitSize) {
        const char character = unitAt(bytes, place, _unitSize, _endUnitByte);
        const bool isAscii = character > 0;
        text += isAscii ? QChar::fromLatin1(character) : QChar(QChar::ReplacementCharacter);
    }
    return text;
}

} // namespace tidemark
