#pragma once

#include <dirent.h>
#include <memory>

namespace tidemark {

/// Owns a stream of the entries of a folder, or none. One thread at a time.
class FolderStream
{
public:
    /// Takes over what opendir() or fdopendir() returned, which may be null.
    explicit FolderStream(DIR *folder) : _folder(folder) {}

    bool isOpen() const { return _folder != nullptr; }
    /// The next entry, which is good until the next call. Null at the end, where the folder can't be read on,
    /// and where there is none.
    const dirent *next() { return isOpen() ? ::readdir(_folder.get()) : nullptr; }

private:
    struct Close
    {
        void operator()(DIR *folder) const { (void)::closedir(folder); }
    };
    std::unique_ptr<DIR, Close> _folder;
};

} // namespace tidemark
