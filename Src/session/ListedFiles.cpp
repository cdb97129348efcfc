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

/// Those that lead to one of the changed files.
QList<FilePath> changedAmong(const FindResultItems &files, const QList<FilePath> &gone,
                             const QSet<FilePath> &changed)
{
    ResolvedPaths resolved;
    QList<FilePath> paths;
    for (const auto &file : files) {
        if (changed.contains(resolved.resolving(file->path())))
            paths << file->path();
    }
    for (const FilePath &path : gone) {
        if (changed.contains(resolved.resolving(path)))
            paths << path;
    }
    return paths;
}

std::shared_ptr<FoundByPath> foundIn(const QList<FilePath> &paths, const SearchTerms &terms,
                                     const std::function<bool()> &shouldStop)
{
    QList<TDSearchLocation> locations(paths.size());
    for (qsizetype index = 0; index < paths.size(); ++index)
        locations[index].url = paths[index].toUrl();
    const auto found = std::make_shared<FoundByPath>();
    TDSearchEngine engine;
    engine.setDelegate(found);
    engine.setFindOptions(terms.options);
    QSemaphore ended;
    WorkerThreads thread(1);
    thread.start([&] {
        engine.startSearch(terms.findText, locations, terms.options.caseRule == CaseRule::Exact);
        ended.release();
    });
    while (!ended.tryAcquire(1, MILLISECONDS_BETWEEN_EVENTS)) {
        QCoreApplication::processEvents();
        if (shouldStop())
            engine.stopSearch();
    }
    return found;
}

} // namespace

std::optional<FindResultItems> ListedFiles::searchedAgain(FindResultItems files,
                                                          const QSet<FilePath> &changed,
                                                          const SearchTerms &terms,
                                                          const std::function<bool()> &shouldStop)
{
    const QList<FilePath> paths = changedAmong(files, _gone, changed);
    if (paths.isEmpty() || shouldStop())
        return {};
    const std::shared_ptr<FoundByPath> found = foundIn(paths, terms, shouldStop);
    const QSet<FilePath> searched(paths.begin(), paths.end());
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
