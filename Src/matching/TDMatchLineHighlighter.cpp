#include "matching/TDMatchLineHighlighter.h"

#include "foundation/CharacterSets.h"
#include "foundation/LocalizedText.h"
#include "reading/TDFileReader.h"

namespace tidemark {

namespace {

TDError excessiveLineError(const FilePath &path)
{
    return TDError::initalizePresentErrorWithCode(
        TD_ERROR_CODE_TD_FILE_READER_FILE_OPEN_ERROR,
        formatted(localizedString("Sorry, it was not possible to search file ‘%@’."), {path.displayText()}),
        localizedString("Search results cannot be shown and replacements will not occur for this file as it "
                        "contains lines of excessive length."));
}

} // namespace

bool TDMatchLineHighlighter::processWithFile(const FilePath &path, StringEncoding encoding, TDError &error,
                                             bool ignoreCase, const QString &matchPattern)
{
    const TDFindPattern pattern(matchPattern, ignoreCase ? CaseRule::Ignore : CaseRule::Exact);
    return processWithFile(path, encoding, error, pattern);
}

bool TDMatchLineHighlighter::processWithFile(const FilePath &path, StringEncoding encoding, TDError &error,
                                             const TDFindPattern &pattern)
{
    _shouldStop = false;
    const std::unique_ptr<TDFileReader> reader = TDFileReader::fileReaderWithFile(path, encoding, error);
    if (!reader)
        return false;
    _includesBOM = reader->hadByteOrderMarker();
    _matchLines.clear();
    _hasExcessiveLines = false;

    _searchLines(*reader, pattern, error);
    const bool isExpressionFault = error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR);
    if (!isExpressionFault && !_matchLines.isEmpty() && _hasExcessiveLines)
        error = excessiveLineError(path);
    TDError closingError;
    const bool closed = reader->closeFile(closingError);
    if (error)
        return false;
    if (!closed) {
        error = closingError;
        return false;
    }
    if (shouldStop())
        _matchLines.clear();
    return true;
}

TextRange TDMatchLineHighlighter::firstRangeOfPatternInString(const QString &line, const QString &pattern,
                                                              CaseRule caseRule, TextRange searchRange,
                                                              TDError &error)
{
    return TDFindPattern::Line(TDFindPattern(pattern, caseRule), line).firstRange(searchRange, error);
}

void TDMatchLineHighlighter::_searchLines(TDFileReader &reader, const TDFindPattern &pattern, TDError &error)
{
    qint64 lineNumber = 1;
    while (const std::optional<QString> line = reader.getNextLineWithEOLCharacters(true, error)) {
        if (line->size() > TD_LONGEST_LINE)
            _hasExcessiveLines = true;
        if (shouldStop())
            return;
        _searchLine(*line, lineNumber, pattern, error);
        if (error)
            return;
        ++lineNumber;
    }
}

void TDMatchLineHighlighter::_searchLine(const QString &line, qint64 lineNumber, const TDFindPattern &pattern,
                                         TDError &error)
{
    // Line ends aren't searched. The length is that of the trimmed line, but it is applied from the first
    // character on, so on a line that begins with line-break characters the last ones are left out.
    const qint64 end = rangeWithoutNewlinesAtEnds(line).length;
    TDFindPattern::Line search(pattern, line);
    std::shared_ptr<TDMatchLine> matchLine;
    qint64 start = 0;
    while (start <= end && !shouldStop()) {
        const TextRange found = search.firstRange({start, end - start}, error);
        if (error || !found.isFound())
            return;
        if (!matchLine) {
            matchLine = std::make_shared<TDMatchLine>();
            matchLine->setLineNumber(lineNumber);
            matchLine->setMatchLineString(line);
            matchLine->setSavedLineString(line);
            _matchLines.append(matchLine);
        }
        matchLine->appendMatchRange(found);
        if (found.end() == end)
            return;
        // Behind an empty match the search would find it again for ever.
        start = found.end() + (found.length == 0 ? 1 : 0);
    }
}

} // namespace tidemark
