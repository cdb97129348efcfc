#include "session/MyDocument.h"

#include "foundation/UserDefaults.h"
#include "session/LocationBookmark.h"

namespace tidemark {

MyDocument::MyDocument(QObject *parent) : QObject(parent)
{
    loadUserDefaultsForWindow();
}

QString MyDocument::displayName()
{
    return QStringLiteral("Velkor Tidemark");
}

QByteArray MyDocument::dataOfType(const QString &, TDError &error) const
{
    error = TDError::osStatusError(TD_OS_STATUS_NOT_IMPLEMENTED);
    return {};
}

bool MyDocument::readFromData(const QByteArray &, const QString &, TDError *error)
{
    if (error != nullptr)
        *error = TDError::osStatusError(TD_OS_STATUS_NOT_IMPLEMENTED);
    return true;
}

void MyDocument::setFindText(const QString &text)
{
    if (_findText == text)
        return;
    _findText = text;
    Q_EMIT findTextChanged();
}

void MyDocument::setReplaceText(const QString &text)
{
    if (_replaceText == text)
        return;
    _replaceText = text;
    Q_EMIT replaceTextChanged();
}

void MyDocument::setSearchLocations(const QList<TDSearchLocation> &locations)
{
    _searchLocations = locations;
    Q_EMIT searchLocationsChanged();
}

void MyDocument::setFilesWithMatchesCount(qint64 count)
{
    if (_filesWithMatchesCount == count)
        return;
    _filesWithMatchesCount = count;
    Q_EMIT filesWithMatchesCountChanged();
    Q_EMIT resultsStatusTextChanged();
}

void MyDocument::setResultsStatusText(const QString &text)
{
    if (_resultsStatusText == text)
        return;
    _resultsStatusText = text;
    Q_EMIT resultsStatusTextChanged();
}

void MyDocument::loadUserDefaultsForWindow()
{
    const UserDefaults &settings = UserDefaults::standard();
    QList<TDSearchLocation> locations;
    const QVariantList stored = settings.objectForKey(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS).toList();
    for (const QVariant &entry : stored) {
        if (const auto location = locationFromStored(entry.toMap()))
            locations << *location;
    }
    setSearchLocations(locations);
    setFindText(settings.stringForKey(TD_USER_DEFAULTS_NAME_FIND_TEXT));
    setReplaceText(settings.stringForKey(TD_USER_DEFAULTS_NAME_REPLACE_TEXT));
}

void MyDocument::saveUserDefaultsForWindow() const
{
    const auto textOrNothing = [](const QString &text) {
        return text.isNull() ? QVariant() : QVariant(text);
    };
    QVariantList stored;
    for (const TDSearchLocation &location : _searchLocations) {
        if (const auto entry = storedLocation(location))
            stored << *entry;
    }
    UserDefaults &settings = UserDefaults::standard();
    settings.setObject(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS, stored);
    settings.setObject(TD_USER_DEFAULTS_NAME_FIND_TEXT, textOrNothing(_findText));
    settings.setObject(TD_USER_DEFAULTS_NAME_REPLACE_TEXT, textOrNothing(_replaceText));
}

} // namespace tidemark
