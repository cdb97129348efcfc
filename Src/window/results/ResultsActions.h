#pragma once

#include "search/TDSearchLocation.h"
#include "session/ResultsExport.h"

#include <QMenu>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

class QAction;
class QMimeData;

namespace tidemark {

class ResultsNavigation;
class Workspace;

/// Opening, revealing and copying the selected result, and the results' context menu with these.
class ResultsActions : public QObject
{
    Q_OBJECT

public:
    /// Without a workspace of its own it uses the desktop. The navigation must outlive the object.
    explicit ResultsActions(ResultsNavigation &navigation, std::shared_ptr<Workspace> workspace = {},
                            QObject *parent = nullptr);

    /// The highlighted match in the editor of the settings; a file by its default program.
    void openAtMatch();
    void openInFinder();
    void revealInFinder();
    void copyLine();
    void copyPath();
    /// The selected files and lines.
    void copyAs(ResultsFormat format);
    /// The selected rows as files, and as text: their lines, or their paths where no line is among them. Null
    /// without a selection.
    std::unique_ptr<QMimeData> dragged() const;
    void readAs();
    /// Not while results come or change.
    void setReadAsPossible(bool isPossible);
    void leaveOutFolder();
    void leaveOutFilesLike();
    /// To which patterns for folders are relative.
    void setLocations(std::function<QList<TDSearchLocation>()> locations)
    {
        _locations = std::move(locations);
    }

    /// With the current selection's items enabled.
    QMenu *searchResultsOutLineViewMenu();
    /// For other menus too; enabled as the selection allows.
    QAction *openAtMatchAction() const { return _openAtMatch; }
    QAction *openAction() const { return _open; }
    QAction *revealAction() const { return _reveal; }
    QAction *readAsAction() const { return _readAs; }
    QAction *copyLineAction() const { return _copyLine; }
    QAction *copyPathAction() const { return _copyPath; }
    QMenu *copyAsMenu() const { return _copyAs; }
    QAction *leaveOutFolderAction() const { return _leaveOutFolder; }
    QAction *leaveOutFilesLikeAction() const { return _leaveOutFilesLike; }

    void validateUserInterfaceItems();

Q_SIGNALS:
    /// A text for people.
    void failed(const QString &problem);
    /// In which encoding is for a person to say.
    void readAsRequested(const TDFindResultItem &file);
    /// From the next search on.
    void leaveOutRequested(const QString &pattern);

private:
    void _tell(const std::optional<QString> &problem);
    /// Null where there is none that a person could have read in another encoding.
    const TDFindResultItem *_fileToReadAs() const;
    QString _patternForFolder() const;
    QAction *_addAction(const QString &text, void (ResultsActions::*command)());

    ResultsNavigation &_navigation;
    std::shared_ptr<Workspace> _workspace;
    std::function<QList<TDSearchLocation>()> _locations;
    QMenu _menu;
    QAction *_openAtMatch;
    QAction *_open;
    QAction *_reveal;
    QAction *_readAs;
    QAction *_copyLine;
    QAction *_copyPath;
    QMenu *_copyAs;
    QAction *_leaveOutFolder;
    QAction *_leaveOutFilesLike;
    bool _isReadAsPossible = true;
};

} // namespace tidemark
