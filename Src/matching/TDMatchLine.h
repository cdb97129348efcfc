#pragma once

#include "foundation/StyledText.h"
#include "foundation/TextRange.h"

#include <QList>
#include <QString>

#include <memory>

namespace tidemark {

/// The highlighted index that means "no match of this line".
inline constexpr qint64 TD_NO_HIGHLIGHTED_MATCH = -1;

/// One line of a searched file with its matches, and what the results view needs to draw it. Filled on the
/// search thread, read and changed on the main thread after it was handed over.
class TDMatchLine
{
public:
    quint64 numberOfMatches() const { return quint64(_matchRanges.size()); }

    /// Ranges of matchLineString(), in the order in which they were found.
    const QList<TextRange> &matchRanges() const { return _matchRanges; }
    void setMatchRanges(const QList<TextRange> &ranges) { _matchRanges = ranges; }
    void appendMatchRange(TextRange range) { _matchRanges.append(range); }
    void replaceMatchRange(qsizetype index, TextRange range) { _matchRanges[index] = range; }
    void removeMatchRange(qsizetype index) { _matchRanges.removeAt(index); }
    /// Moves the ranges from the index on by the offset; keeps the display text as it is.
    void offsetMatchRangesBy(qint64 offset, quint64 startRangeIndex);

    /// The whole line, with its line-end characters.
    const QString &matchLineString() const { return _matchLineString; }
    void setMatchLineString(const QString &line) { _matchLineString = line; }

    /// The line as it stands in the file, which is the text that was read until a changed line is saved. It
    /// can be several lines of the file after a replacement with line ends in it. Null: not known.
    const QString &savedLineString() const { return _savedLineString; }
    void setSavedLineString(const QString &line) { _savedLineString = line; }

    /// 1-based.
    qint64 lineNumber() const { return _lineNumber; }
    void setLineNumber(qint64 number) { _lineNumber = number; }

    /// Index of the match that is highlighted in the results view, or TD_NO_HIGHLIGHTED_MATCH.
    qint64 highlightedMatchIndex() const { return _highlightedMatchIndex; }
    void setHighlightedMatchIndex(qint64 index) { _highlightedMatchIndex = index; }

    bool selected() const { return _selected; }
    void setSelected(bool selected) { _selected = selected; }
    bool isFirstResponder() const { return _isFirstResponder; }
    void setIsFirstResponder(bool isFirstResponder) { _isFirstResponder = isFirstResponder; }

    /// The display text, built when it is asked for first and kept until updateMatchLineAttributeString().
    const StyledText &matchLineAttributedString();
    void setMatchLineAttributedString(const StyledText &text);
    /// To be called after any change that shows.
    void updateMatchLineAttributeString() { _matchLineAttributedString.reset(); }
    /// Line number and line, control characters as bullets, the matches in their colours.
    StyledText buildMatchLineAttributedString() const;

private:
    QList<TextRange> _matchRanges;
    QString _matchLineString;
    QString _savedLineString;
    std::unique_ptr<StyledText> _matchLineAttributedString;
    qint64 _lineNumber = 0;
    qint64 _highlightedMatchIndex = TD_NO_HIGHLIGHTED_MATCH;
    bool _selected = false;
    bool _isFirstResponder = false;
};

} // namespace tidemark
