#include "app/AppTest.h"
#include "ui_MyDocument.h"

#include <QAction>

namespace tidemark::test {

namespace {

using TDPreferenceControllerTest = AppTest;

TEST_F(TDPreferenceControllerTest, ThePopupShowsTheWholeCatalogueAndStoresTheChoice)
{
    QComboBox *popup = ui().defaultEncodingComboBox;
    const auto &encodings = TDPreferenceController::availableEncodings();
    ASSERT_EQ(popup->count(), int(encodings.size()));
    EXPECT_EQ(popup->currentText(), u"Unicode (UTF-8)"_s);
    popup->setCurrentText(u"Western (ISO Latin 1)"_s);
    EXPECT_EQ(settings().defaultStringEncoding(), 5);
    EXPECT_EQ(TDPreferenceController::defaultEncoding()->stringEncodingId(), 5U);
    settings().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, 1);
    EXPECT_EQ(popup->currentText(), u"Western (ASCII)"_s);
    // Typing finds an encoding.
    preferences().showWindow();
    QTest::keyClicks(popup, u"japanese (e"_s);
    EXPECT_EQ(settings().defaultStringEncoding(), 3);
}

TEST_F(TDPreferenceControllerTest, AnEncodingThatIsNoMoreLeavesThePopupEmptyAndTheSettingAlone)
{
    for (const QVariant &gone : {QVariant(99999), QVariant(qint64(0x94000100))}) {
        settings().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, gone);
        EXPECT_EQ(ui().defaultEncodingComboBox->currentIndex(), -1);
        EXPECT_EQ(TDPreferenceController::defaultEncoding(), nullptr);
        EXPECT_TRUE(ui().encodingRemarkLabel->text().startsWith(u"No usable encoding"_s));
        EXPECT_EQ(settings().objectForKey(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING), gone);
    }
}

TEST_F(TDPreferenceControllerTest, ChecksAndTheMaximumAreBoundBothWays)
{
    for (const auto &[box, key] :
         {std::pair(ui().autoDetectCharEncodingFromFile,
                    TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE),
          {ui().createBackupCheckBox, TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING}}) {
        box->click();
        EXPECT_FALSE(settings().boolForKey(key));
        settings().setObject(key, true);
        EXPECT_TRUE(box->isChecked());
    }
    const QString maximumKey = TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM;
    EXPECT_EQ(ui().historyMaximumSpinBox->value(), 100);
    ui().historyMaximumSpinBox->setValue(7);
    EXPECT_EQ(settings().integerForKey(maximumKey), 7);
    settings().setObject(maximumKey, 50);
    EXPECT_EQ(ui().historyMaximumSpinBox->value(), 50);
    settings().setObject(maximumKey, qint64(1'000'000'000'000));
    EXPECT_EQ(settings().integerForKey(maximumKey), 1'000'000'000'000);
}

TEST_F(TDPreferenceControllerTest, TheWindowIsOneForAllAndKeepsItsState)
{
    WindowedDocument *document = controller.openUntitledDocument(TD_DOCUMENT_TYPE);
    document->myDocumentController()->actions().fileTypes->trigger();
    TDPreferenceController *first = &preferences();
    EXPECT_TRUE(first->window()->isVisible());
    EXPECT_EQ(ui().tabView->currentWidget(), ui().fileTypesTab);
    QTest::keyClick(first->window(), Qt::Key_Escape);
    EXPECT_FALSE(first->window()->isVisible());
    controller.showPreferencePanel();
    EXPECT_EQ(&preferences(), first);
    EXPECT_EQ(ui().tabView->currentIndex(), 1);
}

} // namespace

} // namespace tidemark::test
