#pragma once

#include "session/SelectedRows.h"
#include "window/results/OutlineKeys.h"
#include "window/results/OutlineView.h"

#include <optional>

namespace tidemark {

class EmptyState;
class ResultsAnnouncements;

/// The results as an outline of file rows and match lines, in which rows are selected. The selection is kept
/// here, as selectionModel() can't hold rows of very many files; that one has the current index only.
class TDSearchResultsOutlineView : public OutlineView
{
    Q_OBJECT

public:
    explicit TDSearchResultsOutlineView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    void reset() override;
    void setKeys(const OutlineKeys &keys) { _keys = keys; }
    const OutlineKeys &keys() const { return _keys; }
    /// Stands in the empty pane, under an icon.
    void setHintText(const QString &text);
    QString hintText() const;
    EmptyState &emptyState() { return *_emptyState; }
    /// Folders are shown from these on.
    void setLocationFolders(const QStringList &folders) { _locationFolders = folders; }
    QString folderText(const TDFindResultItem &file) const;

    /// The row selected last, if it still is, else the lowest selected one; -1 for none.
    int selectedRow() const;
    const SelectedRows &selectedRows() const { return _selected; }
    void setSelectedRows(const SelectedRows &rows);
    void clearSelectedRows() { setSelectedRows({}); }
    QModelIndex selectedIndex() const;
    void selectRow(int row, bool extend = false);
    void selectAll() override;
    /// Where a row in sight offers to read its file in another encoding; empty where none does.
    QRect readAsRect(int row) const;
    /// What is said of a row; empty for one that there isn't.
    QString spokenRow(int row) const;

    void keyboardSearch(const QString &search) override;

Q_SIGNALS:
    void selectedRowsChanged();
    /// A row was clicked twice, beside its triangle; it is selected by now.
    void rowDoubleClicked();
    /// What a row offers was clicked; it is selected by now.
    void readAsRequested();
    /// The selected rows are being dragged out.
    void dragRequested();
    /// The row is selected by now; the position is global.
    void menuRequested(QPoint position);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    // Nothing is selected by the base.
    void setSelection(const QRect &, QItemSelectionModel::SelectionFlags) override {}
    QRegion visualRegionForSelection(const QItemSelection &) const override { return {}; }

    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;
    void noteRowsMoved() override;
    void linesAboutToHide(const QModelIndex &file) override;
    void allLinesAboutToHide() override;
    bool isRowSelected(const TDFindResultItem &item) const override { return _selected.contains(item); }

private:
    SelectedRows _rowsBetween(int first, int last) const;
    void _selectRange(int row);
    void _toggleSelection(int row);
    bool _performCursorKey(const QKeyEvent &event);
    bool _rightMouseDownHelper(QPoint position, QPoint globalPosition);
    bool _isOnDisclosure(int row, int x) const;
    void _showHint();

    OutlineKeys _keys;
    ResultsAnnouncements *_announcements;
    EmptyState *_emptyState;
    QStringList _locationFolders;
    SelectedRows _selected;
    int _anchorRow = -1;
    bool _dragsSelection = false;
    std::optional<QPoint> _pressedSelected; ///< where a selected row is held, which can be dragged out
};

} // namespace tidemark
