#include "foundation/FileSystemCalls.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

#ifdef __linux__
#include <csignal>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#endif

namespace tidemark {

namespace {

constexpr size_t COPY_BLOCK = 1 << 20;

FileSystemCalls realCalls;
std::atomic<FileSystemCalls *> currentCalls = &realCalls;

bool clone(int from, int to)
{
#ifdef __linux__
    return ::ioctl(to, FICLONE, from) == 0;
#else
    (void)from, (void)to;
    return false;
#endif
}

/// Lets the kernel copy; false where it can't for these files, before
/// anything was copied.
bool copyInKernel(int from, int to, int &result)
{
#ifdef __linux__
    bool copiedAny = false;
    for (;;) {
        const ssize_t count = ::copy_file_range(from, nullptr, to, nullptr, COPY_BLOCK * 64, 0);
        if (count > 0) {
            copiedAny = true;
            continue;
        }
        // Some special file systems report their files as empty to this call: read those in the plain way.
        if (!copiedAny)
            return false;
        result = count == 0 ? 0 : -1;
        return true;
    }
#else
    (void)from, (void)to, (void)result;
    return false;
#endif
}

int writeWhole(int to, QByteArrayView content)
{
    for (qsizetype written = 0; written < content.size();) {
        const ssize_t step = ::write(to, content.data() + written, size_t(content.size() - written));
        if (step < 0)
            return -1;
        written += step;
    }
    return 0;
}

int copyByReading(int from, int to)
{
    const auto block = std::make_unique_for_overwrite<char[]>(COPY_BLOCK);
    for (;;) {
        const ssize_t count = ::read(from, block.get(), COPY_BLOCK);
        if (count <= 0)
            return static_cast<int>(count);
        if (writeWhole(to, QByteArrayView(block.get(), count)) != 0)
            return -1;
    }
}

} // namespace

int FileSystemCalls::open(const char *path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

ssize_t FileSystemCalls::read(int descriptor, void *bytes, size_t count)
{
    return ::read(descriptor, bytes, count);
}

ssize_t FileSystemCalls::pread(int descriptor, void *bytes, size_t count, off_t offset)
{
    return ::pread(descriptor, bytes, count, offset);
}

ssize_t FileSystemCalls::write(int descriptor, const void *bytes, size_t count)
{
    return ::write(descriptor, bytes, count);
}

ssize_t FileSystemCalls::pwrite(int descriptor, const void *bytes, size_t count, off_t offset)
{
    return ::pwrite(descriptor, bytes, count, offset);
}

int FileSystemCalls::truncate(int descriptor, off_t size)
{
    return ::ftruncate(descriptor, size);
}

int FileSystemCalls::reserve(int descriptor, off_t offset, off_t length)
{
#ifdef __linux__
    return ::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, offset, length);
#else
    (void)descriptor, (void)offset, (void)length;
    errno = ENOTSUP;
    return -1;
#endif
}

int FileSystemCalls::takeLease(int descriptor)
{
#ifdef __linux__
    // Whoever wants the file waits; the signal that tells so is one that nobody minds.
    if (::fcntl(descriptor, F_SETSIG, SIGURG) != 0)
        return -1;
    return ::fcntl(descriptor, F_SETLEASE, F_WRLCK);
#else
    (void)descriptor;
    errno = ENOTSUP;
    return -1;
#endif
}

int FileSystemCalls::lock(int descriptor)
{
    return ::flock(descriptor, LOCK_EX | LOCK_NB);
}

int FileSystemCalls::sync(int descriptor)
{
    return ::fsync(descriptor);
}

int FileSystemCalls::syncFileSystem(int descriptor)
{
#ifdef __linux__
    return ::syncfs(descriptor);
#else
    return ::fsync(descriptor);
#endif
}

quint32 FileSystemCalls::fileSystemType(int descriptor)
{
#ifdef __linux__
    struct statfs status;
    return ::fstatfs(descriptor, &status) == 0 ? quint32(status.f_type) : 0;
#else
    (void)descriptor;
    return 0;
#endif
}

int FileSystemCalls::close(int descriptor)
{
    return ::close(descriptor);
}

int FileSystemCalls::remove(const char *path)
{
    return ::unlink(path);
}

int FileSystemCalls::copyContent(int from, int to, std::optional<QByteArrayView> content)
{
    if (clone(from, to))
        return 0;
    if (content)
        return writeWhole(to, *content);
    int result = 0;
    if (copyInKernel(from, to, result))
        return result;
    return copyByReading(from, to);
}

FileSystemCalls &FileSystemCalls::current()
{
    return *currentCalls;
}

void FileSystemCalls::setCurrent(FileSystemCalls *calls)
{
    currentCalls = calls == nullptr ? &realCalls : calls;
}

} // namespace tidemark
