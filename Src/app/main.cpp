#include "app/TDApplicationController.h"
#include "app/UserLanguage.h"
#include "foundation/AbandonableWork.h"
#include "foundation/UserDefaults.h"
#include "replace/RewriteRecord.h"

#include <QApplication>
#include <QIcon>

#include <cstdlib>

using namespace tidemark;

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Velkor"));
    QApplication::setApplicationName(QStringLiteral("Tidemark"));
    QApplication::setApplicationDisplayName(QStringLiteral("Velkor Tidemark"));
    QApplication::setDesktopFileName(QStringLiteral("com.velkor.Tidemark"));
    Q_INIT_RESOURCE(tidemark_icons);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/com.velkor.Tidemark-256.png")));
    installUserLanguage();
    UserDefaults::setStandard(UserDefaults::atPath(UserDefaults::userFilePath()));

    const FilePath recordFolder = RewriteRecord::userFolder();
    const RewriteRecordFolder rewriteRecords(recordFolder);
    TDApplicationController controller;
    controller.awakeFromNib();
    controller.applicationDidFinishLaunching();
    controller.askAboutInterruptedRewrites(recordFolder);
    const int status = QApplication::exec();
    if (isAbandonedWorkRunning()) {
        (void)UserDefaults::standard().synchronize();
        std::_Exit(status);
    }
    return status;
}
