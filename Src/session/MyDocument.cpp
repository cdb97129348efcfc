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

namespace {

/// What the settings keep of a window.
const QStringList &keysOfWindow()
{
    static const QStringList keys = {TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS, TD_USER_DEFAULTS_NAME_FIND_TEXT,
                                     TD_USER_DEFAULTS_NAME_REPLACE_TEXT};
    return keys;
}

} // namespace

QVariantMap MyDocument::windowState() const
{
    const auto textOrNothing = [](const QString &text) {
        return text.isNull() ? QVariant() : QVariant(text);
    };
    QVariantList stored;
    for (const TDSearchLocation &location : _searchLocations) {
        if (const auto entry = storedLocation(location))
            stored << *entry;
    }
    return {{TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS, stored},
            {TD_USER_DEFAULTS_NAME_FIND_TEXT, textOrNothing(_findText)},
            {TD_USER_DEFAULTS_NAME_REPLACE_TEXT, textOrNothing(_replaceText)}};
}

void MyDocument::takeWindowState(const QVariantMap &state)
{
    QList<TDSearchLocation> locations;
    const QVariantList stored = state.value(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS).toList();
    for (const QVariant &entry : stored) {
        if (const auto location = locationFromStored(entry.toMap()))
            locations << *location;
    }
    setSearchLocations(locations);
    setFindText(state.value(TD_USER_DEFAULTS_NAME_FIND_TEXT).toString());
    setReplaceText(state.value(TD_USER_DEFAULTS_NAME_REPLACE_TEXT).toString());
}

void MyDocument::loadUserDefaultsForWindow()
{
    QVariantMap state;
    for (const QString &key : keysOfWindow())
        state.insert(key, UserDefaults::standard().objectForKey(key));
    takeWindowState(state);
}

void MyDocument::saveUserDefaultsForWindow() const
{
    const QVariantMap state = windowState();
    for (const QString &key : keysOfWindow())
        UserDefaults::standard().setObject(key, state.value(key));
}

} // namespace tidemark
