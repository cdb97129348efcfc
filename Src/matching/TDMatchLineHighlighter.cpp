#include "matching/TDMatchLineHighlighter.h"

#include "foundation/StopFlag.h"
#include "matching/LargeFileSearch.h"
#include "matching/SearchContext.h"
#include "reading/TDFileReader.h"

#include <utility>

namespace tidemark {

namespace {

/// What follows so many bytes of a file is searched on several threads.
constexpr qint64 LARGE_FILE = 8 << 20;

} // namespace

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
    setShouldStop(false);
    _modificationDate.reset();
    const StopScope scope(_state.shouldStopFlag(), _state.searchShouldStopFlag());
    SearchContext context(pattern);
    return _processByLines(FileToRead{path}, encoding, error, context);
}

bool TDMatchLineHighlighter::processWithFile(const FileToRead &file, StringEncoding encoding, TDError &error,
                                             SearchContext &context)
{
    setShouldStop(false);
    _wasSearchedAnew = false;
    const StopScope scope(_state.shouldStopFlag(), _state.searchShouldStopFlag());
    try {
        BlockSearch outcome = _searchBlocks(file, encoding, error, context);
        if (_isThereSomethingToTell(outcome, error) && !context.reader().settleDate()) {
            FileToRead again = file;
            again.asksStatusFirst = true;
            error.clear();
            outcome = _searchBlocks(again, encoding, error, context);
        }
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
    _dropWhenStopped();
    return true;
}

/// Of all others nobody will ask for the date.
bool TDMatchLineHighlighter::_isThereSomethingToTell(BlockSearch outcome, const TDError &error) const
{
    return outcome == BlockSearch::NeedsLineReader || error || !_matches.lines.isEmpty() ||
           _matches.limitedLines.count > 0;
}

void TDMatchLineHighlighter::_dropWhenStopped()
{
    if (shouldStop())
        releaseLines(std::exchange(_matches.lines, {}));
}

/// Of what is known of the file only its encoding stays.
void TDMatchLineHighlighter::_startAfresh(SettledEncoding encoding, bool includesBOM)
{
    _matches = {};
    _matches.encoding = encoding;
    _includesBOM = includesBOM;
    _state.startAfresh();
}

void TDMatchLineHighlighter::_take(FileMatches matches)
{
    matches.encoding = _matches.encoding;
    _matches = std::move(matches);
}

bool TDMatchLineHighlighter::_processByLines(const FileToRead &file, StringEncoding encoding, TDError &error,
                                             SearchContext &context)
{
    const std::unique_ptr<TDFileReader> reader = TDFileReader::fileReaderWithFile(file, encoding, error);
    if (!reader)
        return false;
    _startAfresh(reader->settledEncoding(), reader->hadByteOrderMarker());
    MatchCollector collector(context, _state);
    try {
        _searchLines(*reader, collector, error);
    } catch (const WorkStopped &) {
        TDError ignored;
        (void)reader->closeFile(ignored);
        return true;
    }
    const bool isExpressionFault =
        error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR);
    if (!isExpressionFault && _state.hasExcessiveMatch())
        error = TDFileReader::excessiveLineError(file.path);
    TDError closingError;
    if (!reader->closeFile(closingError) && !error)
        error = closingError;
    if (error)
        return false;
    _take(collector.take());
    _dropWhenStopped();
    return true;
}

TextRange TDMatchLineHighlighter::firstRangeOfPatternInString(const QString &line, const QString &pattern,
                                                              CaseRule caseRule, TextRange searchRange,
                                                              TDError &error)
{
    const TDFindPattern made(pattern, FindOptions::withUserDefaults(caseRule));
    return TDFindPattern::Line(made, line).firstRange(searchRange, error);
}

void TDMatchLineHighlighter::_searchLines(TDFileReader &reader, MatchCollector &collector, TDError &error)
{
    qint64 lineNumber = 1;
    while (const std::optional<QString> line = reader.getNextLineWithEOLCharacters(true, error)) {
        if (line->size() > TD_LONGEST_LINE)
            _state.noteLongLine();
        if (shouldStop())
            return;
        collector.searchLine(*line, {}, lineNumber, error);
        // The error of a file with a match and a line that is too long is settled.
        if (error || _state.hasExcessiveMatch())
            return;
        ++lineNumber;
    }
}

TDMatchLineHighlighter::BlockSearch TDMatchLineHighlighter::_searchBlocks(const FileToRead &file,
                                                                          StringEncoding encoding,
                                                                          TDError &error,
                                                                          SearchContext &context)
{
    using Outcome = TextBlockReader::Outcome;
    TextBlockReader &reader = context.reader();
    _startAfresh({}, false);
    Outcome outcome = reader.open(file, encoding);
    if (outcome == Outcome::Block) {
        _startAfresh(reader.encoding(), reader.hadByteOrderMarker());
        outcome = _searchOpened(context, error);
    }
    if (error)
        return BlockSearch::Done;
    const bool isInDoubt = _state.hasExcessiveMatch() && !shouldStop();
    return outcome == Outcome::NeedsLineReader || isInDoubt ? BlockSearch::NeedsLineReader
                                                            : BlockSearch::Done;
}

TextBlockReader::Outcome TDMatchLineHighlighter::_searchOpened(SearchContext &context, TDError &error)
{
    using LineCount = MatchCollector::LineCount;
    TextBlockReader &reader = context.reader();
    MatchCollector collector(context, _state);
    qint64 lineNumber = 1;
    qint64 bytesRead = 0;
    QByteArrayView block;
    auto outcome = TextBlockReader::Outcome::Block;
    const auto isOver = [&] { return shouldStop() || error || _state.hasExcessiveMatch(); };
    while (!isOver() && (outcome = reader.nextBlock(block)) == TextBlockReader::Outcome::Block) {
        bytesRead += block.size();
        const auto count = reader.isAtEnd() ? LineCount::NotNeeded : LineCount::Needed;
        collector.searchBlock(block, lineNumber, count, error);
        if (bytesRead > LARGE_FILE && !reader.isAtEnd() && !isOver()) {
            _take(collector.take());
            return _searchRest(context, lineNumber, error);
        }
    }
    _take(collector.take());
    return outcome;
}

TextBlockReader::Outcome TDMatchLineHighlighter::_searchRest(SearchContext &context, qint64 lineNumber,
                                                             TDError &error)
{
    const auto receive = [this](FileMatches part) {
        part.encoding = _matches.encoding;
        _partReceiver(std::move(part));
    };
    LargeFileSearch search(context, _state, _matches, lineNumber, error);
    _matches.lines.clear();
    const TextBlockReader::Outcome outcome =
        search.run(_partReceiver ? receive : LargeFileSearch::PartReceiver());
    _take(search.takeRest());
    return outcome;
}

} // namespace tidemark
