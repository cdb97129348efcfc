#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "search/RegisterUserDefaults.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tidemark::installLocalizedTexts(QStringLiteral("en"));
    // No test ever sees the user's own settings.
    tidemark::UserDefaults::setStandard(tidemark::UserDefaults::inMemory());
    tidemark::registerUserDefaults(tidemark::UserDefaults::standard());
    return RUN_ALL_TESTS();
}
