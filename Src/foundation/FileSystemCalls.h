#pragma once

#include <QByteArrayView>

#include <optional>
#include <sys/stat.h>
#include <sys/types.h>

namespace tidemark {

/// The system calls by which lines are read and files rewritten, each as POSIX has it. Everything that can
/// fail while a user's file is in danger goes through here, so that every failure can be brought about.
class FileSystemCalls
{
public:
    virtual ~FileSystemCalls() = default;

    virtual int open(const char *path, int flags, mode_t mode);
    virtual ssize_t read(int descriptor, void *bytes, size_t count);
    virtual ssize_t pread(int descriptor, void *bytes, size_t count, off_t offset);
    virtual ssize_t write(int descriptor, const void *bytes, size_t count);
    virtual ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset);
    virtual int truncate(int descriptor, off_t size); ///< ftruncate()
    /// Reserves room behind the end of a file, whose size stays. -1 and errno: ENOTSUP where the file system
    /// can't.
    virtual int reserve(int descriptor, off_t offset, off_t length);
    /// Keeps all other programs from opening the file until the descriptor is closed: their open() waits. The
    /// file must be open for writing, and nowhere else. -1 and errno when there is no lease to be had.
    virtual int takeLease(int descriptor);
    /// flock(), exclusive and without waiting.
    virtual int lock(int descriptor);
    virtual int sync(int descriptor);           ///< fsync()
    virtual int syncFileSystem(int descriptor); ///< syncfs(), of the file system the file is on
    /// The kernel's number for the kind of file system that the file is on; 0 when that can't be told.
    virtual quint32 fileSystemType(int descriptor);
    virtual int close(int descriptor);
    virtual int remove(const char *path); ///< unlink()
    /// Copies the whole content of an open file to another, empty one, by sharing its blocks where the file
    /// system can; 0, or -1 and errno. `content` saves reading the file where the caller has it in memory.
    virtual int copyContent(int from, int to, std::optional<QByteArrayView> content);

    static FileSystemCalls &current();
    /// Replaces the calls of this process (null: the real ones); not owned. For tests.
    static void setCurrent(FileSystemCalls *calls);
};

} // namespace tidemark
