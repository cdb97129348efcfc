#pragma once

#include "foundation/FilePath.h"
#include "foundation/TDError.h"
#include "matching/SearchContext.h"
#include "matching/TDFindResultItem.h"
#include "search/ListedInodes.h"
#include "search/SearchPipeline.h"
#include "search/SearchedFiles.h"
#include "search/TDSearchLocation.h"
#include "search/VKFolderTraverser.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <optional>

namespace tidemark {

/// Receives what a search finds, always on the thread that called startSearch(). Each message is optional.
class TDSearchEngineDelegate
{
public:
    virtual ~TDSearchEngineDelegate() = default;

    /// Once for each file, before what was found in it: the traverser's count of files, and the engine's
    /// counts so far.
    virtual void didFindFile(const FilePath &path, quint64 scannedCount, quint64 fileMatchCount,
                             quint64 matchCount);
    /// A file node with its match lines, after it was counted; or one whose child is an error, which isn't.
    /// Of a large file it may be the first part of the lines, and the others follow before anything else.
    virtual void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file);
    /// A further part, which is added to the file's node unless whoever overrides this does so.
    virtual void didFindMoreInFile(const FoundPart &part);
    /// The find text is a faulty regular expression; the search has been stopped already.
    virtual void errorOccured(const TDError &error);
    /// Once, before the end: what of the folders walked so far wasn't searched.
    virtual void didLeaveOut(const LeftOut &leftOut);
    /// Exactly one of these two ends every search.
    virtual void didFinishSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount);
    virtual void didStopSearch(quint64 scannedCount, quint64 fileMatchCount, quint64 matchCount);
};

/// Runs one search, on the thread that starts it. Made anew for every search.
class TDSearchEngine : private VKFolderTraverserDelegate
{
public:
    TDSearchEngine();
    ~TDSearchEngine() override;

    /// Kept alive by the engine; whoever holds both lets go of the engine to end that.
    void setDelegate(std::shared_ptr<TDSearchEngineDelegate> delegate) { _delegate = std::move(delegate); }

    /// How many threads search, the calling one included; 1 searches each file in its turn, between its two
    /// messages, more of them read ahead. 0, the default: as many as the machine has cores, but at least two,
    /// and more while they wait for the disk.
    void setThreadCount(int threads) { _threadCount = threads; }

    /// How the find text is read, whatever the settings say.
    void setFindOptions(const FindOptions &options) { _options = options; }

    /// Whether what the settings leave out is searched nevertheless, of any kind.
    void setSearchesEverything(bool everything) { _searchesEverything = everything; }

    /// In what files are read whatever they say of themselves, by their paths as the walk gives them.
    void setChosenEncodings(const QHash<FilePath, StringEncoding> &encodings)
    {
        _chosenEncodings = encodings;
    }

    /// Searches every location in order and returns when the search has finished or was stopped. What folders
    /// hold is filtered by the kinds in force; a location that is itself a file is searched whatever its
    /// kind. A file is searched once, under the first path that leads to it. How the find text is read and
    /// what is left out is taken from the settings once, at the start. Callable from one thread, once at a
    /// time.
    void startSearch(const QString &findText, const QList<TDSearchLocation> &searchLocations,
                     bool caseSensitive);
    /// From any thread: the file being searched is abandoned, and nothing more is delivered but the end.
    void stopSearch();

    /// Whether, of what was delivered so far, lines hold characters on which positions of bytes and those of
    /// characters part. From any thread.
    bool matchesMayBeShifted() const { return _matchesMayBeShifted; }

    /// Searches one file. A file node; nothing when there is no match. On a failure the error is set, and the
    /// node returned tells it, but for a faulty expression, for which there is none.
    std::shared_ptr<TDFindResultItem> searchFindTextInFile(const FilePath &path, TDError &error);

    // What startSearch() was given; to be set by hand only to search single files without it.
    const QString &findText() const { return _findText; }
    void setFindText(const QString &findText) { _findText = findText; }
    void setCaseSensitive(bool caseSensitive) { _caseSensitive = caseSensitive; }
    const QList<TDSearchLocation> &searchLocations() const { return _searchLocations; }
    bool caseSensitive() const { return _caseSensitive; }

    /// The filters in force, from the kinds that are included, in their order.
    static QStringList _utisToInclude();
    static QStringList _patternsToInclude();

private:
    void didFindFile(const FilePath &path, quint64 scannedCount, int level, qint64 size,
                     qint64 sizeOnDisk) override;
    void didFindFileInFolder(const FoundEntry &entry, const FilePath &path, quint64 scannedCount, int level,
                             qint64 size, qint64 sizeOnDisk) override;
    void didFailToReadFolder(const FilePath &path, int errorNumber) override;
    void didRunOutOfDescriptors() override;
    void willWalkScope() override;
    bool readsFoldersAhead() override;
    void didListFolder(const QByteArray &path, const QByteArrayList &foldersToCome) override;
    void didLeaveOut(const LeftOut &leftOut) override;
    void traversalFinished() override;
    void traversalStopped() override;

    void _addScopes();
    bool _locationsOverlap() const;
    bool _canReadUnasked() const;
    void _comeToFolder(int descriptor, QByteArrayView path);
    void _prepareThreads();
    CaseRule _caseRule() const { return _caseSensitive ? CaseRule::Exact : CaseRule::Ignore; }
    std::shared_ptr<TDFindResultItem> _searchFile(const FileToRead &file, SearchContext &context,
                                                  const HandOverPart &handOver, TDError &error);
    void _take(SearchJob job);
    void _announce(SearchJob &job);
    void _deliver(const SearchJob &job);
    void _deliverPart(SearchJob &job, const FoundPart &part);
    quint64 _countFound(const FileMatches &matches);
    bool _isFoundBefore(const SearchJob &job);
    void _tellWhatWasLeftOut();
    void _deliverError(const SearchJob &job);

    std::shared_ptr<TDSearchEngineDelegate> _delegate;
    QString _findText;
    QList<TDSearchLocation> _searchLocations;
    bool _caseSensitive = false;
    std::optional<FindOptions> _options;
    QHash<FilePath, StringEncoding> _chosenEncodings; ///< constant while a search runs
    std::unique_ptr<TDFindPattern> _pattern;
    VKFolderTraverser _folderTraverser;
    std::atomic<bool> _shouldStopSearch = false;
    std::atomic<bool> _matchesMayBeShifted = false;
    /// Exactly one of the two exists while a search runs.
    std::unique_ptr<SearchPipeline> _pipeline;
    std::unique_ptr<SearchContext> _context;
    QByteArray _lastFolderPath;
    std::shared_ptr<SharedFolder> _lastFolder;
    std::optional<dev_t> _lastFolderDevice;    ///< none where its files are asked for their status first
    std::optional<ListedInodes> _listedInodes; ///< none where all files are
    int _threadCount = 0;
    bool _searchesEverything = false;
    bool _searchesHiddenFiles = false;
    LeftOut _leftOut; ///< but for what the engine itself leaves out
    quint64 _foundBeforeCount = 0;
    quint64 _unreadableCount = 0;
    SearchedFiles _searchedFiles;
    SearchedFiles _failedFolders;
    quint64 _folderNumber = 0;
    quint64 _scannedCount = 0;
    quint64 _fileMatchCount = 0;
    quint64 _matchCount = 0;
    quint64 _matchesInParts = 0; ///< of the file that is delivered in parts
};

} // namespace tidemark
