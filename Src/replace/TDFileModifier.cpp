#include "replace/TDFileModifier.h"

#include "foundation/FileSystemCalls.h"
#include "foundation/UserDefaults.h"
#include "replace/FileCopy.h"
#include "replace/FileModifierErrors.h"
#include "replace/FileRewrite.h"
#include "replace/ResolvedPaths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif

namespace tidemark {

namespace {

QSet<FilePath> &pathsToModifiedFiles()
{
    static QSet<FilePath> paths;
    return paths;
}

/// The temporary folder; where that is in memory only, and not the user's choice, the one that outlives a
/// power cut.
QString transientBackupFolder()
{
    const QString usual = QDir::tempPath();
#ifdef __linux__
    const QString lasting = QStringLiteral("/var/tmp");
    struct statfs status;
    if (!qEnvironmentVariableIsSet("TMPDIR") &&
        ::statfs(QFile::encodeName(usual).constData(), &status) == 0 && status.f_type == TMPFS_MAGIC &&
        QFileInfo(lasting).isWritable())
        return lasting;
#endif
    return usual;
}

QByteArray backupTemplate(const FilePath &path, bool transientBackupFile)
{
    if (!transientBackupFile)
        return path.bytes() + ".TDMBackup.XXX";
    return FilePath::fromDisplayText(transientBackupFolder())
        .appendingPathComponent(path.lastPathComponent() + ".TDMBackup.XXXXXX")
        .bytes();
}

bool rewriteAtOnce(FileRewrite &rewrite)
{
    if (!rewrite.prepare(Flush::Yes))
        return false;
    RewriteRecord *record = RewriteRecord::current();
    rewrite.setBackupKept(TDFileModifier::keepsBackupOfFile(rewrite.path(), rewrite.isBackupTransient()));
    if (record != nullptr)
        record->noteRewrites({rewrite.recordEntry()});
    bool isDone = rewrite.carryOut(Flush::Yes);
    if (isDone) {
        TDFileModifier::notePathToModifiedFile(rewrite.path());
        isDone = rewrite.finish();
    }
    // A file that is only partly written stays on record.
    if (record != nullptr && (isDone || !rewrite.isTouched()))
        record->noteEnds({rewrite.backup()});
    return isDone;
}

} // namespace

std::unique_ptr<TDFileModifier> TDFileModifier::fileModifierWithFile(
    const FilePath &path, std::optional<FileDate> originalFileModificationDate, const MatchLines &matchLines,
    StringEncoding encoding, bool hadByteOrderMarker, bool transientBackupFile, TDError &error)
{
    FileRewrite rewrite({ResolvedPaths().resolving(path), originalFileModificationDate, lineChangesOf(matchLines), encoding,
                         hadByteOrderMarker, transientBackupFile});
    const bool isDone = rewriteAtOnce(rewrite);
    error = rewrite.error();
    return std::unique_ptr<TDFileModifier>(isDone ? new TDFileModifier(rewrite.path()) : nullptr);
}

bool TDFileModifier::isPathToModifiedFile(const FilePath &path)
{
    return pathsToModifiedFiles().contains(path);
}

void TDFileModifier::notePathToModifiedFile(const FilePath &path)
{
    pathsToModifiedFiles().insert(path);
}

bool TDFileModifier::keepsBackupOfFile(const FilePath &path, bool transientBackupFile)
{
    return UserDefaults::standard().boolFor(BooleanSetting::CreateBackupBeforeReplacing) &&
           !isPathToModifiedFile(path) && !transientBackupFile;
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
                                                              int &descriptor, TDError &error)
{
    QByteArray name = backupTemplate(path, transientBackupFile);
    descriptor = FileSystemCalls::current().makeUniqueFile(name.data());
    if (descriptor == -1) {
        error = backupCreationError(path, errno);
        return {};
    }
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
                                                      int descriptor, Flush flush, FileState &copied,
                                                      TDError &error)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    int errorNumber = copyFile(path, descriptor, flush, &copied);
    if (calls.close(descriptor) != 0 && errorNumber == 0)
        errorNumber = errno;
    if (errorNumber == 0 && flush == Flush::Yes)
        errorNumber = flushFolder(backupPath.deletingLastPathComponent());
    if (errorNumber == 0)
        return true;
    (void)calls.remove(backupPath.cString());
    error = backupCopyError(path, backupPath, errorNumber);
    return false;
}

bool TDFileModifier::truncateFile(const FilePath &path, const FilePath &backupPath, const FileState &state,
                                  TDError &error)
{
    FileSystemCalls &calls = FileSystemCalls::current();
    // The path has no links in it; where there is one now, somebody put it there.
    const int descriptor = calls.open(path.cString(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0);
    if (descriptor == -1) {
        error = truncationOpenError(path, backupPath);
        return false;
    }
    struct stat status;
    if (::fstat(descriptor, &status) != 0 || FileState::fromStatus(status) != state)
        error = fileModifiedError(path);
    else if (calls.truncate(descriptor, 0) != 0)
        error = truncationError(path);
    if (calls.close(descriptor) != 0 && !error)
        error = truncationCloseError(path);
    return error.isNull();
}

} // namespace tidemark
