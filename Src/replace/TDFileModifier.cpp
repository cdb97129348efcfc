#include "replace/TDFileModifier.h"

#include "foundation/ExtendedAttributes.h"
#include "foundation/FileSystemCalls.h"
#include "foundation/UserDefaults.h"
#include "reading/EncodingDetection.h"
#include "reading/TDFileReader.h"
#include "replace/DeferredBackups.h"
#include "replace/FileCopy.h"
#include "replace/FileModifierErrors.h"
#include "replace/PlanWriter.h"
#include "replace/RewritePlan.h"

#include <QDir>
#include <QSet>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace tidemark {

namespace {

QSet<FilePath> &pathsToModifiedFiles()
{
    static QSet<FilePath> paths;
    return paths;
}

/// As far as it can be resolved: a path that leads nowhere stays as it is.
FilePath resolvingSymlinks(const FilePath &path)
{
    char *resolved = ::realpath(path.cString(), nullptr);
    if (resolved == nullptr)
        return path;
    const FilePath result((QByteArray(resolved)));
    std::free(resolved);
    return result;
}

QByteArray backupTemplate(const FilePath &path, bool transientBackupFile)
{
    if (!transientBackupFile)
        return path.bytes() + ".TDMBackup.XXX";
    return FilePath::fromDisplayText(QDir::tempPath())
        .appendingPathComponent(path.lastPathComponent() + ".TDMBackup.XXXXXX")
        .bytes();
}

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

} // namespace

TDFileModifier::TDFileModifier(const FilePath &path) : _path(resolvingSymlinks(path)) {}

std::unique_ptr<TDFileModifier> TDFileModifier::fileModifierWithFile(
    const FilePath &path, std::optional<FileDate> originalFileModificationDate, const MatchLines &matchLines,
    StringEncoding encoding, bool hadByteOrderMarker, bool transientBackupFile, TDError &error)
{
    error.clear();
    std::unique_ptr<TDFileModifier> modifier(new TDFileModifier(path));
    if (!modifier->_rewrite(originalFileModificationDate, matchLines, encoding, hadByteOrderMarker,
                            transientBackupFile, error))
        return nullptr;
    return modifier;
}

bool TDFileModifier::_rewrite(std::optional<FileDate> date, const MatchLines &matchLines,
                              StringEncoding encoding, bool hadByteOrderMarker, bool transientBackupFile,
                              TDError &error)
{
    if (!fileExistsAtPath(_path, error) || !fileIsWritableAtPath(_path, error))
        return false;
    const std::optional<bool> modified = fileModifiedSince(date, _path, error);
    if (!modified || *modified)
        return false;
    const std::optional<FilePath> backup = _makeBackup(transientBackupFile, error);
    return backup && _writeWithBackup(*backup, date, matchLines, encoding, hadByteOrderMarker, error) &&
           _finish(*backup, transientBackupFile, error);
}

std::optional<FilePath> TDFileModifier::_makeBackup(bool transientBackupFile, TDError &error)
{
    // The name is reserved, freed again and then taken by the copy, which fails if somebody else took it.
    const std::optional<FilePath> backup = createEmptyBackupFile(_path, transientBackupFile, error);
    if (!backup || !deleteTemporaryBackupFile(*backup, error) ||
        !copyOriginalFileToBackupLocation(_path, *backup, error))
        return {};
    return backup;
}

bool TDFileModifier::_writeWithBackup(const FilePath &backup, std::optional<FileDate> date,
                                      const MatchLines &matchLines, StringEncoding encoding,
                                      bool hadByteOrderMarker, TDError &error)
{
    RewritePlan plan;
    StringEncoding writtenEncoding = encoding;
    bool prepared = false;
    if (const auto reader = TDFileReader::fileReaderWithFile(backup, encoding, error)) {
        writtenEncoding = reader->stringEncoding();
        prepared = plan.build(*reader, _path, matchLines, hadByteOrderMarker, error);
        TDError closingError;
        if (!reader->closeFile(closingError) && prepared) {
            error = closingError;
            prepared = false;
        }
    }
    // The file may have been changed while the copy was made and read.
    if (prepared) {
        const std::optional<bool> modified = fileModifiedSince(date, _path, error);
        prepared = modified && !*modified;
    }
    if (!prepared) {
        (void)FileSystemCalls::current().remove(backup.cString());
        return false;
    }
    if (!truncateFile(_path, backup, error))
        return false;
    return _replaceContent(plan, backup, writtenEncoding, error);
}

bool TDFileModifier::_replaceContent(const RewritePlan &plan, const FilePath &backup, StringEncoding encoding,
                                     TDError &error)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    ScopedDescriptor target(calls.open(_path.cString(), O_WRONLY | O_CLOEXEC, 0));
    if (target.get() < 0) {
        error = truncationOpenError(_path, backup);
        return false;
    }
    const ScopedDescriptor oldContent(calls.open(backup.cString(), O_RDONLY | O_CLOEXEC, 0));
    if (oldContent.get() < 0) {
        error = TDFileReader::openError(backup, errno);
        return false;
    }
    // A file system without attributes keeps the text all the same.
    (void)setPathValueForExtendedAttributeKey(_path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING,
                                              attributeValueForEncoding(encoding), 0);
    int errorNumber = PlanWriter(oldContent.get(), target.get()).write(plan);
    if (errorNumber == 0 && DeferredBackups::current() == nullptr && calls.sync(target.get()) != 0)
        errorNumber = errno;
    if (calls.close(target.release()) != 0 && errorNumber == 0)
        errorNumber = errno;
    if (errorNumber == 0)
        return true;
    error = writeError(_path, backup, TDError::posixError(errorNumber).localizedFailureReason(), {});
    return false;
}

bool TDFileModifier::_finish(const FilePath &backup, bool transientBackupFile, TDError &error)
{
    const bool isKept = UserDefaults::standard().boolFor(BooleanSetting::CreateBackupBeforeReplacing) &&
                        !isPathToModifiedFile(_path) && !transientBackupFile;
    pathsToModifiedFiles().insert(_path);
    if (DeferredBackups *deferred = DeferredBackups::current()) {
        deferred->add(_path, isKept ? FilePath() : backup);
        return true;
    }
    return isKept || deleteTemporaryBackupFile(backup, error);
}

bool TDFileModifier::isPathToModifiedFile(const FilePath &path)
{
    return pathsToModifiedFiles().contains(path);
}

bool TDFileModifier::fileExistsAtPath(const FilePath &path, TDError &error)
{
    if (::access(path.cString(), F_OK) == 0)
        return true;
    error = fileDoesNotExistError(path);
    return false;
}

bool TDFileModifier::fileIsWritableAtPath(const FilePath &path, TDError &error)
{
    if (::faccessat(AT_FDCWD, path.cString(), W_OK, AT_EACCESS) == 0)
        return true;
    error = fileNotWritableError(path);
    return false;
}

std::optional<bool> TDFileModifier::fileModifiedSince(std::optional<FileDate> date, const FilePath &path,
                                                      TDError &error)
{
    const std::optional<FileDate> current = TDFileCommon::fileModificationDate(path);
    if (!current) {
        error = modificationDateError(path);
        return {};
    }
    if (date == current)
        return false;
    error = fileModifiedError(path);
    return true;
}

std::optional<FilePath> TDFileModifier::createEmptyBackupFile(const FilePath &path, bool transientBackupFile,
                                                              TDError &error)
{
    QByteArray name = backupTemplate(path, transientBackupFile);
    const int descriptor = FileSystemCalls::current().makeUniqueFile(name.data());
    if (descriptor == -1) {
        error = backupCreationError(path, errno);
        return {};
    }
    (void)::close(descriptor);
    return FilePath(name);
}

bool TDFileModifier::deleteTemporaryBackupFile(const FilePath &backupPath, TDError &error)
{
    if (FileSystemCalls::current().remove(backupPath.cString()) == 0)
        return true;
    error = backupDeletionError(backupPath, errno);
    return false;
}

bool TDFileModifier::copyOriginalFileToBackupLocation(const FilePath &path, const FilePath &backupPath,
                                                      TDError &error)
{
    const int errorNumber = copyFile(path, backupPath);
    if (errorNumber == 0)
        return true;
    error = backupCopyError(path, backupPath, errorNumber);
    return false;
}

bool TDFileModifier::truncateFile(const FilePath &path, const FilePath &backupPath, TDError &error)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    const int descriptor = calls.open(path.cString(), O_RDWR | O_CLOEXEC, 0);
    if (descriptor == -1) {
        error = truncationOpenError(path, backupPath);
        return false;
    }
    if (calls.truncate(descriptor, 0) != 0)
        error = truncationError(path);
    if (calls.close(descriptor) != 0)
        error = truncationCloseError(path);
    return error.isNull();
}

} // namespace tidemark
