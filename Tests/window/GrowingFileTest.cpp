#include "support/gui/OpenWindow.h"

#include "window/results/ReplaceCommands.h"

#include <QAction>

namespace tidemark::test {

namespace {

/// Enough for a file to arrive in parts.
constexpr int LINES = 500000;
/// Alike, so that a line that is taken for its neighbour looks right.
const QByteArray LINE = "a foo in a line like all others\n";

using GrowingFileTest = WindowTest;

TEST_F(GrowingFileTest, IsReplacedInOnlyOnceItIsRead)
{
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
    folder.write("a.txt", LINE.repeated(LINES));
    OpenWindow window(application);
    const SearchWindowActions &actions = window.controller().actions();
    ResultsPane &pane = window.controller().resultsPane();
    FindResults &results = window.document.findResults();
    window.searchIn(folder.path(), u"foo"_s);
    window.document.setReplaceText(u"one\nmore"_s);
    int attempts = 0;
    const auto attempt = [&] {
        pane.navigation().selectFirstMatch();
        EXPECT_FALSE(actions.replace->isEnabled() || actions.replaceAndFind->isEnabled());
        pane.replaceCommands().replace();
        pane.replaceCommands().replaceAndFind();
        ++attempts;
    };
    QObject::connect(&results, &FindResults::appended, attempt);
    QObject::connect(&results, &FindResults::grown, attempt);
    window.search();
    EXPECT_GT(attempts, 1);
    EXPECT_EQ(folder.read("a.txt"), LINE.repeated(LINES));

    EXPECT_TRUE(actions.replaceAndFind->isEnabled());
    actions.replace->trigger();
    const QByteArray replaced = QByteArray(LINE).replace("foo", "one\nmore");
    EXPECT_EQ(folder.read("a.txt"), replaced + LINE.repeated(LINES - 1));
    EXPECT_EQ(results.files()[0]->children().last()->matchLine()->lineNumber(), LINES + 1);
}

TEST_F(GrowingFileTest, IsTheOnlyOneThatHasToWait)
{
    folder.write("a.txt", LINE);
    OpenWindow window(application);
    window.searchIn(folder.path(), u"foo"_s);
    int attempts = 0;
    QObject::connect(&window.document.findResults(), &FindResults::appended, [&] {
        window.controller().resultsPane().navigation().selectFirstMatch();
        EXPECT_TRUE(window.controller().searching());
        EXPECT_TRUE(window.controller().actions().replace->isEnabled());
        ++attempts;
    });
    window.search();
    EXPECT_EQ(attempts, 1);
}

} // namespace

} // namespace tidemark::test
