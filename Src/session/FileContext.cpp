#include "session/FileContext.h"

#include <QElapsedTimer>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

namespace tidemark {

namespace {

/// Between two reports of how much of a file is known.
constexpr qint64 REPORT_INTERVAL_MS = 60;
/// Lines are kept until they are so long together.
constexpr qsizetype MOST_UNITS = 1 << 24;
/// Few, as each may be as long as a line gets.
constexpr qint64 LINES_READ_AT_ONCE = 64;

struct Wish
{
    qint64 first = 0;
    qint64 count = 0; ///< 0: there is none
    FileContext::Fetched fetched;
};

} // namespace

/// Reads one file. What isn't marked otherwise is the worker's alone.
class FileContext::Reading : public std::enable_shared_from_this<Reading>
{
public:
    Reading(FileContext &context, FilePath path, StringEncoding encoding)
        : _context(context), _path(std::move(path)), _encoding(encoding)
    {}

    // From the main thread. True when nobody works on the wish yet.
    bool ask(const std::function<void(Reading &)> &change)
    {
        const std::lock_guard lock(_mutex);
        change(*this);
        return !std::exchange(_isRunning, true);
    }
    void stop() { _isStopped = true; }

    void run();

    // Behind the mutex.
    Wish wanted;
    Wish toFetch;
    bool isToCheck = true;

private:
    bool _takeWishes();
    void _open();
    bool _canGive(const Wish &wish) const;
    void _giveLines();
    void _giveTexts();
    void _report();
    State _state() const;
    template <typename Call>
    void _tell(Call call);

    FileContext &_context;
    const FilePath _path;
    const StringEncoding _encoding;
    std::mutex _mutex;
    bool _isRunning = false; ///< behind the mutex
    std::atomic<bool> _isStopped = false;
    std::unique_ptr<FileLines> _lines;
    TDError _error;
    Wish _wanted;
    Wish _toFetch;
    QElapsedTimer _sinceReport;
};

template <typename Call>
void FileContext::Reading::_tell(Call call)
{
    QMetaObject::invokeMethod(
        &_context,
        [context = &_context, self = shared_from_this(), call] {
            if (context->_reading == self)
                call(*context);
        },
        Qt::QueuedConnection);
}

void FileContext::Reading::run()
{
    while (!_isStopped && _takeWishes()) {
        if (_canGive(_wanted))
            _giveLines();
        if (_canGive(_toFetch))
            _giveTexts();
        if (!_lines || _lines->isLookedThrough())
            continue;
        _lines->lookFurther();
        if (_lines->isLookedThrough() || _sinceReport.elapsed() >= REPORT_INTERVAL_MS)
            _report();
    }
}

/// False when nothing is left to do.
bool FileContext::Reading::_takeWishes()
{
    bool checks = false;
    {
        const std::lock_guard lock(_mutex);
        checks = std::exchange(isToCheck, false);
        if (wanted.count > 0)
            _wanted = std::exchange(wanted, {});
        if (toFetch.count > 0)
            _toFetch = std::exchange(toFetch, {});
        const bool hasMore = _lines && !_lines->isLookedThrough();
        _isRunning = checks || hasMore || _canGive(_wanted) || _canGive(_toFetch);
        if (!_isRunning)
            return false;
    }
    if (checks)
        _open();
    return true;
}

void FileContext::Reading::_open()
{
    const bool isCurrent = _lines && TDFileCommon::fileModificationDate(_path) == _lines->modificationDate();
    if (isCurrent) {
        _tell([](FileContext &context) { context._isOpening = false; });
        _report();
        return;
    }
    _lines = FileLines::open(_path, _encoding, _error);
    _sinceReport.start();
    _tell([state = _state()](FileContext &context) { context._noteOpened(state); });
}

FileContext::State FileContext::Reading::_state() const
{
    if (!_lines)
        return {_error, {}, _encoding, 0, true};
    return {{},
            _lines->modificationDate(),
            _lines->encoding(),
            _lines->estimatedLines(),
            _lines->isLookedThrough()};
}

void FileContext::Reading::_report()
{
    _sinceReport.restart();
    _tell([state = _state()](FileContext &context) {
        context._state = state;
        Q_EMIT context.arrived();
    });
}

bool FileContext::Reading::_canGive(const Wish &wish) const
{
    return wish.count > 0 &&
           (!_lines || _lines->isLookedThrough() || wish.first + wish.count <= _lines->knownLines());
}

void FileContext::Reading::_giveLines()
{
    const Wish wish = std::exchange(_wanted, {});
    if (!_lines)
        return;
    _tell([first = wish.first, lines = _lines->lines(wish.first, wish.count)](FileContext &context) {
        context._keep(first, lines);
    });
}

void FileContext::Reading::_giveTexts()
{
    const Wish wish = std::exchange(_toFetch, {});
    std::optional<QStringList> texts;
    if (_lines)
        texts.emplace();
    qsizetype units = 0;
    for (qint64 done = 0; texts && done < wish.count && !_isStopped; done += LINES_READ_AT_ONCE) {
        const QList<FileLine> lines =
            _lines->lines(wish.first + done, std::min(LINES_READ_AT_ONCE, wish.count - done));
        for (const FileLine &line : lines) {
            units += line.text.size() + 1;
            *texts << line.text;
        }
        const bool isCut =
            std::any_of(lines.begin(), lines.end(), [](const FileLine &line) { return !line.isWhole; });
        if (units > LONGEST_TEXT || isCut)
            texts.reset();
    }
    _tell([fetched = wish.fetched, texts](FileContext &) { fetched(texts); });
}

// -- On the main thread

FileContext::~FileContext()
{
    if (_reading)
        _reading->stop();
}

void FileContext::open(const FilePath &path, StringEncoding encoding)
{
    if (_reading && path == _path && encoding == _encoding) {
        _isOpening = true;
        if (_reading->ask([](Reading &reading) { reading.isToCheck = true; }))
            _run(_reading);
        return;
    }
    close();
    _path = path;
    _encoding = encoding;
    _isOpening = true;
    _reading = std::make_shared<Reading>(*this, path, encoding);
    (void)_reading->ask([](Reading &) {});
    _run(_reading);
}

void FileContext::close()
{
    if (_reading)
        _reading->stop();
    _reading.reset();
    _path = {};
    _isOpening = false;
    _noteOpened({});
}

void FileContext::_run(const std::shared_ptr<Reading> &reading)
{
    _worker.start([reading] { reading->run(); });
}

void FileContext::want(qint64 first, qint64 count)
{
    if (_reading && _reading->ask([&](Reading &reading) { reading.wanted = {first, count, {}}; }))
        _run(_reading);
}

void FileContext::fetch(qint64 first, qint64 last, Fetched fetched)
{
    if (_reading && _reading->ask([&](Reading &reading) {
            reading.toFetch = {first, last - first + 1, std::move(fetched)};
        }))
        _run(_reading);
}

const FileLine *FileContext::line(qint64 number) const
{
    const auto line = _lines.constFind(number);
    return line != _lines.constEnd() ? &*line : nullptr;
}

void FileContext::_noteOpened(const State &state)
{
    _isOpening = false;
    _state = state;
    _lines.clear();
    _unitsKept = 0;
    Q_EMIT opened();
}

void FileContext::_keep(qint64 first, const QList<FileLine> &lines)
{
    if (_unitsKept > MOST_UNITS) {
        _lines.clear();
        _unitsKept = 0;
    }
    for (qsizetype index = 0; index < lines.size(); ++index) {
        _unitsKept += lines[index].text.size() + qsizetype(sizeof(FileLine));
        _lines.insert(first + index, lines[index]);
    }
    Q_EMIT arrived();
}

} // namespace tidemark
