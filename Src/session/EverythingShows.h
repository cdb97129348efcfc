#pragma once

#include "session/FindResults.h"

#include <QPointer>

#include <memory>

namespace tidemark {

/// Takes the filter away from results while it lives, so that their list is everything that was found. The
/// results may go before it does, and get another filter meanwhile. Main thread.
class EverythingShows
{
public:
    explicit EverythingShows(FindResults &results) : _results(&results), _filter(results.filter())
    {
        if (_filter)
            results.setFilter(nullptr);
    }
    ~EverythingShows()
    {
        if (_filter && _results && !_results->filter())
            _results->setFilter(_filter);
    }
    EverythingShows(const EverythingShows &) = delete;
    EverythingShows &operator=(const EverythingShows &) = delete;

private:
    QPointer<FindResults> _results;
    const std::shared_ptr<const ResultsFilter> _filter;
};

} // namespace tidemark
