#include "Demo.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "replace/UndoJournal.h"

#include <QApplication>
#include <QPalette>
#include <QTemporaryDir>

#include <cstdio>

using namespace tidemark;

namespace {

void makeDark()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
    QPalette dark(QColor(50, 50, 53));
    dark.setColor(QPalette::Base, QColor(30, 30, 32));
    dark.setColor(QPalette::AlternateBase, QColor(40, 40, 42));
    dark.setColor(QPalette::Highlight, QColor(38, 92, 155));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    QApplication::setPalette(dark);
}

} // namespace

/// Runs the real window on a copy of a sample folder and shows what happens. The folder's files are
/// rewritten.
int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const bool isDark = argc == 6 && qstrcmp(argv[5], "--dark") == 0;
    if (argc != 5 && !isDark) {
        std::fprintf(stderr, "usage: tidemark-demo FOLDER PICTURES FIND REPLACE [--dark]\n");
        return 2;
    }
    if (isDark)
        makeDark();
    QApplication::setQuitOnLastWindowClosed(false);
    installLocalizedTexts(QStringLiteral("en"));
    // The user's own settings are never touched.
    UserDefaults::setStandard(UserDefaults::inMemory());
    // Backups beside the files would be found again.
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
    const QTemporaryDir state;
    const UndoJournalFolder journal(FilePath::fromDisplayText(state.path()).appendingPathComponent("undo"));
    Demo demo(FilePath(argv[1]), QString::fromLocal8Bit(argv[2]));
    return demo.run(QString::fromLocal8Bit(argv[3]), QString::fromLocal8Bit(argv[4])) ? 0 : 1;
}
