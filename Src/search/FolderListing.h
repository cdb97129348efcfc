#pragma once

#include <QtGlobal>

#include <vector>

namespace tidemark {

/// The entries of one folder that can matter to a walk, in the byte order of their names. Meant to be filled
/// again and again, so that a walk soon stops allocating.
class FolderListing
{
public:
    enum class EntryType : quint8 {
        File,
        Folder,
        /// The file system doesn't tell without being asked for the entry itself.
        Unknown,
    };

    struct Entry
    {
        const char *name;
        EntryType type;
    };

    /// Reads the whole folder behind an open descriptor. Entries whose names begin with a dot, links and
    /// everything else that is neither a regular file nor a folder are left out. Returns 0 or errno; what
    /// was read before a failure is kept.
    int read(int folderDescriptor);
    void clear();

    bool atEnd() const { return _next == _records.size(); }
    /// The name is valid until the next read() or clear().
    Entry takeNext();

private:
    struct Record
    {
        /// The first eight bytes of the name as one number, which settles most comparisons.
        quint64 head;
        quint32 nameOffset;
        EntryType type;
    };
    int _readEntries(int folderDescriptor);
    void _append(const char *name, unsigned char directoryEntryType);
    void _sort();

    std::vector<char> _names;
    std::vector<Record> _records;
    size_t _next = 0;
};

} // namespace tidemark
