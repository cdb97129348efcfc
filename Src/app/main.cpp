#include "app/TDApplicationController.h"
#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"

#include <QApplication>
#include <QLocale>

using namespace tidemark;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Velkor"));
    QApplication::setApplicationName(QStringLiteral("Tidemark"));
    QApplication::setApplicationDisplayName(QStringLiteral("Velkor Tidemark"));
    QApplication::setDesktopFileName(QStringLiteral("com.velkor.Tidemark"));
    installLocalizedTexts(QLocale().name());
    UserDefaults::setStandard(UserDefaults::atPath(UserDefaults::userFilePath()));

    TDApplicationController controller;
    controller.awakeFromNib();
    controller.applicationDidFinishLaunching();
    return QApplication::exec();
}
