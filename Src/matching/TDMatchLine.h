#pragma once

#include "text/TextRange.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>
#include <span>
#include <vector>

namespace tidemark {

/// The highlighted index that means "no match of this line".
inline constexpr qint64 TD_NO_HIGHLIGHTED_MATCH = -1;

/// One line of a searched file with its matches. Filled on the search thread, read and changed on the main
/// thread after it was handed over. There can be millions, so a line keeps its text and ranges as they were
/// found, in memory shared by many, until they are changed. Whether it is selected is told by the selection
/// of the view that shows it.
class TDMatchLine
{
public:
    TDMatchLine() = default;
    /// Both texts are the one given, as UTF-8, which must be valid. Neither it nor the ranges are copied:
    /// they must outlive the line.
    TDMatchLine(qint64 lineNumber, QByteArrayView utf8, std::span<const TextRange> matchRanges);

    quint64 numberOfMatches() const
    {
        return _changed ? quint64(_changed->matchRanges.size()) : _foundRanges.size();
    }

    /// Ranges of matchLineString(), in the order in which they were found.
    QList<TextRange> matchRanges() const;
    /// The same without a copy; valid until the line changes.
    std::span<const TextRange> matchRangesInPlace() const
    {
        return _changed ? std::span<const TextRange>(_changed->matchRanges) : _foundRanges;
    }
    void setMatchRanges(const QList<TextRange> &ranges);
    void appendMatchRange(TextRange range);
    void replaceMatchRange(qsizetype index, TextRange range) { _own().matchRanges[index] = range; }
    void removeMatchRange(qsizetype index);
    /// Moves the ranges from the index on by the offset.
    void offsetMatchRangesBy(qint64 offset, quint64 startRangeIndex);

    /// The whole line, with its line-end characters. Made anew at each call where it wasn't changed.
    QString matchLineString() const { return _changed ? _changed->matchLineString : _foundString(); }
    /// The same as UTF-8 without a copy; null where that isn't at hand, as the line was changed.
    QByteArrayView unchangedUtf8() const { return _changed ? QByteArrayView() : _foundText; }
    void setMatchLineString(const QString &line) { _own().matchLineString = line; }

    /// The line as it was searched, whatever was changed since. A line that wasn't found by a search is taken
    /// as it is now.
    QString foundLineString() const;
    /// Where in it each of matchRanges() was found.
    QList<TextRange> foundRanges() const;
    void setFoundRanges(const QList<TextRange> &ranges) { _own().foundRanges = ranges; }
    /// For a line that has no UTF-8: what was given at first.
    void setFoundLineString(const QString &line) { _own().foundLineString = line; }

    /// The line as it stands in the file, which is the text that was read until a changed line is saved. It
    /// can be several lines of the file after a replacement with line ends in it. Null: not known.
    QString savedLineString() const { return _changed ? _changed->savedLineString : _foundString(); }
    void setSavedLineString(const QString &line);
    /// Where the matches are in savedLineString(), as far as that is known: each at its place in
    /// matchRanges(), and between them both texts are the same.
    QList<TextRange> savedMatchRanges() const
    {
        return _changed ? _changed->savedMatchRanges : matchRanges();
    }

    /// Which of the matches were replaced, by their index. A run passes them over.
    bool isReplaced(qsizetype index) const;
    void setReplaced(qsizetype index);
    quint64 numberOfReplacedMatches() const { return _changed ? _changed->replacedCount : 0; }
    const std::vector<bool> &replacedMatches() const;
    /// May be shorter than the matches: the others aren't. Empty for none.
    void setReplacedMatches(const std::vector<bool> &replaced);

    /// Whether the line isn't the one in the file any more.
    bool isUnsaved() const { return _changed && _changed->matchLineString != _changed->savedLineString; }

    /// 1-based.
    qint64 lineNumber() const { return _lineNumber; }
    void setLineNumber(qint64 number) { _lineNumber = number; }

    /// Index of the match that is highlighted in the results view, or TD_NO_HIGHLIGHTED_MATCH.
    qint64 highlightedMatchIndex() const { return _highlightedMatchIndex; }
    void setHighlightedMatchIndex(qint64 index) { _highlightedMatchIndex = index; }

private:
    struct Changed
    {
        QList<TextRange> matchRanges;
        QString matchLineString;
        QString savedLineString;
        QList<TextRange> savedMatchRanges;
        QList<TextRange> foundRanges; ///< as many as matchRanges, where the line was found by a search
        std::vector<bool> replaced;
        quint64 replacedCount = 0; ///< of these
        QString foundLineString;   ///< null where the text it was found with tells it
    };
    bool _wasFound() const
    {
        return !_foundText.isNull() || (_changed && !_changed->foundLineString.isNull());
    }
    QString _foundString() const;
    Changed &_own();

    QByteArrayView _foundText;
    std::span<const TextRange> _foundRanges;
    std::unique_ptr<Changed> _changed; ///< stands for what was found
    qint64 _lineNumber = 0;
    qint64 _highlightedMatchIndex = TD_NO_HIGHLIGHTED_MATCH;
};

} // namespace tidemark

// So that long lists grow without moving each of them.
Q_DECLARE_TYPEINFO(std::shared_ptr<tidemark::TDMatchLine>, Q_RELOCATABLE_TYPE);
