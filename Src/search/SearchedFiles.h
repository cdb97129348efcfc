#pragma once

#include "foundation/TDFileCommon.h"
#include "reading/FileToRead.h"

#include <QHashFunctions>

#include <atomic>
#include <mutex>
#include <sys/types.h>
#include <unordered_map>
#include <unordered_set>

namespace tidemark {

/// Lets each file be searched once, however many paths lead to it: under the one that comes first in the
/// order of the walk, whichever thread gets where first. Without overlapping locations only files with
/// several links are remembered. A file that is read unasked isn't known here until another path leads to it,
/// whose listing tells.
class SearchedFiles : public FileGate
{
public:
    /// To be told before the search, which begins now.
    void setLocationsOverlap(bool overlap)
    {
        _locationsOverlap = overlap;
        _began = FileDate::now();
    }
    bool locationsOverlap() const { return _locationsOverlap; }

    /// From any thread. Once it has answered no about a number it goes on doing so.
    bool admits(const FileToRead &file, const struct stat &status) override;
    void didNotOpen(const FileToRead &file) override;
    bool isUnopened(quint64 number);
    /// Whether another path came first; settled once all files before this one have been searched.
    bool isKnownByAnotherPath(quint64 number);
    /// Whether it was admitted though another path was listed for it before: it counts only if that one came
    /// to nothing.
    bool isInDoubt(quint64 number);

private:
    struct Identity
    {
        dev_t device;
        ino_t inode;
        qint64 birthTime; ///< in nanoseconds; 0 where it isn't known
        friend bool operator==(const Identity &, const Identity &) = default;
    };
    struct Hash
    {
        size_t operator()(const Identity &file) const
        {
            return qHashMulti(0, file.device, file.inode, file.birthTime);
        }
    };

    static Identity _identityOf(const FileToRead &file, const struct stat &status);
    bool _isListedBefore(const FileToRead &file, const Identity &identity) const;

    bool _locationsOverlap = false;
    FileDate _began;
    std::mutex _mutex;
    std::unordered_map<Identity, quint64, Hash> _firstNumbers;
    std::unordered_set<quint64> _refused;
    std::atomic<bool> _hasRefused = false;
    std::unordered_set<quint64> _inDoubt;
    std::unordered_set<quint64> _unopened;
    std::atomic<bool> _hasUnopened = false;
};

} // namespace tidemark
