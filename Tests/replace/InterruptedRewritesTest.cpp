#include "replace/InterruptedRewrites.h"

#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteRecord.h"
#include "replace/SaveToDisk.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "support/TimeLimit.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QHash>
#include <QMutex>
#include <QScopeGuard>
#include <QSet>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <latch>
#include <random>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Ends the process before the call with the given number, whatever the thread.
class DeadlyCalls : public FileSystemCalls
{
public:
    DeadlyCalls(std::atomic<int> &count, int deadlyCall) : _count(count), _deadlyCall(deadlyCall)
    {
        setCurrent(this);
    }
    int open(const char *path, int flags, mode_t mode) override
    {
        return (_live(), FileSystemCalls::open(path, flags, mode));
    }
    ssize_t read(int descriptor, void *bytes, size_t count) override
    {
        return (_live(), FileSystemCalls::read(descriptor, bytes, count));
    }
    ssize_t pread(int descriptor, void *bytes, size_t count, off_t offset) override
    {
        return (_live(), FileSystemCalls::pread(descriptor, bytes, count, offset));
    }
    ssize_t write(int descriptor, const void *bytes, size_t count) override
    {
        // In two halves, so that there is something between them.
        return (_live(), FileSystemCalls::write(descriptor, bytes, (count + 1) / 2));
    }
    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
    {
        return (_live(), FileSystemCalls::pwrite(descriptor, bytes, (count + 1) / 2, offset));
    }
    int truncate(int descriptor, off_t size) override
    {
        return (_live(), FileSystemCalls::truncate(descriptor, size));
    }
    int reserve(int descriptor, off_t offset, off_t length) override
    {
        return (_live(), FileSystemCalls::reserve(descriptor, offset, length));
    }
    int sync(int) override { return (_live(), 0); }
    int syncFileSystem(int) override { return (_live(), 0); }
    int close(int descriptor) override { return (_live(), FileSystemCalls::close(descriptor)); }
    int remove(const char *path) override { return (_live(), FileSystemCalls::remove(path)); }
    int copyContent(int from, int to, std::optional<QByteArrayView> content) override
    {
        _live();
        char first = 0;
        EXPECT_EQ(::pread(from, &first, 1, 0), 1);
        EXPECT_EQ(::pwrite(to, &first, 1, 0), 1);
        return (_live(), FileSystemCalls::copyContent(from, to, content));
    }

private:
    void _live()
    {
        if (_count++ == _deadlyCall)
            ::raise(SIGKILL);
    }

    std::atomic<int> &_count;
    int _deadlyCall;
};

class InterruptedRewritesTest : public ReplaceTest
{
protected:
    static constexpr int FILE_COUNT = 24; ///< enough for several groups

    InterruptedRewritesTest() : _calls(shared<std::atomic<int>>())
    {
        for (int index = 0; index < FILE_COUNT; ++index) {
            // The last one is too long to be held in memory.
            const int lines = index + 1 == FILE_COUNT ? 30000 : 1 + index * index;
            QByteArray content;
            for (int line = 0; line < lines; ++line)
                content +=
                    line % 7 == 0 ? "a needle and another needle\r\n" : "nothing but hay in this line\n";
            const FilePath path = _folder.write("file" + QByteArray::number(index), content);
            _old.insert(path, content);
            _new.insert(path, QByteArray(content).replace("needle", "thread"));
        }
        _files = search(_folder.path(), u"needle"_s);
        EXPECT_EQ(_files.size(), FILE_COUNT);
    }
    ~InterruptedRewritesTest() override { ::munmap(_calls, sizeof *_calls); }

    /// Replaces everything in a process of its own, which is killed before the given call (none: -1), or
    /// after some microseconds.
    void replaceAndDie(int deadlyCall, int microseconds = 0)
    {
        *_calls = 0;
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const DeadlyCalls calls(*_calls, deadlyCall);
            const RewriteRecordFolder records(_state.path());
            replaceAll(_files, u"needle"_s, u"thread"_s);
            ::_exit(0);
        }
        if (microseconds > 0) {
            ::usleep(useconds_t(microseconds));
            ::kill(child, SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
    }
    /// As a person finds things at the next start; returns the number of files that were partly written.
    qsizetype checkAndDecide(bool putsBack)
    {
        UnflushedCalls calls;
        FileSystemCalls::setCurrent(&calls);
        const auto backToRealCalls = qScopeGuard([] { FileSystemCalls::setCurrent(nullptr); });
        InterruptedRewrites rewrites(_state.path());
        QHash<FilePath, FilePath> backups;
        for (const auto &file : rewrites.files()) {
            EXPECT_EQ(file.state, InterruptedRewrites::State::Damaged) << file.path.cString();
            backups.insert(file.path, file.backup);
        }
        for (auto file = _old.cbegin(); file != _old.cend(); ++file) {
            const QByteArray now = contentOfFile(file.key());
            const bool isWhole = now == file.value() || now == _new.value(file.key());
            EXPECT_EQ(isWhole, !backups.contains(file.key())) << file.key().cString();
            EXPECT_TRUE(isWhole || contentOfFile(backups.value(file.key())) == file.value());
        }
        if (putsBack) {
            QHash<FilePath, QByteArray> contents;
            for (const FilePath &path : backups.keys())
                contents.insert(path, contentOfFile(path));
            EXPECT_TRUE(rewrites.putBack().isEmpty());
            for (const FilePath &path : backups.keys()) {
                EXPECT_TRUE(contentOfFile(path) == _old.value(path)) << path.cString();
                EXPECT_TRUE(takeBackup(path, contents.value(path))) << "what stood there is gone";
            }
        } else {
            rewrites.keep();
            for (const FilePath &backup : std::as_const(backups))
                EXPECT_EQ(::unlink(backup.cString()), 0);
        }
        EXPECT_TRUE(_state.names().isEmpty());
        return backups.size();
    }
    /// Removes the file's backup with that content; false when there is none.
    bool takeBackup(const FilePath &path, const QByteArray &content) const
    {
        const QList<QByteArray> names = backupNames(_folder);
        return std::any_of(names.begin(), names.end(), [&](const QByteArray &name) {
            return name.startsWith(path.lastPathComponent() + ".TDMBackup.") &&
                   _folder.read(name) == content && ::unlink(_folder.path(name).cString()) == 0;
        });
    }
    /// What else lies about: kept backups.
    void checkAndClearBackups(bool areKept)
    {
        for (const TemporaryFolder *folder : {&_folder, &_transientFolder}) {
            for (const QByteArray &name : backupNames(*folder)) {
                const FilePath original = _folder.path(name.left(name.indexOf(".TDMBackup.")));
                const QByteArray content = folder->read(name);
                EXPECT_TRUE(areKept && content == _old.value(original)) << name.data();
                ::unlink(folder->path(name).cString());
            }
        }
    }
    void putEverythingBack()
    {
        for (const auto &file : std::as_const(_files)) {
            writeFile(file->path(), _old.value(file->path()));
            setModificationDate(file->path(), file->modificationDate()->nanoseconds);
        }
    }

    TemporaryFolder _state;
    FindResultItems _files;
    QHash<FilePath, QByteArray> _old;
    QHash<FilePath, QByteArray> _new;
    std::atomic<int> *_calls; ///< how many the last process made

private:
    template <typename Value>
    static Value *shared()
    {
        void *memory =
            ::mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        return new (memory) Value;
    }
};

TEST_F(InterruptedRewritesTest, AKillAtAnyMomentLosesNothingAndIsTold)
{
    // TIDEMARK_KILLS sets how many; half of them between two calls, half at any time.
    const int kills = qMax(qEnvironmentVariableIntValue("TIDEMARK_KILLS"), rounds(240));
    QElapsedTimer timer;
    timer.start();
    replaceAndDie(-1);
    const int calls = *_calls;
    const int duration = int(timer.nsecsElapsed() / 1000);
    EXPECT_EQ(checkAndDecide(true), 0);
    std::mt19937 random(20120704);
    qsizetype partlyWritten = 0;
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        SCOPED_TRACE("kill " + std::to_string(kill));
        checkAndClearBackups(true);
        putEverythingBack();
        const bool areKept = kill % 3 == 0;
        _areFilesSearchLocations = kill % 3 == 1;
        setKeepsBackups(areKept);
        if (kill % 2 == 0)
            replaceAndDie(int(qint64(kill) * calls / kills));
        else
            replaceAndDie(-1, 1 + int(random() % unsigned(duration)));
        partlyWritten += checkAndDecide(kill % 4 < 2);
        checkAndClearBackups(areKept);
    }
    EXPECT_GT(partlyWritten, kills / 20) << "most kills were too early or too late";
    RecordProperty("kills", kills);
    RecordProperty("partlyWritten", int(partlyWritten));
    std::cout << kills << " kills, " << partlyWritten << " files partly written, " << calls
              << " calls a run\n";
}

/// A record as an earlier run leaves it, of one file that it was rewriting.
class LeftRecordTest : public ReplaceTest
{
protected:
    LeftRecordTest() { write("the new content, of which half"); }

    /// Writes the file and its backup anew, and the record of a process that ended.
    void write(const QByteArray &now)
    {
        _path = _folder.write("caf\xE9 %.txt", now);
        _backup = _folder.write("caf\xE9 %.txt.TDMBackup.abc", OLD);
        record({entry()});
    }
    RewriteRecord::Entry entry() const
    {
        struct stat status = {};
        EXPECT_EQ(::lstat(_path.cString(), &status), 0);
        return {_path, _backup, FileState::fromStatus(status), digestOfBytes(OLD), digestOfBytes(NEW), false};
    }
    void record(const std::vector<RewriteRecord::Entry> &entries, RunProgress progress = {0, 1})
    {
        int errorNumber = 0;
        const auto record = RewriteRecord::recordInFolder(_state.path(), progress, errorNumber);
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(record->noteRewrites(entries), 0);
    }
    /// What is found, as it is left behind by the look.
    QList<InterruptedRewrites::State> states() const
    {
        QList<InterruptedRewrites::State> states;
        const InterruptedRewrites rewrites(_state.path());
        for (const auto &file : rewrites.files())
            states << file.state;
        return states;
    }

    using State = InterruptedRewrites::State;
    const QByteArray OLD = "the old content";
    const QByteArray NEW = "the new content, of which half is missing";
    TemporaryFolder _state;
    FilePath _path;
    FilePath _backup;
};

TEST_F(LeftRecordTest, ContentsTellWhatBecameOfAFile)
{
    const auto everywhere = [this] { return _folder.names(); };
    EXPECT_EQ(states(), QList<State>{State::Damaged});
    EXPECT_EQ(states(), QList<State>{State::Damaged}) << "looking decides nothing";
    InterruptedRewrites(_state.path()).keep();
    EXPECT_TRUE(_state.names().isEmpty());
    EXPECT_EQ(everywhere().size(), 2);

    for (const QByteArray &whole : {OLD, NEW}) {
        write(whole);
        EXPECT_TRUE(states().isEmpty());
        EXPECT_EQ(contentOfFile(_path), whole);
        EXPECT_EQ(everywhere(), QList<QByteArray>{_path.lastPathComponent()}) << "its backup is cleared";
        EXPECT_TRUE(_state.names().isEmpty());
    }
}

TEST_F(LeftRecordTest, AnEmptyOrWrongBackupIsNeverPutIntoAFile)
{
    const QList<std::function<void()>> changes = {
        [this] { writeFile(_backup, ""); },
        [this] { writeFile(_backup, "the OLD content"); },
        [this] { ::unlink(_backup.cString()); },
        [this] {
            ::unlink(_backup.cString());
            const FilePath other = _folder.write("other.txt", OLD);
            EXPECT_EQ(::symlink(other.cString(), _backup.cString()), 0);
        },
    };
    for (const auto &change : changes) {
        write("half");
        change();
        EXPECT_EQ(states(), QList<State>{State::UnusableBackup});
        InterruptedRewrites rewrites(_state.path());
        EXPECT_TRUE(rewrites.putBack().isEmpty());
        EXPECT_EQ(contentOfFile(_path), "half");
        // An intact file is nobody's business, whatever became of its backup.
        write(NEW);
        change();
        EXPECT_TRUE(states().isEmpty());
        EXPECT_EQ(contentOfFile(_path), NEW);
        ::unlink(_backup.cString());
    }
}

TEST_F(LeftRecordTest, WhatStandsInThePlaceOfAFileIsNeitherFollowedNorWaitedForNorChanged)
{
    const FilePath other = _folder.write("other.txt", "other");
    const QList<std::function<int()>> plants = {
        [&] { return ::symlink(other.cString(), _path.cString()); },
        [&] { return ::link(other.cString(), _path.cString()); },
        [&] { return ::mkfifo(_path.cString(), 0600); },
        [&] { return ::mkdir(_path.cString(), 0700); },
        [&] { return 0; },
    };
    for (const auto &plant : plants) {
        write("half");
        EXPECT_EQ(::unlink(_path.cString()), 0);
        EXPECT_EQ(plant(), 0);
        EXPECT_EQ(states(), QList<State>{State::Moved});
        EXPECT_TRUE(InterruptedRewrites(_state.path()).putBack().isEmpty());
        EXPECT_EQ(contentOfFile(other), "other");
        EXPECT_EQ(contentOfFile(_backup), OLD);
        std::filesystem::remove_all(_path.cString());
    }
    write("half");
    InterruptedRewrites rewrites(_state.path());
    EXPECT_EQ(::unlink(_path.cString()), 0);
    EXPECT_EQ(::mkfifo(_path.cString(), 0600), 0);
    EXPECT_EQ(rewrites.putBack().size(), 1) << "it was planted after the look";
    EXPECT_EQ(rewrites.files().size(), 1);
}

/// Kinds of file systems: of this one, and of one that a program provides, of which nobody knows whether a
/// flush of the whole reaches the disk.
enum class Kind { Own, Provided };
constexpr quint32 PROVIDED_BY_A_PROGRAM = 0x65735546;

/// Looks that the file is flushed before its backup goes.
class FlushBeforeRemoval : public FileSystemCalls
{
public:
    FlushBeforeRemoval(const FilePath &file, Kind kind) : _file(FileIdentity(file).inode), _kind(kind)
    {
        setCurrent(this);
    }
    ~FlushBeforeRemoval() override { setCurrent(nullptr); }

    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
    {
        const ssize_t written = FileSystemCalls::pwrite(descriptor, bytes, count, offset);
        isFlushed = isFlushed && !_isFile(descriptor);
        bytesWritten += _isFile(descriptor) ? qint64(written) : 0;
        return written;
    }
    int sync(int descriptor) override
    {
        isFlushed = isFlushed || _isFile(descriptor);
        return 0;
    }
    int syncFileSystem(int) override { return (isFlushed = true, ++fileSystemFlushes, 0); }
    quint32 fileSystemType(int descriptor) override
    {
        return _kind == Kind::Provided ? PROVIDED_BY_A_PROGRAM : FileSystemCalls::fileSystemType(descriptor);
    }
    int remove(const char *path) override
    {
        EXPECT_TRUE(isFlushed) << path;
        return FileSystemCalls::remove(path);
    }
    bool isFlushed = false;
    int fileSystemFlushes = 0;
    qint64 bytesWritten = 0;

private:
    bool _isFile(int descriptor) const
    {
        struct stat status = {};
        return ::fstat(descriptor, &status) == 0 && status.st_ino == _file;
    }
    ino_t _file;
    Kind _kind;
};

TEST_F(LeftRecordTest, NoBackupGoesBeforeTheDiskHasWhatItsFileHolds)
{
    for (const Kind kind : {Kind::Own, Kind::Provided}) {
        for (const QByteArray &now : {QByteArray("half"), OLD, NEW}) {
            write(now);
            const FlushBeforeRemoval calls(_path, kind);
            InterruptedRewrites rewrites(_state.path());
            EXPECT_TRUE(rewrites.putBack().isEmpty());
            EXPECT_EQ(contentOfFile(_path), now == NEW ? NEW : OLD);
            EXPECT_TRUE(calls.isFlushed);
            EXPECT_EQ(calls.fileSystemFlushes > 0, kind == Kind::Own);
            EXPECT_TRUE(::access(_backup.cString(), F_OK) != 0);
            for (const QByteArray &name : backupNames(_folder))
                ::unlink(_folder.path(name).cString());
        }
    }
    // What a failed flush leaves can be read, and still isn't on the disk.
    write(NEW);
    {
        int errorNumber = 0;
        const auto record = RewriteRecord::recordInFolder(_state.path(), {0, 1}, errorNumber);
        EXPECT_EQ(record->noteRewrites({entry()}), 0);
        EXPECT_EQ(record->noteFailedFlushes({_backup}), 0);
    }
    const FlushBeforeRemoval calls(_path, Kind::Own);
    EXPECT_TRUE(states().isEmpty());
    EXPECT_EQ(calls.bytesWritten, NEW.size());
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

/// The flush of a file system fails because of one file.
class OneUnflushedFile : public FileSystemCalls
{
public:
    explicit OneUnflushedFile(const FilePath &file) : _file(FileIdentity(file).inode) { setCurrent(this); }
    ~OneUnflushedFile() override { setCurrent(nullptr); }
    int sync(int descriptor) override
    {
        struct stat status = {};
        errno = EIO;
        return ::fstat(descriptor, &status) == 0 && status.st_ino == _file ? -1 : 0;
    }
    int syncFileSystem(int) override { return (errno = EIO, -1); }

private:
    ino_t _file;
};

TEST_F(LeftRecordTest, AFailedFlushIsTheMatterOfTheFileThatItIsAbout)
{
    for (const QByteArray &now : {QByteArray("half"), OLD, NEW}) {
        SCOPED_TRACE(now.toStdString());
        write(now);
        RewriteRecord::Entry other = entry();
        other.path = _folder.write("other.txt", NEW);
        other.backup = _folder.write("other.txt.TDMBackup.abc", OLD);
        other.file.inode = FileIdentity(other.path).inode;
        record({other});
        {
            const OneUnflushedFile calls(_path);
            InterruptedRewrites rewrites(_state.path());
            ASSERT_EQ(rewrites.files().size(), 1);
            EXPECT_TRUE(rewrites.files().first().path == _path);
            EXPECT_NE(::access(other.backup.cString(), F_OK), 0) << "the other file's is over";
            EXPECT_EQ(rewrites.putBack().size(), 1);
        }
        EXPECT_EQ(contentOfFile(_backup), OLD);
        // The disk is well again: what it didn't confirm is written once more.
        InterruptedRewrites rewrites(_state.path());
        EXPECT_TRUE(rewrites.putBack().isEmpty());
        EXPECT_EQ(contentOfFile(_path), now == NEW ? NEW : OLD);
        EXPECT_NE(::access(_backup.cString(), F_OK), 0);
        EXPECT_TRUE(_state.names().isEmpty());
        for (const QByteArray &name : backupNames(_folder))
            ::unlink(_folder.path(name).cString());
    }
}

/// Lets one call fail.
class OneFault : public FileSystemCalls
{
public:
    OneFault(int failing, int errorNumber) : _failing(failing), _errorNumber(errorNumber)
    {
        setCurrent(this);
    }
    ~OneFault() override { setCurrent(nullptr); }
    int count = 0;

    int open(const char *path, int flags, mode_t mode) override
    {
        return _fails() ? -1 : FileSystemCalls::open(path, flags, mode);
    }
    ssize_t pread(int descriptor, void *bytes, size_t size, off_t offset) override
    {
        return _fails() ? -1 : FileSystemCalls::pread(descriptor, bytes, size, offset);
    }
    ssize_t pwrite(int descriptor, const void *bytes, size_t size, off_t offset) override
    {
        return _fails() ? -1 : FileSystemCalls::pwrite(descriptor, bytes, size, offset);
    }
    int truncate(int descriptor, off_t size) override
    {
        return _fails() ? -1 : FileSystemCalls::truncate(descriptor, size);
    }
    int sync(int) override { return _fails() ? -1 : 0; }
    int syncFileSystem(int) override { return _fails() ? -1 : 0; }
    int remove(const char *path) override { return _fails() ? -1 : FileSystemCalls::remove(path); }
    int copyContent(int from, int to, std::optional<QByteArrayView> content) override
    {
        return _fails() ? -1 : FileSystemCalls::copyContent(from, to, content);
    }

private:
    bool _fails()
    {
        errno = _errorNumber;
        return count++ == _failing;
    }
    int _failing;
    int _errorNumber;
};

TEST_F(LeftRecordTest, AFailureInLookingOrPuttingBackIsNeverTheLastWord)
{
    InterruptedRewrites(_state.path()).keep();
    for (const int errorNumber : {EIO, EMFILE, EACCES}) {
        for (const QByteArray &now : {QByteArray("half of a content"), NEW}) {
            int calls = 1;
            for (int failing = 0; failing <= calls; ++failing) {
                SCOPED_TRACE(now.toStdString() + ", call " + std::to_string(failing) + ", error " +
                             std::to_string(errorNumber));
                write(now);
                {
                    OneFault fault(failing, errorNumber);
                    InterruptedRewrites rewrites(_state.path());
                    EXPECT_TRUE(now != NEW || rewrites.files().isEmpty()) << "it is whole";
                    (void)rewrites.putBack();
                    calls = qMax(calls, fault.count);
                }
                const QByteArray then = contentOfFile(_path);
                EXPECT_TRUE(now == NEW ? then == NEW : backupNames(_folder).size() > 0 || then == OLD);
                EXPECT_TRUE(InterruptedRewrites(_state.path()).putBack().isEmpty());
                EXPECT_EQ(contentOfFile(_path), now == NEW ? NEW : OLD);
                EXPECT_TRUE(_state.names().isEmpty());
                for (const QByteArray &name : backupNames(_folder))
                    ::unlink(_folder.path(name).cString());
            }
            EXPECT_GT(calls, 3);
        }
    }
}

TEST_F(LeftRecordTest, AFileInTwoRecordsIsPutBackOnceFromTheLaterOne)
{
    const FilePath later = _folder.write("caf\xE9 %.txt.TDMBackup.xyz", NEW);
    RewriteRecord::Entry second = entry();
    second.backup = later;
    second.oldContent = digestOfBytes(NEW);
    second.newContent = digestOfBytes("the newest");
    // Records have no order of their own within the clock's steps.
    const FilePath first = _state.path(_state.names().first());
    setModificationDate(first, TDFileCommon::fileModificationDate(first)->nanoseconds - 1000000000);
    record({second});
    InterruptedRewrites rewrites(_state.path());
    ASSERT_EQ(rewrites.files().size(), 1);
    EXPECT_TRUE(rewrites.files().first().backup == later);
    EXPECT_TRUE(rewrites.putBack().isEmpty());
    EXPECT_EQ(contentOfFile(_path), NEW);
    EXPECT_EQ(contentOfFile(_backup), OLD) << "the other one isn't put over it";
}

TEST_F(LeftRecordTest, ARewriteOfWhatAnotherLeftHalfWrittenSettlesNothingOfThat)
{
    const QByteArray half = "half of it";
    const QByteArray halfReplaced = "half of that";
    // The second rewrite is done, or wasn't begun, or was cut off as well.
    for (const QByteArray &now : {halfReplaced, half, QByteArray("half of")}) {
        SCOPED_TRACE(now.constData());
        write(now);
        const FilePath first = _state.path(_state.names().first());
        setModificationDate(first, TDFileCommon::fileModificationDate(first)->nanoseconds - 1000000000);
        RewriteRecord::Entry second = entry();
        second.backup = _folder.write("caf\xE9 %.txt.TDMBackup.xyz", half);
        second.oldContent = digestOfBytes(half);
        second.newContent = digestOfBytes(halfReplaced);
        record({second});
        InterruptedRewrites rewrites(_state.path());
        ASSERT_EQ(rewrites.files().size(), 1);
        EXPECT_EQ(rewrites.files().first().state, State::Damaged);
        EXPECT_TRUE(rewrites.files().first().backup == _backup);
        EXPECT_TRUE(rewrites.putBack().isEmpty());
        EXPECT_EQ(contentOfFile(_path), OLD);
        EXPECT_TRUE(_state.names().isEmpty());
        for (const QByteArray &name : backupNames(_folder))
            ::unlink(_folder.path(name).cString());
    }
}

TEST_F(LeftRecordTest, TheSameHoldsWhereTheClockWasSetBackInBetween)
{
    const QByteArray half = "half of it";
    write(half);
    const FilePath first = _state.path(_state.names().first());
    setModificationDate(first, TDFileCommon::fileModificationDate(first)->nanoseconds + 1000000000000);
    RewriteRecord::Entry second = entry();
    second.backup = _folder.write("caf\xE9 %.txt.TDMBackup.xyz", half);
    second.oldContent = digestOfBytes(half);
    second.newContent = digestOfBytes("half of that");
    record({second});
    InterruptedRewrites rewrites(_state.path());
    ASSERT_EQ(rewrites.files().size(), 1);
    EXPECT_TRUE(rewrites.files().first().backup == _backup);
    EXPECT_TRUE(rewrites.putBack().isEmpty());
    EXPECT_EQ(contentOfFile(_path), OLD);
}

TEST_F(LeftRecordTest, FilesOfADiskThatIsNotThereAreAskedAboutAgain)
{
    const QByteArray folder = _folder.path().bytes();
    const QByteArray away = folder + "-away";
    for (const bool keeps : {true, false}) {
        ASSERT_EQ(::rename(folder.constData(), away.constData()), 0);
        {
            InterruptedRewrites rewrites(_state.path());
            EXPECT_EQ(rewrites.files().size(), 1);
            if (keeps)
                rewrites.keep();
            else
                (void)rewrites.putBack();
        }
        ASSERT_EQ(::rename(away.constData(), folder.constData()), 0);
        EXPECT_EQ(states(), QList<State>{State::Damaged});
    }
}

TEST_F(LeftRecordTest, NothingIsBelievedButWholeListsOfTheDead)
{
    const QByteArray content = _state.read(_state.names().first());
    // Cut off anywhere, it is from before the first byte of the file was changed.
    const qsizetype begin = content.indexOf("begin\t");
    ASSERT_GT(begin, 0);
    for (const qsizetype length : {begin - 1, begin, begin + 5, content.size() - 1}) {
        _state.write(_state.names().first(), content.first(length));
        EXPECT_TRUE(states().isEmpty()) << length;
        EXPECT_EQ(contentOfFile(_backup), OLD);
        _state.write("rewrites-x", content);
    }
    EXPECT_EQ(states().size(), 1);
    InterruptedRewrites(_state.path()).keep();

    const FilePath precious = _folder.write("precious", "");
    _state.write("rewrites-y", "\n\t\t\nend\nend\t\nbackup\t" + _path.bytes().toPercentEncoding("/") + "\t" +
                                   precious.bytes() + "\nprogress\t-1\t99\nbackup\t\t\n");
    EXPECT_TRUE(states().isEmpty());
    EXPECT_EQ(contentOfFile(precious), "") << "not the name of a backup";

    int errorNumber = 0;
    const auto living = RewriteRecord::recordInFolder(_state.path(), {0, 1}, errorNumber);
    EXPECT_EQ(living->noteRewrites({entry()}), 0);
    EXPECT_TRUE(states().isEmpty()) << "its process lives";
}

TEST_F(LeftRecordTest, AFileWhoseLineIsLostFromAWholeListIsTold)
{
    const QByteArray name = _state.names().first();
    QByteArray content = _state.read(name);
    const qsizetype start = content.indexOf("rewrite\t");
    const QByteArray noted = "backup\t" + _path.bytes().toPercentEncoding("/") + '\t' +
                             _backup.bytes().toPercentEncoding("/") + '\n';
    content.replace(start, content.indexOf('\n', start) - start, QByteArray(8, '\0'));
    _state.write(name, noted + content);
    EXPECT_EQ(states(), QList<State>{State::UnusableBackup});
    EXPECT_EQ(contentOfFile(_backup), OLD);
    // What holds all of its backup and no more wasn't touched.
    writeFile(_path, OLD);
    EXPECT_TRUE(states().isEmpty());
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

TEST_F(LeftRecordTest, ARunThatWasCutShortIsToldWithHowFarItCame)
{
    InterruptedRewrites(_state.path()).keep();
    write(NEW);
    InterruptedRewrites(_state.path()).keep();
    _folder.write(_backup.lastPathComponent(), OLD);
    record({entry()}, {341, 30000});
    InterruptedRewrites rewrites(_state.path());
    EXPECT_TRUE(rewrites.files().isEmpty());
    EXPECT_EQ(rewrites.progress().done, 342);
    EXPECT_EQ(rewrites.progress().total, 30000);
    rewrites.keep();
    EXPECT_TRUE(_state.names().isEmpty());
}

/// A file system without locks.
class NoLocks : public UnflushedCalls
{
public:
    NoLocks() { setCurrent(this); }
    ~NoLocks() override { setCurrent(nullptr); }
    int lock(int) override { return (errno = ENOLCK, -1); }
};

TEST_F(LeftRecordTest, WhereThereAreNoLocksProcessesKeepOutOfEachOthersWay)
{
    InterruptedRewrites(_state.path()).keep();
    const NoLocks noLocks;
    const pid_t child = ::fork();
    if (child == 0) {
        record({entry()});
        int errorNumber = 0;
        const auto record = RewriteRecord::recordInFolder(_state.path(), {0, 1}, errorNumber);
        ::_exit(record && record->noteRewrites({entry()}) == 0 && states().size() == 1 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0) << "the living record was looked at, or the other one wasn't";
    InterruptedRewrites rewrites(_state.path());
    EXPECT_EQ(rewrites.files().size(), 1) << "both records are of the same file";
    EXPECT_TRUE(states().isEmpty()) << "somebody is looking";
    rewrites.keep();
    EXPECT_TRUE(states().isEmpty());
}

TEST_F(LeftRecordTest, OnlyOneTakesOverFromAnOwnerThatEnded)
{
    constexpr int ROUNDS = 300;
    constexpr int TAKERS = 4;
    const NoLocks noLocks;
    for (int round = 0; round < ROUNDS && !HasFailure(); ++round) {
        const FilePath record = _state.write("record", "");
        _state.write("record.owner", identityOfThisProcess() + "0\n0123"); // began at another time
        std::latch start(TAKERS);
        std::atomic<int> taken = 0;
        std::array<RecordLock, TAKERS> locks;
        {
            std::vector<std::thread> takers;
            for (RecordLock &lock : locks)
                takers.emplace_back([&] {
                    start.arrive_and_wait();
                    taken += lock.take(-1, record) ? 1 : 0;
                });
            for (std::thread &taker : takers)
                taker.join();
        }
        EXPECT_EQ(taken, 1);
        EXPECT_EQ(::unlink(record.cString()), 0);
        locks = {};
        EXPECT_EQ(_state.names().size(), 1) << "what belongs to the record goes with it";
    }
}

/// Knows what a power cut would leave, and looks that nothing is overtaken.
class FlushWatchingCalls : public FileSystemCalls
{
public:
    FlushWatchingCalls(const TemporaryFolder &state, Kind kind) : _state(state), _kind(kind)
    {
        setCurrent(this);
    }
    ~FlushWatchingCalls() override { setCurrent(nullptr); }

    int open(const char *path, int flags, mode_t mode) override
    {
        const int descriptor = FileSystemCalls::open(path, flags, mode);
        const QMutexLocker lock(&_mutex);
        _paths.insert(descriptor, path);
        if ((flags & O_CREAT) != 0)
            _unflushedNames.insert(path);
        return descriptor;
    }
    ssize_t write(int descriptor, const void *bytes, size_t count) override
    {
        // Of the record only the list of coming rewrites has to be on the disk, behind the backups in it.
        const QByteArray text(static_cast<const char *>(bytes), qsizetype(count));
        if (text.startsWith("rewrite\t")) {
            _dirty(descriptor);
            _expectFlushed([&](const QByteArray &path) { return text.contains('\t' + path + '\t'); });
        }
        return FileSystemCalls::write(descriptor, bytes, count);
    }
    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
    {
        _expectReady(_dirty(descriptor));
        return FileSystemCalls::pwrite(descriptor, bytes, count, offset);
    }
    int copyContent(int from, int to, std::optional<QByteArrayView> content) override
    {
        return (_dirty(to), FileSystemCalls::copyContent(from, to, content));
    }
    int truncate(int descriptor, off_t size) override
    {
        _expectReady(_dirty(descriptor));
        return FileSystemCalls::truncate(descriptor, size);
    }
    int sync(int descriptor) override
    {
        const QMutexLocker lock(&_mutex);
        const QByteArray path = _paths.value(descriptor);
        _unflushed.remove(path);
        _unflushedNames.removeIf([&](const QByteArray &name) { return name.startsWith(path + '/'); });
        return 0;
    }
    int syncFileSystem(int) override
    {
        const QMutexLocker lock(&_mutex);
        ++fileSystemFlushes;
        _unflushed.clear();
        _unflushedNames.clear();
        return 0;
    }
    quint32 fileSystemType(int descriptor) override
    {
        return _kind == Kind::Provided ? PROVIDED_BY_A_PROGRAM : FileSystemCalls::fileSystemType(descriptor);
    }
    int remove(const char *path) override
    {
        const QMutexLocker lock(&_mutex);
        const QByteArray original = QByteArray(path).left(QByteArray(path).indexOf(".TDMBackup."));
        EXPECT_FALSE(_changed.contains(original) && _unflushed.contains(original)) << path;
        _unflushed.remove(path);
        _unflushedNames.remove(path);
        return FileSystemCalls::remove(path);
    }

    int fileSystemFlushes = 0;

private:
    void _expectFlushed(const std::function<bool(const QByteArray &path)> &isNeeded)
    {
        const QMutexLocker lock(&_mutex);
        for (const QByteArray &path : _unflushed + _unflushedNames)
            EXPECT_FALSE(isNeeded(path) && path.contains(".TDMBackup.")) << path.constData();
    }
    /// For its first change.
    void _expectReady(const QByteArray &path)
    {
        const QByteArray stateFolder = _state.path().bytes();
        if (path.startsWith(stateFolder))
            return;
        const QMutexLocker lock(&_mutex);
        if (_changed.contains(path))
            return;
        _changed.insert(path);
        QSet<QByteArray> needed;
        for (const QByteArray &name : _state.names()) {
            if (_state.read(name).contains("rewrite\t" + path + "\t"))
                needed.insert(stateFolder + '/' + name);
        }
        EXPECT_EQ(needed.size(), 1) << path.constData();
        for (const QByteArray &other : _unflushed + _unflushedNames)
            EXPECT_FALSE(other.startsWith(path + ".TDMBackup.") || needed.contains(other))
                << other.constData();
    }
    QByteArray _dirty(int descriptor)
    {
        const QMutexLocker lock(&_mutex);
        _unflushed.insert(_paths.value(descriptor));
        return _paths.value(descriptor);
    }

    const TemporaryFolder &_state;
    Kind _kind;
    QMutex _mutex;
    QHash<int, QByteArray> _paths;
    QSet<QByteArray> _unflushed;
    QSet<QByteArray> _unflushedNames;
    QSet<QByteArray> _changed;
};

TEST_F(InterruptedRewritesTest, NothingOvertakesTheDisk)
{
    setKeepsBackups(false);
    const RewriteRecordFolder records(_state.path());
    {
        FlushWatchingCalls calls(_state, Kind::Own);
        replaceAll(_files, u"needle"_s, u"thread"_s);
        EXPECT_LT(calls.fileSystemFlushes, FILE_COUNT / 2);
    }
    {
        FlushWatchingCalls calls(_state, Kind::Provided);
        replaceAll(search(_folder.path(), u"thread"_s), u"thread"_s, u"yarn"_s);
        EXPECT_EQ(calls.fileSystemFlushes, 0);
    }
    FlushWatchingCalls calls(_state, Kind::Own);
    TDError error;
    const auto again = search(_folder.path(), u"hay"_s);
    again.first()->matchLines().first()->matchLine()->setMatchLineString(u"no hay\n"_s);
    EXPECT_TRUE(saveToDiskFindResultItem(
        *again.first(), [](const FilePath &) { return false; }, error));
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

TEST_F(InterruptedRewritesTest, AFullDiskRefusesFilesButLosesNone)
{
    const FilePath small = _state.makeFolder("small");
    if (::mount("tmpfs", small.cString(), "tmpfs", 0, "size=256k,mode=700") != 0)
        GTEST_SKIP() << "file systems can't be mounted here";
    const QByteArray content = QByteArray("one needle in this line\n").repeated(160);
    for (int index = 0; index < 20; ++index)
        writeFile(small.appendingPathComponent("file" + QByteArray::number(index)), content);
    setKeepsBackups(false);
    const auto contents = [&small] {
        QList<QByteArray> all;
        for (int index = 0; index < 20; ++index)
            all << contentOfFile(small.appendingPathComponent("file" + QByteArray::number(index)));
        return all;
    };
    const auto run = [this, &small](const QString &find, const QString &replaceText) {
        const std::atomic<bool> stop = false;
        return TDSelectedMatchReplacement(request(find, replaceText), stop)
            .replaceSelectedMatches(matchLinesOf(search(small, find)));
    };
    // Room for a few backups at a time only.
    EXPECT_EQ(run(u"needle"_s, u"thread"_s).filesRewritten, 20U);
    const QByteArray second = QByteArray(content).replace("needle", "thread");
    EXPECT_TRUE(contents() == QList<QByteArray>(20, second));
    // Room for some of the new contents only: those that fail keep their backup.
    const auto outcome = run(u"thread"_s, u"thread that is much too long for such a small disk"_s);
    EXPECT_FALSE(outcome.failures.empty());
    QDirIterator entries(QString::fromUtf8(small.bytes()), {u"*.TDMBackup.*"_s}, QDir::Files);
    qsizetype backupCount = 0;
    while (entries.hasNext())
        backupCount += contentOfFile(FilePath::fromDisplayText(entries.next())) == second ? 1 : 0;
    const QByteArray third =
        QByteArray(second).replace("thread", "thread that is much too long for such a small disk");
    qsizetype partlyWritten = 0;
    for (const QByteArray &now : contents())
        partlyWritten += now != second && now != third ? 1 : 0;
    EXPECT_EQ(backupCount, partlyWritten);

    EXPECT_EQ(::mount("tmpfs", small.cString(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=256k"), 0);
    const QList<QByteArray> before = contents();
    EXPECT_EQ(run(u"needle"_s, u"pin"_s).filesRewritten + run(u"thread"_s, u"pin"_s).filesRewritten, 0U);
    EXPECT_TRUE(contents() == before);
    EXPECT_EQ(::umount(small.cString()), 0);
}

} // namespace
} // namespace tidemark::test
