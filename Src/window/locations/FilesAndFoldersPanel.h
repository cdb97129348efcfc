#pragma once

#include <QFileDialog>
#include <QList>
#include <QUrl>

namespace tidemark {

/// A panel in which files and folders can be chosen together, several at once. The button takes what is
/// selected; a double click on a folder opens it.
class FilesAndFoldersPanel : public QFileDialog
{
    Q_OBJECT

public:
    explicit FilesAndFoldersPanel(QWidget *parent = nullptr);

    void accept() override;

Q_SIGNALS:
    /// In the panel's order.
    void chosen(const QList<QUrl> &urls);

private:
    QList<QUrl> _urls() const;
};

} // namespace tidemark
