#include "session/Editors.h"

#include "foundation/UserDefaults.h"
#include "support/Events.h"
#include "support/Testing.h"

#include <QFile>

namespace tidemark::test {

namespace {

TEST(Editors, WordsAreSplitWithoutAShellAndThePlaceIsPutIn)
{
    const EditorPlace place = {FilePath("/t/a b; $(x) %l \"q\".txt"), 12, 3};
    const std::pair<QString, QStringList> cases[] = {
        {u"ed +%l:%c %f"_s, {u"ed"_s, u"+12:3"_s, u"/t/a b; $(x) %l \"q\".txt"_s}},
        {u"\"/opt/my editor\" --goto=%f:%l"_s,
         {u"/opt/my editor"_s, u"--goto=/t/a b; $(x) %l \"q\".txt:12"_s}},
        {u"ed 100%% %% %x %"_s, {u"ed"_s, u"100%"_s, u"%"_s, u"%x"_s, u"%"_s}},
        {u"  "_s, {}},
    };
    for (const auto &[command, words] : cases)
        EXPECT_EQ(editorArguments(command, place), words) << qPrintable(command);
    EXPECT_TRUE(editorArguments(u"ed %f"_s, {FilePath("/t/\xFF"), 1, 1}).isEmpty());
}

TEST(Editors, TheChosenOneIsRunAndAFailureSaysWhatWas)
{
    const TemporaryFolder folder;
    const FilePath editor = folder.write("my editor", "#!/bin/sh\nprintf '%s\\n' \"$@\" >\"$0.ran\"\n");
    QFile(editor.displayText()).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    UserDefaults &settings = UserDefaults::standard();
    EXPECT_EQ(chosenEditorCommand(), std::nullopt);
    settings.setObject(TD_USER_DEFAULTS_NAME_EDITOR, TD_EDITOR_OF_ONES_OWN);
    EXPECT_EQ(chosenEditorCommand(), std::nullopt);
    settings.setObject(TD_USER_DEFAULTS_NAME_EDITOR_COMMAND, u"\"%1\" %l %f"_s.arg(editor.displayText()));
    ASSERT_TRUE(chosenEditorCommand().has_value());
    EXPECT_EQ(openInEditor(*chosenEditorCommand(), {FilePath("/t/a b"), 7, 1}), std::nullopt);
    EXPECT_TRUE(waitFor([&] {
        return folder.names().contains("my editor.ran") && folder.read("my editor.ran") == "7\n/t/a b\n";
    }));
    const auto problem = openInEditor(u"/no/such/editor %f"_s, {FilePath("/t/a"), 1, 1});
    ASSERT_TRUE(problem.has_value());
    EXPECT_TRUE(problem->contains(u"/no/such/editor /t/a"_s));
}

} // namespace

} // namespace tidemark::test
