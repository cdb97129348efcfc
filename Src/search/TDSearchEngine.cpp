#include "search/TDSearchEngine.h"

#include "foundation/TDFileCommon.h"
#include "reading/TDFileReader.h"
#include "reading/TDStringEncoding.h"
#include "search/Kind.h"

namespace tidemark {

namespace {

const QString UTI_PREFIX = QStringLiteral("uti:");

} // namespace

void TDSearchEngineDelegate::didFindFile(const FilePath &, quint64, quint64, quint64) {}
void TDSearchEngineDelegate::didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &) {}
void TDSearchEngineDelegate::errorOccured(const TDError &) {}
void TDSearchEngineDelegate::didFinishSearch(quint64, quint64, quint64) {}
void TDSearchEngineDelegate::didStopSearch(quint64, quint64, quint64) {}

TDSearchEngine::TDSearchEngine() = default;
TDSearchEngine::~TDSearchEngine() = default;

QStringList TDSearchEngine::_utisToInclude()
{
    QStringList identifiers;
    const QList<Kind> kinds = kindsInForce();
    for (const Kind &kind : kinds) {
        if (kind.include && kind.uti.startsWith(UTI_PREFIX))
            identifiers << kind.uti.sliced(UTI_PREFIX.size());
    }
    return identifiers;
}

QStringList TDSearchEngine::_patternsToInclude()
{
    QStringList patterns;
    const QList<Kind> kinds = kindsInForce();
    for (const Kind &kind : kinds) {
        if (kind.include && !kind.uti.startsWith(UTI_PREFIX))
            patterns << kind.uti;
    }
    return patterns;
}

void TDSearchEngine::startSearch(const QString &findText, const QList<TDSearchLocation> &searchLocations,
                                 bool caseSensitive)
{
    _findText = findText;
    _searchLocations = searchLocations;
    _caseSensitive = caseSensitive;
    _pattern = std::make_unique<TDFindPattern>(findText, caseSensitive ? CaseRule::Exact : CaseRule::Ignore);
    _scannedCount = _fileMatchCount = _matchCount = 0;
    _folderTraverser.setDelegate(this);
    _folderTraverser.setReportsSizes(false);
    _addScopes();
    // A stop that was asked for before the walk began has to count as well.
    if (_shouldStopSearch)
        _folderTraverser.stopTraversal();
    _folderTraverser.startTraversal();
}

void TDSearchEngine::_addScopes()
{
    const QStringList patterns = _patternsToInclude();
    _folderTraverser.setUtis(_utisToInclude());
    for (const TDSearchLocation &location : _searchLocations) {
        if (location.isFolder)
            _folderTraverser.addSearchScopeWithFolderPath(location.path(), location.includeSubFolders,
                                                          patterns, SymbolicLinkHandling::TakeNamedSkipFound);
        else
            _folderTraverser.addSearchScopeWithFilePath(location.path(),
                                                        SymbolicLinkHandling::TakeNamedSkipFound);
    }
}

void TDSearchEngine::stopSearch()
{
    _shouldStopSearch = true;
    _folderTraverser.stopTraversal();
}

void TDSearchEngine::didFindFile(const FilePath &path, quint64 scannedCount, int, qint64, qint64)
{
    ++_scannedCount;
    if (_delegate)
        _delegate->didFindFile(path, scannedCount, _fileMatchCount, _matchCount);
    TDError error;
    const std::shared_ptr<TDFindResultItem> file = searchFindTextInFile(path, error);
    if (error) {
        if (error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR)) {
            // Once only, also when the walk brings another file before it notices the stop.
            const bool alreadyStopped = _shouldStopSearch;
            stopSearch();
            if (_delegate && !alreadyStopped)
                _delegate->errorOccured(error);
        } else if (!_shouldStopSearch && _delegate) {
            _delegate->didFindMatchInFile(file);
        }
        return;
    }
    if (!file)
        return;
    ++_fileMatchCount;
    _matchCount += quint64(file->matchCount().value_or(0));
    if (_delegate)
        _delegate->didFindMatchInFile(file);
}

void TDSearchEngine::didFailToReadFolder(const FilePath &path, int errorNumber)
{
    if (_shouldStopSearch || !_delegate)
        return;
    _delegate->didFindMatchInFile(TDFindResultItem::initWithFailedFile(
        path, TDFileCommon::fileModificationDate(path), TDFileReader::openError(path, errorNumber)));
}

std::shared_ptr<TDFindResultItem> TDSearchEngine::searchFindTextInFile(const FilePath &path, TDError &error)
{
    const std::optional<FileDate> modificationDate = TDFileCommon::fileModificationDate(path);
    auto highlighter = std::make_shared<TDMatchLineHighlighter>();
    highlighter->setSearchShouldStop(&_shouldStopSearch);
    const bool searched =
        highlighter->processWithFile(path, TDStringEncoding::userDefaultsEncoding(), error, *_pattern);
    // The highlighter outlives the search, as it owns the match lines.
    highlighter->setSearchShouldStop(nullptr);
    if (!searched) {
        if (error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR))
            return nullptr;
        return TDFindResultItem::initWithFailedFile(path, modificationDate, error);
    }
    if (highlighter->matchLines().isEmpty())
        return nullptr;

    auto file = TDFindResultItem::initWithFile(path, modificationDate, _findText, highlighter->includesBOM());
    file->setMatchLineHighlighter(highlighter);
    FindResultItems children;
    children.reserve(highlighter->matchLines().size());
    for (const auto &matchLine : highlighter->matchLines())
        children << TDFindResultItem::initWithMatchLine(matchLine, file.get());
    file->setMatchLines(std::move(children));
    return file;
}

void TDSearchEngine::traversalFinished()
{
    if (_delegate)
        _delegate->didFinishSearch(_scannedCount, _fileMatchCount, _matchCount);
}

void TDSearchEngine::traversalStopped()
{
    if (_delegate)
        _delegate->didStopSearch(_scannedCount, _fileMatchCount, _matchCount);
}

} // namespace tidemark
