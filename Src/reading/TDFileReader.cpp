#include "reading/TDFileReader.h"

#include "foundation/AssertionHandler.h"
#include "foundation/ExtendedAttributes.h"
#include "foundation/LocalizedText.h"
#include "foundation/StopFlag.h"
#include "text/ByteScan.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <sys/stat.h>
#include <utility>

namespace tidemark {

namespace {

constexpr qsizetype LINE_CAPACITY = 256;
constexpr qsizetype ASCII_STRETCH = 4096;

bool isFixedByteOrder(StringEncoding encoding)
{
    return encoding == TD_ENCODING_UTF16_LITTLE_ENDIAN || encoding == TD_ENCODING_UTF16_BIG_ENDIAN ||
           encoding == TD_ENCODING_UTF32_LITTLE_ENDIAN || encoding == TD_ENCODING_UTF32_BIG_ENDIAN;
}

bool isLittleEndian(StringEncoding encoding)
{
    return encoding == TD_ENCODING_UTF16_LITTLE_ENDIAN || encoding == TD_ENCODING_UTF32_LITTLE_ENDIAN;
}

/// The index of the first unit that is a CR or LF, or -1. `Unit` values are as they lie in memory.
template <typename Unit>
qsizetype indexOfUnit(QByteArrayView bytes, Unit carriageReturn, Unit lineFeed)
{
    const qsizetype count = bytes.size() / qsizetype(sizeof(Unit));
    for (qsizetype index = 0; index < count; ++index) {
        Unit unit = 0;
        std::memcpy(&unit, bytes.data() + index * qsizetype(sizeof(Unit)), sizeof unit);
        if (unit == carriageReturn || unit == lineFeed)
            return index;
    }
    return -1;
}

template <typename Unit>
Unit unitInMemory(char character, bool littleEndian)
{
    std::array<char, sizeof(Unit)> bytes = {};
    (littleEndian ? bytes.front() : bytes.back()) = character;
    return std::bit_cast<Unit>(bytes);
}

template <typename Unit>
qsizetype indexOfLineEndUnit(QByteArrayView bytes, bool littleEndian)
{
    return indexOfUnit(bytes, unitInMemory<Unit>('\r', littleEndian), unitInMemory<Unit>('\n', littleEndian));
}

/// How far the lines reach that end in the bytes for certain.
qsizetype lengthOfWholeLines(QByteArrayView bytes)
{
    qsizetype length = bytes.size();
    // Whether an LF belongs to a CR at the end isn't known yet.
    if (bytes.endsWith('\r'))
        --length;
    while (length > 0 && bytes[length - 1] != '\n' && bytes[length - 1] != '\r')
        --length;
    return length;
}

/// So many lines, all of which end in the bytes.
PassedLines firstLines(QByteArrayView bytes, qint64 count)
{
    PassedLines lines;
    while (lines.count < count) {
        const QByteArrayView rest = bytes.sliced(lines.length);
        const qsizetype end = indexOfLineEnd(rest);
        const bool isPair = rest[end] == '\r' && rest.sliced(end + 1).startsWith('\n');
        lines.length += end + (isPair ? 2 : 1);
        ++lines.count;
    }
    return lines;
}

/// None, with errno, where it can't be opened.
Descriptor openToRead(const FileToRead &file, struct stat &status)
{
    Descriptor descriptor = file.open();
    if (!descriptor.isOpen() || ::fstat(descriptor.number(), &status) != 0 || isSafeToRead(status))
        return descriptor;
    errno = ENXIO;
    return Descriptor();
}

QString reasonOfOpenError(int errorNumber)
{
    switch (errorNumber) {
    case EACCES:
        return localizedString("You do not have permission to open the file.");
    case ENXIO:
        return localizedString("It is a device, a pipe or a socket, and only files can be searched.");
    default:
        return formatted(localizedString("Error %d occured."), {errorNumber});
    }
}

} // namespace

TDFileReader::TDFileReader(Descriptor descriptor, qint64 mostBytes, const FileToRead &file,
                           StringEncoding encoding)
    : _readBuffer(file.content ? TDReadBuffer(std::move(descriptor), *file.content)
                               : TDReadBuffer(std::move(descriptor), mostBytes)),
      _stringEncoding(encoding), _path(file.path)
{
    _line.reserve(LINE_CAPACITY);
}

std::unique_ptr<TDFileReader> TDFileReader::fileReaderWithFile(const FilePath &path, StringEncoding encoding,
                                                               TDError &error)
{
    return fileReaderWithFile(FileToRead{path}, encoding, error);
}

std::unique_ptr<TDFileReader> TDFileReader::fileReaderWithFile(const FileToRead &file,
                                                               StringEncoding encoding, TDError &error)
{
    error.clear();
    struct stat status = {};
    Descriptor descriptor = openToRead(file, status);
    if (!descriptor.isOpen()) {
        error = openError(file.path, errno);
        return nullptr;
    }
    std::unique_ptr<TDFileReader> reader(
        new TDFileReader(std::move(descriptor), bytesToRead(status), file, encoding));
    reader->_probeForEncoding();
    reader->_converter = TextConverter::converterForEncoding(reader->_stringEncoding);
    reader->_unitSize = reader->_sizeOfUnit();
    return reader;
}

TDError TDFileReader::openError(const FilePath &path, int errorNumber)
{
    const QString description =
        formatted(localizedString("Sorry, a problem occured whilst attempting to open file ‘%@’."),
                  {path.displayText()});
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR, description, reasonOfOpenError(errorNumber), {},
        {{TDError::UNDERLYING_ERROR_KEY, QVariant::fromValue(TDError::posixError(errorNumber))}});
}

TDError TDFileReader::excessiveLineError(const FilePath &path)
{
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR,
        formatted(localizedString("Sorry, it was not possible to search file ‘%@’."), {path.displayText()}),
        localizedString("Search results cannot be shown and replacements will not occur for this file as it "
                        "contains lines of excessive length."));
}

TDError TDFileReader::encodingError(StringEncoding encoding)
{
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_FILE_READER_FILE_ENCODING_ERROR,
        localizedString("Sorry, a problem occured whilst attempting to read a file."),
        formatted(
            localizedString("The chosen character encoding ‘%@’ is unable to read the contents of the file. "
                            "Check in Preferences that the default character encoding is appropriate for "
                            "this file."),
            {localizedNameOfStringEncoding(encoding)}));
}

void TDFileReader::_probeForEncoding()
{
    if (_stringEncoding != TD_FILE_COMMON_UNKNOWN_ENCODING)
        return;
    const ByteOrderMark mark = _takeByteOrderMark();
    _hadByteOrderMarker = mark.length > 0;
    // The open file's attribute, also where a link led to it: the path may lead elsewhere by now.
    const SettledEncoding settled =
        encodingOfContent(mark, _lookAhead(_hadByteOrderMarker ? 0 : TD_CONTENT_PROBE_SIZE), [this] {
            return descriptorExtendedAttributeValueForKey(_readBuffer.descriptor(),
                                                          TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
        });
    _stringEncoding = settled.encoding;
    _encodingSource = settled.source;
}

ByteOrderMark TDFileReader::_takeByteOrderMark()
{
    constexpr int SLOTS = 4;
    char slots[SLOTS] = {};
    TDError ignored;
    int count = 0;
    while (count < SLOTS && _readBuffer.read(slots[count], ignored))
        ++count;
    const ByteOrderMark mark = byteOrderMarkAt(QByteArrayView(slots, count));
    // Given back from the last slot downward, also when fewer were filled: a shorter file then begins with
    // unfilled slots in place of its own first bytes.
    for (int slot = SLOTS - 1; slot >= SLOTS - (count - mark.length); --slot)
        _readBuffer.pushBack(slots[slot]);
    return mark;
}

/// The bytes that are read next; none when reading fails.
QByteArray TDFileReader::_lookAhead(qsizetype most)
{
    if (const QByteArrayView atHand = _readBuffer.atHand(); atHand.size() >= most)
        return atHand.first(most).toByteArray();
    QByteArray bytes(most, Qt::Uninitialized);
    char *const data = bytes.data();
    TDError error;
    qsizetype count = 0;
    while (count < most && _readBuffer.read(data[count], error))
        ++count;
    for (qsizetype index = count - 1; index >= 0; --index)
        _readBuffer.pushBack(data[index]);
    bytes.truncate(error ? 0 : count);
    return bytes;
}

int TDFileReader::_sizeOfUnit() const
{
    if (!isFixedByteOrder(_stringEncoding))
        return 1;
    const bool utf16 =
        _stringEncoding == TD_ENCODING_UTF16_LITTLE_ENDIAN || _stringEncoding == TD_ENCODING_UTF16_BIG_ENDIAN;
    return utf16 ? 2 : 4;
}

std::optional<QString> TDFileReader::getNextLineWithEOLCharacters(bool keepEOLCharacters, TDError &error)
{
    const std::optional<LineBytes> line = nextLineBytes(error);
    if (!line)
        return {};
    std::optional<QString> text = decode(line->bytes, error);
    if (text && !keepEOLCharacters)
        text->chop(line->eolCount);
    return text;
}

std::optional<LineBytes> TDFileReader::nextLineBytes(TDError &error)
{
    return _unitSize == 1 ? _getNextLineMBCSWithError(error) : _getNextLineUCSWithError(error);
}

PassedLines TDFileReader::passAsciiLines(qint64 most)
{
    PassedLines passed;
    if (_unitSize != 1 || !_converter || _converter->shape() != EncodingShape::AsciiBytes)
        return passed;
    // Little enough to look at in vain for each line of a text that isn't ASCII.
    const QByteArrayView bytes = _readBuffer.atHand().first(qMin(_readBuffer.atHand().size(), ASCII_STRETCH));
    if (!isAscii(bytes))
        return passed;
    if (const qsizetype length = lengthOfWholeLines(bytes); length > 0) {
        const qint64 count = countLineEnds(bytes.first(length));
        passed = count <= most ? PassedLines{count, length} : firstLines(bytes, most);
    }
    _readBuffer.consume(passed.length);
    return passed;
}

std::optional<QString> TDFileReader::decode(QByteArrayView bytes, TDError &error)
{
    std::optional<QString> text;
    if (_converter)
        text = _converter->decode(bytes);
    if (!text)
        error = encodingError(_stringEncoding);
    return text;
}

std::optional<LineBytes> TDFileReader::_getNextLineMBCSWithError(TDError &error)
{
    _line.resize(0);
    bool endsWithCarriageReturn = false;
    for (;;) {
        const QByteArrayView bytes = _readBuffer.available(error);
        if (error)
            return {};
        if (bytes.isEmpty() || (endsWithCarriageReturn && bytes.front() != '\n'))
            break;
        qsizetype length = 0;
        int eolCount = 0;
        if (endsWithCarriageReturn) {
            length = 1;
            eolCount = 2;
        } else if (const qsizetype end = indexOfLineEnd(bytes); end < 0) {
            length = bytes.size();
        } else if (bytes[end] == '\n') {
            length = end + 1;
            eolCount = 1;
        } else if (end + 1 == bytes.size()) {
            // Whether an LF belongs to this CR shows in the next stretch.
            endsWithCarriageReturn = true;
            length = end + 1;
        } else {
            eolCount = bytes[end + 1] == '\n' ? 2 : 1;
            length = end + eolCount;
        }
        _readBuffer.consume(length);
        if (eolCount > 0 && _line.isEmpty() && bytes.size() > 1)
            return LineBytes{bytes.first(length), eolCount};
        if (!_append(bytes.first(length), error))
            return {};
        if (eolCount > 0)
            return LineBytes{_line, eolCount};
        checkForStop();
    }
    if (_line.isEmpty())
        return {};
    return LineBytes{_line, endsWithCarriageReturn ? 1 : 0};
}

bool TDFileReader::_append(QByteArrayView bytes, TDError &error)
{
    if (_line.size() + bytes.size() > TD_LONGEST_READ_LINE) {
        error = excessiveLineError(_path);
        return false;
    }
    _line.append(bytes);
    return true;
}

bool TDFileReader::_readUnit(char *unit, TDError &error)
{
    for (int index = 0; index < _unitSize; ++index) {
        if (!_readBuffer.read(unit[index], error))
            return false;
    }
    return true;
}

bool TDFileReader::_isUnit(const char *unit, char character) const
{
    char expected[4] = {};
    expected[isLittleEndian(_stringEncoding) ? 0 : _unitSize - 1] = character;
    return std::memcmp(unit, expected, size_t(_unitSize)) == 0;
}

std::optional<LineBytes> TDFileReader::_getNextLineUCSWithError(TDError &error)
{
    if (!isFixedByteOrder(_stringEncoding))
        reportAssertion({"TDFileReader::_getNextLineUCSWithError(TDError &)", "Src/TDFileReader", 648,
                         "Invalid _stringEncoding"});
    _line.resize(0);
    int eolCount = 0;
    char unit[4] = {};
    while (eolCount == 0) {
        checkForStop();
        const QByteArrayView bytes = _readBuffer.available(error);
        if (error)
            return {};
        const QByteArrayView units = bytes.first(bytes.size() - bytes.size() % _unitSize);
        const bool littleEndian = isLittleEndian(_stringEncoding);
        const qsizetype end = _unitSize == 2 ? indexOfLineEndUnit<std::uint16_t>(units, littleEndian)
                                             : indexOfLineEndUnit<std::uint32_t>(units, littleEndian);
        const qsizetype ordinary = end < 0 ? units.size() : end * _unitSize;
        if (!_append(units.first(ordinary), error))
            return {};
        _readBuffer.consume(ordinary);
        // The line end itself, or a unit that is split between two stretches.
        if (ordinary == bytes.size() && !bytes.isEmpty())
            continue;
        if (!_readUnit(unit, error))
            break;
        _line.append(unit, _unitSize);
        if (_isUnit(unit, '\n'))
            eolCount = 1;
        else if (_isUnit(unit, '\r'))
            eolCount = _takeLineFeedUnit(error) ? 2 : 1;
    }
    if (error || _line.isEmpty())
        return {};
    return LineBytes{_line, eolCount};
}

bool TDFileReader::_takeLineFeedUnit(TDError &error)
{
    char unit[4] = {};
    if (!_readUnit(unit, error))
        return false;
    if (_isUnit(unit, '\n')) {
        _line.append(unit, _unitSize);
        return true;
    }
    for (int index = _unitSize - 1; index >= 0; --index)
        _readBuffer.pushBack(unit[index]);
    return false;
}

bool TDFileReader::closeFile(TDError &error)
{
    return _readBuffer.close(error, _path);
}

} // namespace tidemark
