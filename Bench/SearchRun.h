#pragma once

#include "DriverOptions.h"

#include "foundation/TDError.h"
#include "matching/TDFindResultItem.h"
#include "search/TDSearchEngine.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QHash>
#include <QList>

#include <optional>

namespace tidemark {

/// What one search delivered.
struct SearchTotals
{
    quint64 files = 0;
    quint64 filesWithMatches = 0;
    quint64 matches = 0;
    quint64 matchLines = 0;
    quint64 errors = 0;
    double seconds = 0;
    std::optional<double> firstResultSeconds;
    LeftOut leftOut;
    bool finished = false;
    TDError expressionError;
};

/// Receives a search: keeps its totals, prints what the options ask for, and keeps the nodes that a
/// replacement needs.
class SearchRun : public TDSearchEngineDelegate
{
public:
    explicit SearchRun(const DriverOptions &options) : _options(options) {}

    void run(const std::shared_ptr<SearchRun> &self, const QList<TDSearchLocation> &locations);

    const SearchTotals &totals() const { return _totals; }
    /// In the order of the results. Empty without a replacement.
    const FindResultItems &files() const { return _files; }

    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override;
    void errorOccured(const TDError &error) override;
    void didLeaveOut(const LeftOut &leftOut) override { _totals.leftOut = leftOut; }
    void didFinishSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount) override;
    void didStopSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount) override;

private:
    void _readAgain(const std::shared_ptr<SearchRun> &self);
    void _takeCurrent();
    void _list(const TDFindResultItem &file);
    void _print(const QByteArray &text);
    void _flush();

    const DriverOptions &_options;
    SearchTotals _totals;
    FindResultItems _files;
    std::shared_ptr<TDFindResultItem> _current; ///< of which more may come
    QHash<FilePath, StringEncoding> _toReadAgain;
    bool _readsAgain = false;
    QElapsedTimer _timer;
    QByteArray _pendingOutput;
};

} // namespace tidemark
