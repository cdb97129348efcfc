#include "replace/InterruptedRewrites.h"

#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteRecord.h"
#include "replace/SaveToDisk.h"
#include "replace/TDSelectedMatchReplacement.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QHash>
#include <QMutex>
#include <QSet>

#include <csignal>
#include <fcntl.h>
#include <random>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/wait.h>
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
    int truncate(int descriptor, off_t size) override
    {
        return (_live(), FileSystemCalls::truncate(descriptor, size));
    }
    int sync(int) override { return (_live(), 0); }
    int syncFileSystem(int) override { return (_live(), 0); }
    int close(int descriptor) override { return (_live(), FileSystemCalls::close(descriptor)); }
    int remove(const char *path) override { return (_live(), FileSystemCalls::remove(path)); }
    int copyContent(int from, int to) override
    {
        _live();
        char first = 0;
        EXPECT_EQ(::pread(from, &first, 1, 0), 1);
        EXPECT_EQ(::pwrite(to, &first, 1, 0), 1);
        return (_live(), FileSystemCalls::copyContent(from, to));
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
            RewriteRecord record(_state.path());
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
        InterruptedRewrites rewrites(_state.path());
        QHash<FilePath, FilePath> backups;
        for (const auto &file : rewrites.files())
            backups.insert(file.path, file.backup);
        for (auto file = _old.cbegin(); file != _old.cend(); ++file) {
            const QByteArray now = contentOfFile(file.key());
            const bool isWhole = now == file.value() || now == _new.value(file.key());
            EXPECT_EQ(isWhole, !backups.contains(file.key())) << file.key().cString();
            EXPECT_TRUE(isWhole || contentOfFile(backups.value(file.key())) == file.value());
        }
        if (putsBack) {
            EXPECT_TRUE(rewrites.putBack().isEmpty());
            for (const FilePath &path : backups.keys())
                EXPECT_TRUE(contentOfFile(path) == _old.value(path)) << path.cString();
        } else {
            rewrites.keep();
            for (const FilePath &backup : std::as_const(backups))
                EXPECT_EQ(::unlink(backup.cString()), 0);
        }
        EXPECT_TRUE(_state.names().isEmpty());
        return backups.size();
    }
    /// What else lies about: kept backups, and at most a few that had just got their name.
    void checkAndClearBackups(bool areKept)
    {
        for (const TemporaryFolder *folder : {&_folder, &_transientFolder}) {
            for (const QByteArray &name : backupNames(*folder)) {
                const FilePath original = _folder.path(name.left(name.indexOf(".TDMBackup.")));
                const QByteArray content = folder->read(name);
                EXPECT_TRUE(content.isEmpty() || (areKept && content == _old.value(original))) << name.data();
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
    const int kills = qMax(qEnvironmentVariableIntValue("TIDEMARK_KILLS"), 240);
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

TEST_F(InterruptedRewritesTest, RecordsOfTheLivingAreLeftAloneAndNonsenseHarmsNothing)
{
    const FilePath path = _files.first()->path();
    const FilePath notABackup = _folder.write("precious", _old.value(path));
    const FilePath backup = _folder.write("file0.TDMBackup.abc", _old.value(path));
    RewriteRecord record(_state.path());
    record.noteRewrites({{path, backup, {}, false}});
    EXPECT_TRUE(InterruptedRewrites(_state.path()).files().isEmpty());
    EXPECT_EQ(contentOfFile(backup), _old.value(path));

    const QByteArray encodedPath = path.bytes().toPercentEncoding("/");
    const QByteArray rest = encodedPath + "\t" + notABackup.bytes() + "\t1\tff\tdeleted\n";
    _state.write("rewrites-x", "\n\t\t\nend\nend\t\nrewrite\t" + rest + "backup\t" + encodedPath + "\t" +
                                   notABackup.bytes() + "\nrewrite\t" + encodedPath + "\t" + backup.bytes());
    EXPECT_TRUE(InterruptedRewrites(_state.path()).files().isEmpty());
    EXPECT_EQ(contentOfFile(notABackup), _old.value(path));
    EXPECT_EQ(contentOfFile(backup), _old.value(path)) << "the entry was cut off before the file was touched";
    EXPECT_EQ(_state.names().size(), 1);
}

/// Knows what a power cut would leave, and looks that nothing is overtaken.
class FlushWatchingCalls : public FileSystemCalls
{
public:
    explicit FlushWatchingCalls(const TemporaryFolder &state) : _state(state) { setCurrent(this); }
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
        // Of the record only the entries of coming rewrites have to be on the disk.
        const QByteArrayView text(static_cast<const char *>(bytes), qsizetype(count));
        if (!text.startsWith("end\t") && !text.startsWith("backup\t"))
            _dirty(descriptor);
        return FileSystemCalls::write(descriptor, bytes, count);
    }
    int copyContent(int from, int to) override
    {
        return (_dirty(to), FileSystemCalls::copyContent(from, to));
    }
    int truncate(int descriptor, off_t size) override
    {
        const QByteArray path = _dirty(descriptor);
        if (!path.startsWith(_state.path().bytes())) {
            const QMutexLocker lock(&_mutex);
            _truncated.insert(path);
            const QByteArray record = _state.read(_state.names().value(0));
            EXPECT_TRUE(record.contains("rewrite\t" + path + "\t")) << path.constData();
            for (const QByteArray &other : _unflushed + _unflushedNames)
                EXPECT_FALSE(other.startsWith(path + ".TDMBackup.") ||
                             other.startsWith(_state.path().bytes()))
                    << other.constData();
        }
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
    int remove(const char *path) override
    {
        const QMutexLocker lock(&_mutex);
        const QByteArray original = QByteArray(path).left(QByteArray(path).indexOf(".TDMBackup."));
        EXPECT_FALSE(_truncated.contains(original) && _unflushed.contains(original)) << path;
        _unflushed.remove(path);
        _unflushedNames.remove(path);
        return FileSystemCalls::remove(path);
    }

    int fileSystemFlushes = 0;

private:
    QByteArray _dirty(int descriptor)
    {
        const QMutexLocker lock(&_mutex);
        _unflushed.insert(_paths.value(descriptor));
        return _paths.value(descriptor);
    }

    const TemporaryFolder &_state;
    QMutex _mutex;
    QHash<int, QByteArray> _paths;
    QSet<QByteArray> _unflushed;
    QSet<QByteArray> _unflushedNames;
    QSet<QByteArray> _truncated;
};

TEST_F(InterruptedRewritesTest, NothingOvertakesTheDisk)
{
    setKeepsBackups(false);
    for (const bool atOnce : {true, false}) {
        FlushWatchingCalls calls(_state);
        RewriteRecord record(_state.path());
        if (atOnce) {
            replaceAll(_files, u"needle"_s, u"thread"_s);
            EXPECT_LT(calls.fileSystemFlushes, FILE_COUNT / 2);
        } else {
            TDError error;
            const auto again = search(_folder.path(), u"hay"_s);
            again.first()->matchLines().first()->matchLine()->setMatchLineString(u"no hay\n"_s);
            EXPECT_TRUE(saveToDiskFindResultItem(
                *again.first(), [](const FilePath &) { return false; }, error));
        }
    }
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
    EXPECT_FALSE(outcome.failedPaths.isEmpty());
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
