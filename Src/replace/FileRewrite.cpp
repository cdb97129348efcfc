#include "replace/FileRewrite.h"

#include "foundation/ExtendedAttributes.h"
#include "foundation/FileSystemCalls.h"
#include "reading/EncodingDetection.h"
#include "reading/TDFileReader.h"
#include "replace/FileModifierErrors.h"
#include "replace/NewContent.h"
#include "replace/TDFileModifier.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark {

namespace {

/// New content up to this many bytes is held in memory from its check to its writing.
constexpr qint64 LONGEST_CONTENT_HELD = 1 << 20;

/// A descriptor that is closed at the end, for paths on which closing can't lose anything.
class ScopedDescriptor
{
public:
    explicit ScopedDescriptor(int descriptor) : _descriptor(descriptor) {}
    ~ScopedDescriptor()
    {
        if (_descriptor >= 0)
            (void)FileSystemCalls::current().close(_descriptor);
    }
    ScopedDescriptor(const ScopedDescriptor &) = delete;
    ScopedDescriptor &operator=(const ScopedDescriptor &) = delete;
    int get() const { return _descriptor; }
    int release() { return std::exchange(_descriptor, -1); }

private:
    int _descriptor;
};

int openForReading(const FilePath &path)
{
    return FileSystemCalls::current().open(path.cString(), O_RDONLY | O_CLOEXEC, 0);
}

} // namespace

FileRewrite::FileRewrite(Request request) : _request(std::move(request)), _writtenEncoding(_request.encoding)
{}

bool FileRewrite::prepare(Flush flush)
{
    _error.clear();
    // What can be written exists.
    if (!TDFileModifier::fileIsWritableAtPath(path(), _error)) {
        (void)TDFileModifier::fileExistsAtPath(path(), _error);
        return false;
    }
    if (!_isUnmodified() || !_makeBackup(flush))
        return false;
    if (_copied.date != _request.originalFileModificationDate)
        _error = fileModifiedError(path());
    else if (_plan())
        return true;
    abandon();
    return false;
}

bool FileRewrite::_isUnmodified()
{
    const std::optional<bool> modified =
        TDFileModifier::fileModifiedSince(_request.originalFileModificationDate, path(), _error);
    return modified && !*modified;
}

bool FileRewrite::_makeBackup(Flush flush)
{
    int descriptor = -1;
    const std::optional<FilePath> backup =
        TDFileModifier::createEmptyBackupFile(path(), _request.transientBackupFile, descriptor, _error);
    if (!backup)
        return false;
    RewriteRecord *record = RewriteRecord::current();
    if (record != nullptr)
        record->noteBackup(path(), *backup);
    if (TDFileModifier::copyOriginalFileToBackupLocation(path(), *backup, descriptor, flush, _copied,
                                                         _error)) {
        _backup = *backup;
        return true;
    }
    if (record != nullptr)
        record->noteEnds({*backup});
    return false;
}

bool FileRewrite::lacksBackup() const
{
    return _error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_CREATION_ERROR) ||
           _error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_COPY_ORIGINAL_ERROR);
}

void FileRewrite::refuse(int errorNumber)
{
    _error = backupCopyError(path(), _backup, errorNumber);
    abandon();
}

bool FileRewrite::_plan()
{
    const auto reader = TDFileReader::fileReaderWithFile(_backup, _request.encoding, _error);
    if (!reader)
        return false;
    _writtenEncoding = reader->stringEncoding();
    const bool isPlanned =
        _newPlan.build(*reader, path(), _request.changes, _request.hadByteOrderMarker, _error) &&
        _produceNewContent(reader->descriptor());
    TDError closingError;
    if (!reader->closeFile(closingError) && isPlanned)
        _error = closingError;
    _request.changes.clear();
    return !_error;
}

bool FileRewrite::_produceNewContent(int oldContent)
{
    const bool isHeld = _newPlan.newSize() <= LONGEST_CONTENT_HELD;
    if (isHeld)
        _newBytes.reserve(_newPlan.newSize());
    ContentHasher hasher;
    const int errorNumber = handOutNewContent(_newPlan, oldContent, [&](QByteArrayView bytes) {
        hasher.add(bytes);
        if (isHeld)
            _newBytes.append(bytes);
        return 0;
    });
    if (errorNumber != 0) {
        _error = TDError::posixError(errorNumber, _backup);
        return false;
    }
    _newContent = hasher.digest();
    if (isHeld)
        _newPlan = {};
    return true;
}

RewriteRecord::Entry FileRewrite::recordEntry() const
{
    return {path(), _backup, _newContent, _isBackupKept};
}

void FileRewrite::abandon()
{
    if (_backup.isEmpty())
        return;
    (void)FileSystemCalls::current().remove(_backup.cString());
    if (RewriteRecord *record = RewriteRecord::current())
        record->noteEnds({_backup});
    _backup = {};
}

bool FileRewrite::carryOut(Flush flush)
{
    // The file may have been changed since it was looked at.
    if (TDFileModifier::truncateFile(path(), _backup, _copied, _error)) {
        _isTouched = true;
        return _replaceContent(flush);
    }
    _isTouched = !_error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR);
    if (!_isTouched)
        abandon();
    return false;
}

/// The same file as before, whatever stands at its path by now.
int FileRewrite::_openFile()
{
    FileSystemCalls &calls = FileSystemCalls::current();
    const int descriptor = calls.open(path().cString(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0);
    struct stat status;
    if (descriptor < 0 ||
        (::fstat(descriptor, &status) == 0 && FileState::fromStatus(status).isSameFile(_copied)))
        return descriptor;
    (void)calls.close(descriptor);
    return -1;
}

bool FileRewrite::_replaceContent(Flush flush)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    ScopedDescriptor target(_openFile());
    if (target.get() < 0) {
        _error = truncationOpenError(path(), _backup);
        return false;
    }
    // A file system without attributes keeps the text all the same.
    (void)setDescriptorValueForExtendedAttributeKey(target.get(), TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING,
                                                    attributeValueForEncoding(_writtenEncoding), 0);
    int errorNumber = _writeContent(target.get());
    if (_error)
        return false;
    if (errorNumber == 0 && flush == Flush::Yes && calls.sync(target.get()) != 0)
        errorNumber = errno;
    struct stat status;
    if (::fstat(target.get(), &status) == 0)
        _newModificationDate = FileDate::fromStatus(status);
    if (calls.close(target.release()) != 0 && errorNumber == 0)
        errorNumber = errno;
    _newBytes = {};
    if (errorNumber == 0)
        return true;
    _error = writeError(path(), _backup, TDError::posixError(errorNumber).localizedFailureReason(), {});
    return false;
}

int FileRewrite::_writeContent(int target)
{
    if (_newContent.size <= LONGEST_CONTENT_HELD)
        return writeAll(target, _newBytes);
    const ScopedDescriptor oldContent(openForReading(_backup));
    if (oldContent.get() < 0) {
        _error = TDFileReader::openError(_backup, errno);
        return 0;
    }
    return handOutNewContent(_newPlan, oldContent.get(),
                             [target](QByteArrayView bytes) { return writeAll(target, bytes); });
}

bool FileRewrite::finish()
{
    return _isBackupKept || TDFileModifier::deleteTemporaryBackupFile(_backup, _error);
}

} // namespace tidemark
