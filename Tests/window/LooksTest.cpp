#include "window/Colors.h"
#include "window/EmptyState.h"
#include "window/ResultsFixture.h"
#include "window/Symbols.h"
#include "window/form/OptionsRow.h"
#include "window/results/FolderTexts.h"
#include "window/results/StyledLinePainter.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QMimeData>
#include <QScreen>

namespace tidemark::test {

namespace {

QPalette lightPalette()
{
    return QPalette(QColor(239, 239, 239));
}

QPalette darkPalette()
{
    QPalette palette(QColor(45, 47, 50));
    palette.setColor(QPalette::Base, QColor(27, 30, 32));
    return palette;
}

TEST(Looks, EveryTextOfTheResultsCanBeRead)
{
    for (const QPalette &palette : {lightPalette(), darkPalette()}) {
        const LineColors colors = LineColors::on(palette);
        const QColor base = palette.color(QPalette::Base);
        const std::pair<QColor, QColor> pairs[] = {{colors.text, base},
                                                   {colors.struckText, colors.struckBackground},
                                                   {colors.newText, colors.newBackground},
                                                   {errorColor(palette), base}};
        for (const auto &[text, background] : pairs)
            EXPECT_GE(contrastRatio(text, background), READABLE_CONTRAST) << text.name().toStdString();
        for (const double share : {0.0, 0.1, 0.3, 0.5}) {
            const QColor behind = mixed(Qt::blue, base, share);
            const QColor faint = secondaryColor(colors.text, behind);
            const double most = contrastRatio(colors.text, behind);
            EXPECT_GE(contrastRatio(faint, behind), std::min(READABLE_CONTRAST, most));
            EXPECT_LE(contrastRatio(faint, behind), most);
            QPalette selected = palette;
            selected.setColor(QPalette::Base, mixed(QColor(61, 174, 233), base, share));
            EXPECT_GE(contrastRatio(errorColor(selected), selected.color(QPalette::Base)), READABLE_CONTRAST);
        }
    }
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 0.01);
    EXPECT_NEAR(contrastRatio(QColor(180, 180, 180), Qt::white), 2.1, 0.05);
}

TEST(Looks, SymbolsAreSeenOnEveryButton)
{
    for (const QPalette &palette : {lightPalette(), darkPalette()}) {
        for (const Symbol symbol : {Symbol::Add, Symbol::Remove, Symbol::Previous, Symbol::Next,
                                    Symbol::ExpandCollapse, Symbol::Clear, Symbol::Search, Symbol::Folder}) {
            const QImage image = symbolIcon(symbol, palette).pixmap(16).toImage();
            int seen = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor pixel = image.pixelColor(x, y);
                    seen += pixel.alpha() > 128 && contrastRatio(pixel, palette.color(QPalette::Button)) >= 3;
                }
            }
            EXPECT_GT(seen, 8) << int(symbol);
        }
    }
}

TEST(Looks, FoldersAreShownFromTheirLocationOn)
{
    const QString home = QDir::homePath();
    const std::tuple<QString, QStringList, QString> cases[] = {
        {u"/t/harbour/docs/ru"_s, {u"/t/harbour"_s}, u"docs › ru"_s},
        {u"/t/harbour"_s, {u"/t/harbour"_s}, u"harbour"_s},
        {u"/t/harbour/docs"_s, {u"/t"_s, u"/t/harbour"_s}, u"harbour › docs"_s},
        {u"/t/harbour-old/docs"_s, {u"/t/harbour"_s}, u"t › harbour-old › docs"_s},
        {u"/t"_s, {}, u"t"_s},
        {u"/"_s, {}, u"/"_s},
    };
    for (const auto &[folder, locations, shown] : cases)
        EXPECT_EQ(folderInLocations(folder, locations), shown) << folder.toStdString();
    EXPECT_EQ(folderInLocations(home + u"/notes"_s, {}), home == u"/"_s ? u"notes"_s : u"~ › notes"_s);
}

TEST(OptionsRow, TakesAsManyRowsAsItNeedsInBothDirections)
{
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        OptionsRow row;
        row.setLayoutDirection(direction);
        QList<QWidget *> controls;
        for (const QString &text : {u"one"_s, u"another one"_s, u"a third one"_s, u"the last one"_s})
            controls << new QCheckBox(text, &row);
        row.setControls(controls.first(3), controls.sliced(3));
        row.resize(row.sizeHint());
        row.show();
        const int oneRow = row.height();
        for (int width = row.sizeHint().width(); width >= row.minimumSizeHint().width(); width -= 7) {
            row.resize(width, row.heightAt(width));
            QRegion taken;
            for (const QWidget *control : controls) {
                EXPECT_TRUE(row.rect().contains(control->geometry())) << width;
                EXPECT_FALSE(taken.intersects(control->geometry())) << width;
                EXPECT_GE(control->width(), control->sizeHint().width());
                taken += control->geometry();
            }
            const QRect last = controls.last()->geometry();
            EXPECT_EQ(direction == Qt::LeftToRight ? width - 1 - last.right() : last.left(), 0);
        }
        EXPECT_GT(row.height(), 3 * oneRow);
    }
}

class LooksTest : public WindowTest
{
protected:
    static void send(QWidget *receiver, QEvent::Type type, const QMimeData &data)
    {
        const QPoint place = receiver->rect().center();
        if (type == QEvent::DragEnter) {
            QDragEnterEvent event(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(receiver, &event);
        } else {
            QDropEvent event(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
            QCoreApplication::sendEvent(receiver, &event);
        }
    }
    static QSize sizeAndDivider(OpenWindow &window)
    {
        return {window.window()->width(), window.ui().splitView->sizes().value(0)};
    }
};

TEST_F(LooksTest, FilesAreDroppedAnywhereAndThatShows)
{
    OpenWindow window(application);
    QMimeData data;
    data.setUrls({folder.makeFolder("dropped").toUrl()});
    QMimeData text;
    text.setText(u"only a text"_s);
    const auto *mark = window.window()->findChild<QWidget *>(u"dropMark"_s);
    QWidget *places[] = {window.window(), window.find(), window.ui().searchLocationsTableView->viewport()};
    for (QWidget *place : places) {
        window.document.setSearchLocations({});
        window.document.setFindText(u"kept"_s);
        send(place, QEvent::DragEnter, text);
        EXPECT_FALSE(mark->isVisible());
        send(place, QEvent::DragEnter, data);
        EXPECT_TRUE(mark->isVisible());
        send(place, QEvent::Drop, data);
        EXPECT_FALSE(mark->isVisible());
        EXPECT_EQ(window.document.searchLocations().size(), 1);
        EXPECT_EQ(window.document.findText(), u"kept"_s);
    }
    window.controller().locations().setAcceptsDrops(false);
    send(window.window(), QEvent::DragEnter, data);
    EXPECT_FALSE(mark->isVisible());
}

TEST_F(LooksTest, ASearchThatLacksSomethingSaysSo)
{
    OpenWindow window(application);
    window.document.setFindText(u"foo"_s);
    window.search();
    EXPECT_EQ(window.outline()->hintText(), u"Add a folder or a file to search first."_s);
    auto *button = window.outline()->findChild<QPushButton *>(u"emptyStateButton"_s);
    EXPECT_TRUE(button->isVisible());
    EXPECT_TRUE(window.ui().searchLocationsTableView->emptyState().isVisible());
    window.searchIn(folder.path(), {});
    EXPECT_FALSE(window.ui().searchLocationsTableView->emptyState().isVisible());
    window.search();
    EXPECT_EQ(window.ui().findMessageLabel->wholeText(), u"Type what to find first."_s);
    EXPECT_TRUE(window.ui().findMessageLabel->isVisible() && window.find()->hasFocus());
    EXPECT_FALSE(button->isVisible());
    window.document.setFindText(u"foo"_s);
    EXPECT_FALSE(window.ui().findMessageLabel->isVisible());
    window.search();
    EXPECT_TRUE(window.outline()->hintText().startsWith(u"No matches found."_s));
    EXPECT_TRUE(window.outline()->emptyState().isVisible());
    window.document.findResults().append({fileNode("/t/a", {u"foo"_s})});
    EXPECT_FALSE(window.outline()->emptyState().isVisible());
}

TEST_F(LooksTest, AfterAMalformedExpressionNothingIsSaidOfFilesAndItCanBeMended)
{
    folder.write("a.txt", "foo\n");
    folder.write("b.png", "foo\n");
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    OpenWindow window(application);
    window.searchIn(folder.path(), u"(foo"_s);
    window.search();
    ASSERT_NE(window.sheet(), nullptr);
    EXPECT_EQ(window.outline()->hintText(), u"Lines with matches will appear here."_s);
    EXPECT_FALSE(window.window()->findChild<QLabel *>(u"searchEverythingLabel"_s)->isVisible());
    window.sheet()->accept();
    EXPECT_EQ(window.window()->focusWidget(), window.ui().findTextComboBox);
    window.document.setFindText(u"(bar)"_s);
    window.search();
    EXPECT_TRUE(window.outline()->hintText().isEmpty()) << "there is more to be searched";
}

TEST_F(LooksTest, NarrowWindowsShowNoFoldersButSortByName)
{
    OpenWindow window(application);
    const QHeaderView *header = window.outline()->header();
    window.window()->resize(1000, 700);
    QCoreApplication::processEvents();
    EXPECT_FALSE(header->isSectionHidden(ResultsTreeModel::FolderColumn));
    window.window()->resize(640, 480);
    QCoreApplication::processEvents();
    EXPECT_TRUE(header->isSectionHidden(ResultsTreeModel::FolderColumn));
    EXPECT_FALSE(header->isSectionHidden(ResultsTreeModel::NameColumn));
}

TEST_F(LooksTest, WindowsOpenAsTheLastOneWasLeft)
{
    QSize left;
    {
        OpenWindow window(application);
        window.window()->resize(700, 640);
        window.ui().splitView->setSizes({260, 400});
        window.outline()->header()->resizeSection(ResultsTreeModel::NameColumn, 222);
        QCoreApplication::processEvents();
        left = sizeAndDivider(window);
        window.window()->close();
    }
    {
        OpenWindow window(application);
        EXPECT_EQ(sizeAndDivider(window), left);
        EXPECT_EQ(window.outline()->header()->sectionSize(ResultsTreeModel::NameColumn), 222);
        window.window()->setGeometry(5000, 5000, 4000, 3000);
        window.window()->close();
    }
    OpenWindow window(application);
    EXPECT_TRUE(window.window()->screen()->availableGeometry().contains(window.window()->geometry()));
    for (const QVariant &damaged : {QVariant(u"x"_s), QVariant(7), QVariant(QVariantList{1})}) {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_WINDOW_LAYOUTS, damaged);
        EXPECT_TRUE(OpenWindow(application).window()->close());
    }
}

} // namespace

} // namespace tidemark::test
