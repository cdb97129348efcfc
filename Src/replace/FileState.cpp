#include "replace/FileState.h"

#include "foundation/FileSystemCalls.h"

#include <QByteArray>

namespace tidemark {

namespace {

constexpr qint64 BLOCK = 1 << 18;

FileDate changeDateOf(const struct stat &status)
{
#ifdef __APPLE__
    const timespec &date = status.st_ctimespec;
#else
    const timespec &date = status.st_ctim;
#endif
    return {qint64(date.tv_sec) * 1000000000 + date.tv_nsec};
}

} // namespace

FileState FileState::fromStatus(const struct stat &status)
{
    return {status.st_dev, status.st_ino, status.st_size, FileDate::fromStatus(status), changeDateOf(status)};
}

std::optional<FileState> stateOfDescriptor(int descriptor)
{
    struct stat status;
    if (::fstat(descriptor, &status) != 0)
        return {};
    return FileState::fromStatus(status);
}

std::optional<ContentDigest> digestOfDescriptor(int descriptor, qint64 size)
{
    static thread_local const auto block = std::make_unique_for_overwrite<char[]>(BLOCK);
    ContentHasher hasher;
    for (qint64 offset = 0; offset < size;) {
        const ssize_t count = FileSystemCalls::current().pread(
            descriptor, block.get(), size_t(qMin(BLOCK, size - offset)), off_t(offset));
        if (count < 0)
            return {};
        if (count == 0)
            break;
        hasher.add(QByteArrayView(block.get(), count));
        offset += count;
    }
    return hasher.digest();
}

bool hasContent(int descriptor, const ContentDigest &content)
{
    const std::optional<FileState> state = stateOfDescriptor(descriptor);
    return state && state->size == content.size && digestOfDescriptor(descriptor, content.size) == content;
}

} // namespace tidemark
