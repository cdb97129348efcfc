#pragma once

#include "app/CommandLine.h"
#include "foundation/FilePath.h"
#include "foundation/WorkerThreads.h"
#include "search/Kind.h"
#include "window/ApplicationDelegate.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

namespace tidemark {

class HelpWindow;
class WindowedDocument;
class TDPreferenceController;

inline const QString TD_HELP_OVERVIEW_TOPIC = QStringLiteral("index");
inline const QString TD_HELP_FAQ_TOPIC = QStringLiteral("using-tidemark");
inline const QString kmApplicationControllerKindsKey = QStringLiteral("kinds");
/// The type of a search document.
inline const QString TD_DOCUMENT_TYPE = QStringLiteral("com.velkor.Tidemark.document");
inline const QString TD_VELKOR_HOME_PAGE = QStringLiteral("https://www.velkor.com/");
inline const QString TD_TIDEMARK_HOME_PAGE = QStringLiteral("https://www.velkor.com/tidemark/");

enum class TerminateReply { Now, Later };

/// The application: its settings and kinds, its search documents, and when it may quit. One for the life of
/// the process, made after the application object. Main thread only.
class TDApplicationController : public QObject, public ApplicationDelegate
{
    Q_OBJECT

public:
    explicit TDApplicationController(QObject *parent = nullptr);
    ~TDApplicationController() override;

    /// Registers the factory settings and takes over the stored kinds; before any document is made.
    void awakeFromNib();
    void registerUserDefaults();
    /// Opens an untitled document, unless there is one already.
    void applicationDidFinishLaunching();
    /// Looks, beside everything else, for files that an earlier run left partly written, and asks about them.
    /// `folder` is where the records of rewrites are.
    void askAboutInterruptedRewrites(const FilePath &folder);
    bool applicationShouldOpenUntitledFile() const { return true; }
    bool applicationOpenUntitledFile();
    /// Opens a document with what it is to start with; what isn't said comes from the settings.
    void openDocument(const LaunchRequest &request);
    /// Null for another type than that of search documents.
    WindowedDocument *openUntitledDocument(const QString &documentType);

    /// Now: the documents' settings are saved, and quitting may go on. Later: the user is being asked, and
    /// quitting goes on by itself if that is the answer, or when the replace has ended meanwhile.
    TerminateReply applicationShouldTerminate();
    void applicationWillTerminate();
    void applicationWillHide();
    void applicationDidUnhide();
    /// Quits, or asks first.
    void terminate();

    quint64 countBusyWindows() const override { return _countBusyWindows; }
    void setCountBusyWindows(quint64 count) override { _countBusyWindows = count; }
    QList<Kind> kinds() const { return kindsInForce(); }
    void setKinds(const QList<Kind> &kinds);

    /// In the order in which they were opened.
    QList<WindowedDocument *> documents() const;

    void showHelp();
    void showHelpForFAQ();
    void helpOverviewForNewUsers() { showHelpForFAQ(); }
    void helpVelkorHomePage();
    void helpVelkorTDMHomePage();
    void showAboutWindow();

    void showPreferencePanel();
    void showPreferencePanelAndSelectFileTypesTab() override;
    /// Made on first use and kept.
    TDPreferenceController &preferenceController();
    HelpWindow &helpWindow();

    /// "2012.234".
    static QString versionNumber();
    static QString productVersion();
    static QString productNameAndVersion();

Q_SIGNALS:
    void kindsChanged();

private:
    void _connectApplication();
    void _documentClosed(WindowedDocument *document);
    void _release(WindowedDocument *document);
    void _saveAllDocuments();
    void _stopAndTerminate();
    void _showHelpTopic(const QString &topic);

    std::vector<std::unique_ptr<WindowedDocument>> _documents;
    /// Whose windows have closed while a replace was running in them.
    std::vector<std::unique_ptr<WindowedDocument>> _closingDocuments;
    std::unique_ptr<HelpWindow> _helpWindow;
    std::unique_ptr<TDPreferenceController> _preferenceController;
    quint64 _countBusyWindows = 0;
    WorkerThreads _recovery{1}; ///< last: it ends first
};

} // namespace tidemark
