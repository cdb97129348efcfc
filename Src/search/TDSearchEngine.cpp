#include "search/TDSearchEngine.h"

#include "foundation/TDFileCommon.h"
#include "reading/TDFileReader.h"
#include "search/FileSearch.h"
#include "search/Kind.h"

#include <algorithm>
#include <sys/stat.h>
#include <utility>

namespace tidemark {

namespace {

const QString UTI_PREFIX = QStringLiteral("uti:");
const QString UTI_OF_ANY_FILE = QStringLiteral("public.item");

} // namespace

void TDSearchEngineDelegate::didFindFile(const FilePath &, quint64, quint64, quint64) {}
void TDSearchEngineDelegate::didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &) {}
void TDSearchEngineDelegate::didFindMoreInFile(const FoundPart &part)
{
    part.file->add(part);
}

void TDSearchEngineDelegate::errorOccured(const TDError &) {}
void TDSearchEngineDelegate::didLeaveOut(const LeftOut &) {}
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
    // The options are read here and nowhere below: a search is of one mind from its first file to its last.
    _pattern = std::make_unique<TDFindPattern>(
        findText, _options ? *_options : FindOptions::withUserDefaults(_caseRule()));
    _scannedCount = _fileMatchCount = _matchCount = 0;
    _searchedFiles.setLocationsOverlap(_locationsOverlap());
    _failedFolders.setLocationsOverlap(_searchedFiles.locationsOverlap());
    _listedInodes.reset();
    if (_canReadUnasked())
        _listedInodes.emplace();
    _folderTraverser.setDelegate(this);
    _folderTraverser.setReportsSizes(false);
    const EntryFilterOptions filterOptions =
        _searchesEverything ? EntryFilterOptions::everything() : EntryFilterOptions::withUserDefaults();
    _folderTraverser.setFilterOptions(filterOptions);
    _searchesHiddenFiles = filterOptions.searchesHiddenFiles;
    _addScopes();
    // A stop that was asked for before the walk began has to count as well.
    if (_shouldStopSearch)
        _folderTraverser.stopTraversal();
    _prepareThreads();
    _folderTraverser.startTraversal();
    _pipeline.reset();
    _context.reset();
    _lastFolder.reset();
    _lastFolderPath.clear();
    _lastFolderDevice.reset();
}

void TDSearchEngine::_prepareThreads()
{
    if (_threadCount == 1) {
        _context = std::make_unique<SearchContext>(*_pattern);
        return;
    }
    _pipeline = std::make_unique<SearchPipeline>(
        _threadCount > 0 ? TeamSize::fixed(_threadCount) : TeamSize::forThisMachine(), *_pattern,
        _shouldStopSearch,
        [this](const FileToRead &file, SearchContext &context, const HandOverPart &handOver, TDError &error) {
            return _searchFile(file, context, handOver, error);
        },
        SearchDelivery{[this](SearchJob &job) {
                           _announce(job);
                           _deliver(job);
                       },
                       [this](SearchJob &job, const FoundPart &part) { _deliverPart(job, part); }});
}

void TDSearchEngine::_addScopes()
{
    const QStringList patterns = _patternsToInclude();
    _folderTraverser.setUtis(_searchesEverything ? QStringList{UTI_OF_ANY_FILE} : _utisToInclude());
    for (const TDSearchLocation &location : _searchLocations) {
        if (location.isFolder)
            _folderTraverser.addSearchScopeWithFolderPath(location.path(), location.includeSubFolders,
                                                          patterns, SymbolicLinkHandling::TakeNamedSkipFound);
        else
            _folderTraverser.addSearchScopeWithFilePath(location.path(),
                                                        SymbolicLinkHandling::TakeNamedSkipFound);
    }
}

/// Whether one of them lies in another, or is the same.
bool TDSearchEngine::_locationsOverlap() const
{
    QByteArrayList paths;
    for (const TDSearchLocation &location : _searchLocations) {
        char *resolved = ::realpath(location.path().cString(), nullptr);
        if (resolved != nullptr)
            paths << QByteArray(resolved) + '/';
        std::free(resolved);
    }
    // What begins with a path follows it, with nothing else between.
    std::sort(paths.begin(), paths.end());
    return std::adjacent_find(paths.begin(), paths.end(),
                              [](const QByteArray &outer, const QByteArray &inner) {
                                  return inner.startsWith(outer) || outer == "//";
                              }) != paths.end();
}

void TDSearchEngine::stopSearch()
{
    _shouldStopSearch = true;
    _folderTraverser.stopTraversal();
}

void TDSearchEngine::didFindFile(const FilePath &path, quint64 scannedCount, int, qint64, qint64)
{
    SearchJob job;
    job.file.path = path;
    job.scannedCount = scannedCount;
    _take(std::move(job));
}

void TDSearchEngine::didFindFileInFolder(const FoundEntry &entry, const FilePath &path, quint64 scannedCount,
                                         int, qint64, qint64)
{
    SearchJob job;
    job.file.path = path;
    job.scannedCount = scannedCount;
    const QByteArrayView folderPath = QByteArrayView(path.bytes()).chopped(qsizetype(qstrlen(entry.name)));
    _comeToFolder(entry.folderDescriptor, folderPath);
    job.folder = _lastFolder;
    job.file.folderDescriptor = job.folder ? job.folder->descriptor() : entry.folderDescriptor;
    job.file.nameInFolder = folderPath.size();
    if (_lastFolderDevice && entry.inode)
        job.file.listed = _listedInodes->add(*_lastFolderDevice, *entry.inode);
    _take(std::move(job));
}

void TDSearchEngine::_take(SearchJob job)
{
    job.file.gate = &_searchedFiles;
    job.file.number = job.scannedCount;
    if (_pipeline) {
        const bool isInBorrowedFolder = job.file.folderDescriptor >= 0 && !job.folder;
        if (isInBorrowedFolder)
            _pipeline->searchAtOnce(std::move(job));
        else
            _pipeline->add(std::move(job));
        return;
    }
    _announce(job);
    const HandOverPart handOver = [&](const FoundPart &part) { _deliverPart(job, part); };
    if (job.folderErrorNumber == 0)
        job.result = _searchFile(job.file, *_context, handOver, job.error);
    _deliver(job);
}

/// What files that follow each other in a folder share.
void TDSearchEngine::_comeToFolder(int descriptor, QByteArrayView path)
{
    const bool isIn = _lastFolderPath == path;
    if (!isIn) {
        _lastFolderPath = path.toByteArray();
        _lastFolderDevice = _listedInodes ? _listedInodes->deviceOfFolder(descriptor) : std::nullopt;
    }
    if (!_pipeline || (isIn && _lastFolder))
        return;
    _lastFolder = SharedFolder::duplicate(descriptor);
    if (_lastFolder)
        return;
    _pipeline->giveBackFolders();
    _lastFolder = SharedFolder::duplicate(descriptor);
}

/// Not where files are told apart by more than their names, or somebody names one.
bool TDSearchEngine::_canReadUnasked() const
{
    const auto isFolder = [](const TDSearchLocation &location) { return location.isFolder; };
    return FileToRead::canOpenListed() && !_searchedFiles.locationsOverlap() &&
           std::all_of(_searchLocations.begin(), _searchLocations.end(), isFolder);
}

void TDSearchEngine::didRunOutOfDescriptors()
{
    _lastFolder.reset();
    if (_pipeline)
        _pipeline->finish();
}

void TDSearchEngine::willWalkScope()
{
    if (_pipeline)
        _pipeline->willWalkScope(_searchesHiddenFiles);
}

bool TDSearchEngine::readsFoldersAhead()
{
    return _pipeline && _pipeline->readsFoldersAhead();
}

void TDSearchEngine::didListFolder(const QByteArray &path, const QByteArrayList &foldersToCome)
{
    _pipeline->didListFolder(path, foldersToCome);
}

void TDSearchEngine::didFailToReadFolder(const FilePath &path, int errorNumber)
{
    SearchJob job;
    job.file.path = path;
    job.file.number = ++_folderNumber;
    struct stat status = {};
    if (_failedFolders.locationsOverlap() && ::stat(path.cString(), &status) == 0 &&
        !_failedFolders.admits(job.file, status))
        return;
    job.folderErrorNumber = errorNumber;
    job.error = TDFileReader::openError(path, errorNumber);
    job.result =
        TDFindResultItem::initWithFailedFile(path, TDFileCommon::fileModificationDate(path), job.error);
    _take(std::move(job));
}

void TDSearchEngine::didLeaveOut(const LeftOut &leftOut)
{
    _leftOut = leftOut;
}

/// Once for each file.
void TDSearchEngine::_announce(SearchJob &job)
{
    if (job.folderErrorNumber != 0 || std::exchange(job.isAnnounced, true))
        return;
    ++_scannedCount;
    if (_delegate)
        _delegate->didFindFile(job.file.path, job.scannedCount, _fileMatchCount, _matchCount);
}

void TDSearchEngine::_tellWhatWasLeftOut()
{
    _leftOut[LeftOutReason::FoundBefore] = _foundBeforeCount;
    _leftOut[LeftOutReason::Unreadable] = _unreadableCount;
    if (_delegate)
        _delegate->didLeaveOut(_leftOut);
}

bool TDSearchEngine::_isFoundBefore(const SearchJob &job)
{
    const FileToRead &file = job.file;
    if (job.folderErrorNumber != 0)
        return false;
    if (_searchedFiles.isKnownByAnotherPath(file.number))
        return true;
    return file.listed && file.listed->otherPath == ListedInode::OtherPath::Listed &&
           _searchedFiles.isInDoubt(file.number) && _listedInodes->isRead(*file.listed);
}

void TDSearchEngine::_deliver(const SearchJob &job)
{
    if (_isFoundBefore(job)) {
        --_scannedCount;
        ++_foundBeforeCount;
    } else if (job.error) {
        _deliverError(job);
    } else if (job.result && !_shouldStopSearch) {
        ++_fileMatchCount;
        _countFound(*job.result->matches());
        if (_delegate)
            _delegate->didFindMatchInFile(job.result);
    }
    if (job.file.listed && !_searchedFiles.isUnopened(job.file.number))
        _listedInodes->setRead(*job.file.listed);
}

quint64 TDSearchEngine::_countFound(const FileMatches &matches)
{
    const quint64 count = matches.count();
    _matchCount += count;
    if (_pattern->options().mode == SearchMode::RegularExpression && matches.areBeyondAscii)
        _matchesMayBeShifted = true;
    return count;
}

void TDSearchEngine::_deliverPart(SearchJob &job, const FoundPart &part)
{
    _announce(job);
    if (_shouldStopSearch || _isFoundBefore(job))
        return;
    if (part.kind != FoundPart::Kind::More) {
        const bool isFirst = part.kind == FoundPart::Kind::First;
        _matchCount -= isFirst ? 0 : _matchesInParts;
        _matchesInParts = 0;
        _fileMatchCount += isFirst ? 1 : 0;
        if (!part.matches) {
            --_fileMatchCount;
            _unreadableCount += part.children.isEmpty() ? 0 : 1;
        }
    }
    if (part.matches)
        _matchesInParts += _countFound(*part.matches);
    if (_delegate && part.kind == FoundPart::Kind::First)
        _delegate->didFindMatchInFile(part.file);
    else if (_delegate)
        _delegate->didFindMoreInFile(part);
}

void TDSearchEngine::_deliverError(const SearchJob &job)
{
    if (_shouldStopSearch)
        return;
    ++_unreadableCount;
    if (job.error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR)) {
        stopSearch();
        if (_delegate)
            _delegate->errorOccured(job.error);
    } else if (_delegate) {
        _delegate->didFindMatchInFile(job.result);
    }
}

std::shared_ptr<TDFindResultItem> TDSearchEngine::searchFindTextInFile(const FilePath &path, TDError &error)
{
    const TDFindPattern pattern(_findText, FindOptions::withUserDefaults(_caseRule()));
    SearchContext context(pattern);
    std::shared_ptr<TDFindResultItem> first;
    const HandOverPart handOver = [&first](const FoundPart &part) {
        first = part.file;
        first->add(part);
    };
    const auto item = _searchFile(FileToRead{path}, context, handOver, error);
    return item || error ? item : first;
}

std::shared_ptr<TDFindResultItem> TDSearchEngine::_searchFile(const FileToRead &file, SearchContext &context,
                                                              const HandOverPart &handOver, TDError &error)
{
    const FileSearchTerms terms{_findText, _chosenEncodings, _searchedFiles, _shouldStopSearch};
    return FileSearch(terms, file, context, handOver).run(error);
}

void TDSearchEngine::traversalFinished()
{
    if (_pipeline)
        _pipeline->finish();
    // A stop can still come, or an expression show itself as faulty, while the last files are searched.
    if (_shouldStopSearch) {
        traversalStopped();
    } else if (_delegate) {
        _tellWhatWasLeftOut();
        _delegate->didFinishSearch(_scannedCount, _fileMatchCount, _matchCount);
    }
}

void TDSearchEngine::traversalStopped()
{
    if (!_delegate)
        return;
    _tellWhatWasLeftOut();
    _delegate->didStopSearch(_scannedCount, _fileMatchCount, _matchCount);
}

} // namespace tidemark
