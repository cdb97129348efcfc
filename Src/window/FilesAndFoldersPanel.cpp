#include "window/FilesAndFoldersPanel.h"

#include "foundation/LocalizedText.h"

namespace tidemark {

FilesAndFoldersPanel::FilesAndFoldersPanel(QWidget *parent) : QFileDialog(parent)
{
    // The desktops' own panels choose either files or folders.
    setOption(DontUseNativeDialog);
    setFileMode(ExistingFiles);
    setWindowTitle(localizedString("Add Files and Folders to Search"));
    setLabelText(Accept, localizedString("Add"));
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
}

void FilesAndFoldersPanel::accept()
{
    // The base class would open a selected folder instead of taking it.
    const QList<QUrl> urls = selectedUrls();
    if (urls.isEmpty())
        return;
    done(Accepted);
    Q_EMIT chosen(urls);
}

} // namespace tidemark
