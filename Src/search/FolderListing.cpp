#include "search/FolderListing.h"

#include "foundation/Descriptor.h"
#include "foundation/FolderStream.h"

#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <unistd.h>

namespace tidemark {

#ifdef __linux__
int FolderListing::_readEntries(int folderDescriptor)
{
    alignas(dirent64) char buffer[32 * 1024];
    ssize_t length = 0;
    while ((length = getdents64(folderDescriptor, buffer, sizeof buffer)) > 0) {
        for (const char *position = buffer; position < buffer + length;) {
            const auto *entry = reinterpret_cast<const dirent64 *>(position);
            _append(entry->d_name, entry->d_ino, entry->d_type);
            position += entry->d_reclen;
        }
    }
    return length < 0 ? errno : 0;
}
#else
int FolderListing::_readEntries(int folderDescriptor)
{
    // The stream closes its descriptor, which is the caller's.
    Descriptor copy(::dup(folderDescriptor));
    FolderStream folder(copy.isOpen() ? ::fdopendir(copy.number()) : nullptr);
    if (!folder.isOpen())
        return errno;
    (void)copy.release();
    errno = 0;
    while (const dirent *entry = folder.next())
        _append(entry->d_name, entry->d_ino, entry->d_type);
    return errno;
}
#endif

int FolderListing::read(int folderDescriptor)
{
    clear();
    const int failure = _readEntries(folderDescriptor);
    _sort();
    return failure;
}

void FolderListing::clear()
{
    _names.clear();
    _records.clear();
    _next = 0;
    _marks = {};
    _linkCount = _specialCount = 0;
}

FolderListing::Entry FolderListing::takeNext()
{
    const Record &record = _records[_next++];
    return {_names.data() + record.nameOffset, record.type, record.inode};
}

QByteArrayList FolderListing::foldersToCome(const QByteArray &path, bool withHidden) const
{
    QByteArrayList paths;
    for (size_t index = _next; index < _records.size(); ++index) {
        const char *name = _names.data() + _records[index].nameOffset;
        if (_records[index].type == EntryType::Folder && (withHidden || name[0] != '.'))
            paths << path + '/' + name;
    }
    return paths;
}

void FolderListing::_append(const char *name, quint64 inode, unsigned char directoryEntryType)
{
    if (name[0] == '.') {
        if (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))
            return;
        _mark(name);
    }
    EntryType type = EntryType::Unknown;
    if (directoryEntryType == DT_REG)
        type = EntryType::File;
    else if (directoryEntryType == DT_DIR)
        type = EntryType::Folder;
    else if (directoryEntryType != DT_UNKNOWN) {
        ++(directoryEntryType == DT_LNK ? _linkCount : _specialCount);
        return;
    }

    const size_t length = std::strlen(name);
    char head[sizeof(quint64)] = {};
    std::memcpy(head, name, std::min(length, sizeof head));
    _records.push_back({qFromBigEndian<quint64>(head), inode, quint32(_names.size()), type});
    _names.insert(_names.end(), name, name + length + 1);
}

void FolderListing::_mark(const char *name)
{
    if (std::strcmp(name, ".gitignore") == 0)
        _marks.gitIgnore = true;
    else if (std::strcmp(name, ".ignore") == 0)
        _marks.ignore = true;
    else if (std::strcmp(name, ".git") == 0)
        _marks.git = true;
}

void FolderListing::_sort()
{
    std::sort(_records.begin(), _records.end(), [this](const Record &left, const Record &right) {
        if (left.head != right.head)
            return left.head < right.head;
        return std::strcmp(_names.data() + left.nameOffset, _names.data() + right.nameOffset) < 0;
    });
}

} // namespace tidemark
