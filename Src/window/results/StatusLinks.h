#pragma once

#include <QList>
#include <QObject>

class QHBoxLayout;
class QWidget;

namespace Ui {
class MyDocument;
}

namespace tidemark {

/// Keeps what stands behind the status text, between it and the room at the row's end, in the text's row
/// where all of it fits, and in a row of its own below where the text would be cut for it.
class StatusLinks : public QObject
{
    Q_OBJECT

public:
    /// Everything that belongs there is there by now.
    explicit StatusLinks(Ui::MyDocument &ui, QObject *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _arrange();
    int _neededWidth() const;

    Ui::MyDocument &_ui;
    QHBoxLayout *_ownRow;
    QList<QWidget *> _links;
    bool _areBelow = false;
};

} // namespace tidemark
