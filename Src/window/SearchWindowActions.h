#pragma once

#include <QKeySequence>
#include <QList>

class QAction;
class QWidget;

namespace tidemark {

/// Every command of a search window as an action with its shortcut, for menus and buttons alike. Owned by the
/// window; what they do is connected by the controllers.
struct SearchWindowActions
{
    /// The shortcuts work in the window from now on.
    static SearchWindowActions makeFor(QWidget *window);

    QAction *addLocation = nullptr;
    QAction *removeLocation = nullptr;
    QAction *exportResults = nullptr;
    QAction *close = nullptr;

    QAction *startStopSearch = nullptr;
    /// Escape; enabled only while there is something to stop.
    QAction *stop = nullptr;
    QAction *ignoreCase = nullptr;
    QAction *regularExpression = nullptr;
    QAction *unicode = nullptr;
    QAction *wholeWords = nullptr;
    QAction *fileTypes = nullptr;

    QAction *nextMatch = nullptr;
    QAction *previousMatch = nullptr;
    QAction *extendToNextMatch = nullptr;
    QAction *extendToPreviousMatch = nullptr;
    QAction *firstMatchInNextFile = nullptr;
    QAction *firstMatchInPreviousFile = nullptr;
    QAction *showFailures = nullptr;
    QAction *showUnreadableFiles = nullptr;
    QAction *expandCollapseAll = nullptr;
    QAction *removeSelected = nullptr;
    QAction *showReplacements = nullptr;
    QAction *largerText = nullptr;
    QAction *smallerText = nullptr;
    QAction *standardTextSize = nullptr;
    QAction *showContext = nullptr;
    QAction *showEncodings = nullptr;
    QAction *filterResults = nullptr;
    QAction *replace = nullptr;
    QAction *replaceAndFind = nullptr;
    QAction *replaceSelection = nullptr;
    QAction *replaceAll = nullptr;

    QAction *history = nullptr;
    QAction *deleteBackups = nullptr;
    QAction *undoReplacing = nullptr;
    QAction *redoReplacing = nullptr;

    QAction *otherPane = nullptr;
};

} // namespace tidemark
