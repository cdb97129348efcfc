#include "search/FileSearch.h"

#include "foundation/TDFileCommon.h"
#include "matching/FoundLines.h"
#include "matching/SearchContext.h"
#include "reading/TDStringEncoding.h"

#include <sys/stat.h>
#include <utility>

namespace tidemark {

namespace {

std::optional<StringEncoding> chosenEncoding(const FileSearchTerms &terms, const FilePath &path)
{
    const auto chosen = terms.chosenEncodings.constFind(path);
    return chosen != terms.chosenEncodings.cend() ? std::optional(*chosen) : std::nullopt;
}

} // namespace

FileSearch::FileSearch(const FileSearchTerms &terms, const FileToRead &file, SearchContext &context,
                       const HandOverPart &handOver)
    : _terms(terms), _file(file), _context(context), _parts(file, terms.findText, context.reader(), handOver),
      _chosenEncoding(chosenEncoding(terms, file.path))
{
    _highlighter.setSearchShouldStop(&terms.shouldStop);
    _highlighter.setPartReceiver([this](FileMatches matches) {
        matches.encoding = _noteSource(matches.encoding);
        _parts.handOver(matches);
    });
}

std::shared_ptr<TDFindResultItem> FileSearch::run(TDError &error)
{
    const StringEncoding encoding =
        _chosenEncoding ? *_chosenEncoding : TDStringEncoding::userDefaultsEncoding();
    if (!_highlighter.processWithFile(_file, encoding, error, _context))
        return _failed(error);
    FileMatches matches = _highlighter.takeMatches();
    if (!_terms.shouldStop)
        return _found(std::move(matches), error);
    releaseLines(std::move(matches.lines));
    return nullptr;
}

std::shared_ptr<TDFindResultItem> FileSearch::_failed(TDError &error)
{
    if (error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR)) {
        if (_parts.areThere())
            _parts.takeBack();
        return nullptr;
    }
    if (!_parts.areThere() && _isFirstFailure())
        return _newFailure(_noteSource(_highlighter.matches().encoding), error);
    if (_parts.areThere())
        _parts.handOverFailure(error);
    error.clear();
    return nullptr;
}

std::shared_ptr<TDFindResultItem> FileSearch::_found(FileMatches matches, TDError &error)
{
    matches.encoding = _noteSource(matches.encoding);
    const TDError limitError = errorOfLimits(_file.path, matches.limitedLines);
    if (_parts.areThere()) {
        _parts.handOverRest(matches, limitError, _highlighter.wasSearchedAnew());
        return nullptr;
    }
    if (!matches.lines.isEmpty())
        return newFileNode(_file, _terms.findText, _highlighter.modificationDate(),
                           _highlighter.includesBOM(), matches, limitError);
    error = limitError;
    return error ? _newFailure(matches.encoding, error) : nullptr;
}

std::shared_ptr<TDFindResultItem> FileSearch::_newFailure(SettledEncoding encoding,
                                                          const TDError &error) const
{
    // As it was before the file was read.
    const std::optional<FileDate> known = _highlighter.modificationDate();
    const std::optional<FileDate> date = known ? known : TDFileCommon::fileModificationDate(_file.path);
    auto node = TDFindResultItem::initWithFailedFile(_file.path, date, error);
    node->setEncoding(encoding);
    return node;
}

SettledEncoding FileSearch::_noteSource(SettledEncoding encoding) const
{
    return _chosenEncoding ? SettledEncoding{encoding.encoding, EncodingSource::Chosen} : encoding;
}

/// What can't be opened never came to the gate.
bool FileSearch::_isFirstFailure() const
{
    struct stat status = {};
    return !_terms.searchedFiles.locationsOverlap() || ::stat(_file.path.cString(), &status) != 0 ||
           _terms.searchedFiles.admits(_file, status);
}

} // namespace tidemark
