#pragma once

#include <QMainWindow>

#include <memory>

namespace Ui {
class MyDocument;
}

namespace tidemark {

class WindowedDocument;

/// The window of one search document, as the layout gives it, with the document's rules for closing it. What
/// its controls do is the controllers' business.
class SearchWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The document must outlive the window.
    explicit SearchWindow(WindowedDocument &document);
    ~SearchWindow() override;

    Ui::MyDocument &ui() const { return *_ui; }
    /// So small it may be made, with the texts and letters it has.
    QSize smallestSize() const;

    /// What a window manager puts around a window, roughly; nobody knows before it is shown.
    static constexpr QSize FRAME = {16, 48};

Q_SIGNALS:
    /// The window has closed for good.
    void closed();
    void activated();

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _closeConfirmed();

    WindowedDocument &_document;
    std::unique_ptr<Ui::MyDocument> _ui;
    bool _isCloseConfirmed = false;
};

} // namespace tidemark
