#include "window/ReadAsDialog.h"

#include "support/gui/OpenWindow.h"
#include "window/ElidedLabel.h"
#include "window/context/ContextPane.h"
#include "window/context/ContextView.h"
#include "window/results/ResultsTreeModel.h"

#include <QAction>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>

namespace tidemark::test {

namespace {

constexpr StringEncoding LATIN1 = 5;

/// Of what was searched four files are no UTF-8, and one is no file any more.
class ReadAsWindowTest : public WindowTest
{
protected:
    ReadAsWindowTest() : window(application)
    {
        folder.write("a.txt", "foo\n");
        const QByteArray german = "Die gr\xF6\xDFte \xDC"
                                  "berraschung f\xFCr den M\xFCller foo\n";
        for (const char *name : {"b.txt", "c.txt", "d.txt"})
            folder.write(name, "one\n" + german.repeated(3));
        window.searchIn(folder.path(), u"foo"_s);
        window.search();
    }
    const SearchWindowActions &actions() { return window.controller().actions(); }
    QAction *readAs() { return window.controller().resultsPane().resultsActions().readAsAction(); }
    QLabel *links() { return window.window()->findChild<QLabel *>(u"outcomeLinks"_s); }
    ReadAsDialog *dialog() { return window.window()->findChild<ReadAsDialog *>(); }
    QString selected() { return window.outline()->selectedIndex().data().toString(); }
    QString encodingOf(int row)
    {
        return window.outline()->model()->index(row, ResultsTreeModel::EncodingColumn).data().toString();
    }
    bool waitUntilRead()
    {
        return waitFor([this] { return dialog() == nullptr && !window.controller().searching(); });
    }

    OpenWindow window;
};

TEST_F(ReadAsWindowTest, NothingOfTheStatusAndOfErrorsIsCutInNarrowWindows)
{
    ElidedLabel &status = *window.ui().resultsStatusLabel;
    QString text = u"Search completed"_s;
    while (status.fontMetrics().horizontalAdvance(text) < 500)
        text += u" w"_s;
    window.document.setResultsStatusText(text);
    QList<int> heights;
    for (const int width : {1400, 640, 1400}) {
        window.window()->resize(width, 600);
        QCoreApplication::processEvents();
        EXPECT_EQ(status.text(), text) << width;
        EXPECT_EQ(links()->y() > status.geometry().bottom(), width == 640) << width;
        EXPECT_GE(links()->width(), links()->sizeHint().width()) << width;
        window.controller().resultsPane().navigation().showAll();
        heights << window.outline()->visualRect(window.outline()->indexAtRow(3)).height();
    }
    EXPECT_GT(heights[1], heights[0]);
    EXPECT_EQ(heights[2], heights[0]);
}

TEST_F(ReadAsWindowTest, TheStatusLeadsToUnreadableFilesAndTheirRowsToReadAs)
{
    EXPECT_EQ(links()->accessibleName(), u"3 files couldn't be read"_s);
    EXPECT_TRUE(links()->text().startsWith(u" • <a"_s));
    EXPECT_FALSE(window.ui().leftOutButton->isVisible()) << "they aren't counted twice";
    for (const char *name : {"b.txt", "c.txt", "d.txt", "b.txt"}) {
        Q_EMIT links()->linkActivated(u"unreadable"_s);
        QCoreApplication::processEvents();
        EXPECT_EQ(selected(), QString::fromLatin1(name));
    }
    const int row = window.outline()->selectedRow() + 1;
    EXPECT_TRUE(readAs()->isEnabled());
    window.outline()->selectRow(0);
    EXPECT_FALSE(readAs()->isEnabled());
    EXPECT_TRUE(window.outline()->readAsRect(0).isEmpty());

    const QRect link = window.outline()->readAsRect(row);
    ASSERT_TRUE(window.outline()->viewport()->rect().contains(link));
    QTest::mouseClick(window.outline()->viewport(), Qt::LeftButton, {}, link.center());
    ASSERT_NE(dialog(), nullptr);
    auto *encodings = dialog()->findChild<QListWidget *>(u"encodings"_s);
    ASSERT_TRUE(waitFor([&] { return !encodings->selectedItems().isEmpty(); }));
    EXPECT_EQ(encodings->currentRow(), 0);
    const auto western = encodings->findItems(u"Western (ISO Latin 1)"_s, Qt::MatchExactly);
    ASSERT_EQ(western.size(), 1);
    EXPECT_LT(encodings->row(western.first()), 4) << "it is among the likely ones";
    encodings->setCurrentItem(western.first());
    auto *preview = dialog()->findChild<ContextView *>();
    EXPECT_EQ(preview->shownLine(), 2);
    EXPECT_TRUE(waitFor([&] { return preview->spokenText().startsWith(u"Die größte"_s); }));
    dialog()->findChild<QCheckBox *>()->setChecked(true);
    dialog()->accept();
    ASSERT_TRUE(waitUntilRead());
    EXPECT_FALSE(links()->isVisible());
    EXPECT_EQ(window.document.findResults().count(), 4);
    EXPECT_EQ(encodingOf(3), u"Western (ISO Latin 1), chosen"_s);
    EXPECT_TRUE(selected().contains(u"größte"_s));
    EXPECT_EQ(window.window()->focusWidget(), window.outline());
    EXPECT_TRUE(readAs()->isEnabled()) << "another choice can be made";
}

TEST_F(ReadAsWindowTest, TheContextReadsInWhatWasChosenAndInTheFontOfTheLines)
{
    actions().showContext->trigger();
    window.outline()->selectRow(1);
    window.controller().searchControl().readAs({window.document.findResults().files()[1]}, LATIN1);
    ASSERT_TRUE(waitUntilRead());
    ContextPane &pane = window.controller().contextPane();
    EXPECT_TRUE(waitFor([&] { return pane.context().line(2) != nullptr; }));
    EXPECT_TRUE(waitFor([&] { return pane.view().spokenText().startsWith(u"Die größte"_s); }));
    const int size = pane.view().font().pointSize();
    actions().largerText->trigger();
    EXPECT_GT(pane.view().font().pointSize(), size);
}

TEST_F(ReadAsWindowTest, TheColumnIsOffAtFirstAndSaysWhy)
{
    QHeaderView *header = window.outline()->header();
    const auto isShown = [&] { return !header->isSectionHidden(ResultsTreeModel::EncodingColumn); };
    EXPECT_FALSE(isShown());
    QAction *inHeader = header->actions().value(0);
    ASSERT_NE(inHeader, nullptr);
    inHeader->trigger();
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(actions().showEncodings->isChecked());
    EXPECT_EQ(header->visualIndex(ResultsTreeModel::EncodingColumn) + 1,
              header->visualIndex(ResultsTreeModel::FolderColumn));
    EXPECT_EQ(encodingOf(0), u"Unicode (UTF-8), default"_s);
    EXPECT_TRUE(window.outline()
                    ->model()
                    ->index(0, 0)
                    .data(Qt::ToolTipRole)
                    .toString()
                    .endsWith(u"\nEncoding: Unicode (UTF-8), default"_s));
    window.outline()->viewport()->grab();
    actions().showEncodings->trigger();
    EXPECT_FALSE(isShown());
}

} // namespace

} // namespace tidemark::test
