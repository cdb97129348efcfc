#include "session/ListedFiles.h"

#include "foundation/WorkerThreads.h"
#include "replace/ResolvedPaths.h"
#include "replace/RewriteProblem.h"
#include "search/TDSearchEngine.h"

#include <QCoreApplication>
#include <QHash>
#include <QSemaphore>

#include <memory>
#include <utility>

namespace tidemark {

namespace {

constexpr int MILLISECONDS_BETWEEN_EVENTS = 10;

using FilesByPath = QHash<FilePath, std::shared_ptr<TDFindResultItem>>;

/// What a search finds, by path; taken when it has ended.
class FoundByPath : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override
    {
        files.insert(file->path(), file);
    }
    void didFinishSearch(quint64, quint64, quint64) override { isComplete = true; }

    FilesByPath files;
    bool isComplete = false;
};

QList<FilePath> pathsOf(const FindResultItems &files)
{
    QList<FilePath> paths;
    for (const auto &file : files)
        paths << file->path();
    return paths;
}

struct SearchedAgain
{
    QSet<FilePath> searched; ///< of the paths, those that lead to a changed file
    std::shared_ptr<FoundByPath> found = std::make_shared<FoundByPath>();
};

/// Tens of thousands of paths take a while to follow, too, so that isn't done on this thread either.
SearchedAgain searchedAmong(const QList<FilePath> &paths, const QSet<FilePath> &changed,
                            const SearchTerms &terms, const std::function<bool()> &shouldStop)
{
    SearchedAgain again;
    TDSearchEngine engine;
    engine.setDelegate(again.found);
    engine.setFindOptions(terms.options);
    QSemaphore ended;
    WorkerThreads thread(1);
    thread.start([&] {
        ResolvedPaths resolved;
        QList<TDSearchLocation> locations;
        for (const FilePath &path : paths) {
            if (!changed.contains(resolved.resolving(path)))
                continue;
            again.searched.insert(path);
            locations.emplaceBack().url = path.toUrl();
        }
        engine.startSearch(terms.findText, locations, terms.options.caseRule == CaseRule::Exact);
        ended.release();
    });
    while (!ended.tryAcquire(1, MILLISECONDS_BETWEEN_EVENTS)) {
        QCoreApplication::processEvents();
        if (shouldStop())
            engine.stopSearch();
    }
    return again;
}

} // namespace

std::optional<FindResultItems> ListedFiles::searchedAgain(FindResultItems files,
                                                          const QSet<FilePath> &changed,
                                                          const SearchTerms &terms,
                                                          const std::function<bool()> &shouldStop)
{
    if (changed.isEmpty() || shouldStop())
        return {};
    const auto [searched, found] = searchedAmong(pathsOf(files) + _gone, changed, terms, shouldStop);
    if (searched.isEmpty())
        return {};
    FindResultItems now;
    QList<FilePath> gone;
    for (auto &file : files) {
        if (!searched.contains(file->path())) {
            now << std::move(file);
        } else if (const auto again = found->files.take(file->path())) {
            now << again;
        } else if (found->isComplete) {
            gone << file->path();
        } else {
            file->setRemark(textOfProblem(RewriteProblem::Changed));
            now << std::move(file);
        }
    }
    for (const FilePath &path : std::as_const(_gone)) {
        if (const auto again = found->files.take(path))
            now << again;
        else
            gone << path;
    }
    _gone = gone;
    return now;
}

} // namespace tidemark
