#include "SearchRun.h"

#include "session/UnreadableFiles.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace tidemark {

namespace {

constexpr qsizetype OUTPUT_BLOCK = 1 << 16;

double secondsOf(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) / 1e9;
}

} // namespace

void SearchRun::run(const std::shared_ptr<SearchRun> &self, const QList<TDSearchLocation> &locations)
{
    TDSearchEngine engine;
    engine.setDelegate(self);
    engine.setThreadCount(_options.threads);
    _timer.start();
    engine.startSearch(_options.findText, locations, _options.isCaseSensitive);
    if (!_toReadAgain.isEmpty())
        _readAgain(self);
    _totals.seconds = secondsOf(_timer);
    _flush();
}

void SearchRun::_readAgain(const std::shared_ptr<SearchRun> &self)
{
    _readsAgain = true;
    QList<TDSearchLocation> locations;
    for (const FilePath &path : _toReadAgain.keys())
        locations.emplaceBack().url = path.toUrl();
    std::sort(locations.begin(), locations.end(),
              [](const auto &one, const auto &other) { return one.path() < other.path(); });
    SearchTotals before = _totals;
    TDSearchEngine engine;
    engine.setDelegate(self);
    engine.setThreadCount(_options.threads);
    engine.setChosenEncodings(_toReadAgain);
    engine.startSearch(_options.findText, locations, _options.isCaseSensitive);
    before.leftOut[LeftOutReason::Unreadable] +=
        _totals.leftOut[LeftOutReason::Unreadable] - quint64(locations.size());
    _totals.leftOut = before.leftOut;
    _totals.files = before.files;
    _totals.filesWithMatches += before.filesWithMatches;
    _totals.matches += before.matches;
}

void SearchRun::didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file)
{
    if (file->matches() != nullptr && !_totals.firstResultSeconds)
        _totals.firstResultSeconds = secondsOf(_timer);
    _takeCurrent();
    _current = file;
}

void SearchRun::_takeCurrent()
{
    const std::shared_ptr<TDFindResultItem> file = std::exchange(_current, nullptr);
    if (!file || file->children().isEmpty())
        return;
    if (_options.readAs && !_readsAgain && mayBeReadAs(*file)) {
        _toReadAgain.insert(file->path(), *_options.readAs);
        return;
    }
    const bool failed = file->matches() == nullptr;
    if (failed)
        ++_totals.errors;
    else
        _totals.matchLines += quint64(file->children().size());
    _list(*file);
    if (_options.replaceText && !failed)
        _files << file;
}

void SearchRun::_list(const TDFindResultItem &file)
{
    for (const auto &item : file.children()) {
        if (item->error() && _options.listsErrors) {
            _print(file.path().bytes() + ": error " + QByteArray::number(item->error().code()) + ": " +
                   item->error().localizedFailureReason().toUtf8() + '\n');
        } else if (item->matchLine() != nullptr && _options.listsLines) {
            QByteArray line = file.path().bytes() + ':' + QByteArray::number(item->matchLine()->lineNumber());
            char separator = ':';
            for (const TextRange &range : item->matchLine()->matchRanges()) {
                line +=
                    separator + QByteArray::number(range.location) + '+' + QByteArray::number(range.length);
                separator = ',';
            }
            _print(line + '\n');
        }
    }
}

void SearchRun::errorOccured(const TDError &error)
{
    _totals.expressionError = error;
}

void SearchRun::didFinishSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount)
{
    _totals.finished = true;
    didStopSearch(scannedCount, fileMatchCount, matchCount);
}

void SearchRun::didStopSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount)
{
    _takeCurrent();
    _totals.files = scannedCount;
    _totals.filesWithMatches = fileMatchCount;
    _totals.matches = matchCount;
}

void SearchRun::_print(const QByteArray &text)
{
    _pendingOutput += text;
    if (_pendingOutput.size() >= OUTPUT_BLOCK)
        _flush();
}

void SearchRun::_flush()
{
    std::fwrite(_pendingOutput.constData(), 1, size_t(_pendingOutput.size()), stdout);
    _pendingOutput.clear();
}

} // namespace tidemark
