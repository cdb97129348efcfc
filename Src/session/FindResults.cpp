#include "session/FindResults.h"

#include "foundation/WorkerThreads.h"
#include "session/ResultsFilter.h"

#include <QSet>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <numeric>
#include <utility>

namespace tidemark {

namespace {

/// Each run renumbers what is behind it.
constexpr qsizetype MOST_SINGLE_RUNS = 32;
constexpr qsizetype LINES_FOR_ONE_THREAD = 1 << 14;

std::atomic<bool> releasingHasStopped = false;

void keepUntilTheEnd(FindResultItems nodes)
{
    // Never destroyed, so that the nodes aren't either.
    static auto *const kept = new std::deque<FindResultItems>;
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    if (!nodes.isEmpty())
        kept->push_back(std::move(nodes));
}

/// Side by side where they are many.
void setLines(const QList<FileWithLines> &files)
{
    const qsizetype lines =
        std::accumulate(files.begin(), files.end(), qsizetype(0),
                        [](qsizetype sum, const FileWithLines &file) { return sum + file.lines.size(); });
    doInParallel(lines > LINES_FOR_ONE_THREAD ? processorCount() : 1, size_t(files.size()),
                 [&](size_t index) { files[index].file->setChildren(files[index].lines); });
}

} // namespace

FindResultItems filesAndLines(const FindResultItems &files)
{
    FindResultItems nodes;
    qsizetype count = files.size();
    for (const auto &file : files)
        count += file->children().size();
    nodes.reserve(count);
    for (const auto &file : files) {
        nodes << file;
        nodes << file->children();
    }
    return nodes;
}

void releaseInBackground(FindResultItems nodes)
{
    if (nodes.isEmpty())
        return;
    QThreadPool::globalInstance()->start([released = std::move(nodes)]() mutable {
        while (!released.isEmpty() && !releasingHasStopped)
            released.removeLast();
        keepUntilTheEnd(std::move(released));
    });
}

void stopReleasing()
{
    releasingHasStopped = true;
}

FindResults::~FindResults()
{
    releaseInBackground(std::exchange(_all, {}));
    for (FindResultItems &lines : _allLines)
        releaseInBackground(std::move(lines));
    releaseInBackground(std::exchange(_files, {}));
}

void FindResults::clear()
{
    Q_EMIT aboutToClear();
    FindResultItems old = std::exchange(_files, {});
    old << std::exchange(_all, {});
    for (const FindResultItems &lines : std::exchange(_allLines, {}))
        old << lines;
    Q_EMIT cleared();
    Q_EMIT counted();
    releaseInBackground(std::move(old));
}

void FindResults::append(const FindResultItems &files)
{
    if (files.isEmpty())
        return;
    const FindResultItems shown = _filter ? _filtered(files) : files;
    if (_filter)
        _all << files;
    const qsizetype first = _files.size();
    if (!shown.isEmpty()) {
        Q_EMIT aboutToAppend(first, shown.size());
        _files << shown;
        for (qsizetype position = first; position < _files.size(); ++position)
            _files[position]->setPosition(position);
        Q_EMIT appended(first, shown.size());
    }
    Q_EMIT counted();
}

void FindResults::add(FoundPart part)
{
    if (!_filter)
        _grow(std::move(part));
    // Looked for from the end, where the search is.
    else if (_all.lastIndexOf(part.file) >= 0)
        _growWhileFiltered(part);
    Q_EMIT counted();
}

void FindResults::_grow(FoundPart part)
{
    TDFindResultItem &file = *part.file;
    if (!shows(file))
        return;
    if (part.kind == FoundPart::Kind::Instead && !file.children().isEmpty())
        _removeRuns({{&file, 0, file.children().size()}});
    if (part.children.isEmpty()) {
        if (file.children().isEmpty())
            _removeRuns({{nullptr, file.position(), 1}});
        return;
    }
    Q_EMIT aboutToGrow(&file, file.children().size(), part.children.size());
    file.add(std::move(part));
    Q_EMIT grown(&file);
}

void FindResults::_growWhileFiltered(const FoundPart &part)
{
    TDFindResultItem &file = *part.file;
    const bool isMore = part.kind == FoundPart::Kind::More;
    const auto shown = isMore ? _filter->shownLines({{part.file, part.children}}).front() : std::nullopt;
    const bool hasNothingToShow = shown && shown->isEmpty();
    if (!isMore || (!shows(file) && !hasNothingToShow)) {
        // Files come or go in the middle of what shows, which is rare.
        const auto filter = _filter;
        setFilter(nullptr);
        _grow(part);
        setFilter(filter);
        return;
    }
    if (shown && shows(file) && !_allLines.contains(&file))
        _allLines.insert(&file, file.children());
    if (const auto lines = _allLines.find(&file); lines != _allLines.end())
        *lines << part.children;
    FoundPart visible = part;
    if (shown && shows(file))
        visible.children = *shown;
    if (shows(file) && !hasNothingToShow)
        _grow(visible);
    else
        file.add(visible);
}

// -- What shows

bool FindResults::shows(const TDFindResultItem &node) const
{
    const TDFindResultItem *file = node.parent() != nullptr ? node.parent() : &node;
    if (_files.value(file->position()).get() != file)
        return false;
    return file == &node || file->children().value(node.position()).get() == &node;
}

bool FindResults::isLast(const TDFindResultItem &file) const
{
    const FindResultItems &all = _filter ? _all : _files;
    return !all.isEmpty() && all.constLast().get() == &file;
}

void FindResults::setFilter(std::shared_ptr<const ResultsFilter> filter)
{
    Q_EMIT aboutToFilter();
    const FindResultItems all = _filter ? _all : _files;
    _filter = std::move(filter);
    _all = _filter ? all : FindResultItems();
    _setSiblings(nullptr, _filtered(all));
    Q_EMIT filtered();
    Q_EMIT counted();
}

/// Those of the files that show, each with those of its lines that do.
FindResultItems FindResults::_filtered(const FindResultItems &files)
{
    QList<FileWithLines> all;
    all.reserve(files.size());
    for (const auto &file : files)
        all << FileWithLines{file, _linesOf(file)};
    const auto parts = _filter ? _filter->shownLines(all) : ShownLines(size_t(all.size()));
    FindResultItems shown;
    shown.reserve(files.size());
    QList<FileWithLines> changed;
    for (qsizetype index = 0; index < all.size(); ++index) {
        const auto &[file, lines] = all[index];
        const std::optional<FindResultItems> &part = parts[size_t(index)];
        const bool showsInPart = part && !part->isEmpty();
        if (!part || showsInPart)
            shown << file;
        if (showsInPart)
            changed << FileWithLines{file, *part};
        else if (_allLines.contains(file.get()))
            changed << FileWithLines{file, lines};
        if (showsInPart)
            _allLines.insert(file.get(), lines);
        else
            _allLines.remove(file.get());
    }
    setLines(changed);
    return shown;
}

/// Hidden ones, too.
FindResultItems FindResults::_linesOf(const std::shared_ptr<TDFindResultItem> &file) const
{
    const auto lines = _allLines.constFind(file.get());
    return lines != _allLines.cend() ? *lines : file->children();
}

/// What is removed of a filtered list is removed from everything; what is hidden stays.
class FindResults::HiddenLines
{
public:
    HiddenLines(FindResults &results, const FindResultItems &nodes) : _results(results)
    {
        for (const auto &node : nodes) {
            if (!results._filter || !results.shows(*node))
                continue;
            const bool isFile = node->parent() == nullptr;
            TDFindResultItem *file = isFile ? node.get() : node->parent();
            if (!results._allLines.contains(file)) {
                if (isFile)
                    _goneFiles.insert(file);
                continue;
            }
            _touched.insert(file);
            const FindResultItems gone = isFile ? file->children() : FindResultItems{node};
            for (const auto &line : gone)
                _goneLines.insert(line.get());
        }
    }

    void update()
    {
        for (TDFindResultItem *file : std::as_const(_touched))
            _updateFile(*file);
        if (!_goneFiles.isEmpty())
            _results._all.removeIf([this](const auto &file) { return _goneFiles.contains(file.get()); });
    }

private:
    void _updateFile(TDFindResultItem &file)
    {
        FindResultItems &lines = _results._allLines[&file];
        lines.removeIf([this](const auto &line) { return _goneLines.contains(line.get()); });
        if (_results.shows(file))
            return;
        // Nothing of it shows any more.
        file.setChildren(lines);
        _results._allLines.remove(&file);
    }

    FindResults &_results;
    QSet<const TDFindResultItem *> _goneFiles;
    QSet<const TDFindResultItem *> _goneLines;
    QSet<TDFindResultItem *> _touched;
};

// -- Removing

void FindResults::remove(const FindResultItems &nodes)
{
    const QList<Removal> removals = _removals(nodes);
    HiddenLines hidden(*this, nodes);
    if (removals.size() > MOST_SINGLE_RUNS)
        _thinOut(removals);
    else
        _removeRuns(removals);
    hidden.update();
    Q_EMIT counted();
}

QList<FindResults::Removal> FindResults::_removals(const FindResultItems &nodes) const
{
    QSet<const TDFindResultItem *> chosen;
    chosen.reserve(nodes.size());
    for (const auto &node : nodes)
        chosen.insert(node.get());

    QList<Removal> removals;
    // From the last to the first, so that the positions of the runs still to come hold.
    const auto addRuns = [&chosen, &removals](TDFindResultItem *parent, const FindResultItems &siblings) {
        for (qsizetype end = siblings.size(); end > 0; --end) {
            if (!chosen.contains(siblings[end - 1].get()))
                continue;
            qsizetype first = end - 1;
            while (first > 0 && chosen.contains(siblings[first - 1].get()))
                --first;
            removals << Removal{parent, first, end - first};
            end = first + 1;
        }
    };
    QSet<const TDFindResultItem *> filesWithRemovedLines;
    for (const auto &node : nodes)
        filesWithRemovedLines.insert(node->parent());
    for (auto file = _files.crbegin(); file != _files.crend(); ++file) {
        if (filesWithRemovedLines.contains(file->get()) && !chosen.contains(file->get()))
            addRuns(file->get(), (*file)->children());
    }
    addRuns(nullptr, _files);
    return removals;
}

void FindResults::replaceFiles(const Replacements &replacements)
{
    FindResultItems files;
    files.reserve(_files.size());
    for (const auto &file : std::as_const(_files)) {
        const auto instead = replacements.constFind(file.get());
        const std::shared_ptr<TDFindResultItem> &kept = instead == replacements.cend() ? file : *instead;
        if (kept)
            files << kept;
    }
    Q_EMIT aboutToThinOut();
    _setSiblings(nullptr, std::move(files));
    Q_EMIT thinnedOut();
}

FindResultItems FindResults::_siblings(const TDFindResultItem *parent) const
{
    return parent != nullptr ? parent->children() : _files;
}

void FindResults::_setSiblings(TDFindResultItem *parent, FindResultItems siblings)
{
    if (parent != nullptr) {
        parent->setChildren(std::move(siblings));
        return;
    }
    _files = std::move(siblings);
    for (qsizetype position = 0; position < _files.size(); ++position)
        _files[position]->setPosition(position);
}

void FindResults::_removeRuns(const QList<Removal> &removals)
{
    for (const Removal &removal : removals) {
        Q_EMIT aboutToRemove(removal.parent, removal.first, removal.count);
        FindResultItems siblings = _siblings(removal.parent);
        siblings.remove(removal.first, removal.count);
        _setSiblings(removal.parent, std::move(siblings));
        Q_EMIT removed(removal.parent, removal.first, removal.count);
    }
}

void FindResults::_thinOut(const QList<Removal> &removals)
{
    Q_EMIT aboutToThinOut();
    for (qsizetype index = 0; index < removals.size();) {
        TDFindResultItem *parent = removals[index].parent;
        FindResultItems siblings = _siblings(parent);
        for (; index < removals.size() && removals[index].parent == parent; ++index) {
            const auto first = siblings.begin() + removals[index].first;
            std::fill(first, first + removals[index].count, nullptr);
        }
        siblings.removeIf([](const auto &item) { return item == nullptr; });
        _setSiblings(parent, std::move(siblings));
    }
    Q_EMIT thinnedOut();
}

} // namespace tidemark
