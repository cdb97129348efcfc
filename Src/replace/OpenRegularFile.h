#pragma once

#include "foundation/Descriptor.h"
#include "foundation/FilePath.h"
#include "replace/ContentDigest.h"

#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

namespace tidemark {

/// A regular file that is open, or none: the path's last component is never followed as a link, and opening
/// waits for nobody. One thread at a time.
class OpenRegularFile
{
public:
    /// `access` is how the file is opened: O_RDONLY or O_RDWR.
    explicit OpenRegularFile(const FilePath &path, int access = O_RDONLY);

    bool isOpen() const { return _descriptor.isOpen(); }
    /// Why it isn't open: the errno of opening, or ESTALE for what is no regular file. Else 0.
    int errorNumber() const { return _errorNumber; }
    /// Whether it isn't open because no regular file is at the path, and not because it couldn't be looked at
    /// this time.
    bool isNotThere() const;

    /// -1 when it isn't open.
    int descriptor() const { return _descriptor.number(); }
    /// As it was when the file was opened.
    const struct stat &status() const { return _status; }
    /// Of the size that it had then. Nothing when it can't be read.
    std::optional<ContentDigest> digest() const;
    /// Brings it to the disk; false, with errno, when that failed.
    bool flush() const;
    /// 0, or errno.
    int close() { return _descriptor.close(); }

private:
    Descriptor _descriptor;
    int _errorNumber = 0;
    struct stat _status = {};
};

} // namespace tidemark
