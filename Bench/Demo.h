#pragma once

#include "app/TDApplicationController.h"
#include "foundation/FilePath.h"

#include <QString>

#include <functional>

class QAction;
class QLineEdit;
class QMessageBox;
class QWidget;

namespace Ui {
class MyDocument;
}

namespace tidemark {

class WindowedDocument;
class TDMyDocumentController;

/// A person at the search window, step by step. Each step prints what it shows, saves a picture, and fails
/// loudly when something else is shown than should be.
class Demo
{
public:
    /// `folder` is searched and rewritten; pictures are saved in `pictures`, which is made if need be.
    Demo(const FilePath &folder, const QString &pictures);

    /// True when every step showed what it should.
    bool run(const QString &findText, const QString &replaceText);

private:
    void _open();
    void _addFolder();
    void _stopSearch(const QString &findText);
    void _search(const QString &findText);
    void _showFailedFiles();
    void _readAs();
    void _walk();
    void _showContext();
    void _filter();
    void _export();
    void _replaceOne();
    void _replaceSelection();
    void _replaceAll(const QString &findText);
    void _failOnce();
    void _undoAndRedo(const QString &findText);
    void _searchAgain(const QString &findText, const QString &replaceText);

    QList<FilePath> _filesToWatch() const;
    bool _expect(bool holds, const QString &what);
    bool _wait(const QString &what, const std::function<bool()> &condition);
    void _picture(const QString &name);
    void _save(QWidget &shown, QString name);
    void _type(QLineEdit *field, const QString &text);
    bool _confirm(const QString &buttonText, const QString &pictureName);
    Ui::MyDocument &_ui() const;
    qint64 _matchesOnDisk(const QString &text) const;

    TDApplicationController _application;
    WindowedDocument *_document = nullptr;
    TDMyDocumentController *_controller = nullptr;
    const FilePath _folder;
    const QString _pictures;
    int _pictureNumber = 0;
    bool _succeeded = true;
};

} // namespace tidemark
