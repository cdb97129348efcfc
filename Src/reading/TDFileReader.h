#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "reading/EncodingDetection.h"
#include "reading/FileToRead.h"
#include "reading/TDReadBuffer.h"
#include "text/TextEncoding.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <memory>
#include <optional>

namespace tidemark {

/// Bytes. A line beyond would take more memory than many machines have, and what reports itself as a file may
/// go on for ever.
inline constexpr qsizetype TD_LONGEST_READ_LINE = 1 << 28;

/// One line as it stands in the file.
struct LineBytes
{
    QByteArrayView bytes; ///< with the line end; valid until the next line is read
    int eolCount = 0;     ///< line-end characters at the end: 0, 1 or 2 (CR LF)
};

/// Whole lines that were passed over.
struct PassedLines
{
    qint64 count = 0;
    qsizetype length = 0; ///< bytes, line ends included
};

/// Opens one file, settles its encoding, and hands out its lines. A line ends at LF, at CR LF or at a CR that
/// no LF follows; in UTF-16 and UTF-32 with a stated byte order whole units are looked at, otherwise bytes.
/// Call closeFile() before destroying it. One thread at a time.
class TDFileReader
{
public:
    /// Nothing, with error code 1, when the file can't be opened. TD_FILE_COMMON_UNKNOWN_ENCODING asks for
    /// detection: byte-order mark, declaration in the first 512 bytes, extended attribute, the user's
    /// default, in that precedence. With a given encoding nothing is looked at, and a mark is text of the
    /// first line.
    static std::unique_ptr<TDFileReader> fileReaderWithFile(const FilePath &path, StringEncoding encoding,
                                                            TDError &error);
    static std::unique_ptr<TDFileReader> fileReaderWithFile(const FileToRead &file, StringEncoding encoding,
                                                            TDError &error);

    /// The error (code 1) for a file or folder that can't be opened.
    static TDError openError(const FilePath &path, int errorNumber);
    /// The error (code 1) for a file with lines that are too long to be handled.
    static TDError excessiveLineError(const FilePath &path);
    /// The error (code 4) for bytes that aren't valid in the encoding, or a text that it can't hold.
    static TDError encodingError(StringEncoding encoding);

    /// The next line; nothing at the end of the file (no error) or on a failure: error code 4 when the bytes
    /// aren't valid in the encoding, code 1 when a line is longer than TD_LONGEST_READ_LINE, a POSIX error
    /// when reading failed. Each line is decoded by itself.
    std::optional<QString> getNextLineWithEOLCharacters(bool keepEOLCharacters, TDError &error);

    /// The same line before it is decoded; a partial unit at the end of a file is left out.
    std::optional<LineBytes> nextLineBytes(TDError &error);
    /// Passes over lines that hold nothing but ASCII, at most so many, where that is quick; it may pass none.
    PassedLines passAsciiLines(qint64 most);
    /// The text of a line's bytes; nothing, with error code 4, when the encoding doesn't allow them.
    std::optional<QString> decode(QByteArrayView bytes, TDError &error);

    /// Of the open file, whose position is the reader's own affair; -1 once it is closed.
    int descriptor() const { return _readBuffer.descriptor(); }
    /// POSIX error on failure.
    bool closeFile(TDError &error);

    const FilePath &path() const { return _path; }
    /// The encoding in which lines are decoded: always a concrete one.
    StringEncoding stringEncoding() const { return _stringEncoding; }
    /// The same with its source: the default for one that was given.
    SettledEncoding settledEncoding() const { return {_stringEncoding, _encodingSource}; }
    bool hadByteOrderMarker() const { return _hadByteOrderMarker; }
    /// Null when the encoding can't be converted here. Owned by the reader.
    TextConverter *converter() const { return _converter.get(); }

private:
    TDFileReader(Descriptor descriptor, qint64 mostBytes, const FileToRead &file, StringEncoding encoding);

    void _probeForEncoding();
    ByteOrderMark _takeByteOrderMark();
    QByteArray _lookAhead(qsizetype most);

    std::optional<LineBytes> _getNextLineMBCSWithError(TDError &error);
    std::optional<LineBytes> _getNextLineUCSWithError(TDError &error);
    bool _append(QByteArrayView bytes, TDError &error);
    bool _readUnit(char *unit, TDError &error);
    bool _takeLineFeedUnit(TDError &error);
    int _sizeOfUnit() const;
    bool _isUnit(const char *unit, char character) const;

    TDReadBuffer _readBuffer;
    StringEncoding _stringEncoding;
    EncodingSource _encodingSource = EncodingSource::Default;
    FilePath _path;
    bool _hadByteOrderMarker = false;
    int _unitSize = 1; ///< bytes a code unit: 1 for everything that is split by bytes
    std::unique_ptr<TextConverter> _converter;
    QByteArray _line; ///< a line that doesn't lie in one stretch of the read buffer
};

} // namespace tidemark
