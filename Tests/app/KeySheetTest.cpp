#include "app/KeySheet.h"

#include "app/AppTest.h"
#include "window/results/ResultsPane.h"
#include "window/results/TDSearchResultsOutlineView.h"

#include <QMenuBar>

namespace tidemark::test {

namespace {

QList<const QAction *> entriesOf(const QList<QAction *> &actions)
{
    QList<const QAction *> entries;
    for (const QAction *action : actions)
        entries << (action->menu() != nullptr ? entriesOf(action->menu()->actions()) : QList{action});
    return entries;
}

using KeySheetTest = AppTest;

TEST_F(KeySheetTest, EveryCommandStandsInAMenuAndEveryKeyOnTheSheet)
{
    TDMyDocumentController &window =
        *controller.openUntitledDocument(TD_DOCUMENT_TYPE)->myDocumentController();
    const QList<const QAction *> entries = entriesOf(window.window()->menuBar()->actions());
    QStringList keys;
    for (const KeyGroup &group : keysOf(*window.window()->menuBar(), window)) {
        for (const KeyGroup::Command &command : group.commands) {
            EXPECT_FALSE(command.text.isEmpty() || command.text.contains(u'&')) << qPrintable(command.text);
            keys << command.keys.split(u", "_s);
        }
    }
    for (const QAction *action : window.window()->actions()) {
        EXPECT_TRUE(entries.contains(action)) << qPrintable(action->objectName());
        for (const QKeySequence &key : action->shortcuts())
            EXPECT_TRUE(keys.contains(key.toString(QKeySequence::NativeText))) << qPrintable(key.toString());
    }
    EXPECT_GT(window.window()->actions().size(), 20);
    for (const auto &[key, action] : window.resultsPane().outlineView().keys().commands())
        EXPECT_TRUE(keys.contains(QKeySequence(key).toString(QKeySequence::NativeText)));
    const KeySheet sheet(keysOf(*window.window()->menuBar(), window), nullptr);
    EXPECT_TRUE(sheet.toPlainText().contains(u"Start Search"_s));
}

TEST_F(KeySheetTest, KeysThatMoveAmongTheResultsAreTakenThere)
{
    WindowedDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    TDMyDocumentController &window = *document->myDocumentController();
    folder.write("a.txt", "foo\nfoo\n");
    window.locations().addSearchLocations({folder.path().toUrl()});
    document->setFindText(u"foo"_s);
    window.startSearch(StartStopButton::On);
    ASSERT_TRUE(waitFor([&] { return !window.searching(); }));
    for (const OutlineKeys::CursorKey &key : OutlineKeys::cursorKeys()) {
        QKeyEvent event(QEvent::KeyPress, key.key.key(), key.key.keyboardModifiers());
        QCoreApplication::sendEvent(&window.resultsPane().outlineView(), &event);
        EXPECT_TRUE(event.isAccepted()) << key.text;
    }
}

} // namespace

} // namespace tidemark::test
