#pragma once

#include <QTextBrowser>

namespace tidemark {

/// The help book: its pages, by name, in the language of the texts where there are such pages, otherwise in
/// English.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent = nullptr);

    /// The topic is a page's name.
    void showTopic(const QString &topic);
};

} // namespace tidemark
