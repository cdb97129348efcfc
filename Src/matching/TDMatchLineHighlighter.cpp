#include "matching/TDMatchLineHighlighter.h"

#include "foundation/StopFlag.h"
#include "foundation/WorkerThreads.h"
#include "matching/SearchContext.h"
#include "reading/TDFileReader.h"
#include "text/ByteScan.h"
#include "text/LineEnds.h"
#include "text/TextEncoding.h"

#include <QSemaphore>

#include <algorithm>
#include <chrono>
#include <functional>
#include <mutex>

namespace tidemark {

namespace {

/// Files larger than this, in bytes, are searched by a second thread.
constexpr qint64 LARGE_FILE = 8 << 20;

/// Hands over the lines of the block that may match, until it is told false, and makes the line number that
/// of the next block. False, with nothing done, when every line has to be searched.
template <typename Handle>
bool forEachCandidate(QByteArrayView block, qint64 &lineNumber, SearchContext &context, Handle handle)
{
    std::vector<LineSpan> &candidates = context.candidates();
    candidates.clear();
    LinePrefilter::Scanner *scanner = context.scanner();
    if (scanner == nullptr || !scanner->candidateLines(block, candidates))
        return false;
    qsizetype counted = 0;
    for (const LineSpan &line : candidates) {
        lineNumber += countLineEnds(block.sliced(counted, line.start - counted));
        counted = line.start;
        if (!handle(block.sliced(line.start, line.end - line.start)))
            return true;
    }
    if (!context.reader().isAtEnd())
        lineNumber += countLineEnds(block.sliced(counted));
    return true;
}

} // namespace

/// Lines of a large file, copied out of its blocks.
struct TDMatchLineHighlighter::LineBatch
{
    std::vector<char> bytes;
    /// In `bytes`, with their numbers.
    std::vector<std::pair<LineSpan, qint64>> lines;
    /// Where there are none of these, every line of `bytes` is to be searched; the number of the first one.
    qint64 firstLineNumber = 0;

    void add(QByteArrayView line, qint64 lineNumber)
    {
        const auto start = qsizetype(bytes.size());
        bytes.insert(bytes.end(), line.begin(), line.end());
        lines.emplace_back(LineSpan{start, start + line.size()}, lineNumber);
    }
};

/// What was found in a large file, on its way from the thread that searches to the one that reads.
class TDMatchLineHighlighter::Parts
{
public:
    /// On the thread that searches: what has been found since the last part makes the next one, unless that
    /// was just before.
    void take(FoundLines &lines, bool areBeyondAscii)
    {
        const Clock::time_point now = Clock::now();
        if (lines.isEmpty() || now < _due)
            return;
        _due = now + INTERVAL;
        FileMatches part;
        part.lines = lines.take();
        part.areBeyondAscii = areBeyondAscii;
        const std::lock_guard lock(_mutex);
        _taken.push_back(std::move(part));
    }

    /// Those that weren't given back before.
    std::vector<FileMatches> taken()
    {
        const std::lock_guard lock(_mutex);
        return std::exchange(_taken, {});
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds INTERVAL{10};

    Clock::time_point _due; ///< of the thread that searches
    std::mutex _mutex;
    std::vector<FileMatches> _taken;
};

/// Chooses lines of a large file's blocks, which are searched on a second thread in the same order.
class TDMatchLineHighlighter::SecondThread
{
public:
    /// Must not throw.
    using Search = std::function<void(const LineBatch &)>;

    SecondThread(SearchContext &context, Search search) : _context(context), _search(std::move(search)) {}

    /// The line number becomes that of the next block.
    void addBlock(QByteArrayView block, qint64 &lineNumber)
    {
        const bool isChosen = forEachCandidate(block, lineNumber, _context, [&](QByteArrayView line) {
            _chosen.add(line, lineNumber);
            return true;
        });
        // What is rare isn't kept for long either.
        _bytesSincePassing += block.size();
        if (!isChosen || _chosen.bytes.size() > BYTES_IN_BATCH || _bytesSincePassing > MOST_BYTES_BETWEEN)
            passOn();
        if (!isChosen) {
            _start({{block.begin(), block.end()}, {}, lineNumber});
            lineNumber += countLineEnds(block);
        }
    }

    /// What was chosen and hasn't been passed on.
    void passOn()
    {
        _bytesSincePassing = 0;
        if (!_chosen.lines.empty())
            _start(std::exchange(_chosen, {}));
    }

private:
    /// Waits while much is waiting.
    void _start(LineBatch batch)
    {
        const int room = int(qMin(batch.bytes.size(), size_t(MOST_BYTES_WAITING)));
        _room.acquire(room);
        _thread.start([this, room, batch = std::move(batch)] {
            _search(batch);
            _room.release(room);
        });
    }

    static constexpr size_t BYTES_IN_BATCH = 1 << 16;
    static constexpr int MOST_BYTES_WAITING = 1 << 22;
    static constexpr qsizetype MOST_BYTES_BETWEEN = 1 << 23;

    SearchContext &_context;
    Search _search;
    LineBatch _chosen;
    qsizetype _bytesSincePassing = 0; ///< of the file
    QSemaphore _room{MOST_BYTES_WAITING};
    WorkerThreads _thread{1}; ///< ends first
};

/// One search through the blocks of the file that the context's reader has opened.
class TDMatchLineHighlighter::BlockRun
{
public:
    BlockRun(TDMatchLineHighlighter &highlighter, SearchContext &context, TDError &error)
        : _highlighter(highlighter), _context(context), _error(error)
    {}

    BlockSearch run();

private:
    bool _isOver() const
    {
        return _highlighter.shouldStop() || _hasFailed || _highlighter._hasExcessiveMatch();
    }
    void _searchNext(QByteArrayView block);
    void _searchBatch(const LineBatch &batch);
    void _takePart();

    TDMatchLineHighlighter &_highlighter;
    SearchContext &_context;
    TDError &_error; ///< of the thread that searches
    std::atomic<bool> _hasFailed = false;
    Parts _parts;
    qint64 _lineNumber = 1;
    qint64 _bytesRead = 0;
    std::optional<SecondThread> _secondThread;
};

TDMatchLineHighlighter::BlockSearch TDMatchLineHighlighter::BlockRun::run()
{
    using Outcome = TextBlockReader::Outcome;
    QByteArrayView block;
    Outcome outcome = Outcome::Block;
    while (!_isOver() && (outcome = _context.reader().nextBlock(block)) == Outcome::Block)
        _searchNext(block);
    if (_secondThread)
        _secondThread->passOn();
    _secondThread.reset();
    if (_error)
        return BlockSearch::Done;
    if (outcome != Outcome::NeedsLineReader)
        _highlighter._handOver(_parts);
    const bool isInDoubt = _highlighter._hasExcessiveMatch() && !_highlighter.shouldStop();
    return outcome == Outcome::NeedsLineReader || isInDoubt ? BlockSearch::NeedsLineReader
                                                            : BlockSearch::Done;
}

void TDMatchLineHighlighter::BlockRun::_searchNext(QByteArrayView block)
{
    // Bytes are at least as many as UTF-16 units, so a line that is long enough is among these.
    if (!_highlighter._hasExcessiveLines && mayHoldLineLongerThan(block, TD_LONGEST_LINE))
        _highlighter._hasExcessiveLines = true;
    _bytesRead += block.size();
    if (!_secondThread && _bytesRead > LARGE_FILE) {
        _takePart();
        _secondThread.emplace(_context, [this](const LineBatch &batch) { _searchBatch(batch); });
    }
    if (_secondThread) {
        _secondThread->addBlock(block, _lineNumber);
        _highlighter._handOver(_parts);
    } else {
        _highlighter._searchBlock(block, _lineNumber, _error, _context);
        _hasFailed = !_error.isNull();
    }
}

/// On the second thread.
void TDMatchLineHighlighter::BlockRun::_searchBatch(const LineBatch &batch)
{
    const StopScope scope(&_highlighter._shouldStop, _highlighter._searchShouldStop);
    try {
        if (!_hasFailed)
            _highlighter._searchBatch(batch, _error, _context);
    } catch (const WorkStopped &) {
        return; // the reading thread sees the same flags
    }
    _hasFailed = _hasFailed || _error;
    _takePart();
}

void TDMatchLineHighlighter::BlockRun::_takePart()
{
    if (_highlighter._partReceiver && !_highlighter._hasExcessiveMatch() && !_error &&
        !_highlighter.shouldStop())
        _parts.take(_context.foundLines(), _highlighter._matches.areBeyondAscii);
}

bool TDMatchLineHighlighter::processWithFile(const FilePath &path, StringEncoding encoding, TDError &error,
                                             bool ignoreCase, const QString &matchPattern)
{
    const CaseRule caseRule = ignoreCase ? CaseRule::Ignore : CaseRule::Exact;
    const TDFindPattern pattern(matchPattern, FindOptions::withUserDefaults(caseRule));
    return processWithFile(path, encoding, error, pattern);
}

bool TDMatchLineHighlighter::processWithFile(const FilePath &path, StringEncoding encoding, TDError &error,
                                             const TDFindPattern &pattern)
{
    _shouldStop = false;
    _modificationDate.reset();
    const StopScope scope(&_shouldStop, _searchShouldStop);
    SearchContext context(pattern);
    return _processByLines(FileToRead{path}, encoding, error, context);
}

bool TDMatchLineHighlighter::processWithFile(const FileToRead &file, StringEncoding encoding, TDError &error,
                                             SearchContext &context)
{
    _shouldStop = _wasSearchedAnew = false;
    const StopScope scope(&_shouldStop, _searchShouldStop);
    try {
        const BlockSearch outcome = _searchBlocks(file, encoding, error, context);
        context.reader().close();
        _modificationDate = context.reader().modificationDate();
        _wasSearchedAnew = outcome == BlockSearch::NeedsLineReader || error;
        if (outcome == BlockSearch::NeedsLineReader)
            return _processByLines(file, encoding, error, context);
        if (error)
            return false;
    } catch (const WorkStopped &) {
        context.reader().close();
    }
    if (shouldStop())
        context.foundLines().clear();
    else
        _matches.lines = context.foundLines().take();
    return true;
}

void TDMatchLineHighlighter::_startAfresh(SearchContext &context)
{
    _matches = {};
    context.foundLines().clear();
    _hasExcessiveLines = false;
    _hasFound = false;
}

bool TDMatchLineHighlighter::_processByLines(const FileToRead &file, StringEncoding encoding, TDError &error,
                                             SearchContext &context)
{
    const std::unique_ptr<TDFileReader> reader = TDFileReader::fileReaderWithFile(file, encoding, error);
    if (!reader)
        return false;
    _includesBOM = reader->hadByteOrderMarker();
    _startAfresh(context);
    _matches.encoding = reader->settledEncoding();

    try {
        _searchLines(*reader, context, error);
    } catch (const WorkStopped &) {
        TDError ignored;
        (void)reader->closeFile(ignored);
        return true;
    }
    const bool isExpressionFault =
        error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR);
    if (!isExpressionFault && _hasExcessiveMatch())
        error = TDFileReader::excessiveLineError(file.path);
    TDError closingError;
    const bool closed = reader->closeFile(closingError);
    if (error)
        return false;
    if (!closed) {
        error = closingError;
        return false;
    }
    if (!shouldStop())
        _matches.lines = context.foundLines().take();
    return true;
}

TextRange TDMatchLineHighlighter::firstRangeOfPatternInString(const QString &line, const QString &pattern,
                                                              CaseRule caseRule, TextRange searchRange,
                                                              TDError &error)
{
    const TDFindPattern made(pattern, FindOptions::withUserDefaults(caseRule));
    return TDFindPattern::Line(made, line).firstRange(searchRange, error);
}

void TDMatchLineHighlighter::_searchLines(TDFileReader &reader, SearchContext &context, TDError &error)
{
    qint64 lineNumber = 1;
    while (const std::optional<QString> line = reader.getNextLineWithEOLCharacters(true, error)) {
        if (line->size() > TD_LONGEST_LINE)
            _hasExcessiveLines = true;
        if (shouldStop())
            return;
        _searchLine(*line, {}, lineNumber, context, error);
        // The error of a file with a match and a line that is too long is settled.
        if (error || _hasExcessiveMatch())
            return;
        ++lineNumber;
    }
}

TDMatchLineHighlighter::BlockSearch TDMatchLineHighlighter::_searchBlocks(const FileToRead &file,
                                                                          StringEncoding encoding,
                                                                          TDError &error,
                                                                          SearchContext &context)
{
    TextBlockReader &reader = context.reader();
    _startAfresh(context);
    const TextBlockReader::Outcome opened = reader.open(file, encoding);
    if (opened != TextBlockReader::Outcome::Block)
        return opened == TextBlockReader::Outcome::EndOfFile ? BlockSearch::Done
                                                             : BlockSearch::NeedsLineReader;
    _includesBOM = reader.hadByteOrderMarker();
    _matches.encoding = reader.encoding();
    return BlockRun(*this, context, error).run();
}

void TDMatchLineHighlighter::_handOver(Parts &parts)
{
    for (FileMatches &part : parts.taken()) {
        part.encoding = _matches.encoding;
        if (!shouldStop() && !_hasExcessiveMatch())
            _partReceiver(std::move(part));
    }
}

void TDMatchLineHighlighter::_searchBatch(const LineBatch &batch, TDError &error, SearchContext &context)
{
    const QByteArrayView bytes(batch.bytes.data(), qsizetype(batch.bytes.size()));
    if (batch.lines.empty()) {
        qint64 lineNumber = batch.firstLineNumber;
        _searchEveryLine(bytes, lineNumber, error, context);
    }
    for (const auto &[line, lineNumber] : batch.lines) {
        _searchLineBytes(bytes.sliced(line.start, line.end - line.start), lineNumber, context, error);
        if (error || shouldStop())
            return;
    }
}

void TDMatchLineHighlighter::_searchBlock(QByteArrayView block, qint64 &lineNumber, TDError &error,
                                          SearchContext &context)
{
    const bool isChosen = forEachCandidate(block, lineNumber, context, [&](QByteArrayView line) {
        _searchLineBytes(line, lineNumber, context, error);
        return !error && !shouldStop();
    });
    if (!isChosen)
        _searchEveryLine(block, lineNumber, error, context);
}

void TDMatchLineHighlighter::_searchEveryLine(QByteArrayView block, qint64 &lineNumber, TDError &error,
                                              SearchContext &context)
{
    for (qsizetype start = 0; start < block.size() && !error && !shouldStop(); ++lineNumber) {
        const QByteArrayView rest = block.sliced(start);
        const QByteArrayView line = rest.first(lengthOfFirstLine(rest));
        _searchLineBytes(line, lineNumber, context, error);
        start += line.size();
    }
}

void TDMatchLineHighlighter::_searchLineBytes(QByteArrayView bytes, qint64 lineNumber, SearchContext &context,
                                              TDError &error)
{
    if (bytes.size() <= TD_LONGEST_LINE && isAscii(bytes)) {
        std::vector<char16_t> &text = context.lineText();
        text.assign(bytes.begin(), bytes.end());
        _searchLine(QStringView(text.data(), bytes.size()), bytes, lineNumber, context, error);
    } else if (const std::optional<QString> line = textFromUtf8(bytes)) {
        _searchLine(*line, bytes, lineNumber, context, error);
    }
}

void TDMatchLineHighlighter::_addLine(QStringView line, QByteArrayView bytes, qint64 lineNumber,
                                      SearchContext &context)
{
    const auto isBeyondAscii = [](QChar unit) { return unit.unicode() >= 0x80; };
    const bool isAsciiLine =
        bytes.isNull() ? std::none_of(line.begin(), line.end(), isBeyondAscii) : isAscii(bytes);
    _matches.areBeyondAscii = _matches.areBeyondAscii || !isAsciiLine;
    // The file of a line that is too long ends in an error, whatever the line says.
    if (line.size() > TD_LONGEST_LINE)
        context.foundLines().addLine(lineNumber, {}, {});
    else
        context.foundLines().addLine(lineNumber, line, bytes);
}

void TDMatchLineHighlighter::_searchLine(QStringView line, QByteArrayView bytes, qint64 lineNumber,
                                         SearchContext &context, TDError &error)
{
    TDFindPattern::Line search(context.pattern(), line, bytes);
    bool isFirst = true;
    while (!shouldStop()) {
        const TextRange found = search.nextMatch(error);
        if (search.limit() != LineSearch::Found && _matches.limitedLines.count++ == 0)
            _matches.limitedLines = {1, lineNumber, search.limit()};
        if (error || !found.isFound())
            return;
        if (!_hasExcessiveMatch()) {
            if (std::exchange(isFirst, false))
                _addLine(line, bytes, lineNumber, context);
            _hasFound = true;
            context.foundLines().addRange(found);
        } else if (!bytes.isNull()) {
            // The line reader, which decides whether a line is too long, searches it all again.
            return;
        }
    }
}

} // namespace tidemark
