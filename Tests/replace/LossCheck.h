#pragma once

#include "foundation/FilePath.h"
#include "foundation/FileSystemCalls.h"
#include "replace/InterruptedRewrites.h"

#include <QHash>
#include <QStringList>

#include <array>
#include <atomic>
#include <functional>

namespace tidemark::test {

/// The calls that a process and its children made.
struct CallCounts
{
    /// In memory that children share; never given back.
    static CallCounts &inSharedMemory();

    enum Kind { Open, Read, Write, Reserve, Truncate, Sync, SyncFileSystem, Close, Remove, Copy, KINDS };
    std::atomic<int> all = 0;
    std::array<std::atomic<int>, KINDS> each = {};
};

/// Where a process is stopped: before a call by its number, counted among all or among those of its kind.
struct StopAt
{
    int kind = -1;   ///< all
    int number = -1; ///< none
};

/// Stops its process (SIGSTOP) before one call, whatever the thread. Nothing is written in one go.
class StoppingCalls : public FileSystemCalls
{
public:
    StoppingCalls(CallCounts &counts, StopAt stopAt);
    ~StoppingCalls() override;

    int open(const char *path, int flags, mode_t mode) override;
    ssize_t read(int descriptor, void *bytes, size_t count) override;
    ssize_t pread(int descriptor, void *bytes, size_t count, off_t offset) override;
    ssize_t write(int descriptor, const void *bytes, size_t count) override;
    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override;
    int reserve(int descriptor, off_t offset, off_t length) override;
    int truncate(int descriptor, off_t size) override;
    int sync(int descriptor) override;
    int syncFileSystem(int descriptor) override;
    int close(int descriptor) override;
    int remove(const char *path) override;
    int copyContent(int from, int to, std::optional<QByteArrayView> content) override;

private:
    void _count(CallCounts::Kind kind);

    CallCounts &_counts;
    StopAt _stopAt;
};

/// The way things went for the files of one run, or several.
struct Losses
{
    int damaged = 0;            ///< partly written, told, with a backup that holds the old content: no loss
    int lost = 0;               ///< partly written, and not told or without a usable backup
    int falselyTold = 0;        ///< whole and called damaged
    int overwritten = 0;        ///< whole before something was put back and another content afterwards
    int notPutBack = 0;         ///< damaged, not the old content after it was put back
    int presentContentGone = 0; ///< put back without a copy of what stood there
    QStringList messages;       ///< the first of each

    void note(int Losses::*what, const FilePath &path, const char *text);
};

/// Knows the old and the new content of files that are rewritten, and compares what is there with them as a
/// person finds it at the next start.
class LossCheck
{
public:
    explicit LossCheck(const FilePath &stateFolder) : _stateFolder(stateFolder) {}

    void add(const FilePath &path, const QByteArray &oldContent, const QByteArray &newContent);
    QList<FilePath> paths() const { return _old.keys(); }
    const QByteArray &oldContent(const FilePath &path) const { return *_old.constFind(path); }
    const QByteArray &newContent(const FilePath &path) const { return *_new.constFind(path); }
    bool isWhole(const FilePath &path, const QByteArray &content) const;

    enum class Decision { PutBack, Keep, Later };
    /// Looks at what was left, compares, decides, and compares again.
    void checkAndDecide(Decision decision, Losses &losses) const;

private:
    struct Told
    {
        FilePath backup;
        bool isUsable = false;
    };
    using Contents = QHash<FilePath, QByteArray>;

    static QHash<FilePath, Told> _told(const InterruptedRewrites &rewrites);
    Contents _contents() const;
    void _checkBeforeDecision(const Contents &contents, const QHash<FilePath, Told> &told,
                              Losses &losses) const;
    void _checkAfterPuttingBack(const Contents &before, Losses &losses) const;
    static bool _hasCopyBeside(const FilePath &path, const QByteArray &content);

    FilePath _stateFolder;
    Contents _old;
    Contents _new;
};

/// A child of this process that carries something out.
class ChildProcess
{
public:
    explicit ChildProcess(const std::function<void()> &run);
    /// It is killed if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Until it stops or ends; true when it stopped.
    bool waitUntilStopped();
    void kill();
    /// Its signal, or 0, after its end.
    int endedBySignal() const;

private:
    int _id;
    int _status = 0;
    bool _isOver = false;
};

} // namespace tidemark::test
