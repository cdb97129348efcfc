#include "window/ResultsFixture.h"

#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

namespace tidemark::test {

namespace {

using DraggedRowsTest = WindowTest;

TEST_F(DraggedRowsTest, SelectedRowsAreFilesAndText)
{
    ResultsWindow window(application, {fileNode("/t/a b.txt", {u"foo one\n"_s, u"foo two\n"_s}),
                                       fileNode("/t/c.txt", {u"foo"_s})});
    const ResultsActions &actions = window.controller().resultsPane().resultsActions();
    window.view.clearSelectedRows();
    EXPECT_EQ(actions.dragged(), nullptr);
    window.view.expandAll();
    window.view.selectRow(1);
    window.view.selectRow(2, true);
    window.view.selectRow(4, true);
    const auto lines = actions.dragged();
    ASSERT_NE(lines, nullptr);
    EXPECT_EQ(lines->data(u"text/uri-list"_s), "file:///t/a%20b.txt\r\nfile:///t/c.txt\r\n");
    EXPECT_EQ(lines->text(), u"foo one\nfoo two\nfoo"_s);
    window.view.collapseAll();
    window.view.selectRow(1);
    window.view.collapseAll();
    window.view.selectAll();
    EXPECT_EQ(actions.dragged()->text(), u"/t/a b.txt\n/t/c.txt"_s);
}

TEST_F(DraggedRowsTest, ASelectedRowThatIsHeldIsDraggedOutAndAnotherSelects)
{
    ResultsWindow window(application, {fileNode("/t/a.txt", {u"foo"_s, u"foo"_s, u"foo"_s})});
    window.view.expandAll();
    QObject::disconnect(&window.view, &TDSearchResultsOutlineView::dragRequested, nullptr, nullptr);
    const QSignalSpy dragged(&window.view, &TDSearchResultsOutlineView::dragRequested);
    const auto centre = [&](int row) { return window.view.visualRect(window.view.indexAtRow(row)).center(); };
    QWidget *viewport = window.view.viewport();
    const auto drag = [&](int from, int to) {
        QTest::mousePress(viewport, Qt::LeftButton, {}, centre(from));
        QMouseEvent move(QEvent::MouseMove, centre(to), viewport->mapToGlobal(centre(to)), Qt::NoButton,
                         Qt::LeftButton, {});
        QCoreApplication::sendEvent(viewport, &move);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, centre(to));
    };
    window.view.clearSelectedRows();
    drag(1, 3);
    EXPECT_EQ(window.selection(), u"0:0 0:1 0:2"_s);
    EXPECT_EQ(dragged.count(), 0);
    drag(2, 3);
    EXPECT_EQ(dragged.count(), 1);
    EXPECT_EQ(window.selection(), u"0:0 0:1 0:2"_s);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, centre(2));
    EXPECT_EQ(window.selection(), u"0:1"_s);
}

} // namespace

} // namespace tidemark::test
