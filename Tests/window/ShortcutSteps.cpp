#include "window/ShortcutSteps.h"

#include "support/gui/OpenWindow.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>

namespace tidemark::test {

namespace {

/// Nothing but being told comes of any of them.
QList<QAction *> idleActions(SearchWindow &window)
{
    const QList<QAction *> actions = window.actions();
    for (QAction *action : actions) {
        QObject::disconnect(action, &QAction::triggered, nullptr, nullptr);
        QObject::disconnect(action, &QAction::toggled, nullptr, nullptr);
        action->setEnabled(true);
    }
    return actions;
}

QList<QWidget *> places(SearchWindow &window)
{
    QList<QWidget *> places;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->focusPolicy() & Qt::TabFocus && widget->isVisible() && widget->focusProxy() == nullptr) {
            widget->setEnabled(true);
            places << widget;
        }
    }
    return places;
}

void press(QWidget *place, const QKeySequence &sequence)
{
    place->setFocus();
    QTest::keyClick(place, sequence[0].key(), sequence[0].keyboardModifiers());
    QCoreApplication::processEvents();
}

} // namespace

void expectEveryShortcutEverywhere(ApplicationDelegate &application)
{
    OpenWindow window(application);
    TemporaryFolder folder;
    folder.write("a.txt", "foo\n");
    window.searchIn(folder.path(), u"foo"_s);
    window.search();
    const QList<QWidget *> focusable = places(*window.window());
    EXPECT_GE(focusable.size(), 15);
    const QList<QKeySequence> editing = {QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Undo,
                                         QKeySequence::Redo};
    int given = 0;
    for (QAction *action : idleActions(*window.window())) {
        for (const QKeySequence &sequence : action->shortcuts()) {
            for (QWidget *place : focusable) {
                // Both copy in a field, and the results have something to copy as well.
                const bool isField = qobject_cast<QComboBox *>(place) != nullptr;
                const bool copies = place == window.outline() && sequence == QKeySequence(QKeySequence::Copy);
                const bool edits = copies || (isField && editing.contains(sequence));
                const QSignalSpy triggered(action, &QAction::triggered);
                press(place, sequence);
                EXPECT_EQ(triggered.count(), edits ? 0 : 1)
                    << qPrintable(sequence.toString()) << " in " << qPrintable(place->objectName());
                ++given;
            }
        }
    }
    EXPECT_GT(given, 300);
}

} // namespace tidemark::test
