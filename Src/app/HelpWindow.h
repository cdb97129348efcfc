#pragma once

#include <QTextBrowser>

namespace tidemark {

/// A short page on how to use the application, with an anchor for each topic.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT

public:
    explicit HelpWindow(QWidget *parent = nullptr);

    void showTopic(const QString &anchor);
};

} // namespace tidemark
