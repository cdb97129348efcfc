#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>

#include <vector>

namespace tidemark {

/// Who a process is, for as long as the system runs: fields between tabs, without a line end.
QByteArray identityOfThisProcess();
/// Whether the process of that identity lives on this machine. A process elsewhere counts as living.
bool livesProcess(const QByteArray &identity);

/// Keeps a file for one process: by the system's lock or, on file systems without locks, by a file beside it
/// that names the process. A process that takes over from one that ended makes a file whose name follows from
/// that one's; only one can make it. Let go of when the object or the process ends.
class RecordLock
{
public:
    RecordLock() = default;
    RecordLock(RecordLock &&other) noexcept;
    RecordLock &operator=(RecordLock &&other) noexcept;
    ~RecordLock();

    /// Takes the open file at the path; false when another process, or another descriptor of this one, has
    /// it.
    bool take(int descriptor, const FilePath &path);

private:
    bool _takeByName(const FilePath &path);

    FilePath _path;
    /// Files that name processes, the last one this one, the others such as ended; empty where the system's
    /// lock does.
    std::vector<FilePath> _owners;
};

} // namespace tidemark
