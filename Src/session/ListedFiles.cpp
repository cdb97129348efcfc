#include "session/ListedFiles.h"

#include "foundation/UserDefaults.h"
#include "replace/ResolvedPaths.h"
#include "search/TDSearchEngine.h"
#include "session/FindResults.h"

#include <QHash>

#include <memory>

namespace tidemark {

namespace {

/// What a search finds, by path.
class FoundByPath : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override
    {
        files.insert(file->path(), file);
    }

    QHash<FilePath, std::shared_ptr<TDFindResultItem>> files;
};

/// Those that a filter hides are listed as well.
class EverythingShows
{
public:
    explicit EverythingShows(FindResults &results) : _results(results), _filter(results.filter())
    {
        if (_filter)
            _results.setFilter(nullptr);
    }
    ~EverythingShows()
    {
        if (_filter)
            _results.setFilter(_filter);
    }
    EverythingShows(const EverythingShows &) = delete;
    EverythingShows &operator=(const EverythingShows &) = delete;

private:
    FindResults &_results;
    const std::shared_ptr<const ResultsFilter> _filter;
};

} // namespace

void searchListedFilesAgain(FindResults &results, const QSet<FilePath> &changed, const QString &findText)
{
    const EverythingShows everythingShows(results);
    ResolvedPaths resolved;
    QList<TDSearchLocation> locations;
    QSet<FilePath> searched;
    for (const auto &file : results.files()) {
        if (!changed.contains(resolved.resolving(file->path())))
            continue;
        TDSearchLocation location;
        location.url = file->path().toUrl();
        locations << location;
        searched.insert(file->path());
    }
    if (locations.isEmpty())
        return;
    const auto found = std::make_shared<FoundByPath>();
    TDSearchEngine engine;
    engine.setDelegate(found);
    engine.startSearch(findText, locations,
                       !UserDefaults::standard().boolForKey(TD_USER_DEFAULTS_NAME_IGNORE_CASE));
    FindResultItems files;
    for (const auto &file : results.files()) {
        const auto again = searched.contains(file->path()) ? found->files.value(file->path()) : file;
        if (again)
            files << again;
    }
    results.clear();
    results.append(files);
}

} // namespace tidemark
