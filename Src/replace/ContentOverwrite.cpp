#include "replace/ContentOverwrite.h"

#include "foundation/FileSystemCalls.h"
#include "replace/FileState.h"
#include "replace/NewContent.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace tidemark {

namespace {

/// What is compared as a whole, and written as a whole between two differences in it: the disk takes whole
/// pages anyway.
constexpr qsizetype PAGE = 4096;

bool isPageEqual(QByteArrayView left, QByteArrayView right, qsizetype from)
{
    const qsizetype size = qMin(PAGE, left.size() - from);
    return from + size <= right.size() &&
           std::memcmp(left.data() + from, right.data() + from, size_t(size)) == 0;
}

/// A stretch that differs, from its first differing byte to behind its last one.
struct Difference
{
    qsizetype start = 0;
    qsizetype end = 0;
};

/// The first stretch of differing pages from a page on; empty, at the end of `left`, when there is none.
Difference nextDifference(QByteArrayView left, QByteArrayView right, qsizetype from)
{
    while (from < left.size() && isPageEqual(left, right, from))
        from += PAGE;
    qsizetype end = from;
    while (end < left.size() && !isPageEqual(left, right, end))
        end += PAGE;
    from = qMin(from, left.size());
    end = qMin(end, left.size());
    const auto isEqualAt = [&](qsizetype index) {
        return index < right.size() && left[index] == right[index];
    };
    while (from < end && isEqualAt(from))
        ++from;
    while (end > from && isEqualAt(end - 1))
        --end;
    return {from, end};
}

/// Whether the new size needs no further block.
bool hasRoomInLastBlock(int file, qint64 oldSize, qint64 newSize)
{
    struct stat status;
    return oldSize > 0 && ::fstat(file, &status) == 0 && status.st_blksize > 0 &&
           (oldSize - 1) / status.st_blksize == (newSize - 1) / status.st_blksize;
}

} // namespace

int ContentOverwrite::reserve(qint64 newSize) const
{
    if (newSize <= _oldSize || hasRoomInLastBlock(_target, _oldSize, newSize))
        return 0;
    if (FileSystemCalls::current().reserve(_target, off_t(_oldSize), off_t(newSize - _oldSize)) == 0)
        return 0;
    switch (errno) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
    case EIO:
    case EROFS:
        return errno;
    default:
        return 0;
    }
}

int ContentOverwrite::put(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const QByteArrayView part = bytes.first(qMin(bytes.size(), BYTES_AT_ONCE - _pending.size()));
        _pending.append(part);
        bytes = bytes.sliced(part.size());
        if (_pending.size() == BYTES_AT_ONCE) {
            if (const int error = putPending(); error != 0)
                return error;
        }
    }
    return 0;
}

int ContentOverwrite::putAll(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const QByteArrayView block = bytes.first(qMin(bytes.size(), BYTES_AT_ONCE));
        if (const int error = _putOver(block); error != 0)
            return error;
        bytes = bytes.sliced(block.size());
    }
    return 0;
}

int ContentOverwrite::putPending()
{
    const int error = _putOver(_pending);
    _pending.resize(0);
    return error;
}

int ContentOverwrite::_putOver(QByteArrayView bytes)
{
    QByteArrayView old;
    if (!_readPresent(bytes.size(), old))
        return errno;
    for (Difference next = nextDifference(bytes, old, 0); next.start < next.end;
         next = nextDifference(bytes, old, (next.end + PAGE - 1) / PAGE * PAGE)) {
        if (const int error = _write(bytes.sliced(next.start, next.end - next.start), _offset + next.start);
            error != 0)
            return error;
    }
    _offset += bytes.size();
    return 0;
}

/// What stands where the next bytes go: fewer than asked for at the end of the file.
bool ContentOverwrite::_readPresent(qsizetype count, QByteArrayView &bytes)
{
    const qsizetype present = qMax<qint64>(0, qMin<qint64>(count, _oldSize - _offset));
    if (_oldBytes.size() == _oldSize) {
        bytes = present > 0 ? _oldBytes.sliced(_offset, present) : QByteArrayView();
        return true;
    }
    if (_present.size() < present)
        _present.resize(present);
    const qint64 read = readFully(_target, _present.data(), present, _offset);
    bytes = QByteArrayView(_present).first(qMax<qint64>(0, read));
    return read >= 0;
}

int ContentOverwrite::_write(QByteArrayView bytes, qint64 offset)
{
    _hasChangedAnything = _hasChangedAnything || !bytes.isEmpty();
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count = FileSystemCalls::current().pwrite(
            _target, bytes.data() + written, size_t(bytes.size() - written), off_t(offset + written));
        if (count < 0 && errno != EINTR)
            return errno;
        written += qMax(ssize_t(0), count);
    }
    return 0;
}

int ContentOverwrite::cut()
{
    if (_offset >= _oldSize)
        return 0;
    _hasChangedAnything = true;
    return FileSystemCalls::current().truncate(_target, off_t(_offset)) == 0 ? 0 : errno;
}

int overwriteWithContentOf(int source, int target)
{
    const std::optional<FileState> state = stateOfDescriptor(target);
    const std::optional<FileState> newState = state ? stateOfDescriptor(source) : std::nullopt;
    if (!newState)
        return errno;
    ContentOverwrite overwrite(target, state->size);
    QByteArray block(BYTES_AT_ONCE, Qt::Uninitialized);
    int error = overwrite.reserve(newState->size);
    for (qint64 offset = 0; error == 0;) {
        const qint64 count = readFully(source, block.data(), BYTES_AT_ONCE, offset);
        error = count < 0 ? errno : overwrite.put(QByteArrayView(block).first(qMax<qint64>(0, count)));
        if (count < BYTES_AT_ONCE)
            break;
        offset += count;
    }
    if (error == 0)
        error = overwrite.putPending();
    if (error == 0)
        error = overwrite.cut();
    return error;
}

} // namespace tidemark
