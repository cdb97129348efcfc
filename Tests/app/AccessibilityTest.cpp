#include "LanguageInstaller.h"
#include "app/AppTest.h"
#include "app/HelpWindow.h"
#include "app/PlaceholderColor.h"
#include "window/Colors.h"
#include "window/results/FolderTexts.h"
#include "window/results/ResultsPane.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QStyleFactory>

namespace tidemark::test {

namespace {

bool isControl(QAccessible::Role role)
{
    static const QSet<QAccessible::Role> controls = {
        QAccessible::Button,    QAccessible::CheckBox, QAccessible::ComboBox, QAccessible::EditableText,
        QAccessible::SpinBox,   QAccessible::Table,    QAccessible::Tree,     QAccessible::PageTab,
        QAccessible::MenuItem,  QAccessible::List,     QAccessible::Document, QAccessible::ProgressBar,
        QAccessible::ButtonMenu};
    return controls.contains(role);
}

/// Parts of a control that the toolkit makes bear the control's name.
bool isPartOfControl(const QAccessibleInterface &part)
{
    const QAccessible::Role whole = part.parent() == nullptr ? QAccessible::NoRole : part.parent()->role();
    return (whole == QAccessible::ComboBox || whole == QAccessible::SpinBox) && isControl(part.role());
}

bool isReachable(const QAccessibleInterface &interface)
{
    const auto *widget = qobject_cast<const QWidget *>(interface.object());
    const QAccessible::Role role = interface.role();
    const bool isFocusable = interface.state().focusable && widget != nullptr &&
                             widget->focusProxy() == nullptr && role != QAccessible::Window &&
                             role != QAccessible::Dialog;
    return (isControl(role) || isFocusable) && !interface.state().invisible;
}

/// What can be reached by the keyboard and has no name, or no role.
void collectNameless(QAccessibleInterface *interface, QStringList &nameless, int &controls, int depth = 0)
{
    if (interface == nullptr || !interface->isValid() || depth > 30 || isPartOfControl(*interface))
        return;
    if (isReachable(*interface)) {
        ++controls;
        const QAccessible::Role role = interface->role();
        const QString object = interface->object() == nullptr ? u"cell"_s : interface->object()->objectName();
        if (interface->text(QAccessible::Name).isEmpty() && role != QAccessible::Separator)
            nameless << u"no name: %1 (%2)"_s.arg(object).arg(int(role));
        if (role == QAccessible::NoRole || role == QAccessible::Client)
            nameless << u"no role: %1 (%2)"_s.arg(object).arg(int(role));
    }
    for (int index = 0; index < interface->childCount(); ++index)
        collectNameless(interface->child(index), nameless, controls, depth + 1);
}

QString namelessControls(QWidget *window, int atLeast)
{
    QStringList nameless;
    int controls = 0;
    collectNameless(QAccessible::queryAccessibleInterface(window), nameless, controls);
    EXPECT_GE(controls, atLeast);
    return nameless.join(u'\n');
}

QPalette darkPalette()
{
    QPalette palette(QColor(45, 47, 50));
    palette.setColor(QPalette::Base, QColor(30, 31, 33));
    palette.setColor(QPalette::AlternateBase, QColor(38, 39, 42));
    palette.setColor(QPalette::Highlight, QColor(60, 110, 180));
    return palette;
}

using AccessibilityTest = AppTest;

TEST_F(AccessibilityTest, PlaceholdersAreReadableWhateverTheDesktopLeavesOut)
{
    const QPalette before = QApplication::palette();
    keepPlaceholdersReadable();
    for (QPalette palette : {darkPalette(), QPalette(QColor(240, 240, 240))}) {
        palette.setColor(QPalette::PlaceholderText, palette.color(QPalette::Base));
        QApplication::setPalette(palette);
        QCoreApplication::processEvents();
        const QPalette now = QLineEdit().palette();
        EXPECT_GE(contrastRatio(now.color(QPalette::PlaceholderText), now.color(QPalette::Base)),
                  READABLE_CONTRAST);
        EXPECT_EQ(now.color(QPalette::Base), palette.color(QPalette::Base));
    }
    QApplication::setPalette(before);
}

TEST_F(AccessibilityTest, EveryControlHasANameAndARole)
{
    WindowedDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    document->myDocumentController()->locations().dropFiles({folder.path()});
    EXPECT_EQ(namelessControls(document->myDocumentController()->window(), 15).toStdString(), "");
    controller.showPreferencePanel();
    EXPECT_EQ(namelessControls(preferences().window(), 5).toStdString(), "");
    preferences().showFileTypesTab();
    EXPECT_EQ(namelessControls(preferences().window(), 10).toStdString(), "");
    controller.showHelp();
    EXPECT_EQ(namelessControls(&controller.helpWindow(), 1).toStdString(), "");
}

TEST_F(AccessibilityTest, TheSelectedResultIsSpokenOf)
{
    folder.write("a.txt", "x\n\ta needle\r\n");
    WindowedDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    TDMyDocumentController &window = *document->myDocumentController();
    window.locations().addSearchLocations({folder.path().toUrl(), folder.path("gone").toUrl()});
    document->setFindText(u"needle"_s);
    window.startSearch(StartStopButton::On);
    ASSERT_TRUE(waitFor([&] { return !window.searching(); }));
    TDSearchResultsOutlineView &view = window.resultsPane().outlineView();
    window.resultsPane().navigation().showAll();
    const QString spoken[] = {u"a.txt, 1 match, expanded"_s, u"line 2, match 1 of 1: \ta needle"_s,
                              u"gone, couldn’t be searched, expanded"_s,
                              u"Error: Error 2 occured.\nNo such file or directory"_s};
    ASSERT_EQ(view.numberOfRows(), int(std::size(spoken)));
    for (int row = 0; row < view.numberOfRows(); ++row) {
        view.selectRow(row);
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->text(QAccessible::Value), spoken[row]);
    }
    // What is shown stays in one sentence; the tool tip adds what the system says.
    const QModelIndex error = view.indexAtRow(3);
    EXPECT_EQ(error.data().toString(), u"Error 2 occured."_s);
    EXPECT_TRUE(error.data(Qt::ToolTipRole).toString().contains(u"No such file or directory"_s));
}

TEST_F(AccessibilityTest, TabReachesEveryControlOfThePreferences)
{
    for (const int tab : {0, 1}) {
        controller.showPreferencePanel();
        ASSERT_TRUE(QTest::qWaitForWindowActive(preferences().window()));
        ui().tabView->setCurrentIndex(tab);
        ui().tabView->setFocus();
        QSet<QWidget *> reached;
        for (int count = 0; count < 40; ++count) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached.insert(QApplication::focusWidget());
        }
        for (QWidget *widget : ui().tabView->currentWidget()->findChildren<QWidget *>()) {
            if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() && widget->isEnabled() &&
                widget->focusProxy() == nullptr && !widget->objectName().startsWith(u"qt_"_s)) {
                EXPECT_TRUE(reached.contains(widget)) << widget->objectName().toStdString();
            }
        }
    }
}

void savePicture(QWidget &window, const QString &name)
{
    if (const QString folder = qEnvironmentVariable("TIDEMARK_PICTURES"); !folder.isEmpty())
        window.grab().save(u"%1/%2.png"_s.arg(folder, name));
}

void expectNothingCut(const QWidget &window)
{
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const bool isText = label != nullptr || qobject_cast<const QAbstractButton *>(widget) != nullptr;
        if (!isText || !widget->isVisible() || widget->inherits("tidemark::ElidedLabel"))
            continue;
        if (label != nullptr && label->wordWrap())
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << label->text().toStdString();
        else
            EXPECT_GE(widget->width(), widget->sizeHint().width()) << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << widget->objectName().toStdString();
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        EXPECT_TRUE(window.rect().contains(place)) << widget->objectName().toStdString();
    }
}

/// With TIDEMARK_PICTURES set to a folder, every window is left there as a picture.
class InLanguages : public AccessibilityTest, public testing::WithParamInterface<const char *>
{};

TEST_P(InLanguages, NothingIsCutInThePreferences)
{
    const QString language = QString::fromLatin1(GetParam());
    const LanguageInstaller texts(language);
    controller.setKinds(Kind::defaultKinds() + QList<Kind>{Kind::newKind()});
    const QPalette light = QApplication::palette();
    for (const bool isDark : {false, true}) {
        QApplication::setPalette(isDark ? darkPalette() : light);
        controller.showPreferencePanel();
        QWidget *window = preferences().window();
        EXPECT_LE(window->width(), 900);
        for (const int tab : {0, 1}) {
            ui().tabView->setCurrentIndex(tab);
            ui().kindsTableView->setCurrentIndex(ui().kindsTableView->model()->index(6, 1));
            QCoreApplication::processEvents();
            expectNothingCut(*window);
            savePicture(*window, u"preferences-%1-%2-%3"_s.arg(language).arg(tab).arg(isDark ? u"dark"_s
                                                                                             : u"light"_s));
        }
    }
    QApplication::setPalette(light);
}

TEST_P(InLanguages, NothingIsCutInTheSmallestSearchWindow)
{
    const QString language = QString::fromLatin1(GetParam());
    const LanguageInstaller texts(language);
    WindowedDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    SearchWindow *window = document->myDocumentController()->window();
    // It opens on the screen.
    EXPECT_TRUE(QRect(QPoint(), window->screen()->availableSize())
                    .contains(QRect(QPoint(), window->frameGeometry().size())));
    window->resize(1, 1);
    QCoreApplication::processEvents();
    EXPECT_LE(window->width(), 800);
    // A screen of 1000 pixels at scale 2, with a panel.
    EXPECT_LE(window->height(), 440);
    expectNothingCut(*window);
    for (const QAbstractButton *button : window->findChildren<QAbstractButton *>())
        EXPECT_FALSE(button->isVisible() && button->toolTip().isEmpty())
            << button->objectName().toStdString();
    savePicture(*window, u"search-"_s + language);
    controller.showHelp();
    savePicture(controller.helpWindow(), u"help-"_s + language);
}

INSTANTIATE_TEST_SUITE_P(Languages, InLanguages, testing::Values("en", "de", "fr"),
                         [](const auto &language) { return std::string(language.param); });

} // namespace

} // namespace tidemark::test
