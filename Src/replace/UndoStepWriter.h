#pragma once

#include "foundation/Descriptor.h"
#include "replace/RecordLock.h"
#include "replace/UndoJournal.h"
#include "replace/UndoStep.h"
#include "replace/UndoStepFormat.h"

#include <QList>

#include <atomic>
#include <vector>

namespace tidemark {

/// Writes a step, ahead of what it is about: the files of a group are in it, and on the disk, before the
/// first of them is changed. When the journal can't be written, or the step becomes larger than the journal
/// may be, nothing is left of it and the run goes on without. One thread at a time.
class UndoStepWriter
{
public:
    enum class Purpose {
        Replacement, ///< after which nothing can be redone
        TakingBack,
    };
    UndoStepWriter(UndoJournal journal, UndoStepHeader header, Purpose purpose);
    /// Closes it.
    ~UndoStepWriter();
    UndoStepWriter(const UndoStepWriter &) = delete;
    UndoStepWriter &operator=(const UndoStepWriter &) = delete;

    /// Whether what is appended is kept: false when the step was given up.
    bool isOpen() const { return _keeping == UndoKeeping::Nothing || _keeping == UndoKeeping::Kept; }
    /// Files about to be changed, and the backups of them that are to stay. All of it is on the disk after
    /// flush(). 0, also when the step is given up; an errno only when the disk itself fails: nothing should
    /// be changed then.
    int append(const std::vector<UndoEntry> &entries, const std::vector<KeptBackup> &backups);
    /// Brings what was appended to the disk, unless it is on one of the file systems, by number, that were
    /// flushed since. Returns what append() does.
    int flush(const QList<quint64> &flushedFileSystems);
    /// Drops the step for a reason such as its size; what was appended goes.
    void giveUp(UndoKeeping reason);

    /// A file that was appended has been changed: a stop may leave others.
    void noteDone(qint64 matches);
    /// Lets the step go. One about nothing is removed, and the journal is cut to its limit. Returns whether
    /// it is kept.
    UndoKeeping close();

    /// Of a step that is kept; else empty. Not while another thread appends.
    QByteArray id() const;

private:
    struct File
    {
        FilePath path;
        RecordLock lock; ///< let go of behind the descriptor
        Descriptor descriptor;
        qint64 size = 0;
        bool isFlushed = true;
        bool isFolderFlushed = false; ///< its name is on the disk
    };
    int _begin(File &file, const QByteArray &prefix);
    int _appendTo(File &file, const QByteArray &prefix, const QByteArray &block);
    int _giveUpAfter(int error);
    int _flush(File &file, const QList<quint64> &flushedFileSystems);
    static void _end(File &file, bool isKept);

    UndoJournal _journal;
    UndoStepHeader _header;
    Purpose _purpose;
    std::atomic<UndoKeeping> _keeping = UndoKeeping::Nothing;
    File _step;
    File _backups; ///< what the run leaves beside files
    UndoStepFormat::Counts _appended;
    UndoStepFormat::Counts _done;
};

} // namespace tidemark
