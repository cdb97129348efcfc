#pragma once

#include "foundation/TDError.h"
#include "search/TDSearchLocation.h"
#include "session/FindResults.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace tidemark {

/// The count of files with matches before any search, and until a search has delivered its first batch.
inline constexpr qint64 TD_NO_SEARCH_PERFORMED = -1;

/// What one search window shows and edits, without the window. Never written to a file: its settings go from
/// the window that closed last to the next one that opens. Main thread only.
class MyDocument : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString findText READ findText WRITE setFindText NOTIFY findTextChanged)
    Q_PROPERTY(QString replaceText READ replaceText WRITE setReplaceText NOTIFY replaceTextChanged)
    Q_PROPERTY(qint64 filesWithMatchesCount READ filesWithMatchesCount WRITE setFilesWithMatchesCount NOTIFY
                   filesWithMatchesCountChanged)
    Q_PROPERTY(QString resultsStatusText READ resultsStatusText WRITE setResultsStatusText NOTIFY
                   resultsStatusTextChanged)

public:
    /// Starts from the settings that the last closed window left.
    explicit MyDocument(QObject *parent = nullptr);

    static QString displayName();
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

    /// Locations and texts, as the settings keep them, and back.
    QVariantMap windowState() const;
    void takeWindowState(const QVariantMap &state);
    void loadUserDefaultsForWindow();
    void saveUserDefaultsForWindow() const;

Q_SIGNALS:
    void findTextChanged();
    void replaceTextChanged();
    void searchLocationsChanged();
    void filesWithMatchesCountChanged();
    void resultsStatusTextChanged();

private:
    QString _findText;
    QString _replaceText;
    FindResults _findResults;
    qint64 _filesWithMatchesCount = TD_NO_SEARCH_PERFORMED;
    QList<TDSearchLocation> _searchLocations;
    QString _resultsStatusText;
};

} // namespace tidemark
