#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "replace/BackupFile.h"
#include "replace/ContentOverwrite.h"
#include "replace/RewritePlan.h"
#include "replace/RewriteProblem.h"
#include "replace/RewriteRecord.h"
#include "replace/UndoStep.h"
#include "text/TextEncoding.h"

#include <QByteArray>

#include <memory>
#include <optional>

namespace tidemark {

/// One file on its way from its old content to its new one, step by step: prepare(), carryOut(), then
/// finish(), or abandon() before carryOut(). Between prepare() and carryOut() the backup and then the record
/// have to reach the disk. Each step may be on another thread, one at a time; none looks at the settings.
class FileRewrite
{
public:
    struct Request
    {
        FilePath path; ///< with links resolved
        std::optional<FileDate> originalFileModificationDate;
        LineChanges changes;
        StringEncoding encoding; ///< what the reader is given
        bool hadByteOrderMarker = false;
        bool transientBackupFile = false;
        qint64 matches = 0; ///< that are replaced, for undoEntry()
        /// Instead of the changes, which aren't looked at then, nor is the date: what was done to the file,
        /// the latest first, each from what the one before it left. All from the one that left the present
        /// content is taken back; any other content is refused as changed.
        std::vector<UndoEntry> undone = {};
        /// A link has come into the path since the file was changed: what is there now isn't that file.
        bool leadsElsewhere = false;
        bool isNoted = false; ///< undoEntry() will be asked for
    };

    /// The record gets the names of backups, and what became of them; null: nothing is recorded.
    FileRewrite(Request request, std::shared_ptr<RewriteRecord> record);
    /// Before prepare() is called once more.
    void setRecord(std::shared_ptr<RewriteRecord> record) { _record = std::move(record); }

    /// Makes the backup and works out the new content. False when nothing is to be written: the rewrite is
    /// refused, with the error set, or the new content is the old one. The file is untouched then and there
    /// is no backup. With Flush::Yes the backup is on the disk afterwards.
    bool prepare(Flush flush);
    /// Whether prepare() found that the new content is the old one. There is no error then.
    bool isUnchanged() const { return _isUnchanged; }
    /// Whether prepare() failed because no backup could be made, as with a full disk.
    bool lacksBackup() const { return _lacksBackup; }

    /// The backup of a file that wasn't touched goes.
    void abandon();
    /// The same, with what was in the way. `errorNumber` is the system's, or 0.
    void refuse(RewriteProblem problem, int errorNumber);

    /// Replaces the content, while nobody else can open the file. False, with the error set, when that
    /// failed: either the file is as it was and there is no backup, or problem() is Damaged and the backup
    /// stays.
    bool carryOut(Flush flush);
    /// What was in the way of changing the file, as the system tells it; 0 when nothing was.
    int diskError() const { return _diskError; }
    /// The file's date after carryOut().
    std::optional<FileDate> newModificationDate() const { return _newModificationDate; }

    /// Deletes the backup, unless it is to be kept.
    bool finish();
    bool isBackupKept() const { return _isBackupKept; }
    void setBackupKept(bool isKept) { _isBackupKept = isKept; }
    /// The new content may not be on the disk: the backup stays.
    void noteFailedFlush(int errorNumber);

    const FilePath &path() const { return _request.path; }
    bool isBackupTransient() const { return _request.transientBackupFile; }
    /// Empty when there is none.
    FilePath backup() const { return _backup ? _backup->path() : FilePath(); }
    const TDError &error() const { return _error; }
    RewriteProblem problem() const { return _problem; }
    /// After prepare().
    RewriteRecord::Entry recordEntry() const;
    /// After prepare(), once: the differences are handed over.
    UndoEntry takeUndoEntry();
    KeptBackup keptBackup() const;
    /// How many matches are replaced, or taken back.
    qint64 matches() const { return _request.matches; }

private:
    bool _fileExistsAtPath();
    bool _fileIsWritableAtPath();
    bool _fileModifiedSince();
    bool _makeBackup(Flush flush, BackupFile::Original &original);
    void _endUnmadeBackups(std::vector<FilePath> noted);
    bool _plan(const BackupFile::Original &original);
    bool _planBack(const BackupFile::Original &original);
    bool _produceNewContent(const BackupFile::Original &original);
    bool _noteDifferences();

    /// How far the writing came.
    struct Writing
    {
        int errorNumber = 0;
        bool hasChangedFile = false;
        bool hasFailedInCutting = false;
    };
    Descriptor _truncateFile();
    bool _isAsItWas(int target, QByteArray &oldBytes);
    bool _isOldContentHeld() const { return _copied.size <= BackupFile::LONGEST_CONTENT_HELD; }
    std::optional<ContentDigest> _digestOfOldContent(int target, QByteArray &oldBytes) const;
    bool _replaceContent(int target, QByteArrayView oldBytes, Flush flush);
    Writing _putNewContent(int target, QByteArrayView oldBytes);
    int _putLongContent(ContentOverwrite &overwrite, QByteArrayView oldBytes) const;
    std::optional<bool> _hasNewContent(int target) const;
    bool _putOldContentBack(int target);
    bool _fail(RewriteProblem problem, const TDError &error);
    bool _failWriting(int target, const Writing &writing);

    Request _request;
    std::shared_ptr<RewriteRecord> _record;
    std::optional<BackupFile> _backup;
    FileState _copied; ///< the file as the backup has it
    RewritePlan _newPlan;
    ContentDigest _newContent;
    QByteArray _differences; ///< as far as they are asked for
    /// What was, and what is to be, noted of the file's encoding; empty for nothing.
    QString _oldEncodingAttribute;
    std::optional<QString> _newEncodingAttribute; ///< none: it stays
    std::optional<FileDate> _newModificationDate;
    TDError _error;
    RewriteProblem _problem = RewriteProblem::None;
    int _diskError = 0;
    bool _isUnchanged = false;
    bool _lacksBackup = false;
    bool _isBackupKept = false;
};

} // namespace tidemark
