#pragma once

#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteUndo.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "replace/UndoJournal.h"
#include "replace/UndoStepWriter.h"

namespace tidemark::test {

/// Replacing with a journal in a folder of its own.
class UndoTest : public ReplaceTest
{
protected:
    using Outcome = RewriteUndo::Outcome;
    using End = RewriteUndo::End;

    UndoTest() : _journalFolder(_journalDirectory.path()) { setKeepsBackups(false); }

    UndoJournal journal(qint64 limit = 1 << 30) const { return {_journalDirectory.path(), limit}; }
    TDSelectedMatchReplacement::Outcome replace(const QString &findText, const QString &replaceText) const
    {
        const std::atomic<bool> stop = false;
        return TDSelectedMatchReplacement(request(findText, replaceText), stop)
            .replaceSelectedMatches(matchLinesOf(search(_folder.path(), findText)));
    }
    Outcome takeBack(const QByteArray &step) const
    {
        const std::atomic<bool> stop = false;
        return RewriteUndo(journal(), stop).takeBack(step);
    }
    Outcome undo() const { return takeBackLast(UndoStepKind::Undo); }
    Outcome redo() const { return takeBackLast(UndoStepKind::Redo); }
    Outcome takeBackLast(UndoStepKind kind) const
    {
        const std::optional<UndoStep> step = journal().lastStep(kind);
        return takeBack(step ? step->id : QByteArray());
    }
    QList<QByteArray> contents(const QList<QByteArray> &names) const
    {
        QList<QByteArray> contents;
        for (const QByteArray &name : names)
            contents << _folder.read(name);
        return contents;
    }

    TemporaryFolder _journalDirectory;
    UndoJournalFolder _journalFolder;
};

} // namespace tidemark::test
