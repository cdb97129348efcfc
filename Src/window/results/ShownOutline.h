#pragma once

#include "foundation/FilePath.h"

#include <QSet>

namespace tidemark {

class TDSearchResultsOutlineView;

/// What a person has made of the results' outline: which files are expanded, the order, and where the
/// selection stands; to be had again when the same files are listed anew.
class ShownOutline
{
public:
    explicit ShownOutline(const TDSearchResultsOutlineView &view);

    void restore(TDSearchResultsOutlineView &view) const;

private:
    void _select(TDSearchResultsOutlineView &view) const;

    bool _isAllExpanded = false;
    QSet<FilePath> _expanded;
    int _sortColumn = -1;
    Qt::SortOrder _sortOrder = Qt::AscendingOrder;
    FilePath _selectedFile;
    int _selectedLine = -1; ///< of it; -1 for the file itself
};

} // namespace tidemark
