#include "replace/DiskImage.h"
#include "replace/LossCheck.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteRecord.h"
#include "replace/TDSelectedMatchReplacement.h"
#include "support/TimeLimit.h"

#include <QFile>

#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

const DiskKind NEARLY_FULL = {"full", "ext4", "commit=600", 24};
const DiskKind THIN = {"thin", "ext4", "commit=600", 64};

/// With sanitizers, which take long here, in turn.
std::vector<std::pair<qint64, bool>> withAndWithoutBackups(std::initializer_list<qint64> sizes)
{
    std::vector<std::pair<qint64, bool>> cases;
    bool keepsBackups = false;
    for (const qint64 size : sizes) {
        cases.emplace_back(size, keepsBackups);
        keepsBackups = !keepsBackups;
        if (!IS_SANITIZED)
            cases.emplace_back(size, keepsBackups);
    }
    return cases;
}

/// Runs over files in a process that has too little of something.
class ScarceResourcesTest : public ReplaceTest
{
protected:
    static constexpr int FILE_COUNT = 120;
    static constexpr int LINES = 640; ///< some 18 KB a file
    static constexpr unsigned MOST_SECONDS = 60;

    ScarceResourcesTest() { FileSystemCalls::setCurrent(nullptr); }

    void makeFiles(const FilePath &place)
    {
        _place = place;
        _check.emplace(place.appendingPathComponent("state"));
        const FilePath folder = place.appendingPathComponent("files");
        ASSERT_EQ(::mkdir(folder.cString(), S_IRWXU), 0);
        for (int index = 0; index < FILE_COUNT; ++index) {
            const FilePath path = folder.appendingPathComponent("file" + QByteArray::number(index));
            const QByteArray content =
                QByteArray("a needle in a line of text\r\n").repeated(LINES + index % 7);
            writeFile(path, content);
            _check->add(path, content, QByteArray(content).replace("needle", NEW_TEXT));
        }
        _files = search(folder, u"needle"_s);
        ASSERT_EQ(_files.size(), FILE_COUNT);
    }

    struct Outcome
    {
        int signal = 0; ///< that ended it
        int rewritten = 0;
        int failed = 0;
    };
    /// Replaces everything in a process of its own, after something was taken from it.
    Outcome replaceWith(const std::function<void()> &limit) const
    {
        (void)::unlink(_folder.path("outcome").cString());
        ChildProcess child([&] {
            (void)::alarm(MOST_SECONDS);
            limit();
            const RewriteRecordFolder records(_place.appendingPathComponent("state"));
            const std::atomic<bool> stop = false;
            const auto outcome =
                TDSelectedMatchReplacement(request(u"needle"_s, QString::fromLatin1(NEW_TEXT)), stop)
                    .replaceSelectedMatches(matchLinesOf(_files));
            _folder.write("outcome", QByteArray::number(outcome.filesRewritten) + ' ' +
                                         QByteArray::number(outcome.failures.size()));
        });
        (void)child.waitUntilStopped();
        EXPECT_NE(child.endedBySignal(), SIGALRM) << "it hung";
        if (child.endedBySignal() != 0)
            return {child.endedBySignal()};
        const QList<QByteArray> numbers = _folder.read("outcome").split(' ');
        return {0, numbers.value(0).toInt(), numbers.value(1).toInt()};
    }
    int countRewritten() const
    {
        int count = 0;
        for (const FilePath &path : _check->paths())
            count += contentOfFile(path) == _check->newContent(path) ? 1 : 0;
        return count;
    }
    void expectDoneWhatWasSaid(const Outcome &outcome) const
    {
        EXPECT_GE(countRewritten(), outcome.rewritten);
    }
    /// What is whole stays so, what isn't is told and comes back.
    void expectSafe() const
    {
        Losses losses;
        _check->checkAndDecide(LossCheck::Decision::PutBack, losses);
        EXPECT_EQ(losses.lost + losses.falselyTold + losses.overwritten, 0)
            << losses.messages.join(u'\n').toStdString();
    }
    void expectAllAccountedFor(const Outcome &outcome) const
    {
        EXPECT_EQ(outcome.signal, 0);
        // A file whose backup or flush failed late may be in both.
        EXPECT_GE(outcome.rewritten + outcome.failed, FILE_COUNT);
    }
    /// Leaves so many bytes of the file system.
    static void fill(const FilePath &filler, qint64 bytesLeft)
    {
        struct statvfs status = {};
        ASSERT_EQ(::statvfs(filler.deletingLastPathComponent().cString(), &status), 0);
        const qint64 size = qint64(status.f_bavail) * qint64(status.f_frsize) - bytesLeft;
        const int descriptor = ::open(filler.cString(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        EXPECT_EQ(::posix_fallocate(descriptor, 0, size), 0);
        EXPECT_EQ(::close(descriptor), 0);
    }
    static void limitResource(int resource, rlim_t value)
    {
        const rlimit limit = {value, value};
        (void)::setrlimit(decltype(RLIMIT_AS)(resource), &limit);
    }

    static constexpr const char *NEW_TEXT = "thread as long as nobody expected";
    FilePath _place;
    std::optional<LossCheck> _check;
    FindResultItems _files;
};

TEST_F(ScarceResourcesTest, ANearlyFullDiskThatHoldsTheRecordToo)
{
    DiskImage disk(NEARLY_FULL, _folder.makeFolder("image"));
    if (!disk.mount())
        GTEST_SKIP() << "file systems can't be made and mounted here";
    makeFiles(disk.mountPoint());
    disk.unmount();
    disk.keepState();
    for (const auto &[kilobytesLeft, keepsBackups] : withAndWithoutBackups({0, 40, 300, 1000, 2500, 6000})) {
        SCOPED_TRACE(kilobytesLeft);
        setKeepsBackups(keepsBackups);
        disk.returnToKeptState();
        ASSERT_TRUE(disk.mount());
        fill(disk.mountPoint().appendingPathComponent("filler"), kilobytesLeft << 10);
        const Outcome outcome = replaceWith([] {});
        expectAllAccountedFor(outcome);
        // For putting back there is room.
        EXPECT_EQ(::unlink(disk.mountPoint().appendingPathComponent("filler").cString()), 0);
        expectDoneWhatWasSaid(outcome);
        expectSafe();
        disk.unmount();
    }
}

TEST_F(ScarceResourcesTest, ADiskWithLessBehindItThanItSays)
{
    const FilePath folder = _folder.makeFolder("image");
    DiskImage disk(THIN, folder, "size=48m");
    if (!disk.mount())
        GTEST_SKIP() << "file systems can't be made and mounted here";
    makeFiles(disk.mountPoint());
    disk.unmount();
    disk.keepState();
    const FilePath filler = folder.appendingPathComponent("filler");
    for (const auto &[kilobytesLeft, keepsBackups] : withAndWithoutBackups({100, 800, 2500, 4500, 6000})) {
        SCOPED_TRACE(kilobytesLeft);
        setKeepsBackups(keepsBackups);
        disk.returnToKeptState();
        ASSERT_TRUE(disk.mount());
        fill(filler, kilobytesLeft << 10);
        const Outcome outcome = replaceWith([] {});
        expectAllAccountedFor(outcome);
        expectDoneWhatWasSaid(outcome);
        // What never got beyond memory is gone, and so may be what the disk confirmed before its journal
        // was emptied.
        disk.unmount();
        EXPECT_EQ(::unlink(filler.cString()), 0);
        ASSERT_TRUE(disk.mount());
        expectSafe();
        disk.unmount();
    }
}

TEST_F(ScarceResourcesTest, LittleMemory)
{
    if (IS_SANITIZED)
        GTEST_SKIP() << "sanitizers end the process first";
    makeFiles(_folder.path());
    for (const rlim_t megabytes : {2, 8, 24, 64, 200}) {
        SCOPED_TRACE(megabytes);
        const Outcome outcome = replaceWith([megabytes] {
            QFile status(u"/proc/self/statm"_s);
            if (!status.open(QIODevice::ReadOnly))
                return;
            const rlim_t pages = status.readLine().split(' ').first().toULongLong();
            limitResource(RLIMIT_AS, pages * rlim_t(::getpagesize()) + (megabytes << 20));
        });
        if (outcome.signal == 0)
            expectAllAccountedFor(outcome);
        expectDoneWhatWasSaid(outcome);
        expectSafe();
        for (const auto &file : std::as_const(_files)) {
            writeFile(file->path(), _check->oldContent(file->path()));
            setModificationDate(file->path(), file->modificationDate()->nanoseconds);
        }
    }
}

TEST_F(ScarceResourcesTest, ALimitToTheSizeOfFiles)
{
    makeFiles(_folder.path());
    // The record fits, and so do the backups; the new contents don't.
    const Outcome outcome = replaceWith([] { limitResource(RLIMIT_FSIZE, 30 << 10); });
    expectAllAccountedFor(outcome);
    EXPECT_EQ(outcome.rewritten, 0);
    expectDoneWhatWasSaid(outcome);
    expectSafe();
}

TEST_F(ScarceResourcesTest, NoThreads)
{
    makeFiles(_folder.path());
    for (const QByteArray &name : {QByteArray("."), QByteArray("files")})
        (void)::chown(_folder.path(name).cString(), NOBODY, NOBODY);
    for (const FilePath &path : _check->paths())
        (void)::chown(path.cString(), NOBODY, NOBODY);
    (void)::chown(_transientFolder.path().cString(), NOBODY, NOBODY);
    const Outcome outcome = replaceWith([] {
        // For the superuser the limit doesn't hold.
        if (runsAsRoot() && (::setgroups(0, nullptr) != 0 || ::setgid(NOBODY) != 0 || ::setuid(NOBODY) != 0))
            ::_exit(1);
        limitResource(RLIMIT_NPROC, 0);
    });
    expectAllAccountedFor(outcome);
    EXPECT_EQ(outcome.rewritten, FILE_COUNT);
    expectDoneWhatWasSaid(outcome);
    expectSafe();
}

} // namespace
} // namespace tidemark::test
