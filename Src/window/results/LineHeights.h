#pragma once

#include "matching/TDFindResultItem.h"

#include <QHash>
#include <QModelIndex>

class QStyleOptionViewItem;

namespace tidemark {

class TDSearchResultsTextFieldCell;

/// How high match lines are, measured when it is asked for and remembered for very many.
class LineHeights
{
public:
    /// The cell draws the lines and must stay as long as this.
    explicit LineHeights(TDSearchResultsTextFieldCell &cell) : _cell(cell) {}

    /// In pixels; `option` has the row's width.
    int heightOf(const QStyleOptionViewItem &option, const QModelIndex &line);
    /// The line, or its text's width, has changed; the cell forgets what it has laid out as well.
    void forget(const TDFindResultItem &line);
    void forgetAll();

private:
    TDSearchResultsTextFieldCell &_cell;
    QHash<NodeIdentity, int> _heights; ///< of short lines, whose height selecting doesn't change
};

} // namespace tidemark
