#include "app/CommandLine.h"
#include "app/DesktopSession.h"
#include "app/PlaceholderColor.h"
#include "app/RunningInstance.h"
#include "app/TDApplicationController.h"
#include "app/UserLanguage.h"
#include "foundation/AbandonableWork.h"
#include "foundation/FreedMemory.h"
#include "foundation/UserDefaults.h"
#include "replace/RewriteRecord.h"
#include "replace/UndoJournal.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

using namespace tidemark;

namespace {

enum ExitStatus { DONE = 0, WRONG_USAGE = 2 };

/// What is answered without a window; nothing when there is to be one.
std::optional<int> answerWithoutWindow(const CommandLine &line)
{
    switch (line.wish) {
    case CommandLine::Wish::Help:
        std::fputs(CommandLine::usage().constData(), stdout);
        return DONE;
    case CommandLine::Wish::Version:
        std::printf("Tidemark %s\n", TDApplicationController::versionNumber().toUtf8().constData());
        return DONE;
    case CommandLine::Wish::WrongUsage:
        std::fprintf(stderr, "tidemark: %s (tidemark --help tells more)\n", line.problem.constData());
        return WRONG_USAGE;
    case CommandLine::Wish::Window:
        break;
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    std::error_code noFolder;
    const CommandLine line = CommandLine::parsed(
        QList<QByteArray>(argv + 1, argv + argc),
        FilePath(QByteArray::fromStdString(std::filesystem::current_path(noFolder).native())));
    if (const std::optional<int> status = answerWithoutWindow(line))
        return *status;

    joinFreedMemoryAtOnce();
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Velkor"));
    QApplication::setApplicationName(QStringLiteral("Tidemark"));
    QApplication::setApplicationDisplayName(QStringLiteral("Velkor Tidemark"));
    QApplication::setDesktopFileName(QStringLiteral("com.velkor.Tidemark"));
    Q_INIT_RESOURCE(tidemark_icons);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/com.velkor.Tidemark-256.png")));
    installUserLanguage();
    keepPlaceholdersReadable();
    const QString settingsFile = UserDefaults::userFilePath();
    const RunningInstance running(RunningInstance::nameFor(settingsFile), line.request);
    if (running.hasHandedOver())
        return DONE;
    UserDefaults::setStandard(UserDefaults::atPath(settingsFile));

    const FilePath recordFolder = RewriteRecord::userFolder();
    const RewriteRecordFolder rewriteRecords(recordFolder);
    const UndoJournalFolder undoJournal(UndoJournal::userFolder());
    TDApplicationController controller;
    controller.awakeFromNib();
    QObject::connect(&running, &RunningInstance::requested, &controller,
                     &TDApplicationController::openDocument);
    DesktopSession session(controller);
    const bool isTakenUp =
        application.isSessionRestored() &&
        session.restore(DesktopSession::nameOf(application.sessionId(), application.sessionKey()));
    if (!isTakenUp)
        controller.openDocument(line.request);
    controller.applicationDidFinishLaunching();
    controller.askAboutInterruptedRewrites(recordFolder);
    const int status = QApplication::exec();
    if (isAbandonedWorkRunning()) {
        (void)UserDefaults::standard().synchronize();
        std::_Exit(status);
    }
    return status;
}
