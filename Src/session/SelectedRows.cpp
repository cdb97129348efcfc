#include "session/SelectedRows.h"

#include "matching/TDFindResultItem.h"

#include <algorithm>
#include <iterator>

namespace tidemark {

namespace {

using Runs = SelectedRows::Runs;

void addRun(Runs &runs, int first, int last)
{
    auto run = runs.upper_bound(first);
    if (run != runs.begin() && std::prev(run)->second >= first - 1)
        --run;
    while (run != runs.end() && run->first <= last + 1) {
        first = std::min(first, run->first);
        last = std::max(last, run->second);
        run = runs.erase(run);
    }
    runs.emplace_hint(run, first, last);
}

void removeRun(Runs &runs, int first, int last)
{
    auto run = runs.upper_bound(first);
    if (run != runs.begin() && std::prev(run)->second >= first)
        --run;
    while (run != runs.end() && run->first <= last) {
        const auto [runFirst, runLast] = *run;
        run = runs.erase(run);
        if (runFirst < first)
            runs.emplace(runFirst, first - 1);
        if (runLast > last)
            runs.emplace(last + 1, runLast);
    }
}

} // namespace

bool SelectedRows::contains(const TDFindResultItem &item) const
{
    if (item.parent() == nullptr)
        return _files.contains(&item);
    const auto runs = _lines.constFind(item.parent());
    if (runs == _lines.cend())
        return false;
    const int line = int(item.position());
    const auto behind = runs->upper_bound(line);
    return behind != runs->begin() && std::prev(behind)->second >= line;
}

void SelectedRows::addLines(const TDFindResultItem *file, int first, int last)
{
    if (first <= last)
        addRun(_lines[file], first, last);
}

void SelectedRows::add(const SelectedRows &others)
{
    _files.unite(others._files);
    for (auto lines = others._lines.cbegin(); lines != others._lines.cend(); ++lines) {
        for (const auto &[first, last] : *lines)
            addRun(_lines[lines.key()], first, last);
    }
}

void SelectedRows::remove(const SelectedRows &others)
{
    _files.subtract(others._files);
    for (auto lines = others._lines.cbegin(); lines != others._lines.cend(); ++lines) {
        const auto own = _lines.find(lines.key());
        if (own == _lines.end())
            continue;
        for (const auto &[first, last] : *lines)
            removeRun(*own, first, last);
        if (own->empty())
            _lines.erase(own);
    }
}

} // namespace tidemark
