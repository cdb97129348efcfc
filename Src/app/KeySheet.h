#pragma once

#include <QList>
#include <QString>
#include <QTextBrowser>

class QMenuBar;

namespace tidemark {

class TDMyDocumentController;

/// Commands under a heading, each with the keys that give it.
struct KeyGroup
{
    struct Command
    {
        QString text;
        QString keys; ///< as the platform writes them
    };
    QString heading;
    QList<Command> commands;
};

/// Every key of a search window: those in its menus, and those of its results. What is in the menus and in
/// the results is what is listed, so nothing else has to be kept up.
QList<KeyGroup> keysOf(const QMenuBar &menus, TDMyDocumentController &controller);

/// Shows them in a window of its own.
class KeySheet : public QTextBrowser
{
    Q_OBJECT

public:
    explicit KeySheet(const QList<KeyGroup> &groups, QWidget *parent);
};

} // namespace tidemark
