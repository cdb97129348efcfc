#pragma once

#include "session/OutlineRows.h"
#include "session/SelectedRows.h"
#include "window/results/ResultsOutlineDelegate.h"

#include <QAbstractItemView>
#include <QHash>
#include <QSet>

#include <memory>
#include <optional>

class QHeaderView;

namespace tidemark {

class ResultsTreeModel;
class TDFindResultItem;
class TDSearchResultsTextFieldCell;

/// The results as an outline of file rows and match lines. Rows are counted from 0 over everything that is
/// expanded. Rows are as high as their text needs and measured only when they are shown, so that it holds a
/// million of them; the scroll bar counts rows, not pixels.
class TDSearchResultsOutlineView : public QAbstractItemView
{
    Q_OBJECT

public:
    explicit TDSearchResultsOutlineView(QWidget *parent = nullptr);
    ~TDSearchResultsOutlineView() override;

    /// Takes a ResultsTreeModel only. Not owned.
    void setModel(QAbstractItemModel *model) override;
    /// Not owned; null: keys and menus do nothing.
    void setOutlineDelegate(ResultsOutlineDelegate *delegate) { _delegate = delegate; }
    QHeaderView *header() const { return _header; }
    /// Stands in grey in the empty pane.
    void setHintText(const QString &text);
    QString hintText() const { return _hintText; }

    int numberOfRows() const { return _rows.rowCount(); }
    QModelIndex indexAtRow(int row) const;
    /// -1 when it isn't in any row.
    int rowOfIndex(const QModelIndex &index) const;
    int rowOfItem(const TDFindResultItem &item) const;
    std::shared_ptr<TDFindResultItem> itemAtRow(int row) const;

    bool isExpanded(const QModelIndex &file) const;
    int numberOfExpandedFiles() const { return int(_expanded.size()); }
    void expandItem(const QModelIndex &file);
    void collapseItem(const QModelIndex &file);
    void expandAll();
    /// Announces nothing for the single files.
    void collapseAll();

    /// The row selected last, if it still is, else the lowest selected one; -1 for none.
    int selectedRow() const;
    /// Kept here, as selectionModel() can't hold rows of very many files; that one has the current index
    /// only.
    const SelectedRows &selectedRows() const { return _selected; }
    void setSelectedRows(const SelectedRows &rows);
    void clearSelectedRows() { setSelectedRows({}); }
    QModelIndex selectedIndex() const;
    void selectRow(int row, bool extend = false);
    void selectAll() override;
    /// Scrolls as little as needed to show the whole row, or its upper part.
    void scrollRowToVisible(int row);
    /// The same for a part of a match line's display text, in UTF-16 units.
    void scrollToText(int row, qsizetype position, qsizetype length);

    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint &point) const override;
    void keyboardSearch(const QString &search) override;
    void reset() override;

Q_SIGNALS:
    /// The rows that have become selected, and those that no longer are.
    void selectedRowsChanged(const SelectedRows &selected, const SelectedRows &deselected);
    void itemWillCollapse(const QModelIndex &file);
    void itemDidCollapse(const QModelIndex &file);
    void itemDidExpand(const QModelIndex &file);

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
    void wheelEvent(QWheelEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex &index) const override;
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;

protected Q_SLOTS:
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;

private:
    /// The first row shown, and how many pixels of it are above the upper edge.
    struct Top
    {
        int row = 0;
        int offset = 0;
        friend auto operator<=>(const Top &, const Top &) = default;
    };

    const ResultsTreeModel *_results() const;
    void _rebuildRows();
    void _rowsWereRemoved(const QModelIndex &parent);
    void _rowsChanged();
    void _setShownLines(int file, int shownLines);
    void _deselectLines(const QModelIndex &file);
    SelectedRows _rowsBetween(int first, int last) const;
    QModelIndex _lowestSelectedIndex() const;
    void _selectRange(int row);
    void _toggleSelection(int row);

    int _unit() const;
    int _rowHeight(int row) const;
    int _rowAt(int y) const;
    int _rowBelow(int row, int pixels) const;
    std::optional<int> _yOfRow(int row) const;
    Top _moved(Top top, int pixels) const;
    Top _lastTop() const;
    void _setTop(Top top);
    void _updateScrollBar();
    int _scrollValue(Top top) const;
    void _showPart(int row, int top, int bottom);

    void _paintRow(QPainter &painter, int row, const QRect &rect) const;
    void _paintFileRow(QPainter &painter, QStyleOptionViewItem option, const QModelIndex &file) const;
    void _paintFocusMark(QPainter &painter, const QRect &rect, QPalette::ColorRole role) const;
    void _paintHint(QPainter &painter) const;
    QRect _leafRect(const QRect &row) const;
    QStyleOptionViewItem _option() const;

    bool _performTableKey(const QKeyEvent &event);
    void _performCommand(int key);
    void _performMove(bool isDown, Qt::KeyboardModifiers modifiers);
    bool _performCursorKey(const QKeyEvent &event);
    bool _rightMouseDownHelper(QPoint position, QPoint globalPosition);
    bool _isOnDisclosure(int row, int x) const;
    void _toggleExpanded(const QModelIndex &file);

    ResultsOutlineDelegate *_delegate = nullptr;
    QHeaderView *_header;
    TDSearchResultsTextFieldCell *_cell;
    QString _hintText;
    OutlineRows _rows;
    QSet<const TDFindResultItem *> _expanded;
    mutable QHash<const TDFindResultItem *, int> _heights; ///< of lines at the present width
    SelectedRows _selected;
    Top _top;
    mutable std::optional<Top> _knownLastTop;
    int _anchorRow = -1;
    int _wheelRemainder = 0;
    bool _setsScrollBar = false;
    bool _dragsSelection = false;
};

} // namespace tidemark
