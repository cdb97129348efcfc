#pragma once

#include <QTableView>

namespace tidemark {

class EmptyState;

/// The list of locations: takes files from the file manager, lets its rows be dragged into another order, and
/// says what to do while it is empty.
class TDSearchLocationsTableView : public QTableView
{
    Q_OBJECT

public:
    explicit TDSearchLocationsTableView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    /// Stands in the empty list, under an icon.
    void setHintText(const QString &text);
    QString hintText() const;
    EmptyState &emptyState() { return *_emptyState; }

    /// In ascending order.
    QList<int> selectedRowNumbers() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void removeRequested();

protected:
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _setUpDragging();
    void _fitRowHeights();
    void _toggleSubfolders();
    void _showHint();

    EmptyState *_emptyState;
};

} // namespace tidemark
