#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "foundation/TDFileCommon.h"
#include "foundation/TextEncoding.h"
#include "replace/FileCopy.h"
#include "replace/RewritePlan.h"
#include "replace/RewriteRecord.h"

#include <QByteArray>

#include <optional>

namespace tidemark {

/// One file on its way from its old content to its new one, step by step: prepare(), carryOut(), then
/// finish(), or abandon() before carryOut(). Between prepare() and carryOut() the backup has to reach the
/// disk. Each step may be on another thread, one at a time; none looks at the settings.
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
    };

    explicit FileRewrite(Request request);

    /// Makes the backup and works out the new content. False, with the error set, when the rewrite is
    /// refused: the file is untouched then and there is no backup. With Flush::Yes the backup is on the disk
    /// afterwards.
    bool prepare(Flush flush);
    /// Whether prepare() failed because no backup could be made, as with a full disk.
    bool lacksBackup() const;

    /// The backup of a file that wasn't touched goes.
    void abandon();

    /// Replaces the content. False, with the error set, when that failed: then the backup stays, unless the
    /// file turned out to be changed and wasn't touched.
    bool carryOut(Flush flush);
    /// Whether the file may be without its old content.
    bool isTouched() const { return _isTouched; }
    /// The file's date after carryOut().
    std::optional<FileDate> newModificationDate() const { return _newModificationDate; }

    /// Deletes the backup, unless it is to be kept.
    bool finish();
    bool isBackupKept() const { return _isBackupKept; }
    void setBackupKept(bool isKept) { _isBackupKept = isKept; }

    const FilePath &path() const { return _request.path; }
    /// The file system of the file, after prepare().
    dev_t device() const { return _copied.device; }
    bool isBackupTransient() const { return _request.transientBackupFile; }
    /// Empty when there is none.
    const FilePath &backup() const { return _backup; }
    const TDError &error() const { return _error; }
    /// Refuses the rewrite because the backup can't be brought to the disk.
    void refuse(int errorNumber);
    RewriteRecord::Entry recordEntry() const;

private:
    bool _makeBackup(Flush flush);
    bool _plan();
    bool _produceNewContent(int oldContent);
    bool _isUnmodified();
    bool _replaceContent(Flush flush);
    int _openFile();
    int _writeContent(int target);

    Request _request;
    FilePath _backup;
    FileState _copied; ///< the file as the backup has it
    RewritePlan _newPlan;
    QByteArray _newBytes; ///< all of the new content, unless it is long
    ContentDigest _newContent;
    StringEncoding _writtenEncoding;
    std::optional<FileDate> _newModificationDate;
    TDError _error;
    bool _isTouched = false;
    bool _isBackupKept = false;
};

} // namespace tidemark
