#pragma once

#include "foundation/TDError.h"
#include "search/TDSearchLocation.h"
#include "window/FindResults.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <memory>

namespace tidemark {

class ApplicationDelegate;
class TDMyDocumentController;

/// The count of files with matches before any search, and until a search has delivered its first batch.
inline constexpr qint64 TD_NO_SEARCH_PERFORMED = -1;

/// What one search window shows and edits. Never written to a file: its settings go from the window that
/// closed last to the next one that opens. Main thread only.
class MyDocument : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString findText READ findText WRITE setFindText NOTIFY findTextChanged)
    Q_PROPERTY(QString replaceText READ replaceText WRITE setReplaceText NOTIFY replaceTextChanged)
    Q_PROPERTY(qint64 filesWithMatchesCount READ filesWithMatchesCount WRITE setFilesWithMatchesCount NOTIFY
                   filesWithMatchesCountChanged)
    Q_PROPERTY(QString resultsStatusText READ resultsStatusText WRITE setResultsStatusText NOTIFY
                   resultsStatusTextChanged)
    Q_PROPERTY(QString searchButtonTitleStart READ searchButtonTitleStart CONSTANT)
    Q_PROPERTY(QString searchButtonTitleStop READ searchButtonTitleStop CONSTANT)
    Q_PROPERTY(QString tooltipAddLocation READ tooltipAddLocation CONSTANT)
    Q_PROPERTY(QString tooltipRemoveLocation READ tooltipRemoveLocation CONSTANT)
    Q_PROPERTY(QString tooltipFileTypes READ tooltipFileTypes CONSTANT)
    Q_PROPERTY(QString tooltipFindText READ tooltipFindText CONSTANT)
    Q_PROPERTY(QString tooltipReplaceText READ tooltipReplaceText CONSTANT)
    Q_PROPERTY(QString tooltipStartStopSearch READ tooltipStartStopSearch CONSTANT)
    Q_PROPERTY(QString tooltipIgnoreCase READ tooltipIgnoreCase CONSTANT)
    Q_PROPERTY(QString tooltipRegularExpression READ tooltipRegularExpression CONSTANT)
    Q_PROPERTY(QString tooltipReplace READ tooltipReplace CONSTANT)
    Q_PROPERTY(QString tooltipReplaceAndFind READ tooltipReplaceAndFind CONSTANT)
    Q_PROPERTY(QString tooltipReplaceInSelection READ tooltipReplaceInSelection CONSTANT)
    Q_PROPERTY(QString tooltipReplaceAll READ tooltipReplaceAll CONSTANT)
    Q_PROPERTY(QString tooltipNavUp READ tooltipNavUp CONSTANT)
    Q_PROPERTY(QString tooltipNavDown READ tooltipNavDown CONSTANT)
    Q_PROPERTY(QString tooltipRemoveSelected READ tooltipRemoveSelected CONSTANT)
    Q_PROPERTY(QString tooltipExpandCollapse READ tooltipExpandCollapse CONSTANT)
    Q_PROPERTY(QString tooltipSearchLocations READ tooltipSearchLocations CONSTANT)
    Q_PROPERTY(QString tooltipSearchResults READ tooltipSearchResults CONSTANT)

public:
    /// Starts from the settings that the last closed window left. The application outlives its documents.
    explicit MyDocument(ApplicationDelegate &application, QObject *parent = nullptr);
    ~MyDocument() override;

    static QString displayName();
    static QString windowNibName();
    static bool isDocumentEdited() { return false; }
    /// Documents can't be saved: no data, and an error.
    QByteArray dataOfType(const QString &typeName, TDError &error) const;
    /// Takes nothing from the data. True all the same, so that opening a document opens a window.
    bool readFromData(const QByteArray &data, const QString &typeName, TDError *error);

    const QString &findText() const { return _findText; }
    void setFindText(const QString &text);
    const QString &replaceText() const { return _replaceText; }
    void setReplaceText(const QString &text);
    const QList<TDSearchLocation> &searchLocations() const { return _searchLocations; }
    void setSearchLocations(const QList<TDSearchLocation> &locations);
    FindResults &findResults() { return _findResults; }
    const FindResults &findResults() const { return _findResults; }
    qint64 filesWithMatchesCount() const { return _filesWithMatchesCount; }
    /// Tells the observers of the status text as well.
    void setFilesWithMatchesCount(qint64 count);
    const QString &resultsStatusText() const { return _resultsStatusText; }
    void setResultsStatusText(const QString &text);

    static QString searchButtonTitleStart();
    static QString searchButtonTitleStop();
    static QString tooltipAddLocation();
    static QString tooltipRemoveLocation();
    static QString tooltipFileTypes();
    static QString tooltipFindText();
    static QString tooltipReplaceText();
    static QString tooltipStartStopSearch();
    static QString tooltipIgnoreCase();
    static QString tooltipRegularExpression();
    static QString tooltipUnicode();
    static QString tooltipWholeWords();
    static QString tooltipReplace();
    static QString tooltipReplaceAndFind();
    static QString tooltipReplaceInSelection();
    static QString tooltipReplaceAll();
    static QString tooltipNavUp();
    static QString tooltipNavDown();
    static QString tooltipRemoveSelected();
    static QString tooltipExpandCollapse();
    static QString tooltipSearchLocations();
    static QString tooltipSearchResults();

    /// Loads the window, which belongs to the document from then on.
    void makeWindowControllers();
    void showWindows();
    /// Null until the window's controller has loaded its window.
    TDMyDocumentController *myDocumentController() const { return _myDocumentController; }
    void setMyDocumentController(TDMyDocumentController *controller);
    ApplicationDelegate &application() const { return _application; }

    void loadUserDefaultsForWindow();
    void saveUserDefaultsForWindow() const;

    /// False when a replace runs anywhere in the application; then the user is asked, and closeConfirmed() is
    /// sent if the window is to close nevertheless.
    bool windowShouldClose();
    void windowWillClose();
    void windowWillMiniaturize();
    void windowDidDeminiaturize();

    /// The running system's version under "major", "minor" and "bugFix".
    static QVariantMap osVersion();
    static bool supportsSecurityScopedBookmarks() { return supportsSecurityScopedBookmarks(osVersion()); }
    static bool supportsSecurityScopedBookmarks(const QVariantMap &systemVersion);

Q_SIGNALS:
    void findTextChanged();
    void replaceTextChanged();
    void searchLocationsChanged();
    void filesWithMatchesCountChanged();
    void resultsStatusTextChanged();
    void closeConfirmed();

private:
    void _askToClose();
    void _stopAndClose();

    ApplicationDelegate &_application;
    QString _findText;
    QString _replaceText;
    FindResults _findResults;
    qint64 _filesWithMatchesCount = TD_NO_SEARCH_PERFORMED;
    QList<TDSearchLocation> _searchLocations;
    QString _resultsStatusText;
    TDMyDocumentController *_myDocumentController = nullptr;
    /// Last, as it goes first: it observes everything above.
    std::unique_ptr<TDMyDocumentController> _windowController;
};

} // namespace tidemark
