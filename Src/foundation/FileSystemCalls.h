#pragma once

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
    /// mkstemp(), but for any number of Xs at the end of the template.
    virtual int makeUniqueFile(char *pathTemplate);
    virtual ssize_t read(int descriptor, void *bytes, size_t count);
    virtual ssize_t pread(int descriptor, void *bytes, size_t count, off_t offset);
    virtual ssize_t write(int descriptor, const void *bytes, size_t count);
    virtual int truncate(int descriptor, off_t size); ///< ftruncate()
    virtual int sync(int descriptor);                 ///< fsync()
    virtual int syncFileSystem(int descriptor);       ///< syncfs(), of the file system the file is on
    virtual int close(int descriptor);
    virtual int remove(const char *path); ///< unlink()
    /// Copies the whole content of one open file to another, empty one; 0, or -1 and errno.
    virtual int copyContent(int from, int to);

    static FileSystemCalls &current();
    /// Replaces the calls of this process (null: the real ones); not owned. For tests.
    static void setCurrent(FileSystemCalls *calls);
};

} // namespace tidemark
