#include "app/TDApplicationController.h"
#include "app/TDPreferenceController.h"
#include "support/gui/WindowFixture.h"
#include "ui_MyDocument.h"
#include "ui_Preferences.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {

namespace {

/// A name, and a text to find, that everything would like to interpret.
const QString HOSTILE = u"<b>&x%1 [*]%@%d%s<img src=x> &lt;"_s;

/// What a label or a tool tip shows.
QString shownText(const QString &text, Qt::TextFormat format = Qt::AutoText)
{
    const bool isRich = format == Qt::RichText || (format == Qt::AutoText && Qt::mightBeRichText(text));
    return isRich ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

/// What a menu shows.
QString withoutMnemonics(QString text)
{
    text.replace(u"&&"_s, u"\x1"_s).remove(u'&');
    return text.replace(u'\x1', u'&');
}

/// Looks for the hostile text wherever a window shows texts, and tells the places where it isn't shown as it
/// stands.
class Inspection
{
public:
    explicit Inspection(const QWidget &window)
    {
        const QList<QWidget *> widgets = window.findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            const QString name = widget->objectName();
            _note(widget->toolTip(), shownText(widget->toolTip()), u"tool tip of "_s + name);
            if (const auto *label = qobject_cast<QLabel *>(widget))
                _note(label->text(), shownText(label->text(), label->textFormat()), u"label "_s + name);
            if (const auto *view = qobject_cast<QAbstractItemView *>(widget);
                view != nullptr && view->model())
                _inspectItems(*view->model(), {}, name);
        }
        const QList<QAction *> actions = window.findChildren<QAction *>();
        for (const QAction *action : actions)
            _note(action->text(), withoutMnemonics(action->text()), u"action"_s);
        EXPECT_FALSE(window.windowTitle().contains(u"&x"_s));
    }

    int found = 0;
    QStringList misshown;

private:
    void _note(const QString &text, const QString &shown, const QString &place)
    {
        // What interprets it may have been given it whole or in parts.
        if (!text.contains(u"x%1"_s))
            return;
        ++found;
        if (!shown.contains(HOSTILE))
            misshown << place + u": "_s + shown;
    }
    void _inspectItems(const QAbstractItemModel &model, const QModelIndex &parent, const QString &name)
    {
        for (int row = 0; row < model.rowCount(parent); ++row) {
            for (int column = 0; column < model.columnCount(parent); ++column) {
                const QModelIndex index = model.index(row, column, parent);
                const QString text = index.data().toString();
                const QString toolTip = index.data(Qt::ToolTipRole).toString();
                _note(text, text, u"row of "_s + name);
                _note(toolTip, shownText(toolTip), u"tool tip of a row of "_s + name);
                _inspectItems(model, index, name);
            }
        }
    }
};

class HostileTexts : public WindowTest
{
protected:
    HostileTexts()
    {
        application.awakeFromNib();
        setKindsInForce({{u"Any"_s, u"*"_s, true}});
        document = application.openUntitledDocument(TD_DOCUMENT_TYPE);
        document->setFindText(HOSTILE);
        document->setReplaceText(HOSTILE);
    }
    ~HostileTexts() override { setKindsInForce(Kind::defaultKinds()); }

    TDMyDocumentController &controller() { return *document->myDocumentController(); }
    void search()
    {
        controller().startSearch(StartStopButton::On);
        ASSERT_TRUE(waitFor([this] { return !controller().searching(); }));
        document->setResultsStatusText(u"• /"_s + HOSTILE + QString(500, u'x'));
    }
    void expectShown(QWidget &window, int atLeast)
    {
        // Texts are cut to the room that their labels get.
        QCoreApplication::processEvents();
        const Inspection inspection(window);
        EXPECT_EQ(inspection.misshown, QStringList());
        EXPECT_GE(inspection.found, atLeast);
    }

    TDApplicationController application;
    WindowedDocument *document;
};

TEST_F(HostileTexts, NamesAndTextsAreShownAsTheyStand)
{
    const QByteArray name = HOSTILE.toUtf8();
    folder.write(name + "/" + name + ".txt", "a line with " + name + "\n");
    folder.write(name + "/" + name, "a line with " + name + "\n\xFF\n");
    const FilePath gone = folder.write(name + ".gone", "");
    document->setSearchLocations({location(folder.path(name)), location(gone)});
    ASSERT_EQ(unlink(gone.cString()), 0);
    document->setSearchLocations(document->searchLocations());
    search();
    ASSERT_EQ(document->findResults().count(), 3);
    SearchWindow *window = controller().window();
    Q_EMIT window->menuBar()->actions().at(4)->menu()->aboutToShow();
    // The two locations, three files in three columns with their tool tips, the matched line, the status
    // line.
    expectShown(*window, 15);

    controller().actions().replaceAll->trigger();
    expectShown(*window, 15);
}

TEST_F(HostileTexts, AnErrorSheetShowsThemAsTheyStand)
{
    folder.write("file.txt", "line\n");
    document->setFindText(u'(' + HOSTILE);
    document->setSearchLocations({location(folder.path())});
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    search();
    const auto *sheet = controller().window()->findChild<QMessageBox *>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->text().contains(HOSTILE));
    expectShown(*controller().window(), 2);
}

TEST_F(HostileTexts, KindsAreShownAsTheyStand)
{
    application.setKinds({{HOSTILE, u"uti:"_s + HOSTILE, true}, {HOSTILE, HOSTILE, true}});
    application.showPreferencePanelAndSelectFileTypesTab();
    TDPreferenceController &preferences = application.preferenceController();
    EXPECT_TRUE(preferences.ui().kindRemarkLabel->text().contains(HOSTILE));
    expectShown(*preferences.ui().tabView->window(), 7);
    document->setSearchLocations({});
    search();
    expectShown(*controller().window(), 2);
}

} // namespace

} // namespace tidemark::test
