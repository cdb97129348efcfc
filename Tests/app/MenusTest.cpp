#include "app/AppTest.h"
#include "app/HelpWindow.h"
#include "ui_MyDocument.h"
#include "window/results/ResultsPane.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>

namespace tidemark::test {

namespace {

/// Takes what is opened elsewhere.
class Outside : public QObject
{
    Q_OBJECT

public:
    Outside()
    {
        // No file manager is to be asked.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
        for (const QString &scheme : {u"https"_s, u"file"_s})
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Outside() override
    {
        for (const QString &scheme : {u"https"_s, u"file"_s})
            QDesktopServices::unsetUrlHandler(scheme);
    }

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened << url.toString(); }
};

/// An application with a window in some state.
class Scene
{
public:
    explicit Scene(TemporaryFolder &folder)
        : files(folder), document(*started(application).openUntitledDocument(TD_DOCUMENT_TYPE)),
          controller(*document.myDocumentController()), ui(controller.window()->ui())
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
        ResultsNavigation::setShowHideState(false);
        ReplaceCommands::setSuppressAlertReplaceSelection(false);
        QGuiApplication::clipboard()->setText(u"pasted"_s);
        files.write("a.txt", "foo foo\nfoo\n");
        files.write("b.txt", "foo\n");
        document.setFindText(u"foo"_s);
        document.setReplaceText(u"bar"_s);
        controller.locations().addSearchLocations(
            {files.path("a.txt").toUrl(), files.path("b.txt").toUrl(), files.path("gone").toUrl()});
        EXPECT_TRUE(QTest::qWaitForWindowActive(controller.window()));
    }
    void search()
    {
        controller.startSearch(StartStopButton::On);
        ASSERT_TRUE(waitFor([this] { return !controller.searching(); }));
    }
    QLineEdit *find() { return ui.findTextComboBox->lineEdit(); }
    ResultsNavigation &navigation() { return controller.resultsPane().navigation(); }
    TDSearchResultsOutlineView &view() { return controller.resultsPane().outlineView(); }

    /// Everything that a command could change.
    QString look() const
    {
        QString look;
        QTextStream stream(&look);
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (window->isVisible() && !window->inherits("QMenu"))
                stream << window->metaObject()->className() << int(window->windowState()) << ' ';
        }
        for (const HistoryComboBox *box : {ui.findTextComboBox, ui.replaceTextComboBox}) {
            const QLineEdit *field = box->lineEdit();
            stream << field->text() << field->selectedText() << field->isUndoAvailable()
                   << field->isRedoAvailable();
        }
        stream << QGuiApplication::clipboard()->text() << ui.ignoreCaseCheckBox->isChecked()
               << ui.regularExpressionCheckBox->isChecked() << ui.unicodeCheckBox->isChecked()
               << ui.wholeWordsCheckBox->isChecked() << ui.showReplacementsCheckBox->isChecked()
               << UserDefaults::standard().stringForKey(TD_USER_DEFAULTS_NAME_LEAVE_OUT_PATTERNS)
               << UserDefaults::standard().integerForKey(TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE) << ' '
               << UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_CONTEXT)
               << UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_SHOW_ENCODINGS)
               << controller.searching() << document.searchLocations().size() << controller.stopReplace()
               << outside.opened.join(u' ');
        const QWidget *focused = controller.window()->focusWidget();
        stream << (focused != nullptr ? focused->objectName() : QString());
        TDSearchResultsOutlineView &results = controller.resultsPane().outlineView();
        stream << results.numberOfRows() << ' ' << results.selectedRow();
        stream << files.read("a.txt") << files.read("b.txt");
        if (const TDMatchLine *line = controller.resultsPane().navigation().currentlySelectedMatchLine())
            stream << line->lineNumber() << ' ' << line->highlightedMatchIndex();
        for (const auto &item : controller.resultsPane().navigation().selection().selectedObjects())
            stream << ' ' << item.get();
        return look;
    }

    TemporaryFolder &files;
    Outside outside;
    TDApplicationController application;
    WindowedDocument &document;
    TDMyDocumentController &controller;
    Ui::MyDocument &ui;

private:
    static TDApplicationController &started(TDApplicationController &application)
    {
        application.awakeFromNib();
        return application;
    }
};

struct State
{
    const char *name;
    void (*reach)(Scene &scene);
    int leastEnabled;
};

const State STATES[] = {
    {"opened", [](Scene &) {}, 15},
    {"find text edited",
     [](Scene &scene) {
         QTest::keyClicks(scene.ui.findTextComboBox, u"foo"_s);
         scene.find()->setSelection(1, 1);
     },
     20},
    {"replace undone",
     [](Scene &scene) {
         scene.ui.replaceTextComboBox->setFocus();
         QTest::keyClicks(scene.ui.replaceTextComboBox, u"x"_s);
         scene.ui.replaceTextComboBox->lineEdit()->undo();
     },
     16},
    {"location selected", [](Scene &scene) { scene.ui.searchLocationsTableView->selectRow(0); }, 16},
    {"first match", [](Scene &scene) { scene.search(); }, 22},
    {"last match",
     [](Scene &scene) {
         scene.search();
         for (int step = 0; step < 4; ++step)
             scene.navigation().moveToNextMatch();
     },
     22},
    {"collapsed",
     [](Scene &scene) {
         scene.search();
         scene.view().collapseItem(scene.view().indexAtRow(0));
     },
     22},
    {"error",
     [](Scene &scene) {
         scene.search();
         scene.navigation().showAll();
         scene.view().selectRow(scene.view().numberOfRows() - 1);
     },
     18},
    {"nothing selected",
     [](Scene &scene) {
         scene.search();
         scene.view().clearSelectedRows();
     },
     18},
    {"all replaced",
     [](Scene &scene) {
         scene.search();
         scene.document.setReplaceText({});
         for (int step = 0; step < 5; ++step)
             scene.controller.actions().replaceAndFind->trigger();
     },
     16},
    {"searching", [](Scene &scene) { scene.controller.startSearch(StartStopButton::On); }, 15},
};

/// The entries of a menu and of those in it that can be chosen, after each was opened as by the mouse.
QList<QAction *> enabledEntries(QMenu &menu)
{
    QList<QAction *> entries;
    Q_EMIT menu.aboutToShow();
    for (QAction *entry : menu.actions()) {
        if (entry->isEnabled() && entry->menu() != nullptr)
            entries << enabledEntries(*entry->menu());
        else if (entry->isEnabled() && !entry->isSeparator())
            entries << entry;
    }
    return entries;
}

QList<QAction *> enabledEntries(Scene &scene)
{
    QList<QAction *> entries;
    for (const QAction *title : scene.controller.window()->menuBar()->actions())
        entries << enabledEntries(*title->menu());
    return entries;
}

class Menus : public testing::TestWithParam<State>
{};

TEST_P(Menus, NothingThatCanBeChosenDoesNothing)
{
    qsizetype count = 1;
    for (qsizetype number = 0; number < count; ++number) {
        TemporaryFolder folder;
        Scene scene(folder);
        GetParam().reach(scene);
        const QList<QAction *> entries = enabledEntries(scene);
        count = entries.size();
        QAction *entry = entries.value(number);
        ASSERT_NE(entry, nullptr);
        // They tell only what is so already, or end everything.
        if (entry->isChecked() && entry->text().contains(u"Velkor"_s))
            continue;
        if (entry->menuRole() == QAction::QuitRole)
            continue;
        const QString before = scene.look();
        entry->trigger();
        QCoreApplication::processEvents();
        // The window can be closed as well.
        const bool isGone = !scene.application.documents().contains(&scene.document);
        EXPECT_TRUE(isGone || scene.look() != before) << GetParam().name << ": " << qPrintable(entry->text());
    }
    EXPECT_GE(count, GetParam().leastEnabled);
}

INSTANTIATE_TEST_SUITE_P(States, Menus, testing::ValuesIn(STATES), [](const auto &state) {
    return QString::fromLatin1(state.param.name).remove(u' ').toStdString();
});

} // namespace

} // namespace tidemark::test

#include "MenusTest.moc"
