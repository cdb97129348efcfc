#include "search/FoldersAhead.h"

#include "foundation/Descriptor.h"
#include "search/FolderListing.h"

#include <fcntl.h>

namespace tidemark {

namespace {

/// So many are read before the walk comes to the first of them.
constexpr size_t MOST_TAKEN = 256;
/// Beyond, what lies in folders that were read ahead isn't noted.
constexpr size_t MOST_WAITING = 1 << 12;

QByteArray keyOf(QByteArray path)
{
    return path.replace('/', '\0');
}

} // namespace

void FoldersAhead::clear()
{
    _waiting.clear();
    _taken.clear();
}

void FoldersAhead::add(const QByteArrayList &paths)
{
    for (const QByteArray &path : paths) {
        QByteArray key = keyOf(path);
        if (!_taken.contains(key))
            _waiting.insert(std::move(key));
    }
}

void FoldersAhead::pass(const QByteArray &path)
{
    const QByteArray key = keyOf(path);
    _waiting.erase(_waiting.begin(), _waiting.upper_bound(key));
    _taken.erase(_taken.begin(), _taken.upper_bound(key));
}

bool FoldersAhead::hasNext() const
{
    return !_waiting.empty() && _taken.size() < MOST_TAKEN;
}

QByteArray FoldersAhead::takeNext()
{
    const auto next = _taken.insert(_waiting.extract(_waiting.begin())).position;
    return QByteArray(*next).replace('\0', '/');
}

void FoldersAhead::didRead(const QByteArray &path, const QByteArrayList &foldersInside)
{
    const bool isPassed = !_taken.contains(keyOf(path));
    if (!isPassed && _waiting.size() < MOST_WAITING)
        add(foldersInside);
}

QByteArrayList FoldersAhead::read(const QByteArray &path, bool withHidden)
{
    const Descriptor folder(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.isOpen())
        return {};
    FolderListing listing;
    (void)listing.read(folder.number());
    return listing.foldersToCome(path, withHidden);
}

} // namespace tidemark
