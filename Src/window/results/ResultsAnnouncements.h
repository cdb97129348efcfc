#pragma once

#include <QObject>

class QModelIndex;

namespace tidemark {

class TDSearchResultsOutlineView;

/// Tells screen readers what happens in the results: which row is selected, what was expanded and collapsed.
class ResultsAnnouncements : public QObject
{
    Q_OBJECT

public:
    /// The view owns it.
    explicit ResultsAnnouncements(TDSearchResultsOutlineView *view);

    /// Also when another match of it is highlighted.
    void announceSelectedRow();

private:
    void _announceExpansion(const QModelIndex &file);

    TDSearchResultsOutlineView &_view;
};

} // namespace tidemark
