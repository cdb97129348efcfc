#include "replace/RewritePlan.h"

#include "replace/FileModifierErrors.h"
#include "replace/LineSplice.h"
#include "text/AsciiText.h"
#include "text/ShiftTokens.h"

#include <algorithm>
#include <fcntl.h>
#include <limits>
#include <numeric>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

/// Within the first four bytes the reader may hand out others than the file has.
constexpr qsizetype CHECKED_FIRST_BYTES = 4;

bool isValid(TextConverter &converter, QByteArrayView bytes)
{
    return (converter.shape() == EncodingShape::AsciiBytes && isAscii(bytes)) ||
           converter.decode(bytes).has_value();
}

/// The new line's bytes, if they stand for exactly its text.
std::optional<QByteArray> newBytesOf(TextConverter &converter, const QByteArray &oldBytes,
                                     const QString &oldText, const LineChange &change)
{
    std::optional<QByteArray> bytes;
    // Where characters don't depend on what stands before them and encoding the old text gives the old bytes,
    // encoding the new one gives those beside the matches again, and in less time. What can't be taken apart
    // can only be encoded whole.
    const ShiftFamily family = shiftFamilyOf(converter.encoding());
    const bool isWhole = family == ShiftFamily::None || family == ShiftFamily::Inseparable;
    if (isWhole && converter.encode(oldText) == oldBytes)
        bytes = converter.encode(change.newText);
    else
        bytes = splicedLine(converter, oldBytes, oldText, change.newText,
                            textEdits(oldText, change.newText, change.oldRanges, change.newRanges));
    if (bytes && converter.decode(*bytes) != change.newText)
        bytes.reset();
    return bytes;
}

/// Whether it does no harm that the file has no line with the change's number: a last line that was emptied
/// is gone.
bool canBeLeftOut(const LineChange &change)
{
    return change.oldText.isNull() || (change.oldText.isEmpty() && change.newText.isEmpty());
}

} // namespace

QByteArray byteOrderMarkOfEncoding(StringEncoding encoding)
{
    switch (encoding) {
    case TD_ENCODING_UTF8:
        return QByteArrayLiteral("\xEF\xBB\xBF");
    case TD_ENCODING_UTF16_BIG_ENDIAN:
        return QByteArrayLiteral("\xFE\xFF");
    case TD_ENCODING_UTF16_LITTLE_ENDIAN:
        return QByteArrayLiteral("\xFF\xFE");
    case TD_ENCODING_UTF32_BIG_ENDIAN:
        return QByteArrayLiteral("\x00\x00\xFE\xFF");
    case TD_ENCODING_UTF32_LITTLE_ENDIAN:
        return QByteArrayLiteral("\xFF\xFE\x00\x00");
    default:
        return {};
    }
}

LineChanges lineChangesOf(const MatchLines &matchLines, const std::function<void()> &nowAndThen)
{
    LineChanges changes;
    changes.reserve(size_t(matchLines.size()));
    for (const auto &line : matchLines) {
        if (qsizetype(changes.size()) % LINES_BETWEEN_CALLS == LINES_BETWEEN_CALLS - 1)
            nowAndThen();
        const QString oldText = line->savedLineString();
        if (line->isUnsaved())
            changes.push_back({line->lineNumber(), oldText, line->matchLineString(), line->savedMatchRanges(),
                               line->matchRanges()});
        else
            changes.push_back({line->lineNumber(), oldText, oldText, {}, {}});
    }
    const auto isBefore = [](const LineChange &left, const LineChange &right) {
        return left.lineNumber < right.lineNumber;
    };
    // As a rule they are, and moving millions takes seconds.
    if (!std::is_sorted(changes.begin(), changes.end(), isBefore))
        std::stable_sort(changes.begin(), changes.end(), isBefore);
    return changes;
}

/// The changes of the same line of the file.
struct RewritePlan::Place
{
    LineChanges::const_iterator first;
    LineChanges::const_iterator last; ///< behind the last one
};

void RewritePlan::_keep(qint64 length)
{
    if (!_segments.empty() && !_segments.back().isNew)
        _segments.back().length += length;
    else if (length > 0)
        _segments.push_back({_oldOffset, length, {}, false});
    _oldOffset += length;
}

void RewritePlan::_put(const QByteArray &bytes)
{
    if (!_segments.empty() && _segments.back().isNew)
        _segments.back().newBytes += bytes;
    else
        _segments.push_back({0, 0, bytes, true});
    _segments.back().length = _segments.back().newBytes.size();
}

qint64 RewritePlan::newSize() const
{
    return std::accumulate(_segments.begin(), _segments.end(), qint64(0),
                           [](qint64 sum, const Segment &segment) { return sum + segment.length; });
}

bool RewritePlan::build(TDFileReader &reader, const FilePath &path, const LineChanges &changes,
                        bool hadByteOrderMarker, TDError &error)
{
    _path = path;
    const QByteArray mark =
        hadByteOrderMarker ? byteOrderMarkOfEncoding(reader.stringEncoding()) : QByteArray();
    if (reader.converter() == nullptr) {
        error = TDFileReader::encodingError(reader.stringEncoding());
        return false;
    }
    _lacksKoreanHeader = shiftFamilyOf(reader.stringEncoding()) == ShiftFamily::Iso2022Korean;
    _keep(mark.size());
    if (!_addLines(reader, changes, error))
        return false;
    if (!_accountsForEveryByte(reader.descriptor(), mark)) {
        error = TDFileReader::encodingError(reader.stringEncoding());
        return false;
    }
    return true;
}

std::optional<LineBytes> RewritePlan::_nextLine(TDFileReader &reader, TDError &error)
{
    const std::optional<LineBytes> line = reader.nextLineBytes(error);
    if (!line)
        return {};
    ++_lineNumber;
    if (_firstBytes.size() < CHECKED_FIRST_BYTES)
        _firstBytes += line->bytes.first(qMin(CHECKED_FIRST_BYTES, line->bytes.size()));
    return line;
}

/// Passes over them without decoding as far as they are ASCII.
void RewritePlan::_keepLinesBefore(qint64 lineNumber, TDFileReader &reader)
{
    if (_firstBytes.size() < CHECKED_FIRST_BYTES)
        return;
    PassedLines passed;
    do {
        passed = reader.passAsciiLines(lineNumber - 1 - _lineNumber);
        _lineNumber += passed.count;
        _keep(passed.length);
    } while (passed.count > 0);
}

bool RewritePlan::_addLines(TDFileReader &reader, const LineChanges &changes, TDError &error)
{
    auto next = changes.cbegin();
    bool hasEveryLine = true;
    while (const std::optional<LineBytes> line = _nextLine(reader, error)) {
        for (; next != changes.cend() && next->lineNumber < _lineNumber; ++next)
            hasEveryLine = hasEveryLine && canBeLeftOut(*next);
        Place place = {next, next};
        while (place.last != changes.cend() && place.last->lineNumber == _lineNumber)
            ++place.last;
        next = place.last;
        if (place.first != place.last) {
            if (!_addChanges(reader, line->bytes.toByteArray(), place, error))
                return false;
        } else if (isValid(*reader.converter(), line->bytes)) {
            _lookForHeader(line->bytes);
            _keep(line->bytes.size());
            _keepLinesBefore(next == changes.cend() ? std::numeric_limits<qint64>::max() : next->lineNumber,
                             reader);
        } else {
            error = TDFileReader::encodingError(reader.stringEncoding());
            return false;
        }
    }
    if (!error && !(hasEveryLine && std::all_of(next, changes.cend(), canBeLeftOut)))
        error = fileModifiedError(_path);
    return !error;
}

bool RewritePlan::_addChanges(TDFileReader &reader, QByteArray oldBytes, const Place &place, TDError &error)
{
    std::optional<QString> oldText = reader.decode(oldBytes, error);
    if (!oldText)
        return false;
    // A line that was replaced with line ends in it stands for several lines of the file by now.
    const QString expected = place.first->oldText;
    while (!expected.isNull() && oldText->size() < expected.size() && expected.startsWith(*oldText)) {
        const std::optional<LineBytes> following = _nextLine(reader, error);
        const std::optional<QString> text = following ? reader.decode(following->bytes, error) : std::nullopt;
        if (!text)
            break;
        oldBytes += following->bytes;
        *oldText += *text;
    }
    if (error)
        return false;
    const bool isOne = std::next(place.first) == place.last;
    // Of several none may be a line that just stands there: it would be written twice.
    if (std::any_of(place.first, place.last, [&](const LineChange &change) {
            return !change.oldText.isNull() &&
                   (change.oldText != *oldText || (!isOne && change.newText == *oldText));
        })) {
        error = fileModifiedError(_path);
        return false;
    }

    if (isOne && place.first->newText == *oldText) {
        _lookForHeader(oldBytes);
        _keep(oldBytes.size());
        return true;
    }
    for (auto change = place.first; change != place.last; ++change) {
        if (!_putLine(*reader.converter(), oldBytes, *oldText, *change)) {
            error = TDFileReader::encodingError(reader.stringEncoding());
            return false;
        }
    }
    _oldOffset += oldBytes.size();
    return true;
}

void RewritePlan::_lookForHeader(QByteArrayView line)
{
    _lacksKoreanHeader = _lacksKoreanHeader && !line.contains(TD_KOREAN_HEADER);
}

bool RewritePlan::_putLine(TextConverter &converter, const QByteArray &oldBytes, const QString &oldText,
                           const LineChange &change)
{
    const std::optional<QByteArray> newBytes = newBytesOf(converter, oldBytes, oldText, change);
    if (!newBytes)
        return false;
    const qsizetype korean = _lacksKoreanHeader ? newBytes->indexOf(TD_SHIFT_OUT) : -1;
    if (korean >= 0 && !newBytes->first(korean).contains(TD_KOREAN_HEADER))
        _put(TD_KOREAN_HEADER.toByteArray());
    _lookForHeader(*newBytes);
    _lacksKoreanHeader = _lacksKoreanHeader && korean < 0;
    _put(*newBytes);
    return true;
}

bool RewritePlan::_accountsForEveryByte(int content, QByteArrayView mark) const
{
    const QByteArray expected = mark.toByteArray() + _firstBytes;
    QByteArray actual(expected.size(), Qt::Uninitialized);
    struct stat status;
    return ::fstat(content, &status) == 0 && status.st_size == _oldOffset &&
           ::pread(content, actual.data(), size_t(actual.size()), 0) == actual.size() && actual == expected;
}

} // namespace tidemark
