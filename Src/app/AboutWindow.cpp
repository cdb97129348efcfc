#include "app/AboutWindow.h"

#include "foundation/LocalizedText.h"

#include <QMessageBox>

namespace tidemark {

namespace {

constexpr int ICON_SIZE = 96;
const QString ICON = QStringLiteral(":/icons/com.velkor.Tidemark-256.png");

/// Name and version of each; those that the program is built with but for the toolkit, which may be a newer
/// one.
QString libraries()
{
    const QStringList names = {QStringLiteral("Qt ") + QString::fromLatin1(qVersion()),
                               QStringLiteral("Boost.Regex " TIDEMARK_BOOST_VERSION),
                               QStringLiteral("PCRE2 " TIDEMARK_PCRE2_VERSION),
                               QStringLiteral("ICU " TIDEMARK_ICU_VERSION),
                               QStringLiteral("Hyperscan " TIDEMARK_HYPERSCAN_VERSION),
                               QStringLiteral("xxHash " TIDEMARK_XXHASH_VERSION)};
    return names.join(QStringLiteral(", "));
}

} // namespace

void showAboutWindow(QWidget *parent, const QString &nameAndVersion, const QString &version)
{
    auto *about = new QMessageBox(parent);
    about->setObjectName(QStringLiteral("aboutWindow"));
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->setWindowTitle(localizedString("About Velkor Tidemark"));
    about->setTextFormat(Qt::PlainText);
    about->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    about->setIconPixmap(QIcon(ICON).pixmap(ICON_SIZE, ICON_SIZE));
    about->setText(nameAndVersion);
    const QStringList paragraphs = {
        version, localizedString("Finds text in many files at once and replaces it in place."),
        localizedString("Free software under the BSD 2-Clause License."),
        formatted(localizedString("Built with %@."), {libraries()})};
    about->setInformativeText(paragraphs.join(QStringLiteral("\n\n")));
    about->addButton(QMessageBox::Close);
    about->open();
}

} // namespace tidemark
