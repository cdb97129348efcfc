#pragma once

#include <QByteArray>
#include <QString>

namespace tidemark {

/// Why a file wasn't rewritten as asked, the worst first.
enum class RewriteProblem {
    None,
    Damaged,    ///< written in part; the old content is in the backup
    NotOnDisk,  ///< written, but the disk didn't confirm it; the old content is in the backup
    BackupLeft, ///< written; the backup that should be gone couldn't be deleted
    Changed,    ///< by somebody else since the search
    Missing,
    NotPermitted,
    NoRoom,
    NotRepresentable, ///< the new text in the file's encoding, or the file's bytes
    NoBackup,         ///< none could be made, for another reason
    NoRecord,         ///< what is about to be written couldn't be noted
    DiskFailure, ///< reading or writing failed before anything was changed, or the old content was put back
    NotBegun,    ///< since the run was ended by a disk that failed or is full
};

/// One of the above that fits a system's error number of a file that wasn't touched.
RewriteProblem problemOfErrorNumber(int errorNumber, RewriteProblem otherwise);

/// Whether a run had better not change any further file after such an error number.
bool endsRun(int errorNumber);

/// For people: a short sentence.
QString textOfProblem(RewriteProblem problem);
/// For programs: one word.
QByteArray nameOfProblem(RewriteProblem problem);

} // namespace tidemark
