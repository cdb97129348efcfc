#include "replace/LineSplice.h"

#include "text/CodeWalk.h"

#include <algorithm>

namespace tidemark {

namespace {

/// Whole codes, and the text that takes their place.
struct Stretch
{
    qsizetype byteStart = 0;
    qsizetype byteEnd = 0;
    qint64 unitStart = 0;
    qint64 unitEnd = 0;
    TextRange newRange;
    QByteArray marks; ///< that have no text, and so can't have been replaced
    ShiftState before;
    ShiftState after;
    bool partsCode = false;
};

class Splice
{
public:
    Splice(TextConverter &converter, QByteArrayView oldBytes, QStringView oldText, QStringView newText)
        : _converter(converter), _oldBytes(oldBytes), _oldText(oldText), _newText(newText),
          _walk(converter, oldBytes, oldText)
    {}

    std::optional<QByteArray> bytesWith(const std::vector<TextEdit> &edits)
    {
        bool isPossible = _walk.next();
        for (auto edit = edits.begin(); isPossible && edit != edits.end();) {
            Stretch stretch;
            isPossible = _passKeptCodes(edit->oldRange.location, stretch);
            if (isPossible) {
                stretch.newRange.location =
                    edit->newRange.location - (edit->oldRange.location - stretch.unitStart);
                isPossible = _takeReplacedCodes(edit, edits.end(), stretch) && _put(stretch);
            }
        }
        while (isPossible && !_walk.isAtEnd())
            isPossible = _walk.next();
        if (!isPossible)
            return std::nullopt;
        return _bytes + _oldBytes.sliced(_copied).toByteArray();
    }

private:
    using Edit = std::vector<TextEdit>::const_iterator;

    /// Up to the code that reaches beyond the place in the text.
    bool _passKeptCodes(qint64 place, Stretch &stretch)
    {
        while (!_walk.isAtEnd() && _walk.code().unitEnd <= place) {
            _keptEnd = _walk.code().byteEnd;
            _keptState = _walk.code().stateAfter;
            if (!_walk.next())
                return false;
        }
        stretch.byteStart = _keptEnd;
        stretch.before = _keptState;
        stretch.unitStart = _walk.code().unitStart;
        stretch.partsCode = stretch.unitStart < place;
        return true;
    }

    /// All that the edit touches; the next edit's too, while one begins in the same code or right behind it:
    /// two changes of state with nothing between them are refused by some readers.
    bool _takeReplacedCodes(Edit &edit, Edit end, Stretch &stretch)
    {
        stretch.unitEnd = stretch.unitStart;
        do {
            while (!_walk.isAtEnd() && _walk.code().unitStart < edit->oldRange.end()) {
                const CodeWalk::Code &code = _walk.code();
                if (code.unitStart == code.unitEnd)
                    stretch.marks += _oldBytes.sliced(code.byteStart, code.byteEnd - code.byteStart);
                stretch.unitEnd = code.unitEnd;
                if (!_walk.next())
                    return false;
            }
            const qint64 rest = qMax(qint64(0), stretch.unitEnd - edit->oldRange.end());
            stretch.newRange.length = edit->newRange.end() + rest - stretch.newRange.location;
            stretch.partsCode = stretch.partsCode || rest > 0;
            ++edit;
        } while (edit != end && edit->oldRange.location <= stretch.unitEnd);
        stretch.byteEnd = _walk.code().byteStart;
        stretch.after = _walk.code().stateBefore;
        return true;
    }

    bool _put(const Stretch &stretch)
    {
        const QByteArrayView oldBytes =
            _oldBytes.sliced(stretch.byteStart, stretch.byteEnd - stretch.byteStart);
        const QStringView oldText = _oldText.sliced(stretch.unitStart, stretch.unitEnd - stretch.unitStart);
        if (stretch.partsCode &&
            CodeWalk::encodedBetween(_converter, stretch.before, oldText, stretch.after) != oldBytes)
            return false;
        const auto newBytes = CodeWalk::encodedBetween(
            _converter, stretch.before, _newText.sliced(stretch.newRange.location, stretch.newRange.length),
            stretch.after);
        if (!newBytes)
            return false;
        _bytes += _oldBytes.sliced(_copied, stretch.byteStart - _copied);
        _bytes += stretch.marks + *newBytes;
        _copied = stretch.byteEnd;
        _keptEnd = stretch.byteEnd;
        _keptState = stretch.after;
        return true;
    }

    TextConverter &_converter;
    QByteArrayView _oldBytes;
    QStringView _oldText;
    QStringView _newText;
    CodeWalk _walk;
    QByteArray _bytes;
    qsizetype _copied = 0;
    qsizetype _keptEnd = 0;
    ShiftState _keptState; ///< behind what is kept
};

/// Nothing when the texts aren't the same around the ranges.
std::optional<std::vector<TextEdit>> editsOfRanges(QStringView oldText, QStringView newText,
                                                   const QList<TextRange> &oldRanges,
                                                   const QList<TextRange> &newRanges)
{
    const auto within = [](const TextRange &range, qint64 from, qint64 size) {
        return range.location >= from && range.length >= 0 && range.end() <= size;
    };
    std::vector<TextEdit> edits;
    qint64 oldEnd = 0;
    qint64 newEnd = 0;
    for (qsizetype index = 0; index < oldRanges.size(); ++index) {
        const TextEdit edit = {oldRanges[index], newRanges[index]};
        if (!within(edit.oldRange, oldEnd, oldText.size()) ||
            !within(edit.newRange, newEnd, newText.size()) ||
            oldText.sliced(oldEnd, edit.oldRange.location - oldEnd) !=
                newText.sliced(newEnd, edit.newRange.location - newEnd))
            return std::nullopt;
        oldEnd = edit.oldRange.end();
        newEnd = edit.newRange.end();
        if (oldText.sliced(edit.oldRange.location, edit.oldRange.length) !=
            newText.sliced(edit.newRange.location, edit.newRange.length))
            edits.push_back(edit);
    }
    if (oldText.sliced(oldEnd) != newText.sliced(newEnd))
        return std::nullopt;
    return edits;
}

TextEdit editBetweenCommonEnds(QStringView oldText, QStringView newText)
{
    const qsizetype shorter = qMin(oldText.size(), newText.size());
    const auto [oldStart, newStart] =
        std::mismatch(oldText.begin(), oldText.begin() + shorter, newText.begin());
    const qsizetype start = oldStart - oldText.begin();
    qsizetype tail = 0;
    while (tail < shorter - start && oldText[oldText.size() - 1 - tail] == newText[newText.size() - 1 - tail])
        ++tail;
    return {{start, oldText.size() - tail - start}, {start, newText.size() - tail - start}};
}

} // namespace

std::vector<TextEdit> textEdits(QStringView oldText, QStringView newText, const QList<TextRange> &oldRanges,
                                const QList<TextRange> &newRanges)
{
    if (oldRanges.size() == newRanges.size()) {
        if (auto edits = editsOfRanges(oldText, newText, oldRanges, newRanges))
            return *edits;
    }
    return {editBetweenCommonEnds(oldText, newText)};
}

std::optional<QByteArray> splicedLine(TextConverter &converter, QByteArrayView oldBytes, QStringView oldText,
                                      QStringView newText, const std::vector<TextEdit> &edits)
{
    return Splice(converter, oldBytes, oldText, newText).bytesWith(edits);
}

} // namespace tidemark
