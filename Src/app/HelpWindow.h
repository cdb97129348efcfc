#pragma once

#include <QTextBrowser>

namespace tidemark {

/// The help book: its pages, by name, each in the language of the texts where there is such a page, otherwise
/// in English.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent = nullptr);

    /// The topic is a page's name.
    void showTopic(const QString &topic);

protected:
    void doSetSource(const QUrl &name, QTextDocument::ResourceType type) override;
};

} // namespace tidemark
