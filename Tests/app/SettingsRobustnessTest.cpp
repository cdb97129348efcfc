#include "app/TDApplicationController.h"
#include "app/TDPreferenceController.h"
#include "support/gui/WindowFixture.h"
#include "ui_Preferences.h"

#include <QDir>
#include <QFile>

#include <sys/wait.h>

#include <csignal>
#include <unistd.h>

namespace tidemark::test {

namespace {

class SettingsRobustness : public WindowTest
{
protected:
    ~SettingsRobustness() override
    {
        UserDefaults::setStandard(UserDefaults::inMemory());
        setKindsInForce(Kind::defaultKinds());
    }

    QString file = folder.path().displayText() + u"/Tidemark.ini"_s;

    void useFile() const { UserDefaults::setStandard(UserDefaults::atPath(file)); }
};

TEST_F(SettingsRobustness, DamagedFilesAndWrongTypesGiveFactoryValues)
{
    const QByteArray contents[] = {
        "",
        "\0\0\0\0",
        QByteArray(4096, '\xff'),
        "[General",
        "=\n===\n[[[]]]\n%%%%\n\x80\x81",
        "[General]\nregularExpression=@Invalid()\nignoreCase=@ByteArray(x)\ndefaultStringEncoding=four\n"
        "findReplaceTextHistoryMaximum=\"a, b\"\ncreateBackupBeforeReplacing=perhaps\nIncludedKinds2=17\n"
        "autoDetectFileEncodingFromFile=@Size(1 2)\nfindText=@Rect(1 2 3 4)\nsearchPaths=nowhere\n"
        "findTextHistory=@Size(3 4)\n",
        "[General]\nIncludedKinds2=@ByteArray([{\\\"title\\\":)\nsearchPaths=@Variant("
        "\\0\\0\\0\\t\\xff\\xff\\xff\\xff)\n"};
    for (const QByteArray &content : contents) {
        SCOPED_TRACE(content.toStdString());
        folder.write("Tidemark.ini", content);
        useFile();
        TDApplicationController controller;
        controller.awakeFromNib();
        controller.applicationDidFinishLaunching();
        controller.showPreferencePanel();
        const UserDefaults &settings = UserDefaults::standard();
        EXPECT_FALSE(settings.boolFor(BooleanSetting::RegularExpression));
        EXPECT_TRUE(settings.boolFor(BooleanSetting::IgnoreCase));
        EXPECT_TRUE(settings.boolFor(BooleanSetting::AutoDetectFileEncoding));
        EXPECT_TRUE(settings.boolFor(BooleanSetting::CreateBackupBeforeReplacing));
        EXPECT_EQ(settings.defaultStringEncoding(), 4);
        EXPECT_EQ(controller.preferenceController().ui().historyMaximumSpinBox->value(), 100);
        EXPECT_EQ(controller.kinds(), Kind::defaultKinds());
    }
}

TEST_F(SettingsRobustness, WhatIsChosenSurvivesARestart)
{
    const QList<Kind> kinds = {{u"Täglich; \"x\" = [y]"_s, u"*.[ch]"_s, true}};
    {
        useFile();
        TDApplicationController controller;
        controller.awakeFromNib();
        Ui::Preferences &ui = controller.preferenceController().ui();
        ui.createBackupCheckBox->click();
        ui.historyMaximumSpinBox->setValue(12);
        ui.defaultEncodingComboBox->setCurrentText(u"Western (Windows Latin 1)"_s);
        controller.setKinds(kinds);
        controller.applicationWillTerminate();
    }
    useFile();
    TDApplicationController controller;
    controller.awakeFromNib();
    Ui::Preferences &ui = controller.preferenceController().ui();
    EXPECT_FALSE(ui.createBackupCheckBox->isChecked());
    EXPECT_EQ(ui.historyMaximumSpinBox->value(), 12);
    EXPECT_EQ(ui.defaultEncodingComboBox->currentText(), u"Western (Windows Latin 1)"_s);
    EXPECT_EQ(controller.kinds(), kinds);
}

/// Stores one letter, so many times, over and over until it is killed.
[[noreturn]] void writeForever(const QString &file)
{
    const std::unique_ptr<UserDefaults> settings = UserDefaults::atPath(file);
    for (int round = 0;; ++round) {
        settings->setObject(TD_USER_DEFAULTS_NAME_FIND_TEXT, QString(50'000, QChar(u'a' + round % 26)));
        settings->synchronize();
    }
}

TEST_F(SettingsRobustness, AKillDuringWritingLeavesTheOldOrTheNewFile)
{
    bool wasWritten = false;
    for (int round = 0; round < 40; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            writeForever(file);
        // The moment of the kill is what varies; a slow machine needs time for its first file.
        usleep(useconds_t(10'000 + round * (wasWritten ? 1300 : round * 1000)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        // The next writer would recognise that the lock's owner is gone, but takes its time.
        for (const QFileInfo &lock :
             QDir(folder.path().displayText()).entryInfoList({u"*lock"_s}, QDir::Files | QDir::Hidden))
            QFile::remove(lock.filePath());
        const QString text = UserDefaults::atPath(file)->stringForKey(TD_USER_DEFAULTS_NAME_FIND_TEXT);
        if (text.isEmpty() && !wasWritten)
            continue;
        wasWritten = true;
        ASSERT_EQ(text.size(), 50'000);
        ASSERT_EQ(text.count(text[0]), 50'000);
    }
    EXPECT_TRUE(wasWritten);
}

} // namespace

} // namespace tidemark::test
