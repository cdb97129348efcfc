#include "app/TDApplicationController.h"

#include "app/AboutWindow.h"
#include "app/HelpWindow.h"
#include "app/InterruptedRewritesQuestion.h"
#include "app/MainMenu.h"
#include "app/ResultsAccessibility.h"
#include "app/TDPreferenceController.h"
#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "search/RegisterUserDefaults.h"
#include "window/StopReplaceQuestion.h"
#include "window/TDMyDocumentController.h"
#include "window/WindowLayoutMemory.h"
#include "window/WindowedDocument.h"
#include "window/results/ResultsPane.h"

#include <QApplication>
#include <QDesktopServices>
#include <QPointer>
#include <QUrl>

#include <algorithm>

namespace tidemark {

namespace {

constexpr quint64 PRODUCT_YEAR = 2012;
constexpr quint64 PRODUCT_BUILD = 234;
constexpr int CASCADE = 24;

void cascadeFrom(const QWidget *window, QWidget *next)
{
    if (window != nullptr && window->isVisible())
        next->move(window->pos() + QPoint(CASCADE, CASCADE));
}

} // namespace

TDApplicationController::TDApplicationController(QObject *parent) : QObject(parent)
{
    installResultsAccessibility();
    _connectApplication();
}

TDApplicationController::~TDApplicationController() = default;

void TDApplicationController::_connectApplication()
{
    connect(qApp, &QCoreApplication::aboutToQuit, this, &TDApplicationController::applicationWillTerminate);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationHidden)
            applicationWillHide();
        else
            applicationDidUnhide();
    });
}

void TDApplicationController::awakeFromNib()
{
    registerUserDefaults();
    const QByteArray archive = UserDefaults::standard().objectForKey(kmIncludedKinds2Pref).toByteArray();
    bool isArchive = false;
    const QList<Kind> kinds = unarchivedKinds(archive, &isArchive);
    setKinds(isArchive ? kinds : Kind::defaultKinds());
}

void TDApplicationController::registerUserDefaults()
{
    tidemark::registerUserDefaults(UserDefaults::standard());
}

void TDApplicationController::setKinds(const QList<Kind> &kinds)
{
    setKindsInForce(kinds);
    Q_EMIT kindsChanged();
}

void TDApplicationController::applicationDidFinishLaunching()
{
    if (_documents.empty() && applicationShouldOpenUntitledFile())
        applicationOpenUntitledFile();
}

void TDApplicationController::askAboutInterruptedRewrites(const FilePath &folder)
{
    // Files are read for this, which may take a moment.
    _recovery.start([this, folder] {
        const auto rewrites = std::make_shared<InterruptedRewrites>(folder);
        QMetaObject::invokeMethod(
            this,
            [this, rewrites] {
                WindowedDocument *document = documents().value(0);
                if (document == nullptr)
                    return tidemark::askAboutInterruptedRewrites(nullptr, rewrites, _recovery);
                UndoCommands &undo = document->myDocumentController()->resultsPane().undoCommands();
                tidemark::askAboutInterruptedRewrites(document->myDocumentController()->window(), rewrites,
                                                      _recovery,
                                                      [undo = QPointer(&undo)](const QByteArray &step) {
                                                          if (undo)
                                                              undo->takeBack(step);
                                                      });
            },
            Qt::QueuedConnection);
    });
}

bool TDApplicationController::applicationOpenUntitledFile()
{
    return openUntitledDocument(TD_DOCUMENT_TYPE) != nullptr;
}

WindowedDocument *TDApplicationController::openUntitledDocument(const QString &documentType)
{
    if (documentType != TD_DOCUMENT_TYPE)
        return nullptr;
    WindowedDocument *document = _documents.emplace_back(std::make_unique<WindowedDocument>(*this)).get();
    document->makeWindowControllers();
    SearchWindow *window = document->myDocumentController()->window();
    buildMainMenu(*document->myDocumentController(), *this);
    connect(window, &SearchWindow::closed, this, [this, document] { _documentClosed(document); });
    cascadeFrom(QApplication::activeWindow(), window);
    document->showWindows();
    // Only what is shown knows the size of its texts.
    window->setMinimumSize(window->smallestSize());
    return document;
}

void TDApplicationController::openDocument(const LaunchRequest &request)
{
    if (request.isRegularExpression)
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    WindowedDocument *document = openUntitledDocument(TD_DOCUMENT_TYPE);
    if (request.findText)
        document->setFindText(*request.findText);
    if (request.replaceText)
        document->setReplaceText(*request.replaceText);
    if (request.paths.isEmpty())
        return;
    QList<QUrl> urls;
    for (const FilePath &path : request.paths)
        urls << path.toUrl();
    document->setSearchLocations({});
    document->myDocumentController()->locations().addSearchLocations(urls);
}

QList<WindowedDocument *> TDApplicationController::documents() const
{
    QList<WindowedDocument *> documents;
    for (const auto &document : _documents)
        documents << document.get();
    return documents;
}

void TDApplicationController::_documentClosed(WindowedDocument *document)
{
    const auto closed = std::find_if(_documents.begin(), _documents.end(), [document](const auto &candidate) {
        return candidate.get() == document;
    });
    if (closed == _documents.end())
        return;
    TDMyDocumentController *controller = document->myDocumentController();
    _closingDocuments.push_back(std::move(*closed));
    _documents.erase(closed);
    // A replace is still on the stack; it has been told to stop and says when it has.
    if (controller->isReplacing())
        connect(controller, &TDMyDocumentController::replaceEnded, this,
                [this, document] { _release(document); });
    else
        _release(document);
}

void TDApplicationController::_release(WindowedDocument *document)
{
    std::erase_if(_closingDocuments, [document](std::unique_ptr<WindowedDocument> &candidate) {
        if (candidate.get() != document)
            return false;
        // The window is in the middle of telling that it closed.
        candidate.release()->deleteLater();
        return true;
    });
}

TerminateReply TDApplicationController::applicationShouldTerminate()
{
    if (_countBusyWindows == 0) {
        _saveAllDocuments();
        return TerminateReply::Now;
    }
    askToStopReplace(nullptr,
                     {localizedString("Continue Replace and Don‘t Quit"),
                      localizedString("Stop Replace and Quit"), [this] { _stopAndTerminate(); },
                      [this] { terminate(); }},
                     this);
    return TerminateReply::Later;
}

void TDApplicationController::_saveAllDocuments()
{
    for (auto document = _documents.rbegin(); document != _documents.rend(); ++document) {
        (*document)->saveUserDefaultsForWindow();
        saveLayout(*(*document)->myDocumentController()->window());
    }
}

void TDApplicationController::_stopAndTerminate()
{
    for (auto document = _documents.rbegin(); document != _documents.rend(); ++document) {
        (*document)->saveUserDefaultsForWindow();
        (*document)->myDocumentController()->stopSearch();
        (*document)->myDocumentController()->setStopReplace(true);
        (*document)->myDocumentController()->window()->hide();
    }
    QCoreApplication::exit();
}

void TDApplicationController::terminate()
{
    if (applicationShouldTerminate() == TerminateReply::Now)
        QCoreApplication::exit();
}

void TDApplicationController::applicationWillTerminate()
{
    UserDefaults &settings = UserDefaults::standard();
    settings.setObject(kmIncludedKinds2Pref, archivedKinds(kinds()));
    settings.synchronize();
    stopReleasing();
}

void TDApplicationController::applicationWillHide()
{
    for (const auto &document : _documents)
        document->myDocumentController()->hideProgressIndicator();
}

void TDApplicationController::applicationDidUnhide()
{
    for (const auto &document : _documents)
        document->myDocumentController()->showProgressIndicatorIfSearching();
}

void TDApplicationController::_showHelpTopic(const QString &topic)
{
    helpWindow().showTopic(topic);
}

HelpWindow &TDApplicationController::helpWindow()
{
    if (!_helpWindow)
        _helpWindow = std::make_unique<HelpWindow>();
    return *_helpWindow;
}

TDPreferenceController &TDApplicationController::preferenceController()
{
    if (!_preferenceController)
        _preferenceController = std::make_unique<TDPreferenceController>(*this);
    return *_preferenceController;
}

void TDApplicationController::showPreferencePanel()
{
    preferenceController().showWindow();
}

void TDApplicationController::showPreferencePanelAndSelectFileTypesTab()
{
    showPreferencePanel();
    preferenceController().showFileTypesTab();
}

void TDApplicationController::showHelp()
{
    _showHelpTopic(TD_HELP_OVERVIEW_TOPIC);
}

void TDApplicationController::showHelpForFAQ()
{
    _showHelpTopic(TD_HELP_FAQ_TOPIC);
}

void TDApplicationController::helpVelkorHomePage()
{
    QDesktopServices::openUrl(QUrl(TD_VELKOR_HOME_PAGE));
}

void TDApplicationController::helpVelkorTDMHomePage()
{
    QDesktopServices::openUrl(QUrl(TD_TIDEMARK_HOME_PAGE));
}

void TDApplicationController::showAboutWindow()
{
    tidemark::showAboutWindow(QApplication::activeWindow(), productNameAndVersion(), productVersion());
}

QString TDApplicationController::versionNumber()
{
    return formatted(QStringLiteral("%lu.%lu"), {PRODUCT_YEAR, PRODUCT_BUILD});
}

QString TDApplicationController::productVersion()
{
    return formatted(localizedString("IDS_ProductVersion"), {versionNumber()});
}

QString TDApplicationController::productNameAndVersion()
{
    const QString number = formatted(QStringLiteral("%lu"), {PRODUCT_YEAR});
    return formatted(localizedString("IDS_ProductNameAndVersion"), {number});
}

} // namespace tidemark
