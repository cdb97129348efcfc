#include "replace/FileRewrite.h"

#include "foundation/ExtendedAttributes.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/LocalizedText.h"
#include "reading/EncodingDetection.h"
#include "reading/TDFileReader.h"
#include "replace/ContentDifference.h"
#include "replace/FileModifierErrors.h"
#include "replace/NewContent.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr int LEASE_ATTEMPTS = 20;
constexpr std::chrono::milliseconds TIME_BETWEEN_LEASE_ATTEMPTS(1);

/// Code 4 is about texts; anything else that the reader says is about the disk.
RewriteProblem problemOfReading(const TDError &error)
{
    if (error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR))
        return RewriteProblem::Changed;
    return error.domain() == TD_POSIX_ERROR_DOMAIN ? RewriteProblem::DiskFailure
                                                   : RewriteProblem::NotRepresentable;
}

/// Keeps others out of the file while it is changed. Waits a little for those who have it open. Where there
/// is no lease to be had, the file is changed all the same.
void keepOthersOut(int file)
{
    for (int attempt = 0; attempt < LEASE_ATTEMPTS; ++attempt) {
        if (FileSystemCalls::current().takeLease(file) == 0 || errno != EAGAIN)
            return;
        std::this_thread::sleep_for(TIME_BETWEEN_LEASE_ATTEMPTS);
    }
}

/// In memory of the thread, until the next call in it.
QByteArrayView newContentInMemory(const RewritePlan &plan, QByteArrayView oldContent)
{
    static thread_local QByteArray newBytes;
    newBytes.resize(0);
    newBytes.reserve(plan.newSize());
    (void)handOutNewContent(plan, oldContent, [](QByteArrayView bytes) {
        newBytes.append(bytes);
        return 0;
    });
    return newBytes;
}

QString differentContentText()
{
    return localizedString("The file holds something else than what was written.");
}

/// Where there are no attributes the text is in place all the same.
void setTextEncodingAttribute(int file, const QString &value)
{
    const std::optional<QString> present =
        descriptorExtendedAttributeValueForKey(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
    if (value.isEmpty() && present)
        (void)removeDescriptorExtendedAttribute(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
    else if (!value.isEmpty() && present != value)
        (void)setDescriptorValueForExtendedAttributeKey(file, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, value, 0);
}

} // namespace

FileRewrite::FileRewrite(Request request, std::shared_ptr<RewriteRecord> record)
    : _request(std::move(request)), _record(std::move(record))
{}

bool FileRewrite::_fail(RewriteProblem problem, const TDError &error)
{
    _problem = problem;
    _error = error;
    return false;
}

// -- Preparing

bool FileRewrite::prepare(Flush flush)
{
    _error.clear();
    _problem = RewriteProblem::None;
    _lacksBackup = false;
    if (!_fileIsWritableAtPath()) {
        // Only a file that can't be written can be missing.
        (void)_fileExistsAtPath();
        return false;
    }
    if (_request.leadsElsewhere)
        return _fail(RewriteProblem::Changed, fileModifiedError(path()));
    // The memory of the thread's last file.
    static thread_local BackupFile::Original original;
    if (_fileModifiedSince() || !_makeBackup(flush, original))
        return false;
    if (_copied.date != _request.originalFileModificationDate)
        (void)_fail(RewriteProblem::Changed, fileModifiedError(path()));
    else if ((_request.undone.empty() ? _plan(original) : _planBack(original)) && !_isUnchanged)
        return true;
    abandon();
    return false;
}

bool FileRewrite::_fileExistsAtPath()
{
    return ::access(path().cString(), F_OK) == 0 ||
           _fail(RewriteProblem::Missing, fileDoesNotExistError(path()));
}

bool FileRewrite::_fileIsWritableAtPath()
{
    return ::faccessat(AT_FDCWD, path().cString(), W_OK, AT_EACCESS) == 0 ||
           _fail(RewriteProblem::NotPermitted, fileNotWritableError(path()));
}

bool FileRewrite::_fileModifiedSince()
{
    const std::optional<FileDate> current = TDFileCommon::fileModificationDate(path());
    // What is taken back is told by contents, not by dates.
    if (!_request.undone.empty())
        _request.originalFileModificationDate = current;
    if (current && current == _request.originalFileModificationDate)
        return false;
    (void)_fail(RewriteProblem::Changed, current ? fileModifiedError(path()) : modificationDateError(path()));
    return true;
}

bool FileRewrite::_makeBackup(Flush flush, BackupFile::Original &original)
{
    std::vector<FilePath> noted;
    const auto note = [&](const FilePath &backup) {
        noted.push_back(backup);
        return _record ? _record->noteBackup(path(), backup) : 0;
    };
    int errorNumber = 0;
    _backup = BackupFile::backupFileOf(
        path(), _request.transientBackupFile ? BackupFile::Kind::Transient : BackupFile::Kind::Lasting, flush,
        note, original, _error, errorNumber);
    _endUnmadeBackups(std::move(noted));
    if (_backup) {
        _copied = original.state;
        return true;
    }
    _lacksBackup = _error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_CREATION_ERROR) ||
                   _error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_COPY_ORIGINAL_ERROR);
    _problem =
        _lacksBackup ? problemOfErrorNumber(errorNumber, RewriteProblem::NoBackup) : RewriteProblem::Changed;
    return false;
}

/// Of the names that were tried, one at most is that of a backup, or of what couldn't be removed again.
void FileRewrite::_endUnmadeBackups(std::vector<FilePath> noted)
{
    if (!noted.empty() && (_backup || ::access(noted.back().cString(), F_OK) == 0))
        noted.pop_back();
    if (_record && !noted.empty())
        (void)_record->noteEnds(noted);
}

bool FileRewrite::_plan(const BackupFile::Original &original)
{
    FileToRead content{_backup->path()};
    content.openDescriptor = _backup->descriptor();
    if (original.isContentHeld())
        content.content = original.content;
    const auto reader = TDFileReader::fileReaderWithFile(content, _request.encoding, _error);
    if (!reader)
        return _fail(RewriteProblem::DiskFailure, TDError(_error));
    _newEncodingAttribute = attributeValueForEncoding(reader->stringEncoding());
    const bool isPlanned =
        _newPlan.build(*reader, path(), _request.changes, _request.hadByteOrderMarker, _error) &&
        _produceNewContent(original);
    TDError closingError;
    if (!reader->closeFile(closingError) && isPlanned)
        _error = closingError;
    _request.changes.clear();
    if (_error)
        return _fail(problemOfReading(_error), TDError(_error));
    _isUnchanged = _newContent == _backup->content();
    if (original.isContentHeld())
        _backup->closeDescriptor();
    return true;
}

/// The same for what is to be taken back.
bool FileRewrite::_planBack(const BackupFile::Original &original)
{
    const std::vector<UndoEntry> undone = std::exchange(_request.undone, {});
    const ContentDigest &wanted = undone.back().before;
    _newEncodingAttribute = undone.back().encodingAttribute;
    _isUnchanged = _backup->content() == wanted;
    if (_isUnchanged)
        return true;
    auto entry = std::find_if(undone.begin(), undone.end(),
                              [&](const UndoEntry &each) { return each.after == _backup->content(); });
    std::optional<RewritePlan> plan;
    qint64 matches = 0;
    for (bool isFirst = true; entry != undone.end() && (isFirst || plan); ++entry, isFirst = false) {
        const auto back = planBack(entry->differences, entry->after.size, entry->before.size);
        plan = isFirst || !back ? back : composedPlan(*plan, *back);
        matches += entry->matches;
    }
    if (!plan)
        return _fail(RewriteProblem::Changed, fileModifiedError(path()));
    _request.matches = matches;
    _newPlan = std::move(*plan);
    if (!_produceNewContent(original))
        return _fail(problemOfReading(_error), TDError(_error));
    if (_newContent != wanted)
        return _fail(RewriteProblem::Changed, fileModifiedError(path()));
    if (original.isContentHeld())
        _backup->closeDescriptor();
    return true;
}

bool FileRewrite::_produceNewContent(const BackupFile::Original &original)
{
    if (original.isContentHeld() && _newPlan.newSize() <= BackupFile::LONGEST_CONTENT_HELD) {
        _newContent = digestOfBytes(newContentInMemory(_newPlan, original.content));
        return _noteDifferences();
    }
    ContentHasher hasher;
    const int errorNumber = handOutNewContent(_newPlan, _backup->descriptor(), [&](QByteArrayView bytes) {
        hasher.add(bytes);
        return 0;
    });
    _newContent = hasher.digest();
    if (errorNumber != 0)
        _error = TDError::posixError(errorNumber, _backup->path());
    return errorNumber == 0 && _noteDifferences();
}

/// True when they aren't asked for.
bool FileRewrite::_noteDifferences()
{
    if (!_request.isNoted)
        return true;
    _oldEncodingAttribute =
        pathExtendedAttributeValueForKey(path(), TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING).value_or(QString());
    const std::optional<QByteArray> differences = differencesOf(_newPlan, _backup->descriptor());
    if (differences)
        _differences = *differences;
    else
        _error = TDError::posixError(errno, _backup->path());
    return differences.has_value();
}

RewriteRecord::Entry FileRewrite::recordEntry() const
{
    return {path(), backup(), _copied, _backup->content(), _newContent, _isBackupKept};
}

UndoEntry FileRewrite::takeUndoEntry()
{
    return {path(),
            _copied.device,
            _copied.inode,
            _backup->content(),
            _newContent,
            _request.matches,
            _request.transientBackupFile,
            std::exchange(_differences, {}),
            _oldEncodingAttribute};
}

KeptBackup FileRewrite::keptBackup() const
{
    return {_backup->path(), path(), _backup->state().inode, _backup->content()};
}

void FileRewrite::abandon()
{
    if (!_backup)
        return;
    // First, since what stands in the file may be somebody else's by now and soon has no backup.
    if (_record)
        (void)_record->noteEnds({_backup->path()});
    (void)FileSystemCalls::current().remove(_backup->path().cString());
    _backup.reset();
    _newPlan = {};
}

void FileRewrite::refuse(RewriteProblem problem, int errorNumber)
{
    (void)_fail(problem, refusalError(path(), problem, errorNumber));
    abandon();
}

// -- Writing

bool FileRewrite::carryOut(Flush flush)
{
    Descriptor target = _truncateFile();
    bool isDone = false;
    if (target.isOpen()) {
        // The memory of the thread's last file.
        static thread_local QByteArray oldBytes;
        isDone = _isAsItWas(target.number(), oldBytes) && _replaceContent(target.number(), oldBytes, flush);
        if (target.close() != 0 && isDone)
            isDone = _fail(RewriteProblem::Damaged, truncationCloseError(path()));
    }
    if (!isDone && _problem != RewriteProblem::Damaged && _problem != RewriteProblem::NotOnDisk)
        abandon();
    if (_backup)
        _backup->closeDescriptor();
    _newPlan = {};
    return isDone;
}

/// Opens the file to change it, for nobody else if that can be had. None, with the error, when it can't be
/// opened.
Descriptor FileRewrite::_truncateFile()
{
    FileSystemCalls &calls = FileSystemCalls::current();
    // The path has no links in it; where there is one now, somebody put it there.
    Descriptor target(calls.open(path().cString(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0));
    if (!target.isOpen()) {
        (void)_fail(problemOfErrorNumber(errno, RewriteProblem::Changed),
                    truncationOpenError(path(), _backup->path()));
        return {};
    }
    keepOthersOut(target.number());
    if (_backup->descriptor() >= 0)
        keepOthersOut(_backup->descriptor());
    return target;
}

/// Whether it is the file that was copied, unchanged to the last byte, with its copy in place. Sets the error
/// if not.
bool FileRewrite::_isAsItWas(int target, QByteArray &oldBytes)
{
    if (!_backup->isInPlace())
        return _fail(RewriteProblem::NoBackup, backupCopyError(path(), _backup->path(), ENOENT));
    const bool isUnchanged = stateOfDescriptor(target) == _copied;
    const std::optional<ContentDigest> digest =
        isUnchanged ? _digestOfOldContent(target, oldBytes) : std::nullopt;
    if (isUnchanged && !digest)
        return _fail(RewriteProblem::DiskFailure, TDError::posixError(errno, path()));
    return digest == _backup->content() || _fail(RewriteProblem::Changed, fileModifiedError(path()));
}

/// Keeps the content, unless it is long.
std::optional<ContentDigest> FileRewrite::_digestOfOldContent(int target, QByteArray &oldBytes) const
{
    oldBytes.resize(0);
    if (!_isOldContentHeld())
        return digestOfDescriptor(target, _copied.size);
    oldBytes.resize(_copied.size);
    const qint64 count = readFully(target, oldBytes.data(), _copied.size, 0);
    if (count < 0)
        return {};
    oldBytes.truncate(count);
    return digestOfBytes(oldBytes);
}

bool FileRewrite::_replaceContent(int target, QByteArrayView oldBytes, Flush flush)
{
    const Writing writing = _putNewContent(target, oldBytes);
    if (writing.errorNumber != 0)
        return _failWriting(target, writing);
    const std::optional<bool> isWritten = _hasNewContent(target);
    if (!isWritten)
        return _failWriting(target, {errno, true, false});
    if (!*isWritten)
        return _fail(RewriteProblem::Damaged,
                     writeError(path(), backup(), differentContentText(), FileNow::Damaged));
    if (_newEncodingAttribute)
        setTextEncodingAttribute(target, *_newEncodingAttribute);
    if (flush == Flush::Yes && FileSystemCalls::current().sync(target) != 0) {
        noteFailedFlush(errno);
        return false;
    }
    if (const std::optional<FileState> state = stateOfDescriptor(target))
        _newModificationDate = state->date;
    return true;
}

FileRewrite::Writing FileRewrite::_putNewContent(int target, QByteArrayView oldBytes)
{
    ContentOverwrite overwrite(target, _copied.size, oldBytes);
    Writing writing;
    writing.errorNumber = overwrite.reserve(_newContent.size);
    if (writing.errorNumber != 0)
        return writing;
    if (_isOldContentHeld() && _newContent.size <= BackupFile::LONGEST_CONTENT_HELD)
        writing.errorNumber = overwrite.putAll(newContentInMemory(_newPlan, oldBytes));
    else
        writing.errorNumber = _putLongContent(overwrite, oldBytes);
    if (writing.errorNumber == 0)
        writing.errorNumber = overwrite.putPending();
    if (writing.errorNumber == 0) {
        writing.errorNumber = overwrite.cut();
        writing.hasFailedInCutting = writing.errorNumber != 0;
    }
    if (endsRun(writing.errorNumber))
        _diskError = writing.errorNumber;
    writing.hasChangedFile = overwrite.hasChangedAnything();
    return writing;
}

int FileRewrite::_putLongContent(ContentOverwrite &overwrite, QByteArrayView oldBytes) const
{
    const auto sink = [&overwrite](QByteArrayView bytes) { return overwrite.put(bytes); };
    return _isOldContentHeld() ? handOutNewContent(_newPlan, oldBytes, sink)
                               : handOutNewContent(_newPlan, _backup->descriptor(), sink);
}

/// Whether the file begins with the new content: somebody who had it open may have added to it meanwhile.
/// Nothing when that can't be told.
std::optional<bool> FileRewrite::_hasNewContent(int target) const
{
    const std::optional<FileState> state = stateOfDescriptor(target);
    const std::optional<ContentDigest> digest =
        state ? digestOfDescriptor(target, _newContent.size) : std::nullopt;
    return digest ? std::optional(state->size >= _newContent.size && digest == _newContent) : std::nullopt;
}

bool FileRewrite::_failWriting(int target, const Writing &writing)
{
    const bool isAsItWas = !writing.hasChangedFile || _putOldContentBack(target);
    const FileNow now = isAsItWas ? FileNow::AsItWas : FileNow::Damaged;
    const QString exception = TDError::posixError(writing.errorNumber).localizedFailureReason();
    return _fail(isAsItWas ? problemOfErrorNumber(writing.errorNumber, RewriteProblem::DiskFailure)
                           : RewriteProblem::Damaged,
                 writing.hasFailedInCutting ? truncationError(path(), now)
                                            : writeError(path(), _backup->path(), exception, now));
}

/// A file that could be written only in part gets its old content back, if the disk still takes that.
bool FileRewrite::_putOldContentBack(int target)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    const Descriptor old(calls.open(_backup->path().cString(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC, 0));
    if (!old.isOpen())
        return false;
    struct stat status;
    const bool isBack = ::fstat(old.number(), &status) == 0 &&
                        digestOfDescriptor(old.number(), status.st_size) == _backup->content() &&
                        overwriteWithContentOf(old.number(), target) == 0 &&
                        hasContent(target, _backup->content()) && calls.sync(target) == 0;
    if (isBack)
        copyAttributesAndDates(old.number(), target, status);
    return isBack;
}

void FileRewrite::noteFailedFlush(int errorNumber)
{
    _diskError = errorNumber;
    (void)_fail(RewriteProblem::NotOnDisk,
                writeError(path(), backup(), TDError::posixError(errorNumber).localizedFailureReason(),
                           FileNow::Damaged));
}

bool FileRewrite::finish()
{
    if (_isBackupKept)
        return true;
    TDError error;
    return _backup->deleteTemporaryBackupFile(error) || _fail(RewriteProblem::BackupLeft, error);
}

} // namespace tidemark
