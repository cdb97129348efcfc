#include "window/locations/FilesAndFoldersPanel.h"

#include "foundation/LocalizedText.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

namespace tidemark {

namespace {

bool exists(const QUrl &url)
{
    const QFileInfo file(url.toLocalFile());
    return file.exists() || file.isSymbolicLink();
}

} // namespace

FilesAndFoldersPanel::FilesAndFoldersPanel(QWidget *parent) : QFileDialog(parent)
{
    // The desktops' own panels choose either files or folders.
    setOption(DontUseNativeDialog);
    setFileMode(ExistingFiles);
    setWindowTitle(localizedString("Add Files and Folders to Search"));
    setLabelText(Accept, localizedString("Add"));
    // For a folder the base class would say that it is going to be opened.
    if (auto *fileName = findChild<QLineEdit *>()) {
        connect(fileName, &QLineEdit::textChanged, this,
                [this] { setLabelText(Accept, localizedString("Add")); });
    }
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
}

QList<QUrl> FilesAndFoldersPanel::_urls() const
{
    // While a path is typed, the base class marks what it passes on the way and keeps it selected out of
    // sight.
    const auto *fileName = findChild<QLineEdit *>();
    const QString typed = fileName != nullptr ? fileName->text() : QString();
    return QDir::isAbsolutePath(typed) ? QList<QUrl>{QUrl::fromLocalFile(QDir::cleanPath(typed))}
                                       : selectedUrls();
}

void FilesAndFoldersPanel::accept()
{
    // The base class would open a selected folder instead of taking it.
    QList<QUrl> urls = _urls();
    urls.removeIf([](const QUrl &url) { return !exists(url); });
    if (urls.isEmpty())
        return;
    done(Accepted);
    Q_EMIT chosen(urls);
}

} // namespace tidemark
