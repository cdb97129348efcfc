#include "replace/UndoChains.h"

#include <algorithm>

namespace tidemark {

UndoChains::UndoChains(UndoStepReader &reader) : _reader(reader)
{
    struct Latest
    {
        qint64 link = -1;
        ContentDigest after;
    };
    QHash<FilePath, Latest> latest;
    for (size_t block = 0; block < reader.blockCount(); ++block) {
        const std::vector<UndoEntry> &entries = reader.entries(block);
        for (size_t index = 0; index < entries.size(); ++index) {
            const UndoEntry &entry = entries[index];
            Latest &before = latest[entry.path];
            Link link{quint32(block), quint32(index), -1, true};
            if (before.link >= 0 && before.after == entry.before) {
                link.previous = before.link;
                _links[size_t(before.link)].isLatest = false;
            }
            before = {qint64(_links.size()), entry.after};
            _links.push_back(link);
        }
    }
    _left = _links.size();
    _count = std::count_if(_links.begin(), _links.end(), [](const Link &link) { return link.isLatest; });
}

std::vector<UndoEntry> UndoChains::next()
{
    std::vector<UndoEntry> chain;
    while (_left > 0 && !_links[_left - 1].isLatest)
        --_left;
    for (qint64 index = qint64(_left) - 1; index >= 0; index = _links[size_t(index)].previous) {
        const Link &link = _links[size_t(index)];
        const std::vector<UndoEntry> &entries = _reader.entries(link.block);
        // The file may have become unreadable since it was looked through.
        if (link.index >= entries.size())
            break;
        chain.push_back(entries[link.index]);
    }
    _left = _left > 0 ? _left - 1 : 0;
    return chain;
}

} // namespace tidemark
