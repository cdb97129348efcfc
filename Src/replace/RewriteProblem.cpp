#include "replace/RewriteProblem.h"

#include "foundation/LocalizedText.h"

#include <cerrno>

namespace tidemark {

RewriteProblem problemOfErrorNumber(int errorNumber, RewriteProblem otherwise)
{
    switch (errorNumber) {
    case EACCES:
    case EPERM:
    case ETXTBSY:
        return RewriteProblem::NotPermitted;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return RewriteProblem::NoRoom;
    case ENOENT:
        return RewriteProblem::Missing;
    case EIO:
    case EROFS:
        return RewriteProblem::DiskFailure;
    default:
        return otherwise;
    }
}

bool endsRun(int errorNumber)
{
    return errorNumber == ENOSPC || errorNumber == EDQUOT || errorNumber == EIO || errorNumber == EROFS;
}

QString textOfProblem(RewriteProblem problem)
{
    switch (problem) {
    case RewriteProblem::None:
        break;
    case RewriteProblem::Damaged:
        return localizedString("Written only in part");
    case RewriteProblem::NotOnDisk:
        return localizedString("Written, but the disk reported a failure");
    case RewriteProblem::BackupLeft:
        return localizedString("Written, but its backup could not be deleted");
    case RewriteProblem::Changed:
        return localizedString("Changed since the search");
    case RewriteProblem::Missing:
        return localizedString("Not there any more");
    case RewriteProblem::NotPermitted:
        return localizedString("No permission");
    case RewriteProblem::NoRoom:
        return localizedString("No room on the disk");
    case RewriteProblem::NotRepresentable:
        return localizedString(
            "The file's encoding cannot hold the new text, or not all of its bytes can be read");
    case RewriteProblem::NoBackup:
        return localizedString("No backup could be made");
    case RewriteProblem::NoRecord:
        return localizedString("The folder for notes on unfinished replacements cannot be written");
    case RewriteProblem::DiskFailure:
        return localizedString("The disk reported a failure");
    case RewriteProblem::NotBegun:
        return localizedString("Not begun, as the disk failed or is full");
    }
    return {};
}

QByteArray nameOfProblem(RewriteProblem problem)
{
    switch (problem) {
    case RewriteProblem::None:
        break;
    case RewriteProblem::Damaged:
        return QByteArrayLiteral("damaged");
    case RewriteProblem::NotOnDisk:
        return QByteArrayLiteral("not-on-disk");
    case RewriteProblem::BackupLeft:
        return QByteArrayLiteral("backup-left");
    case RewriteProblem::Changed:
        return QByteArrayLiteral("changed");
    case RewriteProblem::Missing:
        return QByteArrayLiteral("missing");
    case RewriteProblem::NotPermitted:
        return QByteArrayLiteral("not-permitted");
    case RewriteProblem::NoRoom:
        return QByteArrayLiteral("no-room");
    case RewriteProblem::NotRepresentable:
        return QByteArrayLiteral("not-representable");
    case RewriteProblem::NoBackup:
        return QByteArrayLiteral("no-backup");
    case RewriteProblem::NoRecord:
        return QByteArrayLiteral("no-record");
    case RewriteProblem::DiskFailure:
        return QByteArrayLiteral("disk-failure");
    case RewriteProblem::NotBegun:
        return QByteArrayLiteral("not-begun");
    }
    return {};
}

} // namespace tidemark
