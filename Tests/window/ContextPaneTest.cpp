#include "window/context/ContextPane.h"

#include "support/gui/OpenWindow.h"
#include "window/ElidedLabel.h"
#include "window/context/ContextLine.h"
#include "window/context/ContextView.h"

#include <QAction>
#include <QClipboard>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QSignalSpy>

namespace tidemark::test {

namespace {

/// A window with the context of the first match of what it found.
struct ContextWindow : OpenWindow
{
    ContextWindow(ApplicationDelegate &application, const FilePath &path) : OpenWindow(application)
    {
        controller().actions().showContext->trigger();
        searchIn(path, u"foo"_s);
        search();
        EXPECT_TRUE(waitUntilShown());
    }
    ContextPane &pane() { return controller().contextPane(); }
    ContextView &view() { return pane().view(); }
    bool waitUntilShown()
    {
        return waitFor([this] {
            QCoreApplication::processEvents();
            const qint64 number = view().shownLine();
            return number > 0 && !pane().context().isOpening() && pane().context().line(number) != nullptr;
        });
    }
};

using ContextPaneTest = WindowTest;

TEST_F(ContextPaneTest, ShowsTheFileAroundTheHighlightedMatch)
{
    const FilePath path = folder.write("a.txt", QByteArray("a line\n").repeated(5000) + "a foo\n" +
                                                    QByteArray("a line\n").repeated(9) + "last foo\n");
    ContextWindow window(application, folder.path());
    EXPECT_EQ(window.pane().title(), u"a.txt, line 5001"_s);
    EXPECT_EQ(window.pane().message(), QString());
    for (const ElidedLabel *label : window.pane().findChildren<ElidedLabel *>())
        EXPECT_TRUE(label->wholeText().isEmpty() || label->text() == label->wholeText());
    const int top = window.view().verticalScrollBar()->value();
    EXPECT_LT(top, 5000);
    EXPECT_GT(top, 4900);
    EXPECT_EQ(window.view().spokenText(), u"a foo"_s);
    window.controller().actions().nextMatch->trigger();
    ASSERT_TRUE(waitFor([&] { return window.view().shownLine() == 5011; }));
    window.view().verticalScrollBar()->setValue(0);
    EXPECT_TRUE(waitFor([&] { return window.pane().context().line(1) != nullptr; }));

    writeFile(path, "other\nlast foo\n");
    setModificationDate(path, 1000000000);
    window.controller().actions().previousMatch->trigger();
    EXPECT_TRUE(waitFor(
        [&] { return window.pane().message() == u"This file has changed since it was searched."_s; }));
    window.controller().actions().showContext->trigger();
    EXPECT_TRUE(waitFor([&] { return window.pane().context().path().isEmpty(); }));
}

TEST_F(ContextPaneTest, AMatchFarOutInItsLineIsScrolledTo)
{
    const QByteArray far = QByteArray("water ").repeated(100) + "foo" + QByteArray(" stone").repeated(100);
    folder.write("a.txt", far + "\nfoo\n");
    folder.write("b.txt", far);
    ContextWindow window(application, folder.path());
    const QScrollBar &bar = *window.view().horizontalScrollBar();
    const int column = window.view().fontMetrics().horizontalAdvance(u'w');
    const auto isInSight = [&] {
        return bar.value() < 600 * column && bar.value() + window.view().viewport()->width() > 603 * column;
    };
    EXPECT_TRUE(waitFor(isInSight)) << "of the first file";
    window.controller().actions().nextMatch->trigger();
    EXPECT_TRUE(waitFor([&] { return bar.value() == 0; }));
    window.controller().actions().nextMatch->trigger();
    EXPECT_TRUE(waitFor(isInSight)) << "of the next file";
}

TEST_F(ContextPaneTest, AReplacementIsReadAgainAndIsNoChange)
{
    folder.write("a.txt", "a foo\nfoo\n");
    ContextWindow window(application, folder.path());
    window.document.setReplaceText(u"bar"_s);
    window.controller().actions().replaceAndFind->trigger();
    ASSERT_TRUE(waitFor([&] { return window.view().shownLine() == 2; }));
    ASSERT_TRUE(window.waitUntilShown());
    EXPECT_TRUE(waitFor([&] {
        const FileLine *line = window.pane().context().line(1);
        return line != nullptr && line->text == u"a bar"_s;
    }));
    EXPECT_EQ(window.pane().message(), QString());
}

TEST_F(ContextPaneTest, WhatSomebodyElseWritesIsReadWhenTheWindowIsActiveAgain)
{
    const FilePath path = folder.write("a.txt", "a foo\n");
    ContextWindow window(application, folder.path());
    writeFile(path, "other\n");
    setModificationDate(path, 1000000000);
    Q_EMIT window.window()->activated();
    EXPECT_TRUE(waitFor([&] { return !window.pane().message().isEmpty(); }));
}

TEST_F(ContextPaneTest, AnExpressionThatTakesLongDoesntHoldItUp)
{
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SHOW_REPLACEMENTS, true);
    folder.write("a.txt", "foo" + QByteArray(24'000, 'a') + "zb\n");
    OpenWindow window(application);
    window.searchIn(folder.path(), u"fooa+zb"_s);
    window.search();
    window.controller().actions().showContext->trigger();
    const ContextPane &pane = window.controller().contextPane();
    ASSERT_TRUE(waitFor([&] { return pane.context().line(1) != nullptr; }));
    QElapsedTimer timer;
    timer.start();
    window.document.setFindText(u"(?:(?=a*)a)*b"_s);
    for (int time = 0; time < 10; ++time)
        EXPECT_FALSE(pane.view().grab().isNull());
    EXPECT_LT(timer.elapsed(), 4000);
}

TEST_F(ContextPaneTest, LinesAreSelectedAndCopied)
{
    folder.write("a.txt", "one\n\ttwo foo\nthree\n");
    ContextWindow window(application, folder.path());
    const auto copied = [&](int key, Qt::KeyboardModifiers modifiers, int count) {
        for (int step = 0; step < count; ++step)
            QTest::keyClick(&window.view(), Qt::Key(key), modifiers);
        const QSignalSpy done(&window.view(), &ContextView::copied);
        QTest::keyClick(&window.view(), Qt::Key_C, Qt::ControlModifier);
        EXPECT_TRUE(waitFor([&] { return done.count() > 0; }));
        return QGuiApplication::clipboard()->text();
    };
    window.view().setFocus();
    EXPECT_EQ(copied(Qt::Key_Right, Qt::ShiftModifier, 3), u"foo"_s);
    EXPECT_EQ(copied(Qt::Key_Up, Qt::ShiftModifier, 1), u"\n\ttwo "_s);
    EXPECT_EQ(copied(Qt::Key_A, Qt::ControlModifier, 1), u"one\n\ttwo foo\nthree"_s);
    QTest::mouseDClick(window.view().viewport(), Qt::LeftButton, {},
                       {window.view().viewport()->width() / 6, 3});
    EXPECT_FALSE(window.view().grab().isNull());
}

TEST_F(ContextPaneTest, F6GoesRoundByWayOfTheContext)
{
    folder.write("a.txt", "foo\n");
    ContextWindow window(application, folder.path());
    QAction *otherPane = window.controller().actions().otherPane;
    window.outline()->setFocus();
    otherPane->trigger();
    EXPECT_TRUE(window.view().hasFocus());
    otherPane->trigger();
    EXPECT_TRUE(window.find()->hasFocus());
    otherPane->trigger();
    EXPECT_TRUE(window.outline()->hasFocus());
    window.view().setFocus();
    window.controller().actions().showContext->trigger();
    EXPECT_TRUE(window.outline()->hasFocus());
}

TEST(ContextLine, ShowsTabsControlsAndReplacementsAtTheirPlaces)
{
    const QList<ContextMatch> matches = {{{1, 3}, true, false, u"new\n"_s}, {{7, 0}, false, false, {}}};
    const ContextLine line(u"\tfoo\x01\U0001F30A!"_s, true, matches, 0);
    EXPECT_EQ(line.shown(), u"    foonew\u21B5\u2022\U0001F30A!"_s);
    QStringList marked;
    for (const ContextLine::Marked &mark : line.marked())
        marked << u"%1+%2"_s.arg(mark.shown.location).arg(mark.shown.length);
    EXPECT_EQ(marked.join(u' '), u"4+3 7+4 14+0"_s);
    for (const qsizetype position : {0, 1, 2, 3, 4, 5, 7, 8})
        EXPECT_EQ(line.positionAt(line.shownAt(position)), position);
}

TEST(ContextLine, OfALongLineThePartAroundTheMatchIsShown)
{
    QString text(1000000, u'x');
    text.replace(700000, 3, u"foo"_s);
    const ContextLine line(text, true, {{{700000, 3}, true, false, {}}}, 700000);
    EXPECT_EQ(line.shown().size(), ContextLine::MOST_UNITS + 2);
    EXPECT_TRUE(line.shown().startsWith(u'\u2026') && line.shown().endsWith(u'\u2026'));
    ASSERT_EQ(line.marked().size(), 1);
    EXPECT_EQ(line.shown().mid(line.marked()[0].shown.location, 3), u"foo"_s);
}

} // namespace

} // namespace tidemark::test
