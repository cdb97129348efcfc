#include "matching/MatchCollector.h"

#include "matching/SearchContext.h"
#include "text/ByteScan.h"
#include "text/LineEnds.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <utility>

namespace tidemark {

MatchCollector::MatchCollector(SearchContext &context, FileSearchState &state)
    : _context(context), _state(state)
{
    context.foundLines().clear();
}

FileMatches MatchCollector::take()
{
    _matches.lines = _context.foundLines().take();
    return std::exchange(_matches, {});
}

void MatchCollector::searchBlock(QByteArrayView block, qint64 &lineNumber, LineCount count, TDError &error)
{
    // Bytes are at least as many as UTF-16 units, so a line that is long enough is among these.
    if (!_state.hasLongLines() && mayHoldLineLongerThan(block, TD_LONGEST_LINE))
        _state.noteLongLine();
    if (!_searchCandidates(block, lineNumber, count, error))
        _searchEveryLine(block, lineNumber, error);
}

/// False, with nothing done, when every line has to be searched.
bool MatchCollector::_searchCandidates(QByteArrayView block, qint64 &lineNumber, LineCount count,
                                       TDError &error)
{
    std::vector<LineSpan> &candidates = _context.candidates();
    candidates.clear();
    LinePrefilter::Scanner *scanner = _context.scanner();
    if (scanner == nullptr || !scanner->candidateLines(block, candidates))
        return false;
    qsizetype counted = 0;
    for (const LineSpan &line : candidates) {
        lineNumber += countLineEnds(block.sliced(counted, line.start - counted));
        counted = line.start;
        _searchLineBytes(block.sliced(line.start, line.end - line.start), lineNumber, error);
        if (error || _state.shouldStop())
            return true;
    }
    if (count == LineCount::Needed)
        lineNumber += countLineEnds(block.sliced(counted));
    return true;
}

void MatchCollector::_searchEveryLine(QByteArrayView block, qint64 &lineNumber, TDError &error)
{
    for (qsizetype start = 0; start < block.size() && !error && !_state.shouldStop(); ++lineNumber) {
        const QByteArrayView rest = block.sliced(start);
        const QByteArrayView line = rest.first(lengthOfFirstLine(rest));
        _searchLineBytes(line, lineNumber, error);
        start += line.size();
    }
}

void MatchCollector::_searchLineBytes(QByteArrayView bytes, qint64 lineNumber, TDError &error)
{
    if (bytes.size() <= TD_LONGEST_LINE && isAscii(bytes)) {
        std::vector<char16_t> &text = _context.lineText();
        text.assign(bytes.begin(), bytes.end());
        searchLine(QStringView(text.data(), bytes.size()), bytes, lineNumber, error);
    } else if (const std::optional<QString> line = textFromUtf8(bytes)) {
        searchLine(*line, bytes, lineNumber, error);
    }
}

void MatchCollector::_addLine(QStringView line, QByteArrayView bytes, qint64 lineNumber)
{
    const auto isBeyondAscii = [](QChar unit) { return unit.unicode() >= 0x80; };
    const bool isAsciiLine =
        bytes.isNull() ? std::none_of(line.begin(), line.end(), isBeyondAscii) : isAscii(bytes);
    _matches.areBeyondAscii = _matches.areBeyondAscii || !isAsciiLine;
    // The file of a line that is too long ends in an error, whatever the line says.
    if (line.size() > TD_LONGEST_LINE)
        _context.foundLines().addLine(lineNumber, {}, {});
    else
        _context.foundLines().addLine(lineNumber, line, bytes);
}

void MatchCollector::searchLine(QStringView line, QByteArrayView bytes, qint64 lineNumber, TDError &error)
{
    TDFindPattern::Line search(_context.pattern(), line, bytes);
    bool isFirst = true;
    while (!_state.shouldStop()) {
        const TextRange found = search.nextMatch(error);
        if (search.limit() != LineSearch::Found)
            _matches.addLimitedLines({1, lineNumber, search.limit()});
        if (error || !found.isFound())
            return;
        if (!_state.hasExcessiveMatch()) {
            if (std::exchange(isFirst, false))
                _addLine(line, bytes, lineNumber);
            _state.noteMatch();
            _context.foundLines().addRange(found);
        } else if (!bytes.isNull()) {
            // The line reader, which decides whether a line is too long, searches it all again.
            return;
        }
    }
}

} // namespace tidemark
