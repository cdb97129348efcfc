#pragma once

#include "foundation/Descriptor.h"
#include "search/FolderListing.h"

#include <QByteArray>

#include <functional>
#include <sys/types.h>
#include <vector>

namespace tidemark {

/// The folders from a walk's scope down to the one it is in: each with its listing, and only the innermost
/// few dozen with an open descriptor, however deep they are nested, and fewer where descriptors are scarce.
/// The others are reopened on the way up.
class OpenFolders
{
public:
    /// Is called when there is no descriptor left, to give back some that whoever walks holds.
    explicit OpenFolders(std::function<void()> giveBackDescriptors);
    ~OpenFolders();
    Q_DISABLE_COPY_MOVE(OpenFolders)

    /// Enters the folder with which a walk begins; it may be given by a link. Returns 0 or errno. A folder
    /// that could be opened is entered even when not all of its entries could be read; depth() tells.
    int enterScope(const QByteArray &path);
    /// Enters a folder inside the innermost one, never through a link; otherwise as enterScope().
    int enter(const char *name);
    /// Goes back to the folder above. Returns errno when that can't be reached any more, and drops the rest
    /// of its entries.
    int leave();
    void leaveAll();

    /// 0 outside, 1 in the scope's folder.
    int depth() const { return int(_depth); }
    int descriptor() const { return _levels[_depth - 1].descriptor.number(); }
    /// Of the innermost folder. The reference holds until another folder is entered, names taken from it
    /// until their folder is left.
    FolderListing &listing() { return _levels[_depth - 1].listing; }
    const FolderListing &listing() const { return _levels[_depth - 1].listing; }

    /// The paths of the folders that lie in one of the open ones, counted from 0 in the scope's on, and
    /// haven't been taken from its listing.
    QByteArrayList foldersToCome(int level, bool withHidden) const;

    /// Of the innermost folder.
    QByteArray path() const;
    QByteArray pathOfEntry(const char *name) const;

private:
    struct Level
    {
        Descriptor descriptor;
        /// By which the folder is known again when its descriptor was closed meanwhile.
        dev_t device = 0;
        ino_t inode = 0;
        /// Without a slash at the end, so 0 for the root.
        qsizetype pathLength = 0;
        FolderListing listing;
    };

    int _push(Descriptor descriptor, qsizetype pathLength);
    Descriptor _open(int parent, const char *path, int flags);
    bool _suspendOutermost();
    static void _suspend(Level &level);
    static Descriptor _verified(Descriptor descriptor, const Level &level);
    Descriptor _reopenFromScope(size_t index);

    std::function<void()> _giveBackDescriptors;
    size_t _mostOpen;
    QByteArray _scopePath;
    QByteArray _path; ///< of the folder entered last, which begins with those of all that it lies in
    /// Levels behind the depth are kept for their buffers.
    std::vector<Level> _levels;
    size_t _depth = 0;
};

} // namespace tidemark
