#include "session/FindResults.h"

#include <QSet>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

namespace tidemark {

namespace {

/// Each run renumbers what is behind it.
constexpr qsizetype MOST_SINGLE_RUNS = 32;

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

} // namespace

FindResultItems filesAndLines(const FindResultItems &files)
{
    FindResultItems nodes;
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
    releaseInBackground(std::exchange(_files, {}));
}

void FindResults::clear()
{
    Q_EMIT aboutToClear();
    FindResultItems old = std::exchange(_files, {});
    Q_EMIT cleared();
    releaseInBackground(std::move(old));
}

void FindResults::append(const FindResultItems &files)
{
    if (files.isEmpty())
        return;
    const qsizetype first = _files.size();
    Q_EMIT aboutToAppend(first, files.size());
    _files << files;
    for (qsizetype position = first; position < _files.size(); ++position)
        _files[position]->setPosition(position);
    Q_EMIT appended(first, files.size());
}

void FindResults::remove(const FindResultItems &nodes)
{
    const QList<Removal> removals = _removals(nodes);
    if (removals.size() > MOST_SINGLE_RUNS)
        _thinOut(removals);
    else
        _removeRuns(removals);
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
