#include "window/results/LineHeights.h"

#include "window/results/TDSearchResultsTextFieldCell.h"

#include <QStyleOptionViewItem>

namespace tidemark {

namespace {

constexpr int MOST_KNOWN = 200000;

} // namespace

int LineHeights::heightOf(const QStyleOptionViewItem &option, const QModelIndex &line)
{
    const auto *item = static_cast<const TDFindResultItem *>(line.internalPointer());
    const auto known = _heights.constFind(item->identity());
    if (known != _heights.constEnd())
        return *known;
    const int height = _cell.sizeHint(option, line).height();
    if (_cell.isLong(option, *item))
        return height;
    if (_heights.size() >= MOST_KNOWN)
        _heights.clear();
    return *_heights.insert(item->identity(), height);
}

void LineHeights::forget(const TDFindResultItem &line)
{
    _cell.forget(line);
    _heights.remove(line.identity());
}

void LineHeights::forgetAll()
{
    _cell.forgetAll();
    _heights.clear();
}

} // namespace tidemark
