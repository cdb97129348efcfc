#pragma once

#include <QTextBrowser>

namespace tidemark {

class HelpSearch;

/// The help book: its pages, by name, each in the language of the texts where there is such a page, otherwise
/// in English. Ctrl+F finds in it.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent = nullptr);

    /// The topic is a page's name.
    void showTopic(const QString &topic);

protected:
    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void _addActions();
    void _showSearch(bool isShown);

    HelpSearch *_search = nullptr;
};

} // namespace tidemark
