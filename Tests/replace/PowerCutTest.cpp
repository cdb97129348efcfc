#include "replace/DiskImage.h"
#include "replace/LossCheck.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteRecord.h"
#include "support/TimeLimit.h"

#include <QDir>

#include <fcntl.h>
#include <iostream>
#include <random>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Files on a real file system, rewritten in a process that is stopped. The image is then copied as it is,
/// as a power cut leaves it, and mounted in place of the original.
class PowerCutTest : public ReplaceTest, public testing::WithParamInterface<DiskKind>
{
protected:
    static constexpr int FILE_COUNT = 40; ///< enough for several groups
    static constexpr int LARGE_FILE = 14; ///< is too long to be held in memory, and so is the next

    PowerCutTest()
        : _disk(GetParam(), _images.path()), _check(_place("state")), _counts(CallCounts::inSharedMemory())
    {
        setMode(SearchMode::RegularExpression);
    }
    ~PowerCutTest() override { FileSystemCalls::setCurrent(nullptr); }

    FilePath _place(const QByteArray &name) const { return _disk.mountPoint().appendingPathComponent(name); }

    /// One of the words that are found, so that the file grows, shrinks or keeps its length.
    static QByteArray word(int index)
    {
        const QList<QByteArray> words = {"needle", "pincushion", "feather"};
        return words[index % words.size()];
    }
    bool makeFiles()
    {
        FileSystemCalls::setCurrent(nullptr);
        if (!_disk.mount())
            return false;
        const FilePath folder = _place("files");
        EXPECT_TRUE(QDir().mkpath(folder.displayText()) && QDir().mkpath(_place("tmp").displayText()));
        qputenv("TMPDIR", _place("tmp").bytes());
        for (int index = 0; index < FILE_COUNT; ++index) {
            const bool isLarge = index == LARGE_FILE || index == LARGE_FILE + 1;
            QByteArray content =
                QByteArray("nothing but hay in this line\n").repeated(isLarge ? 38000 : index);
            for (int line = 0; line <= (isLarge ? 4000 : index * index); ++line)
                content += "a " + word(index) + " and another " + word(index) + "\r\n";
            const FilePath path = folder.appendingPathComponent("file" + QByteArray::number(index));
            writeFile(path, content);
            _check.add(path, content, QByteArray(content).replace(word(index), "threads"));
        }
        _files = search(folder, FIND_TEXT);
        EXPECT_EQ(_files.size(), FILE_COUNT);
        _disk.unmount();
        _disk.keepState();
        return true;
    }
    void replaceAllAndRecord() const
    {
        const RewriteRecordFolder records(_place("state"));
        replaceAll(_files, FIND_TEXT, u"threads"_s);
    }
    /// Runs until the call, then the power goes, and comes again.
    void cutPower(const std::function<void()> &run, StopAt stopAt, unsigned moment)
    {
        _counts.all = 0;
        for (auto &count : _counts.each)
            count = 0;
        ChildProcess child([&] {
            StoppingCalls calls(_counts, stopAt);
            run();
        });
        (void)child.waitUntilStopped();
        EXPECT_EQ(child.endedBySignal(), 0);
        writeSomethingBack(moment);
        _disk.photograph();
        child.kill();
        _disk.unmount();
        _disk.returnToPhotograph();
        ASSERT_TRUE(_disk.mount());
    }
    /// A system may bring to the disk whatever it likes whenever it likes.
    void writeSomethingBack(unsigned moment) const
    {
        if (moment % 3 == 0)
            return;
        std::mt19937 random(moment);
        for (const char *folder : {"files", "tmp", "state"}) {
            for (const QString &name : QDir(_place(folder).displayText()).entryList(QDir::Files)) {
                if (random() % 3 != 0)
                    continue;
                const FilePath path = _place(folder).appendingPathComponent(name.toUtf8());
                // One that the stopped process keeps to itself would be waited for: only with all the others.
                const int descriptor = ::open(path.cString(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
                if (descriptor < 0) {
                    if (random() % 2 == 0)
                        writeEverythingBack();
                    continue;
                }
#ifdef __linux__
                if (moment % 3 == 1)
                    (void)::sync_file_range(descriptor, 0, 0,
                                            SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE |
                                                SYNC_FILE_RANGE_WAIT_AFTER);
                else
#endif
                    (void)::fsync(descriptor);
                (void)::close(descriptor);
            }
        }
    }
    void writeEverythingBack() const
    {
        const int root = ::open(_disk.mountPoint().cString(), O_RDONLY | O_CLOEXEC);
        (void)FileSystemCalls().syncFileSystem(root);
        (void)::close(root);
    }
    void startAgain()
    {
        _disk.returnToKeptState();
        ASSERT_TRUE(_disk.mount());
    }
    void setUpCut(int cut)
    {
        setKeepsBackups(cut % 3 == 0);
        _areFilesSearchLocations = cut % 3 == 1;
    }
    /// The calls of a run that nothing stops.
    void countCalls()
    {
        startAgain();
        cutPower([this] { replaceAllAndRecord(); }, {}, 0);
        _disk.unmount();
        _callsOfARun = _counts.all;
        for (size_t kind = 0; kind < CallCounts::KINDS; ++kind)
            _callsOfEachKind[kind] = _counts.each[kind];
    }
    /// Every second cut is at one of the calls of a kind, so that rare ones have their turn.
    StopAt placeOfCut(int cut, int cuts, unsigned random) const
    {
        if (cut % 2 == 0)
            return {-1, int(qint64(cut) * _callsOfARun / cuts)};
        size_t kind = size_t(cut / 2) % CallCounts::KINDS;
        while (_callsOfEachKind[kind] == 0)
            kind = (kind + 1) % CallCounts::KINDS;
        return {int(kind), int(random % unsigned(_callsOfEachKind[kind]))};
    }

    static const QString FIND_TEXT;

    TemporaryFolder _images;
    DiskImage _disk;
    LossCheck _check;
    FindResultItems _files;
    CallCounts &_counts;
    int _callsOfARun = 0;
    std::array<int, CallCounts::KINDS> _callsOfEachKind = {};
};

const QString PowerCutTest::FIND_TEXT = u"needle|pincushion|feather"_s;

void expectNothingLost(const Losses &losses)
{
    const std::string messages = losses.messages.join(u'\n').toStdString();
    EXPECT_EQ(losses.lost, 0) << messages;
    EXPECT_EQ(losses.falselyTold, 0) << messages;
    EXPECT_EQ(losses.overwritten, 0) << messages;
    EXPECT_EQ(losses.notPutBack, 0) << messages;
    EXPECT_EQ(losses.presentContentGone, 0) << messages;
}

TEST_P(PowerCutTest, LosesNothingAndIsTold)
{
    if (!makeFiles())
        GTEST_SKIP() << "no " << GetParam().type << " can be made and mounted here";
    // TIDEMARK_CUTS sets how many on all file systems together.
    const int cuts =
        (qMax(qEnvironmentVariableIntValue("TIDEMARK_CUTS"), rounds(30)) + 3) / int(DISK_KINDS.size());
    Losses losses;
    countCalls();
    for (int cut = 0; cut < cuts && !HasFatalFailure(); ++cut) {
        SCOPED_TRACE("cut " + std::to_string(cut));
        std::mt19937 random(unsigned(cut) + 1);
        setUpCut(cut);
        startAgain();
        cutPower([this] { replaceAllAndRecord(); }, placeOfCut(cut, cuts, random()), unsigned(random()));
        // The power may go again while things are put right.
        if (cut % 4 == 1) {
            _check.checkAndDecide(LossCheck::Decision::Later, losses);
            cutPower([this] { (void)InterruptedRewrites(_place("state")).putBack(); },
                     {-1, int(random() % 30)}, unsigned(random()));
        }
        _check.checkAndDecide(cut % 4 == 3 ? LossCheck::Decision::Keep : LossCheck::Decision::PutBack,
                              losses);
        _disk.unmount();
    }
    expectNothingLost(losses);
    std::cout << GetParam().name << ": " << cuts << " cuts, " << losses.damaged
              << " files partly written and told, " << losses.lost << " lost, " << losses.falselyTold
              << " whole and called damaged, " << losses.overwritten << " whole and overwritten, "
              << losses.notPutBack << " not put back, " << losses.presentContentGone
              << " put back without a copy, " << _callsOfARun << " calls a run\n";
}

INSTANTIATE_TEST_SUITE_P(FileSystems, PowerCutTest, testing::ValuesIn(DISK_KINDS),
                         [](const auto &kind) { return std::string(kind.param.name); });

} // namespace
} // namespace tidemark::test
