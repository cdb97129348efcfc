#include "replace/RewriteRun.h"

#include "foundation/FileSystemCalls.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/TDSelectedMatchReplacement.h"

#include <QDir>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;
using Outcome = TDSelectedMatchReplacement::Outcome;

/// Fails or watches some calls, without flushing.
class WatchedCalls : public UnflushedCalls
{
public:
    WatchedCalls() { setCurrent(this); }
    ~WatchedCalls() override { setCurrent(nullptr); }

    int failingWrite = -1; ///< by number; that write and all behind it fail
    int failingFlush = -1; ///< by number
    std::function<void()> whenWriting = [] {};
    std::function<void()> whenFlushing = [] {};
    QList<quint64> flushedFiles; ///< inodes of what was flushed by itself
    std::atomic<int> writes = 0;
    std::atomic<int> flushes = 0;

    ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset) override
    {
        whenWriting();
        if (const int number = writes++; failingWrite < 0 || number < failingWrite)
            return UnflushedCalls::pwrite(descriptor, bytes, count, offset);
        errno = ENOSPC;
        return -1;
    }
    int sync(int descriptor) override
    {
        struct stat status = {};
        const std::lock_guard lock(_mutex);
        if (::fstat(descriptor, &status) == 0)
            flushedFiles << status.st_ino;
        return 0;
    }
    int syncFileSystem(int) override
    {
        whenFlushing();
        errno = EIO;
        return flushes++ == failingFlush ? -1 : 0;
    }

private:
    std::mutex _mutex;
};

class RewriteRunTest : public ReplaceTest
{
protected:
    static constexpr int FILE_COUNT = 40;

    void makeFiles(const QByteArray &content = "a needle here\n")
    {
        for (int index = 0; index < FILE_COUNT; ++index)
            _folder.write("file" + QByteArray::number(index) + ".txt", content);
        _files = search(_folder.path(), u"needle"_s);
        ASSERT_EQ(_files.size(), FILE_COUNT);
    }
    Outcome run(const QString &replaceText = u"thread"_s) const
    {
        const std::atomic<bool> stop = false;
        return TDSelectedMatchReplacement(request(u"needle"_s, replaceText), stop)
            .replaceSelectedMatches(matchLinesOf(_files));
    }
    int countRewritten() const
    {
        return int(std::count_if(_files.begin(), _files.end(), [](const auto &file) {
            return contentOfFile(file->path()) == "a thread here\n";
        }));
    }
    static QMap<RewriteProblem, int> problemsOf(const Outcome &outcome)
    {
        QMap<RewriteProblem, int> problems;
        for (const auto &failure : outcome.failures)
            ++problems[failure.problem];
        return problems;
    }

    FindResultItems _files;
};

TEST_F(RewriteRunTest, WithoutARecordNothingIsWritten)
{
    makeFiles();
    const RewriteRecordFolder records(_folder.write("state", "not a folder"));
    const Outcome outcome = run();
    EXPECT_EQ(problemsOf(outcome), (QMap<RewriteProblem, int>{{RewriteProblem::NoRecord, FILE_COUNT}}));
    EXPECT_EQ(countRewritten(), 0);
    EXPECT_TRUE(backupNames(_folder).isEmpty());
    EXPECT_EQ(_files.first()->remark(), textOfProblem(RewriteProblem::NoRecord));
    EXPECT_EQ(_files.first()->matchLines().first()->matchLine()->matchLineString(), u"a needle here\n"_s);
}

TEST_F(RewriteRunTest, ARecordThatNobodyCouldFindIsNone)
{
    makeFiles();
    const TemporaryFolder state;
    const RewriteRecordFolder records(state.path());
    WatchedCalls calls;
    calls.whenFlushing = [&] {
        for (const QByteArray &name : state.names())
            ::unlink(state.path(name).cString());
    };
    EXPECT_EQ(problemsOf(run()), (QMap<RewriteProblem, int>{{RewriteProblem::NoRecord, FILE_COUNT}}));
    EXPECT_EQ(countRewritten(), 0);
}

TEST_F(RewriteRunTest, ABackupThatCouldNotBeMadeLeavesNoRecord)
{
    const FilePath path = _folder.write("sub/a.txt", "a needle here\n");
    ASSERT_EQ(::chmod(path.cString(), 0666), 0);
    ASSERT_EQ(::chmod(_folder.path("sub").cString(), 0555), 0);
    _files = {searchOne(path, u"needle"_s)};
    {
        const OrdinaryUser user(_folder.path());
        const RewriteRecordFolder records(_folder.path("records"));
        EXPECT_EQ(problemsOf(run()), (QMap<RewriteProblem, int>{{RewriteProblem::NotPermitted, 1}}));
    }
    EXPECT_EQ(QDir(_folder.path("records").displayText()).entryList(QDir::Files), QStringList());
    ASSERT_EQ(::chmod(_folder.path("sub").cString(), 0755), 0);
}

TEST_F(RewriteRunTest, AFileInAFolderThatCantBeOpenedIsFlushedByItself)
{
    const FilePath path = _folder.write("a.txt", "a needle here\n");
    ASSERT_EQ(::chmod(path.cString(), 0666), 0);
    _files = {searchOne(path, u"needle"_s)};
    const OrdinaryUser user(_folder.path());
    ASSERT_EQ(::chmod(_folder.path().cString(), 0311), 0);
    setKeepsBackups(false);
    WatchedCalls calls;
    EXPECT_EQ(run().filesRewritten, 1U);
    EXPECT_TRUE(calls.flushedFiles.contains(FileIdentity(path).inode));
    ASSERT_EQ(::chmod(_folder.path().cString(), 0700), 0);
}

TEST_F(RewriteRunTest, AFileThatIsMountedAloneIsFlushedByItself)
{
    const FilePath other = _folder.makeFolder("other");
    const FilePath path = _folder.write("a.txt", "");
    if (::mount("tmpfs", other.cString(), "tmpfs", 0, "size=1m") != 0)
        GTEST_SKIP() << "file systems can't be mounted here";
    writeFile(other.appendingPathComponent("b.txt"), "a needle here\n");
    ASSERT_EQ(
        ::mount(other.appendingPathComponent("b.txt").cString(), path.cString(), nullptr, MS_BIND, nullptr),
        0);
    _files = {searchOne(path, u"needle"_s)};
    {
        WatchedCalls calls;
        EXPECT_EQ(run().filesRewritten, 1U);
        EXPECT_TRUE(calls.flushedFiles.contains(FileIdentity(path).inode));
    }
    EXPECT_EQ(contentOfFile(path), "a thread here\n");
    EXPECT_EQ(::umount(path.cString()), 0);
    EXPECT_EQ(::umount(other.cString()), 0);
}

TEST_F(RewriteRunTest, FilesOfALowerLayerAreRewrittenOnTheUpperOne)
{
    _folder.write("lower/a.txt", "a needle here\n");
    const FilePath merged = _folder.makeFolder("merged");
    const QByteArray options = "lowerdir=" + _folder.path("lower").bytes() +
                               ",upperdir=" + _folder.makeFolder("upper").bytes() +
                               ",workdir=" + _folder.makeFolder("work").bytes();
    if (::mount("overlay", merged.cString(), "overlay", 0, options.constData()) != 0)
        GTEST_SKIP() << "layered file systems can't be mounted here";
    _files = {searchOne(merged.appendingPathComponent("a.txt"), u"needle"_s)};
    EXPECT_EQ(run().filesRewritten, 1U);
    EXPECT_EQ(contentOfFile(merged.appendingPathComponent("a.txt")), "a thread here\n");
    EXPECT_EQ(_folder.read("lower/a.txt"), "a needle here\n");
    EXPECT_EQ(::umount(merged.cString()), 0);
}

TEST_F(RewriteRunTest, AFullDiskEndsTheRunWithTheRestUntouchedAndListed)
{
    makeFiles();
    setKeepsBackups(false);
    Outcome outcome;
    {
        WatchedCalls calls;
        calls.failingWrite = 8;
        outcome = run();
    }
    const auto problems = problemsOf(outcome);
    EXPECT_EQ(outcome.filesRewritten, 8U);
    EXPECT_EQ(countRewritten(), 8);
    // Nothing of the failing ones was changed; some are in hand at the same time.
    EXPECT_GE(problems[RewriteProblem::NoRoom], 1);
    EXPECT_LE(problems[RewriteProblem::NoRoom], 16);
    EXPECT_EQ(problems[RewriteProblem::NoRoom] + problems[RewriteProblem::NotBegun], FILE_COUNT - 8);
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

TEST_F(RewriteRunTest, AFailedFlushIsAFailureForEveryFileItCovers)
{
    makeFiles();
    for (const bool keepsBackups : {true, false}) {
        setKeepsBackups(keepsBackups);
        Outcome outcome;
        TemporaryFolder state;
        {
            const RewriteRecordFolder records(state.path());
            WatchedCalls calls;
            // That of the fifth file's group and of the contents of the group before.
            calls.failingFlush = 2;
            outcome = run();
        }
        const auto problems = problemsOf(outcome);
        EXPECT_EQ(outcome.filesRewritten + quint64(outcome.failures.size()), quint64(FILE_COUNT));
        EXPECT_GT(problems[RewriteProblem::NotOnDisk], 0);
        EXPECT_EQ(countRewritten(), int(outcome.filesRewritten) + problems[RewriteProblem::NotOnDisk]);
        for (const auto &failure : outcome.failures) {
            const bool isOnDisk = failure.problem != RewriteProblem::NotOnDisk;
            EXPECT_TRUE(isOnDisk || contentOfFile(failure.backup) == "a needle here\n");
        }
        EXPECT_EQ(state.names().size(), 1) << "the record of that group stays";
        for (const auto &file : std::as_const(_files)) {
            writeFile(file->path(), "a needle here\n");
            for (const QByteArray &name : backupNames(_folder))
                ::unlink(_folder.path(name).cString());
        }
        _files = search(_folder.path(), u"needle"_s);
    }
}

TEST_F(RewriteRunTest, OneFileWithTwoNamesGetsAllChanges)
{
    const FilePath path = _folder.write("a.txt", "needle 1\nneedle 2\n");
    const FilePath other = _folder.path("b.txt");
    ASSERT_EQ(::link(path.cString(), other.cString()), 0);
    // Each name with another line.
    const auto first = searchOne(path, u"needle 1"_s);
    const auto second = searchOne(other, u"needle 2"_s);
    _files = {first, second};
    const Outcome outcome = run(u"x"_s);
    EXPECT_EQ(outcome.filesRewritten, 2U);
    EXPECT_EQ(contentOfFile(other), "x\nx\n");
}

TEST_F(RewriteRunTest, TheNameOfABackupFitsWhateverTheNameOfItsFile)
{
    for (const qsizetype length : {241, 242, 247, 254, 255}) {
        const qsizetype characters = (length - 6) / 3;
        const QByteArray name = QByteArray(length - 4 - 3 * characters, 'x') +
                                QByteArray("\xE6\xBC\xA2").repeated(characters) + ".txt";
        ASSERT_EQ(name.size(), length);
        SCOPED_TRACE(name.size());
        const FilePath path = _folder.write(name, "a needle here\n");
        _files = {searchOne(path, u"needle"_s)};
        EXPECT_EQ(run().filesRewritten, 1U);
        const QList<QByteArray> backups = backupNames(_folder);
        ASSERT_EQ(backups.size(), 1);
        EXPECT_LE(backups.first().size(), 255);
        EXPECT_FALSE(QString::fromUtf8(backups.first()).contains(QChar::ReplacementCharacter));
        EXPECT_EQ(_folder.read(backups.first()), "a needle here\n");
        ::unlink(_folder.path(backups.first()).cString());
    }
}

TEST_F(RewriteRunTest, CopiesOfNamedFilesAreTheirOwnersAlone)
{
    _areFilesSearchLocations = true;
    const FilePath path = _folder.write("a.txt", "a needle here\n");
    ASSERT_EQ(::chmod(path.cString(), 0644), 0);
    _files = {searchOne(path, u"needle"_s)};
    WatchedCalls calls;
    int seen = 0;
    calls.whenWriting = [&] {
        for (const QByteArray &name : backupNames(_transientFolder)) {
            EXPECT_EQ(FileIdentity(_transientFolder.path(name)).mode & 07777, 0600U);
            ++seen;
        }
    };
    EXPECT_EQ(run().filesRewritten, 1U);
    EXPECT_EQ(seen, 1);
}

TEST_F(RewriteRunTest, ABackupThatCantGetTheGroupHasNoRightsForIt)
{
    if (!runsAsRoot())
        GTEST_SKIP() << "files of other groups can't be made here";
    constexpr gid_t FOREIGN_GROUP = 12345;
    const FilePath path = _folder.write("a.txt", "a needle here\n");
    ASSERT_EQ(::chown(path.cString(), NOBODY, FOREIGN_GROUP), 0);
    ASSERT_EQ(::chmod(path.cString(), 0674), 0);
    {
        const OrdinaryUser user(_folder.path());
        _files = {searchOne(path, u"needle"_s)};
        EXPECT_EQ(run().filesRewritten, 1U);
    }
    ASSERT_EQ(backupNames(_folder).size(), 1);
    EXPECT_EQ(FileIdentity(_folder.path(backupNames(_folder).first())).mode & 07777, 0604U);
}

TEST_F(RewriteRunTest, GroupsOfLongFilesAreSmall)
{
    constexpr int COUNT = 10;
    const QByteArray content = "a needle here\n" + QByteArray(1023, 'x').append('\n').repeated(16 << 10);
    for (int index = 0; index < COUNT; ++index)
        _folder.write("file" + QByteArray::number(index) + ".txt", content);
    setKeepsBackups(false);
    _files = search(_folder.path(), u"needle"_s);
    WatchedCalls calls;
    EXPECT_EQ(run().filesRewritten, quint64(COUNT));
    // One, four, four and one files, and the contents of the last.
    EXPECT_GE(calls.flushes, 5) << "a group has more than 64 MB";
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

TEST_F(RewriteRunTest, CopiesOutliveAPowerCutWhereTheTemporaryFolderDoesNot)
{
    const FilePath path = _folder.write("a.txt", "a needle here\n");
    _areFilesSearchLocations = true;
    _files = {searchOne(path, u"needle"_s)};
    struct Paths : UnflushedCalls
    {
        Paths() { setCurrent(this); }
        int open(const char *path, int flags, mode_t mode) override
        {
            if ((flags & O_CREAT) != 0)
                made = path;
            return UnflushedCalls::open(path, flags, mode);
        }
        QByteArray made;
    };
    constexpr int NOT_PERMITTED = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        const FilePath shelter("/var/tmp");
        // The folder with the file may be below.
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mkdir("/var/tmp/tidemark-test", 0700) != 0 ||
            ::mount(_folder.path().cString(), "/var/tmp/tidemark-test", nullptr, MS_BIND, nullptr) != 0 ||
            ::mount("tmpfs", "/tmp", "tmpfs", 0, "size=1m") != 0)
            ::_exit(NOT_PERMITTED);
        ::unsetenv("TMPDIR");
        _files.first()->setPath(FilePath("/var/tmp/tidemark-test/a.txt"));
        Paths paths;
        const bool isRewritten = run().filesRewritten == 1;
        (void)::umount("/var/tmp/tidemark-test");
        ::_exit(isRewritten && paths.made.startsWith("/var/tmp/a.txt.TDMBackup.") ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    (void)::rmdir("/var/tmp/tidemark-test");
    if (WEXITSTATUS(status) == NOT_PERMITTED)
        GTEST_SKIP() << "file systems can't be mounted here";
    EXPECT_EQ(status, 0);
}

TEST_F(RewriteRunTest, WhatWouldNotChangeIsNotWritten)
{
    makeFiles();
    for (const auto &file : std::as_const(_files)) {
        setModificationDate(file->path(), 1000);
        file->setModificationDate(TDFileCommon::fileModificationDate(file->path()));
    }
    const Outcome outcome = run(u"needle"_s);
    EXPECT_EQ(outcome.filesRewritten + quint64(outcome.failures.size()), 0U);
    EXPECT_EQ(outcome.unchangedFiles, quint64(FILE_COUNT));
    EXPECT_EQ(outcome.unchangedMatches, quint64(FILE_COUNT));
    EXPECT_EQ(TDFileCommon::fileModificationDate(_files.first()->path())->nanoseconds, 1000);
    EXPECT_TRUE(backupNames(_folder).isEmpty());
}

TEST_F(RewriteRunTest, LinesBehindOneThatFlowedIntoAnotherAreRefused)
{
    // Emptied, the second line becomes part of the first one's end, and all others move up.
    const FilePath path = _folder.write("a.txt", "x\rneedle\nneedle\nneedle\n");
    const auto file = searchOne(path, u"needle"_s);
    ASSERT_EQ(file->matchLines().size(), 3);
    _files = {file};
    const std::atomic<bool> stop = false;
    const auto runOn = [&](qsizetype line, const QString &text) {
        return TDSelectedMatchReplacement(request(u"needle"_s, text), stop)
            .replaceSelectedMatches(FindResultItems{file->matchLines()[line]});
    };
    EXPECT_EQ(runOn(0, QString()).filesRewritten, 1U);
    EXPECT_EQ(contentOfFile(path), "x\r\nneedle\nneedle\n");
    EXPECT_EQ(problemsOf(runOn(1, u"thread"_s)), (QMap<RewriteProblem, int>{{RewriteProblem::Changed, 1}}));
    EXPECT_EQ(contentOfFile(path), "x\r\nneedle\nneedle\n");
}

} // namespace
} // namespace tidemark::test
