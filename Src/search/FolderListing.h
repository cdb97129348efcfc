#pragma once

#include <QByteArray>
#include <QByteArrayList>

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
        quint64 inode; ///< as the listing has it; of what is mounted there, it is another's
    };

    /// Which of the names are there that say what to leave out.
    struct Marks
    {
        bool gitIgnore = false;
        bool ignore = false;
        bool git = false;
    };

    /// Reads the whole folder behind an open descriptor. Links and everything else that is neither a regular
    /// file nor a folder are counted only. Returns 0 or errno; what was read before a failure is kept.
    int read(int folderDescriptor);
    void clear();

    Marks marks() const { return _marks; }
    quint64 linkCount() const { return _linkCount; }
    quint64 specialCount() const { return _specialCount; }

    bool atEnd() const { return _next == _records.size(); }
    /// The name is valid until the next read() or clear().
    Entry takeNext();
    /// The paths of the folders among what hasn't been taken, in a folder with this path.
    QByteArrayList foldersToCome(const QByteArray &path, bool withHidden) const;

private:
    struct Record
    {
        /// The first eight bytes of the name as one number, which settles most comparisons.
        quint64 head;
        quint64 inode;
        quint32 nameOffset;
        EntryType type;
    };
    int _readEntries(int folderDescriptor);
    void _append(const char *name, quint64 inode, unsigned char directoryEntryType);
    void _mark(const char *name);
    void _sort();

    std::vector<char> _names;
    std::vector<Record> _records;
    size_t _next = 0;
    Marks _marks;
    quint64 _linkCount = 0;
    quint64 _specialCount = 0;
};

} // namespace tidemark
