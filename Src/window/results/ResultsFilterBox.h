#pragma once

#include "foundation/FilePath.h"

#include <QSet>
#include <QWidget>

#include <functional>
#include <memory>

class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace tidemark {

class FindResults;
class ResultsFilter;
class TDFindResultItem;
class TDSearchResultsOutlineView;

/// The box above the results that lets only some of them show, as one types in it. It is hidden while nothing
/// is filtered.
class ResultsFilterBox : public QWidget
{
    Q_OBJECT

public:
    /// Places itself in the header. All must outlive the object. `locations` are those that the paths were
    /// found below.
    ResultsFilterBox(FindResults &results, TDSearchResultsOutlineView &view, QHBoxLayout &header,
                     std::function<QList<FilePath>()> locations);

    QLineEdit &field() const { return *_field; }
    QString countText() const;
    /// Shows itself and takes the keyboard.
    void open();
    /// Everything shows again, and the results have the keyboard.
    void close();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void _apply();
    std::shared_ptr<const ResultsFilter> _filter() const;
    void _expandWhileFew();
    void _showCount();

    FindResults &_results;
    TDSearchResultsOutlineView &_view;
    const std::function<QList<FilePath>()> _locations;
    QLineEdit *_field;
    QLabel *_count;
    QSet<const TDFindResultItem *> _expandedBefore; ///< anything was filtered
};

} // namespace tidemark
