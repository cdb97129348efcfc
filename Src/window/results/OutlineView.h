#pragma once

#include "session/OutlineRows.h"
#include "session/ScrolledRows.h"
#include "window/results/LineHeights.h"

#include <QAbstractItemView>
#include <QSet>

#include <memory>

class QHeaderView;

namespace tidemark {

class ReplacementPreview;
class ResultsTreeModel;
class TDFindResultItem;
class TDSearchResultsTextFieldCell;

/// An outline of files and their lines: which rows there are, how high they are, and which are in sight. Rows
/// are counted from 0 over everything that is expanded. They are as high as their text needs and measured
/// only when they are shown, so that it holds a million of them; the scroll bar counts rows, not pixels.
/// Whoever derives from it paints the rows and selects among them.
class OutlineView : public QAbstractItemView
{
    Q_OBJECT

public:
    explicit OutlineView(QWidget *parent = nullptr);
    ~OutlineView() override;

    /// Takes a ResultsTreeModel only. Not owned.
    void setModel(QAbstractItemModel *model) override;
    const ResultsTreeModel *results() const;
    QHeaderView *header() const { return _header; }

    int numberOfRows() const { return _rows.rowCount(); }
    QModelIndex indexAtRow(int row) const;
    /// -1 when it isn't in any row.
    int rowOfIndex(const QModelIndex &index) const;
    int rowOfItem(const TDFindResultItem &item) const;
    std::shared_ptr<TDFindResultItem> itemAtRow(int row) const;

    bool isExpanded(const QModelIndex &file) const;
    int numberOfExpandedFiles() const { return int(_expanded.size()); }
    using Files = QSet<const TDFindResultItem *>;
    const Files &expandedFiles() const { return _expanded; }
    /// Those of them that are in the results. Announces nothing for the single files.
    void setExpandedFiles(const Files &files);
    void expandItem(const QModelIndex &file);
    void collapseItem(const QModelIndex &file);
    void toggleExpanded(const QModelIndex &file);
    void expandAll();
    /// Announces nothing for the single files.
    void collapseAll();

    /// Scrolls as little as needed to show the whole row, or its upper part.
    void scrollRowToVisible(int row);
    /// The same for a match of a match line; its start for one that there isn't.
    void scrollToMatch(int row, qint64 match);
    /// What every match would become is shown behind it from now on; null: no more.
    void setPreview(std::shared_ptr<const ReplacementPreview> preview);

    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint &point) const override;
    void reset() override;

Q_SIGNALS:
    void itemWillCollapse(const QModelIndex &file);
    void itemDidCollapse(const QModelIndex &file);
    void itemDidExpand(const QModelIndex &file);

protected:
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex &index) const override;

    /// Rows have other numbers than before.
    virtual void noteRowsMoved() {}
    virtual void linesAboutToHide([[maybe_unused]] const QModelIndex &file) {}
    virtual void allLinesAboutToHide() {}
    virtual bool isRowSelected([[maybe_unused]] const TDFindResultItem &item) const { return false; }

    const OutlineRows &rows() const { return _rows; }
    const ScrolledRows &scrolled() const { return _scrolled; }
    TDSearchResultsTextFieldCell &cell() const { return *_cell; }
    void scrollBy(int pixels);
    /// The height of a file's row, and what one row counts on the scroll bar; in pixels.
    int unit() const;
    int rowHeight(int row) const;
    /// Where a match line and its number go in their row.
    QRect leafRect(const QRect &row) const;
    QStyleOptionViewItem rowOption() const;
    /// For a leaf in a row of the view's width, at its top.
    QStyleOptionViewItem leafOption(const TDFindResultItem &item) const;
    /// Some rows are higher or lower than before.
    void rowHeightsChanged();

protected Q_SLOTS:
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                     const QList<int> &roles) override;

private:
    void _rebuildRows();
    void _rowsWereRemoved(const QModelIndex &parent);
    void _rowsChanged();
    void _forgetHeights();
    /// -1 where the current row begins below what a view of this height shows, or above it.
    int _currentRowWithin(int height) const;
    void _fitGutter(int firstFile, int lastFile);
    void _setShownLines(int file, int shownLines);
    void _setTop(ScrolledRows::Top top);
    void _updateScrollBar();
    void _showPart(int row, int upper, int lower);

    QHeaderView *_header;
    TDSearchResultsTextFieldCell *_cell;
    mutable LineHeights _heights;
    OutlineRows _rows;
    ScrolledRows _scrolled;
    Files _expanded;
    int _wheelRemainder = 0;
    bool _setsScrollBar = false;
};

} // namespace tidemark
