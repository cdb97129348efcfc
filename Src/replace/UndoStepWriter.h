#pragma once

#include "replace/RecordLock.h"
#include "replace/UndoJournal.h"
#include "replace/UndoStep.h"

#include <vector>

namespace tidemark {

/// Writes a step, ahead of what it is about: the files of a group are in it, and on the disk, before the
/// first of them is changed. When the journal can't be written, or the step becomes larger than the journal
/// may be, nothing is left of it and the run goes on without. One thread at a time.
class UndoStepWriter
{
public:
    UndoStepWriter(UndoJournal journal, UndoStepHeader header);
    /// Closes it.
    ~UndoStepWriter();
    UndoStepWriter(const UndoStepWriter &) = delete;
    UndoStepWriter &operator=(const UndoStepWriter &) = delete;

    /// Whether what is appended is kept: false when the step was given up.
    bool isOpen() const { return _keeping == UndoKeeping::Nothing || _keeping == UndoKeeping::Kept; }
    /// Files about to be changed, and the backups of them that are to stay. All of it is on the disk when the
    /// call returns. 0, also when the step is given up; an errno only where the disk itself fails, so that
    /// nothing had better be changed.
    int append(const std::vector<UndoEntry> &entries, const std::vector<KeptBackup> &backups);
    /// As too large, say.
    void giveUp(UndoKeeping reason);

    /// Lets the step go, with what really was changed: a stop may have left files that were appended. A step
    /// about nothing is removed, and the journal cut to its limit. Returns whether it is kept.
    UndoKeeping close(qint64 files, qint64 matches);
    /// The same, when everything that was appended was changed.
    UndoKeeping close() { return close(_files, _matches); }

    /// Empty as long as nothing is written.
    QByteArray id() const { return _step.path.lastPathComponent(); }

private:
    struct File
    {
        FilePath path;
        int descriptor = -1;
        RecordLock lock;
        qint64 size = 0;
    };
    int _begin(File &file, const QByteArray &prefix) const;
    int _appendTo(File &file, const QByteArray &bytes) const;
    static void _end(File &file);

    UndoJournal _journal;
    UndoStepHeader _header;
    UndoKeeping _keeping = UndoKeeping::Nothing;
    File _step;
    File _backups; ///< the backups that the run leaves
    qint64 _files = 0;
    qint64 _matches = 0;
    bool _isClosed = false;
};

} // namespace tidemark
