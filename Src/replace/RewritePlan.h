#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "matching/TDMatchLineHighlighter.h"
#include "reading/TDFileReader.h"
#include "text/TextEncoding.h"
#include "text/TextRange.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <vector>

namespace tidemark {

/// What one line of a file is to become.
struct LineChange
{
    qint64 lineNumber = 0; ///< 1-based
    QString oldText;       ///< as it must stand in the file, maybe several lines; null: not known
    QString newText;
    /// The matches in either text, as far as they are known.
    QList<TextRange> oldRanges;
    QList<TextRange> newRanges;
};

/// In the order of their line numbers; several for one line stay in their order.
using LineChanges = std::vector<LineChange>;
/// `nowAndThen` is called every so many lines, as files can have millions of them.
LineChanges lineChangesOf(
    const MatchLines &matchLines, const std::function<void()> &nowAndThen = [] {});
inline constexpr qsizetype LINES_BETWEEN_CALLS = 4096;

/// The new content of a file, worked out and checked in full before the file is touched: stretches of the old
/// content that stay as they are, and bytes that are new. In a changed line only what was replaced is
/// encoded, the bytes beside it stay too. Holds only the changed lines in memory.
class RewritePlan
{
public:
    struct Segment
    {
        qint64 offset = 0; ///< into the old content, in bytes; meaningless for new bytes
        qint64 length = 0; ///< in bytes
        QByteArray newBytes;
        bool isNew = false;
    };

    RewritePlan() = default;
    explicit RewritePlan(std::vector<Segment> segments) : _segments(std::move(segments)) {}

    /// Reads the old content to its end through the reader and puts the changes in place of the lines with
    /// their numbers. Lines whose text stays keep their bytes. False with the reader's error, or code 4
    /// when a new text can't be encoded exactly or mark and lines don't account for every byte of the
    /// content, or code 30 when a line isn't the one that was searched, or isn't there. `path` is the file's
    /// own, for the error.
    bool build(TDFileReader &reader, const FilePath &path, const LineChanges &changes,
               bool hadByteOrderMarker, TDError &error);

    const std::vector<Segment> &segments() const { return _segments; }
    /// Of the new content, in bytes.
    qint64 newSize() const;

private:
    struct Place;
    std::optional<LineBytes> _nextLine(TDFileReader &reader, TDError &error);
    void _keepLinesBefore(qint64 lineNumber, TDFileReader &reader);
    bool _addLines(TDFileReader &reader, const LineChanges &changes, TDError &error);
    bool _addChanges(TDFileReader &reader, QByteArray oldBytes, const Place &place, TDError &error);
    void _lookForHeader(QByteArrayView line);
    bool _putLine(TextConverter &converter, const QByteArray &oldBytes, const QString &oldText,
                  const LineChange &change);
    bool _accountsForEveryByte(int content, QByteArrayView mark) const;
    void _keep(qint64 length);
    void _put(const QByteArray &bytes);

    FilePath _path;
    std::vector<Segment> _segments;
    qint64 _oldOffset = 0;
    qint64 _lineNumber = 0;
    bool _lacksKoreanHeader = false; ///< so far, in an encoding where a file must have it
    QByteArray _firstBytes;          ///< the first few bytes of the lines, as the reader gave them
};

/// The byte-order mark that a file in this encoding begins with; empty for encodings without one.
QByteArray byteOrderMarkOfEncoding(StringEncoding encoding);

} // namespace tidemark
