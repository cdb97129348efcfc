#include "window/results/OutlineView.h"

#include "foundation/UserDefaults.h"
#include "window/results/ResultsTreeModel.h"
#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace tidemark {

namespace {

constexpr int NAME_WIDTH = 320;
constexpr int MATCHES_WIDTH = 90;
constexpr int ENCODING_WIDTH = 230;
constexpr int FILE_ROW_PADDING = 3;
constexpr int LINE_MARGIN = 4;
constexpr int WHEEL_STEP = 120;

} // namespace

OutlineView::OutlineView(QWidget *parent)
    : QAbstractItemView(parent), _header(new QHeaderView(Qt::Horizontal, this)),
      _cell(new TDSearchResultsTextFieldCell(this)), _heights(*_cell),
      _scrolled(
          _rows, [this](int row) { return rowHeight(row); }, [this] { return viewport()->height(); })
{
    setItemDelegate(_cell);
    setTextElideMode(Qt::ElideMiddle);
    // Selecting scrolls where a command says so.
    setAutoScroll(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _header->setSectionsClickable(true);
    _header->setSortIndicatorShown(true);
    _header->setSortIndicatorClearable(true);
    _header->setSortIndicator(-1, Qt::AscendingOrder);
    _header->setStretchLastSection(true);
    _header->setHighlightSections(false);
    connect(_header, &QHeaderView::sectionResized, viewport(), qOverload<>(&QWidget::update));
    connect(_header, &QHeaderView::sortIndicatorChanged, this, [this](int column, Qt::SortOrder order) {
        if (model() != nullptr)
            model()->sort(column, order);
    });
    connect(&UserDefaults::standard(), &UserDefaults::valueChanged, this, [this](const QString &key) {
        if (key != TD_USER_DEFAULTS_NAME_RESULTS_FONT && key != TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE)
            return;
        const int current = _currentRowWithin(viewport()->height());
        _forgetHeights();
        scrollRowToVisible(current);
    });
}

OutlineView::~OutlineView() = default;

void OutlineView::setModel(QAbstractItemModel *newModel)
{
    Q_ASSERT(newModel == nullptr || qobject_cast<ResultsTreeModel *>(newModel) != nullptr);
    if (model() != nullptr)
        disconnect(model(), nullptr, this, nullptr);
    QAbstractItemView::setModel(newModel);
    _header->setModel(newModel);
    if (newModel == nullptr)
        return;
    _header->resizeSection(ResultsTreeModel::NameColumn, NAME_WIDTH);
    _header->resizeSection(ResultsTreeModel::MatchesColumn, MATCHES_WIDTH);
    _header->resizeSection(ResultsTreeModel::EncodingColumn, ENCODING_WIDTH);
    _header->moveSection(_header->visualIndex(ResultsTreeModel::EncodingColumn),
                         _header->visualIndex(ResultsTreeModel::FolderColumn));
    connect(newModel, &QAbstractItemModel::rowsRemoved, this, &OutlineView::_rowsWereRemoved);
    connect(newModel, &QAbstractItemModel::layoutChanged, this, &OutlineView::_rebuildRows);
    connect(&results()->results(), &FindResults::cleared, this, [this] {
        const QSignalBlocker blocker(_header);
        _header->setSortIndicator(-1, Qt::AscendingOrder);
    });
    _rebuildRows();
}

const ResultsTreeModel *OutlineView::results() const
{
    return static_cast<const ResultsTreeModel *>(model());
}

// -- Rows

void OutlineView::reset()
{
    QAbstractItemView::reset();
    _heights.forgetAll();
    if (model() == nullptr)
        return;
    if (model()->rowCount() == 0)
        _cell->setGutterDigits(0);
    _rebuildRows();
}

void OutlineView::_rebuildRows()
{
    _rows.clear();
    const int count = model()->rowCount();
    _rows.reserve(count);
    QSet<const TDFindResultItem *> stillExpanded;
    for (int row = 0; row < count; ++row) {
        const TDFindResultItem *file = results()->file(row).get();
        const bool expanded = !_expanded.isEmpty() && _expanded.contains(file);
        if (expanded)
            stillExpanded.insert(file);
        _rows.appendFile(expanded ? int(file->children().size()) : 0);
    }
    _expanded = stillExpanded;
    noteRowsMoved();
    _rowsChanged();
}

void OutlineView::_rowsChanged()
{
    _scrolled.rowsChanged();
    scheduleDelayedItemsLayout();
}

void OutlineView::rowHeightsChanged()
{
    _rowsChanged();
}

void OutlineView::_forgetHeights()
{
    _heights.forgetAll();
    _rowsChanged();
    viewport()->update();
}

/// The gutter has room for every line number; those of a file rise.
void OutlineView::_fitGutter(int firstFile, int lastFile)
{
    qint64 greatest = 0;
    for (int row = firstFile; row <= lastFile; ++row) {
        const FindResultItems &lines = results()->file(row)->children();
        if (!lines.isEmpty() && lines.last()->matchLine() != nullptr)
            greatest = std::max(greatest, lines.last()->matchLine()->lineNumber());
    }
    const int digits = int(QString::number(greatest).size());
    if (digits <= _cell->gutterDigits())
        return;
    _cell->setGutterDigits(digits);
    _forgetHeights();
}

void OutlineView::rowsInserted(const QModelIndex &parent, int start, int end)
{
    QAbstractItemView::rowsInserted(parent, start, end);
    if (parent.isValid()) {
        _fitGutter(parent.row(), parent.row());
        if (isExpanded(parent))
            _setShownLines(parent.row(), model()->rowCount(parent));
        return;
    }
    _fitGutter(start, end);
    if (start != _rows.fileCount()) {
        _rebuildRows();
        return;
    }
    for (int row = start; row <= end; ++row)
        _rows.appendFile(0);
    _rowsChanged();
}

void OutlineView::_rowsWereRemoved(const QModelIndex &parent)
{
    // What doesn't show may change without a word.
    _heights.forgetAll();
    if (parent.isValid() && isExpanded(parent)) {
        _rows.setShownLines(parent.row(), model()->rowCount(parent));
        _rowsChanged();
    } else if (!parent.isValid()) {
        _rebuildRows();
    }
}

void OutlineView::dataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                              const QList<int> & /*roles*/)
{
    const auto *item = static_cast<const TDFindResultItem *>(topLeft.internalPointer());
    const bool isOneRow = topLeft.row() == bottomRight.row();
    if (isOneRow && item->isMatchLine())
        _heights.forget(*item);
    else // The lines of a file change with it.
        _heights.forgetAll();
    _rowsChanged();
}

QModelIndex OutlineView::indexAtRow(int row) const
{
    if (row < 0 || row >= _rows.rowCount())
        return {};
    const OutlineRows::Place place = _rows.place(row);
    const QModelIndex file = model()->index(place.file, 0);
    return place.line < 0 ? file : model()->index(place.line, 0, file);
}

int OutlineView::rowOfIndex(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != model())
        return -1;
    const QModelIndex file = index.parent();
    if (!file.isValid())
        return _rows.rowOfFile(index.row());
    return index.row() < _rows.shownLines(file.row()) ? _rows.rowOfFile(file.row()) + 1 + index.row() : -1;
}

int OutlineView::rowOfItem(const TDFindResultItem &item) const
{
    return rowOfIndex(results()->indexOf(&item));
}

std::shared_ptr<TDFindResultItem> OutlineView::itemAtRow(int row) const
{
    return model() != nullptr ? results()->item(indexAtRow(row)) : nullptr;
}

bool OutlineView::isIndexHidden(const QModelIndex &index) const
{
    return rowOfIndex(index) < 0;
}

// -- Expanding and collapsing

bool OutlineView::isExpanded(const QModelIndex &file) const
{
    return file.isValid() &&
           _expanded.contains(static_cast<const TDFindResultItem *>(file.internalPointer()));
}

void OutlineView::_setShownLines(int file, int shownLines)
{
    const bool hasRows = _rows.rowCount() > 0;
    const OutlineRows::Place top = hasRows ? _rows.place(_scrolled.top().row) : OutlineRows::Place();
    _rows.setShownLines(file, shownLines);
    noteRowsMoved();
    if (top.file > file)
        _scrolled.setTopRow(_rows.rowOfFile(top.file) + 1 + top.line, _scrolled.top().offset);
    else if (top.file == file && top.line >= shownLines)
        _scrolled.setTopRow(_rows.rowOfFile(file));
    _rowsChanged();
}

void OutlineView::expandItem(const QModelIndex &file)
{
    if (!file.isValid() || file.parent().isValid() || isExpanded(file))
        return;
    _expanded.insert(static_cast<const TDFindResultItem *>(file.internalPointer()));
    _setShownLines(file.row(), model()->rowCount(file));
    Q_EMIT itemDidExpand(file);
}

void OutlineView::collapseItem(const QModelIndex &file)
{
    if (!isExpanded(file))
        return;
    Q_EMIT itemWillCollapse(file);
    linesAboutToHide(file);
    _expanded.remove(static_cast<const TDFindResultItem *>(file.internalPointer()));
    _setShownLines(file.row(), 0);
    Q_EMIT itemDidCollapse(file);
}

void OutlineView::expandAll()
{
    const OutlineRows::Place top =
        _rows.rowCount() > 0 ? _rows.place(_scrolled.top().row) : OutlineRows::Place();
    for (int row = 0; row < _rows.fileCount(); ++row)
        _expanded.insert(results()->file(row).get());
    _rebuildRows();
    if (top.file >= 0)
        _scrolled.setTopRow(_rows.rowOfFile(top.file) + 1 + top.line, _scrolled.top().offset);
}

void OutlineView::collapseAll()
{
    allLinesAboutToHide();
    const int topFile = _rows.rowCount() > 0 ? _rows.place(_scrolled.top().row).file : 0;
    _expanded.clear();
    _rebuildRows();
    _scrolled.setTopRow(topFile);
}

void OutlineView::setExpandedFiles(const Files &files)
{
    _expanded = files;
    _rebuildRows();
}

void OutlineView::toggleExpanded(const QModelIndex &file)
{
    if (isExpanded(file))
        collapseItem(file);
    else
        expandItem(file);
}

// -- Measuring and scrolling

/// The height of a file's row, and what one row counts on the scroll bar.
int OutlineView::unit() const
{
    const int iconHeight = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    return std::max(TDSearchResultsTextFieldCell::rowHeight(font()), iconHeight) + FILE_ROW_PADDING;
}

int OutlineView::rowHeight(int row) const
{
    const QModelIndex index = indexAtRow(row);
    if (!index.parent().isValid())
        return unit();
    const auto *item = static_cast<const TDFindResultItem *>(index.internalPointer());
    return _heights.heightOf(leafOption(*item), index);
}

QRect OutlineView::leafRect(const QRect &row) const
{
    const int indentation = style()->pixelMetric(QStyle::PM_TreeViewIndentation, nullptr, this);
    return row.adjusted(indentation, 0, -LINE_MARGIN, 0);
}

QStyleOptionViewItem OutlineView::leafOption(const TDFindResultItem &item) const
{
    QStyleOptionViewItem option = rowOption();
    option.rect = leafRect(QRect(0, 0, viewport()->width(), 0));
    option.state.setFlag(QStyle::State_Selected, isRowSelected(item));
    return option;
}

QStyleOptionViewItem OutlineView::rowOption() const
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.showDecorationSelected = true;
    return option;
}

void OutlineView::_setTop(ScrolledRows::Top top)
{
    _scrolled.setTop(top);
    _setsScrollBar = true;
    verticalScrollBar()->setValue(_scrolled.scrollValue(_scrolled.top(), unit()));
    _setsScrollBar = false;
    viewport()->update();
}

void OutlineView::scrollBy(int pixels)
{
    _setTop(_scrolled.moved(_scrolled.top(), pixels));
}

void OutlineView::_updateScrollBar()
{
    if (model() == nullptr)
        return;
    _scrolled.rowsChanged();
    _setsScrollBar = true;
    verticalScrollBar()->setRange(0, _scrolled.scrollValue(_scrolled.lastTop(), unit()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(unit());
    _setsScrollBar = false;
    _setTop(_scrolled.top());
}

void OutlineView::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    if (_setsScrollBar || model() == nullptr)
        return;
    const int value = verticalScrollBar()->value();
    const bool isAtEnd = value == verticalScrollBar()->maximum();
    const ScrolledRows::Top top = isAtEnd ? _scrolled.lastTop() : _scrolled.topAtScrollValue(value, unit());
    _scrolled.setTopRow(top.row, top.offset);
    viewport()->update();
}

int OutlineView::verticalOffset() const
{
    return verticalScrollBar()->value();
}

void OutlineView::wheelEvent(QWheelEvent *event)
{
    int pixels = -event->pixelDelta().y();
    if (event->pixelDelta().isNull()) {
        _wheelRemainder += -event->angleDelta().y() * QApplication::wheelScrollLines() * unit();
        pixels = _wheelRemainder / WHEEL_STEP;
        _wheelRemainder %= WHEEL_STEP;
    }
    const ScrolledRows::Top before = _scrolled.top();
    scrollBy(pixels);
    event->setAccepted(_scrolled.top() != before);
}

void OutlineView::updateGeometries()
{
    const int height = _header->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    const QRect content = viewport()->geometry();
    _header->setGeometry(content.left(), content.top() - height, content.width(), height);
    _updateScrollBar();
    QAbstractItemView::updateGeometries();
}

void OutlineView::resizeEvent(QResizeEvent *event)
{
    const int current = _currentRowWithin(event->oldSize().height());
    if (event->size().width() != event->oldSize().width())
        _heights.forgetAll();
    QAbstractItemView::resizeEvent(event);
    // The place where somebody is isn't lost.
    scrollRowToVisible(current);
}

int OutlineView::_currentRowWithin(int height) const
{
    const int current = rowOfIndex(currentIndex().siblingAtColumn(0));
    const bool isWithin = current >= _scrolled.top().row &&
                          _scrolled.moved(_scrolled.top(), std::max(0, height - 1)).row >= current;
    return isWithin ? current : -1;
}

void OutlineView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _heights.forgetAll();
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        scheduleDelayedItemsLayout();
}

QRect OutlineView::visualRect(const QModelIndex &index) const
{
    const int row = rowOfIndex(index);
    if (row < 0)
        return {};
    // Rows that aren't shown are somewhere above or below; where exactly would cost measuring all between.
    const int y =
        _scrolled.yOfRow(row).value_or(row < _scrolled.top().row ? -rowHeight(row) : viewport()->height());
    if (index.parent().isValid())
        return {0, y, viewport()->width(), rowHeight(row)};
    return {_header->sectionViewportPosition(index.column()), y, _header->sectionSize(index.column()),
            rowHeight(row)};
}

QModelIndex OutlineView::indexAt(const QPoint &point) const
{
    const QModelIndex index = indexAtRow(_scrolled.rowAt(point.y()));
    if (!index.isValid() || index.parent().isValid())
        return index;
    return index.siblingAtColumn(_header->logicalIndexAt(point.x()));
}

void OutlineView::_showPart(int row, int upper, int lower)
{
    executeDelayedItemsLayout();
    if (const std::optional<ScrolledRows::Top> top = _scrolled.topToShow(row, upper, lower))
        _setTop(*top);
}

void OutlineView::scrollRowToVisible(int row)
{
    if (row >= 0 && row < _rows.rowCount())
        _showPart(row, 0, rowHeight(row));
}

void OutlineView::scrollToMatch(int row, qint64 match)
{
    const QModelIndex index = indexAtRow(row);
    if (!index.parent().isValid())
        return;
    const auto item = results()->item(index);
    const QRect rect = _cell->rectOfMatch(leafOption(*item), *item, match);
    if (rowHeight(row) <= viewport()->height())
        scrollRowToVisible(row);
    else if (rect.isValid())
        _showPart(row, rect.top(), rect.bottom() + 1);
}

void OutlineView::setPreview(std::shared_ptr<const ReplacementPreview> preview)
{
    _cell->setPreview(std::move(preview));
    _forgetHeights();
}

void OutlineView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const int row = rowOfIndex(index);
    if (row < 0)
        return;
    executeDelayedItemsLayout();
    const int height = viewport()->height();
    if (hint == PositionAtTop)
        _setTop({row, 0});
    else if (hint == PositionAtBottom)
        _setTop(_scrolled.moved({row, rowHeight(row)}, -height));
    else if (hint == PositionAtCenter)
        _setTop(_scrolled.moved({row, rowHeight(row) / 2}, -height / 2));
    else
        scrollRowToVisible(row);
}

} // namespace tidemark
