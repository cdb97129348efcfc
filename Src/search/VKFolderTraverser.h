#pragma once

#include "foundation/FilePath.h"
#include "search/EntryFilter.h"

#include <QStringList>

#include <atomic>
#include <optional>
#include <vector>

namespace tidemark {

/// What becomes of symbolic links.
enum class SymbolicLinkHandling {
    /// A link that is itself named as a scope is taken as it is; links found inside folders are neither
    /// followed nor reported.
    TakeNamedSkipFound = 1,
};

/// A file where a traversal finds it, during the message only.
struct FoundEntry
{
    int folderDescriptor;
    const char *name; ///< in that folder
    /// As the folder's listing has it, which also told that it is a regular file; nothing where that had to
    /// be asked for.
    std::optional<quint64> inode;
};

/// Receives what a traversal finds, on the thread that runs it. Each message is optional.
class VKFolderTraverserDelegate
{
public:
    virtual ~VKFolderTraverserDelegate() = default;

    /// A file in scope. `path` is only valid during the call (copying it is cheap only once: copy when
    /// needed). `scannedCount` counts the files reported so far, this one included. `level` is the number of
    /// folders between the scope and the file: 0 directly inside it, and for a scope that is itself a file.
    /// The sizes are in bytes, -1 where they weren't asked for.
    virtual void didFindFile(const FilePath &path, quint64 scannedCount, int level, qint64 size,
                             qint64 sizeOnDisk);
    /// Sent instead of didFindFile() for a file found inside a folder; unless overridden it passes the
    /// message on to that. The folder's descriptor and the file's name in it spare a receiver that opens the
    /// file the look-up of the whole path, and reach files whose path is longer than the system takes.
    virtual void didFindFileInFolder(const FoundEntry &entry, const FilePath &path, quint64 scannedCount,
                                     int level, qint64 size, qint64 sizeOnDisk);
    /// A folder, or a part of its entries, that can't be read; the walk goes on behind it. Also a folder
    /// scope that isn't a folder.
    virtual void didFailToReadFolder(const FilePath &path, int errorNumber);
    /// There is no descriptor left: a moment to close what can be closed.
    virtual void didRunOutOfDescriptors();
    /// The walk of a folder scope begins.
    virtual void willWalkScope();
    /// Whether somebody reads folders from the disk before the walk comes to them.
    virtual bool readsFoldersAhead();
    /// Sent for each folder while somebody does: it has been listed, and those in the list, which weren't in
    /// a list before, may come next. None of them is promised.
    virtual void didListFolder(const QByteArray &path, const QByteArrayList &foldersToCome);
    /// Once, before the end.
    virtual void didLeaveOut(const LeftOut &leftOut);
    virtual void traversalFinished();
    virtual void traversalStopped();
};

/// Walks search scopes in the order they were added: a folder's entries in the byte order of their names,
/// depth first, a folder walked where its name stands. Inside folders, what the filter is against is skipped,
/// as are links and everything that isn't a regular file, and counted by reason. A folder that is reached
/// again below itself can't occur, as links aren't followed. Neither the depth of folders nor the length of
/// their paths is limited; the walk keeps a few dozen of them open at most.
class VKFolderTraverser
{
public:
    /// Not owned.
    void setDelegate(VKFolderTraverserDelegate *delegate);
    /// Type identifiers that admit a file found inside a folder scope added from now on; a file is reported
    /// when its type conforms to one of them or its name matches one of the scope's patterns. With neither
    /// types nor patterns nothing inside a folder is reported.
    void setUtis(const QStringList &typeIdentifiers);
    /// Whether didFindFile() is given sizes, which costs a system call a file. On by default.
    void setReportsSizes(bool reportsSizes);
    /// What is left out inside folder scopes; unless set, hidden entries and own backups.
    void setFilterOptions(const EntryFilterOptions &options) { _filterOptions = options; }

    /// Scopes can be added until the walk starts.
    void addSearchScopeWithFolderPath(const FilePath &path, bool includeSubFolders,
                                      const QStringList &filenamePatterns, SymbolicLinkHandling handling);
    /// One file, reported as it is, whatever its kind and whether or not it exists.
    void addSearchScopeWithFilePath(const FilePath &path, SymbolicLinkHandling handling);

    /// Runs the whole walk on the calling thread and ends with exactly one of traversalFinished() and
    /// traversalStopped().
    void startTraversal();
    /// From any thread: the walk ends before the next entry, with traversalStopped(), even when the entry
    /// before it was the last. A stop asked for before the start holds too. A stopped traverser stays
    /// stopped.
    void stopTraversal();

private:
    class Walk;
    struct Scope
    {
        FilePath path;
        bool isFolder;
        bool includeSubFolders;
        QStringList utis;
        QStringList filenamePatterns;
    };

    VKFolderTraverserDelegate *_delegate = nullptr;
    QStringList _utis;
    bool _reportsSizes = true;
    EntryFilterOptions _filterOptions;
    std::vector<Scope> _scopes;
    std::atomic<bool> _shouldStop = false;
};

} // namespace tidemark
