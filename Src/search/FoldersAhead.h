#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <set>

namespace tidemark {

/// The folders that a walk comes to next, so that others can read them from the disk before. That is all that
/// is done with them: the walk lists each folder itself, with what it then holds. Not for several threads at
/// once.
class FoldersAhead
{
public:
    /// The walk begins anew.
    void clear();
    /// Folders, by their paths, that the walk may come to.
    void add(const QByteArrayList &paths);
    /// The walk has come to this folder, so all in front of it are passed.
    void pass(const QByteArray &path);

    /// Whether one should be read: not when enough have been.
    bool hasNext() const;
    /// The path of the next one in the order of the walk; there must be one.
    QByteArray takeNext();
    /// It was read, and these are the folders in it.
    void didRead(const QByteArray &path, const QByteArrayList &foldersInside);

    /// Reads a folder, never one behind a link: the paths of the folders in it, empty if it can't be read.
    static QByteArrayList read(const QByteArray &path, bool withHidden);

private:
    // Paths with a zero byte for each slash, which sorts them as a walk comes to them.
    std::set<QByteArray> _waiting;
    std::set<QByteArray> _taken; ///< and not passed yet
};

} // namespace tidemark
