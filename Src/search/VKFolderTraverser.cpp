#include "search/VKFolderTraverser.h"

#include "foundation/Descriptor.h"
#include "foundation/PatientOpen.h"
#include "search/FileTypes.h"
#include "search/OpenFolders.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark {

namespace {

constexpr size_t PROBE_LENGTH = 4096;

struct FileSizes
{
    qint64 size = -1;
    qint64 onDisk = -1;
};

FileSizes sizesOf(int folderDescriptor, const char *name, int flags)
{
    constexpr qint64 BLOCK_LENGTH = 512;
    struct stat status = {};
    if (fstatat(folderDescriptor, name, &status, flags) != 0)
        return {};
    return {status.st_size, status.st_blocks * BLOCK_LENGTH};
}

/// A view of the buffer, null when the file can't be read.
QByteArray firstBytesOf(int folderDescriptor, const char *name, char (&buffer)[PROBE_LENGTH])
{
    // Never waiting, as the name may stand for something else by now.
    constexpr int FLAGS = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const Descriptor file(openPatiently([=] { return openat(folderDescriptor, name, FLAGS); }));
    if (!file.isOpen())
        return {};
    ssize_t length = 0;
    do
        length = read(file.number(), buffer, PROBE_LENGTH);
    while (length < 0 && errno == EINTR);
    return length < 0 ? QByteArray() : QByteArray::fromRawData(buffer, length);
}

} // namespace

void VKFolderTraverserDelegate::didFindFile(const FilePath &, quint64, int, qint64, qint64) {}

void VKFolderTraverserDelegate::didFindFileInFolder(const FoundEntry &, const FilePath &path,
                                                    quint64 scannedCount, int level, qint64 size,
                                                    qint64 sizeOnDisk)
{
    didFindFile(path, scannedCount, level, size, sizeOnDisk);
}

void VKFolderTraverserDelegate::didFailToReadFolder(const FilePath &, int) {}

void VKFolderTraverserDelegate::didRunOutOfDescriptors() {}

void VKFolderTraverserDelegate::willWalkScope() {}

bool VKFolderTraverserDelegate::readsFoldersAhead()
{
    return false;
}

void VKFolderTraverserDelegate::didListFolder(const QByteArray &, const QByteArrayList &) {}

void VKFolderTraverserDelegate::didLeaveOut(const LeftOut &) {}

void VKFolderTraverserDelegate::traversalFinished() {}

void VKFolderTraverserDelegate::traversalStopped() {}

/// One run over all scopes.
class VKFolderTraverser::Walk
{
public:
    Walk(const VKFolderTraverser &traverser, VKFolderTraverserDelegate &delegate)
        : _traverser(traverser), _delegate(delegate),
          _folders([&delegate] { delegate.didRunOutOfDescriptors(); }), _entryFilter(traverser._filterOptions)
    {}

    void run()
    {
        const StopScope stopScope(&_traverser._shouldStop, nullptr);
        for (const Scope &scope : _traverser._scopes) {
            if (_shouldStop())
                break;
            if (scope.isFolder)
                _walkFolder(scope);
            else
                _reportNamedFile(scope.path);
        }
        _delegate.didLeaveOut(_entryFilter.leftOut());
        if (_shouldStop())
            _delegate.traversalStopped();
        else
            _delegate.traversalFinished();
    }

private:
    bool _shouldStop() const { return _traverser._shouldStop.load(std::memory_order_relaxed); }
    void _reportNamedFile(const FilePath &path);
    void _walkFolder(const Scope &scope);
    void _prepareFilter(const Scope &scope);
    void _visit(const FolderListing::Entry &entry);
    void _enter(const char *name);
    void _leave();
    void _tellOfFoldersToCome();
    FolderListing::EntryType _typeOf(const FolderListing::Entry &entry);
    bool _admits(const char *name);
    bool _isTooLarge(const char *name) const;
    void _report(const FolderListing::Entry &entry);

    const VKFolderTraverser &_traverser;
    VKFolderTraverserDelegate &_delegate;
    quint64 _scannedCount = 0;
    OpenFolders _folders;
    EntryFilter _entryFilter;
    const Scope *_scope = nullptr;
    int _toldLevels = 0; ///< so many of the open folders, from the outermost on, have told what is in them
    std::optional<FileTypeFilter> _typeFilter;
    char _probeBuffer[PROBE_LENGTH];
};

void VKFolderTraverser::Walk::_reportNamedFile(const FilePath &path)
{
    const FileSizes sizes = _traverser._reportsSizes ? sizesOf(AT_FDCWD, path.cString(), 0) : FileSizes();
    _delegate.didFindFile(path, ++_scannedCount, 0, sizes.size, sizes.onDisk);
}

void VKFolderTraverser::Walk::_walkFolder(const Scope &scope)
{
    _prepareFilter(scope);
    _delegate.willWalkScope();
    _toldLevels = 0;
    if (const int failure = _folders.enterScope(scope.path.bytes()))
        _delegate.didFailToReadFolder(scope.path, failure);
    if (_folders.depth() > 0) {
        _entryFilter.enterLocation(_folders);
        _tellOfFoldersToCome();
    }
    while (_folders.depth() > 0 && !_shouldStop()) {
        if (_folders.listing().atEnd())
            _leave();
        else
            _visit(_folders.listing().takeNext());
    }
    _folders.leaveAll();
    _entryFilter.leaveLocation();
}

/// Keeps the filter of the scope before, with all it has learnt, where the same is asked of it.
void VKFolderTraverser::Walk::_prepareFilter(const Scope &scope)
{
    if (!_typeFilter || _scope->utis != scope.utis || _scope->filenamePatterns != scope.filenamePatterns)
        _typeFilter.emplace(scope.utis, scope.filenamePatterns);
    _scope = &scope;
}

void VKFolderTraverser::Walk::_visit(const FolderListing::Entry &entry)
{
    switch (_typeOf(entry)) {
    case FolderListing::EntryType::File:
        if (_admits(entry.name))
            _report(entry);
        break;
    case FolderListing::EntryType::Folder:
        if (_scope->includeSubFolders &&
            _entryFilter.reasonAgainst(entry.name, EntryKind::Folder) == LeftOutReason::None)
            _enter(entry.name);
        break;
    case FolderListing::EntryType::Unknown:
        break;
    }
}

/// Unknown for what isn't searched, which is counted.
FolderListing::EntryType VKFolderTraverser::Walk::_typeOf(const FolderListing::Entry &entry)
{
    using enum FolderListing::EntryType;
    struct stat status = {};
    if (entry.type != Unknown ||
        fstatat(_folders.descriptor(), entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return entry.type;
    if (S_ISREG(status.st_mode))
        return File;
    if (S_ISDIR(status.st_mode))
        return Folder;
    _entryFilter.count(S_ISLNK(status.st_mode) ? LeftOutReason::Link : LeftOutReason::Special);
    return Unknown;
}

void VKFolderTraverser::Walk::_enter(const char *name)
{
    const int depth = _folders.depth();
    const int failure = _folders.enter(name);
    const bool isInside = _folders.depth() > depth;
    if (isInside) {
        _entryFilter.enterFolder(_folders);
        _tellOfFoldersToCome();
    }
    if (failure == 0)
        return;
    _delegate.didFailToReadFolder(FilePath(isInside ? _folders.path() : _folders.pathOfEntry(name)), failure);
}

void VKFolderTraverser::Walk::_leave()
{
    _entryFilter.leaveFolder();
    if (const int failure = _folders.leave())
        _delegate.didFailToReadFolder(FilePath(_folders.path()), failure);
    _toldLevels = std::min(_toldLevels, _folders.depth());
}

/// Also what folders further out hold, when somebody has begun to listen since those were listed.
void VKFolderTraverser::Walk::_tellOfFoldersToCome()
{
    if (!_scope->includeSubFolders || !_delegate.readsFoldersAhead())
        return;
    QByteArrayList folders;
    for (; _toldLevels < _folders.depth(); ++_toldLevels)
        folders << _folders.foldersToCome(_toldLevels, _traverser._filterOptions.searchesHiddenFiles);
    _delegate.didListFolder(_folders.path(), folders);
}

bool VKFolderTraverser::Walk::_admits(const char *name)
{
    if (_entryFilter.reasonAgainst(name, EntryKind::File) != LeftOutReason::None)
        return false;
    LeftOutReason reason = LeftOutReason::None;
    if (_isTooLarge(name))
        reason = LeftOutReason::Size;
    else if (!_typeFilter->admits(
                 name, [this, name] { return firstBytesOf(_folders.descriptor(), name, _probeBuffer); }))
        reason = LeftOutReason::Kind;
    if (reason != LeftOutReason::None)
        _entryFilter.count(reason);
    return reason == LeftOutReason::None;
}

bool VKFolderTraverser::Walk::_isTooLarge(const char *name) const
{
    const qint64 largest = _entryFilter.largestFileSize();
    return largest > 0 && sizesOf(_folders.descriptor(), name, AT_SYMLINK_NOFOLLOW).size > largest;
}

void VKFolderTraverser::Walk::_report(const FolderListing::Entry &entry)
{
    FoundEntry found{_folders.descriptor(), entry.name, {}};
    if (entry.type == FolderListing::EntryType::File)
        found.inode = entry.inode;
    const FileSizes sizes = _traverser._reportsSizes
                                ? sizesOf(found.folderDescriptor, found.name, AT_SYMLINK_NOFOLLOW)
                                : FileSizes();
    const FilePath path(_folders.pathOfEntry(found.name));
    _delegate.didFindFileInFolder(found, path, ++_scannedCount, _folders.depth() - 1, sizes.size,
                                  sizes.onDisk);
}

void VKFolderTraverser::setDelegate(VKFolderTraverserDelegate *delegate)
{
    _delegate = delegate;
}

void VKFolderTraverser::setUtis(const QStringList &typeIdentifiers)
{
    _utis = typeIdentifiers;
}

void VKFolderTraverser::setReportsSizes(bool reportsSizes)
{
    _reportsSizes = reportsSizes;
}

void VKFolderTraverser::addSearchScopeWithFolderPath(const FilePath &path, bool includeSubFolders,
                                                     const QStringList &filenamePatterns,
                                                     SymbolicLinkHandling)
{
    _scopes.push_back({path, true, includeSubFolders, _utis, filenamePatterns});
}

void VKFolderTraverser::addSearchScopeWithFilePath(const FilePath &path, SymbolicLinkHandling)
{
    _scopes.push_back({path, false, false, {}, {}});
}

void VKFolderTraverser::startTraversal()
{
    VKFolderTraverserDelegate nobody;
    Walk(*this, _delegate ? *_delegate : nobody).run();
}

void VKFolderTraverser::stopTraversal()
{
    _shouldStop.store(true, std::memory_order_relaxed);
}

} // namespace tidemark
