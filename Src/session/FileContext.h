#pragma once

#include "foundation/TDError.h"
#include "foundation/WorkerThreads.h"
#include "reading/FileLines.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace tidemark {

/// The file around a match: its lines by number, as they are asked for. Everything is read on a thread of its
/// own, so that neither a large file nor a slow disk holds up the window. Main thread only.
class FileContext : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~FileContext() override;

    /// UTF-16 units; a longer text isn't fetched.
    static constexpr qsizetype LONGEST_TEXT = 1 << 26;

    /// The encoding as for the line reader. A file that is open already is read again only if it was changed
    /// since.
    void open(const FilePath &path, StringEncoding encoding);
    void close();

    /// Empty while nothing is open.
    const FilePath &path() const { return _path; }
    /// Whether the file is being opened, or looked at for changes: what is told of it may be out of date.
    bool isOpening() const { return _isOpening; }
    /// Why it can't be read.
    const TDError &error() const { return _state.error; }
    /// Of what is read; nothing before anything is.
    std::optional<FileDate> modificationDate() const { return _state.date; }
    StringEncoding encoding() const { return _state.encoding; }
    /// An estimate as long as the file isn't looked through.
    qint64 lineCount() const { return _state.lineCount; }
    bool isLookedThrough() const { return _state.isLookedThrough; }

    /// Null for a line that hasn't arrived.
    const FileLine *line(qint64 number) const;
    /// These lines will arrive; what was asked for before may not. The number counts from 1.
    void want(qint64 first, qint64 count);
    /// The texts of the lines, the last one included, as soon as they are read; nothing when they are too
    /// long, or when the file can't be read.
    using Fetched = std::function<void(const std::optional<QStringList> &lines)>;
    void fetch(qint64 first, qint64 last, Fetched fetched);

Q_SIGNALS:
    /// Another file, or other content of it.
    void opened();
    /// Lines have arrived, or more is known of how many there are.
    void arrived();

private:
    struct State
    {
        TDError error;
        std::optional<FileDate> date;
        StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING;
        qint64 lineCount = 0;
        bool isLookedThrough = false;
    };
    class Reading;

    void _run(const std::shared_ptr<Reading> &reading);
    void _noteOpened(const State &state);
    void _keep(qint64 first, const QList<FileLine> &lines);

    FilePath _path;
    StringEncoding _encoding = TD_FILE_COMMON_UNKNOWN_ENCODING; ///< that was asked for
    bool _isOpening = false;
    State _state;
    QHash<qint64, FileLine> _lines;
    qsizetype _unitsKept = 0;
    std::shared_ptr<Reading> _reading; ///< null while nothing is open
    WorkerThreads _worker{1};          ///< last: it ends first
};

} // namespace tidemark
