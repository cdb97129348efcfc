#pragma once

#include "foundation/FilePath.h"
#include "replace/LinesByFile.h"
#include "replace/UndoStep.h"

#include <memory>
#include <optional>

namespace tidemark {

class UndoStepWriter;

/// Bytes that a run over match lines takes at most, as far as that can be told before; a run that would take
/// more than the limit isn't kept.
class UndoSizeEstimate
{
public:
    static qint64 of(const LinesByFile &lines);

    void addFile(const TDFindResultItem &file);
    /// Of the file added last.
    void addLine(const TDMatchLine &line);
    qint64 bytes() const { return _bytes; }

private:
    qint64 _bytes = 0;
};

/// The folder of steps that can be undone and redone, which several processes may share: a file for each
/// step, and one for the backups that a run left, all for this user only. Whoever writes or undoes a step has
/// it locked. What is damaged is passed over. Any thread; objects are cheap to make and to copy.
class UndoJournal
{
public:
    /// The folder need not exist. `sizeLimit` is in bytes, for everything in it.
    UndoJournal(FilePath folder, qint64 sizeLimit) : _folder(std::move(folder)), _sizeLimit(sizeLimit) {}

    /// Where this user's steps are.
    static FilePath userFolder();
    /// That of this process, with the limit of the settings in force; nothing where there is none, or the
    /// settings turn it off.
    static std::optional<UndoJournal> current();

    const FilePath &folder() const { return _folder; }

    /// All of them, the latest first.
    QList<UndoStep> steps() const;
    /// What Undo, or Redo, is about: the latest of its kind that has files, even while it is in use: what
    /// came before it can't be taken back first.
    std::optional<UndoStep> lastStep(UndoStepKind kind) const;
    /// The latest step that one of these processes wrote, as their identities in left records tell
    /// (InterruptedRewrites::ownersOfRunsCutShort()).
    std::optional<UndoStep> lastStepOf(const QList<QByteArray> &processIdentities) const;
    /// Removes a step; the files stay as they are. False when it is in use or can't be removed.
    bool forget(const QByteArray &id) const;
    /// The files of a step by path, each once, in the order in which they were changed. Reads all of it.
    QList<FilePath> filesOf(const QByteArray &id) const;

    /// See UndoSizeEstimate.
    bool hasRoomFor(qint64 size) const { return size <= _sizeLimit; }

    /// A step of a replacement that is to be made. Nothing is on the disk before its first file; then what
    /// was undone before can't be redone any more.
    std::unique_ptr<UndoStepWriter> newStep(const QString &findText, const QString &replaceText) const;

    /// What replacements left beside files, run by run, the latest first: only backups that are still there,
    /// by their inode and size. Runs that have none left are forgotten.
    QList<BackupRun> backupRuns() const;
    struct BackupFailure
    {
        KeptBackup backup;
        int errorNumber = 0; ///< ESTALE: it isn't the one that was made
    };
    /// Deletes backups if they are the very ones that were made: the same file with the same content.
    static QList<BackupFailure> deleteBackups(const QList<KeptBackup> &backups);

private:
    friend class UndoStepWriter;
    void _clearRedoSteps() const;
    void _trim() const;

    FilePath _folder;
    qint64 _sizeLimit;
};

/// Where this process keeps its journal while the object lives. Made in main(), before there are other
/// threads.
class UndoJournalFolder
{
public:
    explicit UndoJournalFolder(const FilePath &folder);
    ~UndoJournalFolder();
    UndoJournalFolder(const UndoJournalFolder &) = delete;
    UndoJournalFolder &operator=(const UndoJournalFolder &) = delete;
};

/// Replacements one by one that belong together: they make one step as long as find text and replace text
/// stay and nobody ends the walk. It has to end before its step can be undone. Main thread.
class UndoWalk
{
public:
    UndoWalk();
    ~UndoWalk();
    UndoWalk(const UndoWalk &) = delete;
    UndoWalk &operator=(const UndoWalk &) = delete;

    /// Where the next replacement is to be written; null where there is no journal.
    const std::shared_ptr<UndoStepWriter> &step(const QString &findText, const QString &replaceText);
    /// The id of the step that was written; empty when there is none.
    QByteArray end();

private:
    QString _findText;
    QString _replaceText;
    std::shared_ptr<UndoStepWriter> _writer;
};

} // namespace tidemark
