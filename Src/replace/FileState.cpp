#include "replace/FileState.h"

#include "replace/NewContent.h"

#include <QByteArray>

namespace tidemark {

FileState FileState::fromStatus(const struct stat &status)
{
    return {status.st_dev, status.st_ino, status.st_size, FileDate::fromStatus(status),
            FileDate::ofStatusChange(status)};
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
    static thread_local const auto block = std::make_unique_for_overwrite<char[]>(BYTES_AT_ONCE);
    // At once, as a rule.
    if (size <= BYTES_AT_ONCE) {
        const qint64 count = readFully(descriptor, block.get(), size, 0);
        return count < 0 ? std::nullopt : std::optional(digestOfBytes(QByteArrayView(block.get(), count)));
    }
    ContentHasher hasher;
    for (qint64 offset = 0; offset < size; offset += BYTES_AT_ONCE) {
        const qint64 wanted = qMin(BYTES_AT_ONCE, size - offset);
        const qint64 count = readFully(descriptor, block.get(), wanted, offset);
        if (count < 0)
            return {};
        hasher.add(QByteArrayView(block.get(), count));
        if (count < wanted)
            break;
    }
    return hasher.digest();
}

bool hasContent(int descriptor, const ContentDigest &content)
{
    const std::optional<FileState> state = stateOfDescriptor(descriptor);
    return state && state->size == content.size && digestOfDescriptor(descriptor, content.size) == content;
}

} // namespace tidemark
