#pragma once

#include "window/FindResults.h"
#include "window/ReplaceCommands.h"
#include "window/ResultsNavigation.h"
#include "window/ResultsTreeModel.h"
#include "window/TDSearchResultsOutlineView.h"

#include <QWidget>

#include <atomic>
#include <functional>

namespace tidemark::test {

/// A file node with these lines, in which every "foo" is a match.
std::shared_ptr<TDFindResultItem> fileNode(const QByteArray &path, const QStringList &lines);
std::shared_ptr<TDFindResultItem> failedFileNode(const QByteArray &path, const QString &reason);
/// The node that a search of the real file gives.
std::shared_ptr<TDFindResultItem> searchedFile(const FilePath &path, const QString &findText);

/// Everything below the results' part of a window, shown and in focus.
class ResultsWindow : public ResultsOutlineDelegate
{
public:
    explicit ResultsWindow(const FindResultItems &files = {});

    /// "file", or "file:line", of each selected node, both counted from 0 as shown.
    QString selection() const;
    /// "file:line:match" of the highlighted match, "none" without one. Fails when more than one is
    /// highlighted.
    QString highlighted() const;
    /// The whole line texts of a file as they are in memory.
    QStringList lines(int file) const;
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void selectRows(const QList<int> &rows);

    bool hasSearchResults() const override { return !results.isEmpty(); }
    void removeSelected() override { navigation->removeSelected(); }
    void moveToNextMatch() override { navigation->moveToNextMatch(); }
    void moveToPreviousMatch() override { navigation->moveToPreviousMatch(); }
    void moveToNextMatchByExtendingSelection() override { navigation->moveToNextMatchByExtendingSelection(); }
    void moveToPreviousMatchByExtendingSelection() override
    {
        navigation->moveToPreviousMatchByExtendingSelection();
    }
    void moveToFirstMatchInNextFile() override { navigation->moveToFirstMatchInNextFile(); }
    void moveToFirstMatchInFile() override { navigation->moveToFirstMatchInFile(); }

    FindResults results;
    ResultsTreeModel model;
    QWidget window;
    TDSearchResultsOutlineView view;
    std::unique_ptr<ResultsNavigation> navigation;

    QString findText = QStringLiteral("foo");
    QString replaceText;
    int busyCount = 0;
    std::unique_ptr<ReplaceCommands> commands;
};

/// Delivers events until the condition holds; false after ten seconds without.
bool waitUntil(const std::function<bool()> &condition);

} // namespace tidemark::test
