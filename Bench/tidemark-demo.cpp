#include "Demo.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"

#include <QApplication>

#include <cstdio>

using namespace tidemark;

/// Runs the real window on a copy of a sample folder and shows what happens. The folder's files are
/// rewritten.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc != 5) {
        std::fprintf(stderr, "usage: tidemark-demo FOLDER PICTURES FIND REPLACE\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    installLocalizedTexts(QStringLiteral("en"));
    // The user's own settings are never touched.
    UserDefaults::setStandard(UserDefaults::inMemory());
    // Backups beside the files would be found again.
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
    Demo demo(FilePath(argv[1]), QString::fromLocal8Bit(argv[2]));
    return demo.run(QString::fromLocal8Bit(argv[3]), QString::fromLocal8Bit(argv[4])) ? 0 : 1;
}
