#pragma once

#include "foundation/FilePath.h"
#include "replace/FileState.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>
#include <vector>

namespace tidemark {

enum class UndoStepKind {
    Undo, ///< what a replacement changed
    Redo, ///< what undoing a replacement changed
};

/// What a step says of itself, whatever its files.
struct UndoStepHeader
{
    UndoStepKind kind = UndoStepKind::Undo;
    QDateTime date; ///< of the replacement, also where the step is about undoing it
    QString findText;
    QString replaceText;
    /// Tells whether a process wrote it: undoStepOwner() of its identity.
    quint64 owner = 0;
};

/// For the header, of what identityOfThisProcess() or a left record says.
quint64 undoStepOwner(const QByteArray &processIdentity);

/// One step of the journal, as a list of them shows it: one run of replacements, or one walk of single ones.
struct UndoStep : UndoStepHeader
{
    QByteArray id; ///< of letters, digits and hyphens
    qint64 files = 0;
    qint64 matches = 0;
    qint64 size = 0;        ///< on the disk, in bytes
    bool isInUse = false;   ///< being written or undone, here or in another process
    bool isDamaged = false; ///< some of its files can't be told any more
};

/// What a run did to one file.
struct UndoEntry
{
    FilePath path; ///< links resolved
    quint64 device = 0;
    quint64 inode = 0;
    ContentDigest before;
    ContentDigest after;
    qint64 matches = 0;
    bool isBackupTransient = false; ///< the file was named itself as a location
    QByteArray differences;         ///< of ContentDifference.h
    /// What was noted of its encoding; empty for nothing. None where the step doesn't say.
    std::optional<QString> encodingAttribute = {};
};

/// A backup that a run left beside a file.
struct KeptBackup
{
    FilePath path;
    FilePath file; ///< whose old content it holds
    quint64 inode = 0;
    ContentDigest content;

    friend bool operator==(const KeptBackup &, const KeptBackup &) = default;
};

/// The backups of one run.
struct BackupRun : UndoStepHeader
{
    QByteArray id;
    QList<KeptBackup> backups;
};

/// Whether a run can be undone.
enum class UndoKeeping {
    Off,      ///< there is no journal, by the settings or for lack of a folder
    Nothing,  ///< nothing was changed
    Kept,     ///< it can
    TooLarge, ///< for what the settings allow; nothing of it is in the journal
    Failed,   ///< the journal couldn't be written; nothing of it is in the journal
};

} // namespace tidemark
