#include "app/AboutWindow.h"

#include "foundation/LocalizedText.h"

#include <QMessageBox>

namespace tidemark {

void showAboutWindow(QWidget *parent, const QString &nameAndVersion, const QString &version)
{
    auto *about = new QMessageBox(parent);
    about->setObjectName(QStringLiteral("aboutWindow"));
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->setWindowTitle(localizedString("About Velkor Tidemark"));
    about->setText(nameAndVersion);
    about->setInformativeText(version + QStringLiteral("\n\n") +
                              localizedString("Finds text in many files at once and replaces it in place."));
    about->addButton(QMessageBox::Close);
    about->open();
}

} // namespace tidemark
