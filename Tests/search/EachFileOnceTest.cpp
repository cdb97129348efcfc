#include "search/TDSearchEngine.h"

#include "search/Kind.h"
#include "search/SearchedFiles.h"
#include "support/PlainUser.h"
#include "support/Testing.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

class Listener : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override
    {
        const TDError error = file->children().first()->error();
        if (error)
            errors << error.localizedFailureReason();
        (error ? failed : found) << file->path().lastPathComponent();
    }
    void didLeaveOut(const LeftOut &counts) override { leftOut = counts; }
    void didFinishSearch(quint64 files, quint64, quint64) override { scanned = files; }

    QByteArrayList found;
    QByteArrayList failed;
    QStringList errors;
    LeftOut leftOut;
    quint64 scanned = 0;
};

/// The parameter is the number of threads.
class EachFileOnceTest : public testing::TestWithParam<int>
{
protected:
    EachFileOnceTest() { setKindsInForce({{u"Any"_s, u"*"_s, true}}); }

    QByteArray search(const QByteArrayList &locations)
    {
        QList<TDSearchLocation> list;
        for (const QByteArray &name : locations) {
            TDSearchLocation location;
            location.setURL(folder.path(name).toUrl());
            list << location;
        }
        listener = std::make_shared<Listener>();
        TDSearchEngine engine;
        engine.setThreadCount(GetParam());
        engine.setDelegate(listener);
        engine.startSearch(u"needle"_s, list, true);
        return listener->found.join(' ');
    }
    quint64 foundBefore() const { return listener->leftOut[LeftOutReason::FoundBefore]; }

    const TemporaryFolder folder;
    std::shared_ptr<Listener> listener;
};

TEST_P(EachFileOnceTest, OfOverlappingLocations)
{
    for (const char *name : {"w/a", "w/s/b", "w/s/c", "w-2/d"})
        folder.write(name, "needle");
    ASSERT_EQ(symlink("w/s", folder.path("spelled").cString()), 0);
    EXPECT_EQ(search({"w", "w/s"}), "a b c");
    EXPECT_EQ(listener->scanned, 3U);
    EXPECT_EQ(foundBefore(), 2U);
    EXPECT_EQ(search({"w/s/c", "w", "w"}), "c a b");
    EXPECT_EQ(search({"spelled", "w-2", "w/s"}), "b c d");
    EXPECT_EQ(search({"w", "w-2"}), "a b c d");
    EXPECT_EQ(foundBefore(), 0U);
}

TEST_P(EachFileOnceTest, OfSeveralHardLinks)
{
    folder.write("w/0", QByteArray("needle\n").repeated(100000));
    for (int index = 1; index < 300; ++index)
        ASSERT_EQ(link(folder.path("w/0").cString(), folder.path("w/" + QByteArray::number(index)).cString()),
                  0);
    EXPECT_EQ(search({"w"}), "0");
    EXPECT_EQ(listener->scanned, 1U);
    EXPECT_EQ(foundBefore(), 299U);
}

TEST_P(EachFileOnceTest, AlsoWhatCannotBeRead)
{
    folder.write("w/s/b", "needle");
    folder.write("w/t/c", "needle");
    ASSERT_EQ(chmod(folder.path().cString(), 0755), 0);
    ASSERT_EQ(chmod(folder.path("w/s/b").cString(), 0), 0);
    ASSERT_EQ(chmod(folder.path("w/t").cString(), 0), 0);
    {
        const PlainUser user;
        search({"w", "w/s", "w/t"});
    }
    EXPECT_EQ(listener->failed.join(' '), "b t");
    EXPECT_EQ(listener->leftOut[LeftOutReason::Unreadable], 2U);
    ASSERT_EQ(chmod(folder.path("w/t").cString(), 0700), 0);
}

TEST(SearchedFiles, AdmitsANewFileWithTheInodeOfOneThatIsGone)
{
    const TemporaryFolder folder;
    SearchedFiles files;
    files.setLocationsOverlap(true);
    struct stat old = {}, now = {};
    FileToRead file{folder.write("old", "")};
    ASSERT_EQ(::stat(file.path.cString(), &old), 0);
    EXPECT_TRUE(files.admits(file, old));
    ASSERT_EQ(::unlink(file.path.cString()), 0);
    // Two files of one tick of the system's clock are as old as each other.
    const auto tick = [] {
        struct timespec time = {};
        (void)::clock_gettime(CLOCK_REALTIME_COARSE, &time);
        return time.tv_nsec;
    };
    for (const long before = tick(); tick() == before;) {
    }
    for (int number = 0; number < 100 && now.st_ino != old.st_ino; ++number) {
        file.path = folder.write("new" + QByteArray::number(number), "");
        ASSERT_EQ(::stat(file.path.cString(), &now), 0);
    }
    if (now.st_ino != old.st_ino)
        GTEST_SKIP() << "this file system doesn't use inodes again";
    file.number = 1;
    EXPECT_TRUE(files.admits(file, now));
    file.number = 2;
    EXPECT_FALSE(files.admits(file, now));
}

/// So many folders of a file each, far below what a path may be long, and deep ones beside them.
class ManyFolders
{
public:
    ManyFolders(const FilePath &root, int depth, int count) : _depth(depth), _count(count)
    {
        int folder = open(root.cString(), O_RDONLY | O_DIRECTORY);
        for (int level = 0; level < _depth; ++level)
            folder = _enter(folder, _long);
        for (int index = 0; index < _count; ++index) {
            const int inner = _enter(dup(folder), QByteArray::number(index));
            const int file = openat(inner, "f", O_CREAT | O_WRONLY, 0600);
            EXPECT_EQ(::write(file, "needle", 6), 6);
            close(file);
            close(inner);
        }
        close(folder);
    }

private:
    static int _enter(int folder, const QByteArray &name)
    {
        EXPECT_EQ(mkdirat(folder, name.constData(), 0700), 0);
        const int inner = openat(folder, name.constData(), O_RDONLY | O_DIRECTORY);
        close(folder);
        return inner;
    }

    const QByteArray _long = QByteArray(220, 'd');
    int _depth;
    int _count;
};

class LimitedDescriptors
{
public:
    explicit LimitedDescriptors(rlim_t most)
    {
        getrlimit(RLIMIT_NOFILE, &_before);
        const rlimit limit = {most, _before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    }
    ~LimitedDescriptors() { setrlimit(RLIMIT_NOFILE, &_before); }
    Q_DISABLE_COPY_MOVE(LimitedDescriptors)

private:
    rlimit _before = {};
};

TEST_P(EachFileOnceTest, HoweverLongThePathsAre)
{
    constexpr int COUNT = 1000;
    folder.makeFolder("w");
    const ManyFolders folders(folder.path("w"), 22, COUNT);
    search({"w"});
    EXPECT_EQ(listener->found.size(), COUNT);
    EXPECT_EQ(listener->errors, QStringList());
}

TEST_P(EachFileOnceTest, HoweverFewDescriptorsThereAre)
{
    constexpr int COUNT = 500;
    folder.makeFolder("w");
    const ManyFolders folders(folder.path("w"), 40, COUNT);
    for (const rlim_t most : {128, 40, 24}) {
        const LimitedDescriptors limited(most);
        search({"w"});
        EXPECT_EQ(listener->found.size(), COUNT) << most;
        EXPECT_EQ(listener->errors, QStringList()) << most;
    }
}

INSTANTIATE_TEST_SUITE_P(Threads, EachFileOnceTest, testing::Values(1, 2, 4));

} // namespace
} // namespace tidemark::test
