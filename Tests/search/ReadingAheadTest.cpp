#include "search/SearchPipeline.h"

#include "matching/SearchContext.h"
#include "support/TaskCount.h"
#include "support/Testing.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace std::chrono_literals;

TEST(TeamSizeTest, FollowsWhatIsWaitedFor)
{
    struct Step
    {
        std::chrono::milliseconds processorTime; ///< of two processors in ten milliseconds
        bool hasRead;
        int size;
    };
    const std::vector<std::vector<Step>> searches = {
        // From a disk into memory and back.
        {{2ms, true, 2},
         {3ms, true, 4},
         {6ms, true, 8},
         {12ms, true, 16},
         {14ms, true, 32},
         {3ms, true, 32},
         {16ms, true, 32},
         {20ms, true, 16},
         {16ms, false, 16},
         {12ms, false, 8},
         {20ms, false, 4},
         {20ms, false, 2},
         {20ms, false, 2}},
        // In memory, on a machine that is busy with other things.
        {{5ms, false, 2}, {4ms, true, 2}, {5ms, false, 2}, {3ms, false, 2}, {1ms, true, 2}},
        // From a disk so slow that not each look sees something.
        {{1ms, true, 2}, {1ms, true, 4}, {1ms, false, 4}, {1ms, true, 8}, {1ms, false, 8}},
    };
    for (const std::vector<Step> &steps : searches) {
        TeamSize team(2, 32, 2);
        for (const Step &step : steps) {
            team.look({10ms, step.processorTime, step.hasRead});
            EXPECT_EQ(team.current(), step.size) << step.processorTime.count() << ' ' << step.hasRead;
        }
    }
}

TEST(FoldersAheadTest, ComeInTheOrderOfTheWalkAndNoFurtherThanItFollows)
{
    FoldersAhead folders;
    folders.add({"/r/b", "/r/a!", "/r/a", "/r/c"});
    EXPECT_EQ(folders.takeNext(), "/r/a");
    folders.didRead("/r/a", {"/r/a/z"});
    folders.add({"/r/a"});
    EXPECT_EQ(folders.takeNext(), "/r/a/z");
    EXPECT_EQ(folders.takeNext(), "/r/a!");
    folders.pass("/r/b");
    folders.didRead("/r/a!", {"/r/a!/x"});
    EXPECT_EQ(folders.takeNext(), "/r/c");
    EXPECT_FALSE(folders.hasNext());

    int taken = 0;
    for (int index = 100; index < 1000; ++index)
        folders.add({"/r/d/" + QByteArray::number(index)});
    for (; folders.hasNext(); ++taken)
        (void)folders.takeNext();
    EXPECT_LT(taken, 500);
    folders.pass("/r/d/110");
    EXPECT_TRUE(folders.hasNext());
    folders.clear();
    EXPECT_FALSE(folders.hasNext());
}

/// Serves its readers only when many wait, or after a few milliseconds.
class SlowDisk
{
public:
    explicit SlowDisk(const FilePath &file) : _descriptor(open(file.cString(), O_RDONLY | O_DIRECT)) {}
    ~SlowDisk() { close(_descriptor); }
    Q_DISABLE_COPY_MOVE(SlowDisk)

    /// Never from memory; false where there is no such reading.
    bool read()
    {
        alignas(4096) char block[4096];
        const bool isRead = pread(_descriptor, block, sizeof block, 0) == sizeof block;
        std::unique_lock lock(_mutex);
        mostReaders = std::max(mostReaders, ++_readers);
        if (_readers >= 8)
            _served.notify_all();
        else
            _served.wait_for(lock, 3ms);
        --_readers;
        return isRead;
    }
    int mostReaders = 0;

private:
    const int _descriptor;
    std::mutex _mutex;
    std::condition_variable _served;
    int _readers = 0;
};

TEST(SearchPipelineTest, MoreThreadsReadWhileTheyWaitAndTheOrderStays)
{
    const TDFindPattern pattern(u"a"_s, {});
    const std::atomic<bool> shouldStop = false;
    const TemporaryFolder folder;
    const FilePath file = folder.write("file", QByteArray(4096, 'x'));
    sync();
    const long blocksRead = ProcessUse::now().blocksRead;
    if (!SlowDisk(file).read() || ProcessUse::now().blocksRead == blocksRead)
        GTEST_SKIP() << "there is no disk here, or no telling what is read from it";
    // With the first thread a sanitizer starts one of its own.
    std::thread([] {}).join();
    const int tasks = taskCount();
    for (const bool isFixed : {false, true}) {
        SlowDisk disk(file);
        QList<quint64> delivered;
        const auto search = [&](const FileToRead &, SearchContext &, const HandOverPart &, TDError &) {
            (void)disk.read();
            return nullptr;
        };
        QList<quint64> added;
        {
            const SearchDelivery delivery = {[&](const SearchJob &job) { delivered << job.scannedCount; },
                                             {}};
            SearchPipeline pipeline(isFixed ? TeamSize::fixed(2) : TeamSize(2, 16, 2), pattern, shouldStop,
                                    search, delivery);
            for (quint64 number = 0; number < (isFixed ? 100 : 3000); ++number) {
                SearchJob job;
                job.scannedCount = number;
                added << number;
                pipeline.add(std::move(job));
            }
            pipeline.finish();
        }
        EXPECT_EQ(delivered, added);
        EXPECT_THAT(disk.mostReaders, isFixed ? testing::Matcher<int>(testing::Le(2)) : testing::Ge(8));
    }
    // One that was joined may be listed for a moment.
    for (int attempt = 0; attempt < 100000 && taskCount() > tasks; ++attempt)
        std::this_thread::yield();
    EXPECT_EQ(taskCount(), tasks);
}

} // namespace
} // namespace tidemark::test
