#pragma once

#include "search/Kind.h"

#include <QMenu>

namespace tidemark {

/// The kinds of files that searches of folders include, each with a tick; follows the list in force whenever
/// it is shown, and stays open while ticks are set.
class FileTypesMenu : public QMenu
{
    Q_OBJECT

public:
    explicit FileTypesMenu(QWidget *parent = nullptr);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void _fill();
    bool _toggleActiveKind();
};

/// The titles of the kinds that are included, for people.
QString includedKindTitles();

} // namespace tidemark
