#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "text/TextEncoding.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tidemark {

/// A line of a file as people look at it.
struct FileLine
{
    QString text;        ///< without its line end
    bool isWhole = true; ///< false: only the beginning of a line longer than FileLines::LONGEST_LINE
};

/// Gives lines of one file by their numbers, wherever in it they are, without keeping it in memory. Where the
/// lines are is found out step by step; how far is known. Lines end where the line reader ends them. Bytes
/// that aren't text become replacement characters. A file that changes meanwhile gives lines that don't fit
/// together. One thread at a time.
class FileLines
{
public:
    /// Bytes; of a longer line only the beginning is decoded.
    static constexpr qint64 LONGEST_LINE = 1 << 20;

    /// Null, with error code 1, for what can't be opened and for what isn't a file. The encoding as for the
    /// line reader.
    static std::unique_ptr<FileLines> open(const FilePath &path, StringEncoding encoding, TDError &error);
    FileLines(const FileLines &) = delete;
    FileLines &operator=(const FileLines &) = delete;

    /// The one in which lines are decoded: always a concrete one.
    StringEncoding encoding() const { return _encoding; }
    FileDate modificationDate() const { return _date; }

    /// Finds out where the lines of the next stretch of the file are, some hundred kilobytes of it.
    void lookFurther();
    bool isLookedThrough() const { return _isLookedThrough; }
    /// How many lines can be given by now.
    qint64 knownLines() const { return _knownLines; }
    /// How many there seem to be in all.
    qint64 estimatedLines() const;

    /// From the line with the number on, which counts from 1; fewer where fewer are known.
    QList<FileLine> lines(qint64 first, qint64 count);

private:
    /// A stretch of the file, and where in the file the lines that begin behind one of its line ends begin.
    struct Stretch
    {
        qint64 number = -1;
        std::vector<qint64> starts;
    };

    FileLines(Descriptor descriptor, qint64 size, FileDate date);
    void _settleEncoding(const FilePath &path, StringEncoding encoding, TDError &error);
    QByteArray _read(qint64 offset, qint64 length) const;
    qint64 _countEndsIn(qint64 number) const;
    const Stretch &_stretch(qint64 number);
    std::optional<qint64> _startOfLine(qint64 index);
    QByteArray _readNear(qint64 offset, qint64 length);
    FileLine _line(qint64 start, qint64 end);
    QString _decoded(QByteArrayView bytes) const;

    Descriptor _descriptor;
    qint64 _size;
    FileDate _date;
    StringEncoding _encoding = 0;
    std::unique_ptr<TextConverter> _converter;
    int _unitSize = 1;              ///< bytes
    int _endUnitByte = 0;           ///< which byte of a unit holds an ASCII character
    qint64 _textStart = 0;          ///< behind the byte-order mark
    std::vector<qint64> _endsUntil; ///< how many line ends there are up to the end of each stretch
    qint64 _knownLines = 0;
    bool _isLookedThrough = false;
    Stretch _last;    ///< looked at
    QByteArray _near; ///< what was read of the file last, with what follows it
    qint64 _nearOffset = 0;
};

} // namespace tidemark
