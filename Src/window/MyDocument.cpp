#include "window/MyDocument.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "window/ApplicationDelegate.h"
#include "window/LocationBookmark.h"
#include "window/SearchWindow.h"
#include "window/StopReplaceQuestion.h"
#include "window/TDMyDocumentController.h"

#include <QOperatingSystemVersion>

namespace tidemark {

MyDocument::MyDocument(ApplicationDelegate &application, QObject *parent)
    : QObject(parent), _application(application)
{
    loadUserDefaultsForWindow();
}

MyDocument::~MyDocument() = default;

QString MyDocument::displayName()
{
    return QStringLiteral("Velkor Tidemark");
}

QString MyDocument::windowNibName()
{
    return QStringLiteral("MyDocument");
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

void MyDocument::setMyDocumentController(TDMyDocumentController *controller)
{
    _myDocumentController = controller;
}

void MyDocument::makeWindowControllers()
{
    _windowController = std::make_unique<TDMyDocumentController>(*this);
}

void MyDocument::showWindows()
{
    if (!_windowController)
        return;
    _windowController->window()->show();
    _windowController->window()->raise();
    _windowController->window()->activateWindow();
}

void MyDocument::loadUserDefaultsForWindow()
{
    const UserDefaults &settings = UserDefaults::standard();
    const BookmarkResolution resolution = bookmarkResolution(supportsSecurityScopedBookmarks());
    QList<TDSearchLocation> locations;
    const QVariantList stored = settings.objectForKey(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS).toList();
    for (const QVariant &entry : stored) {
        if (const auto location = locationFromStored(entry.toMap(), resolution))
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
    const BookmarkCreation creation = bookmarkCreation(supportsSecurityScopedBookmarks());
    QVariantList stored;
    for (const TDSearchLocation &location : _searchLocations) {
        if (const auto entry = storedLocation(location, creation))
            stored << *entry;
    }
    UserDefaults &settings = UserDefaults::standard();
    settings.setObject(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS, stored);
    settings.setObject(TD_USER_DEFAULTS_NAME_FIND_TEXT, textOrNothing(_findText));
    settings.setObject(TD_USER_DEFAULTS_NAME_REPLACE_TEXT, textOrNothing(_replaceText));
}

bool MyDocument::windowShouldClose()
{
    if (_application.countBusyWindows() > 0) {
        _askToClose();
        return false;
    }
    if (_myDocumentController != nullptr)
        _myDocumentController->stopSearch();
    return true;
}

void MyDocument::_askToClose()
{
    QWidget *window = _myDocumentController != nullptr ? _myDocumentController->window() : nullptr;
    askToStopReplace(window,
                     {localizedString("Continue Replace and Don‘t Close Window"),
                      localizedString("Stop Replace and Close Window"), [this] { _stopAndClose(); },
                      [window] {
                          if (window != nullptr)
                              window->close();
                      }},
                     this);
}

void MyDocument::_stopAndClose()
{
    if (_myDocumentController != nullptr) {
        _myDocumentController->stopSearch();
        _myDocumentController->setStopReplace(true);
    }
    Q_EMIT closeConfirmed();
}

void MyDocument::windowWillClose()
{
    saveUserDefaultsForWindow();
    // What its search still tells comes too late; a message would open on a window that is gone.
    if (_myDocumentController != nullptr)
        _myDocumentController->searchControl().abandonSearch();
}

void MyDocument::windowWillMiniaturize()
{
    if (_myDocumentController != nullptr)
        _myDocumentController->hideProgressIndicator();
}

void MyDocument::windowDidDeminiaturize()
{
    if (_myDocumentController != nullptr)
        _myDocumentController->showProgressIndicatorIfSearching();
}

QVariantMap MyDocument::osVersion()
{
    const QOperatingSystemVersion version = QOperatingSystemVersion::current();
    // A part that the system doesn't tell counts as 0.
    return {{QStringLiteral("major"), qMax(version.majorVersion(), 0)},
            {QStringLiteral("minor"), qMax(version.minorVersion(), 0)},
            {QStringLiteral("bugFix"), qMax(version.microVersion(), 0)}};
}

bool MyDocument::supportsSecurityScopedBookmarks(const QVariantMap &systemVersion)
{
    const int minor = systemVersion.value(QStringLiteral("minor")).toInt();
    if (systemVersion.value(QStringLiteral("major")).toInt() >= 11)
        return true;
    if (minor < 7)
        return false;
    return minor >= 8 || systemVersion.value(QStringLiteral("bugFix")).toInt() > 2;
}

} // namespace tidemark
