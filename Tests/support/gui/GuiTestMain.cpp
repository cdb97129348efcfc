#include "foundation/FreedMemory.h"
#include "foundation/LocalizedText.h"
#include "support/FreshSettings.h"

#include <QApplication>

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    tidemark::joinFreedMemoryAtOnce();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    tidemark::installLocalizedTexts(QStringLiteral("en"));
    tidemark::test::FreshSettings::install();
    return RUN_ALL_TESTS();
}
