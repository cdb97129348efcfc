// Small files are read without being asked for their status. Nothing that a search tells may show it.

#include "foundation/FileSystemCalls.h"
#include "reading/TextBlockReader.h"
#include "search/Kind.h"
#include "search/TDSearchEngine.h"
#include "support/PlainUser.h"
#include "support/Testing.h"

#include <QScopeGuard>

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <mutex>
#include <random>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#ifdef __linux__
#include <sys/mount.h>
#endif

namespace tidemark::test {
namespace {

using OtherPath = ListedInode::OtherPath;

/// While it lives no file system's listings are relied on.
class EachFileAsked : public FileSystemCalls
{
public:
    EachFileAsked() { setCurrent(this); }
    ~EachFileAsked() override { setCurrent(nullptr); }
    quint32 fileSystemType(int) override { return 0; }
};

/// All that a search tells.
class Log : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override
    {
        const TDFindResultItem &first = *file->children().first();
        text << QString::fromUtf8(file->path().bytes());
        text << (first.matchLine() ? first.matchLine()->matchLineString()
                                   : first.error().localizedFailureReason());
        text << QString::number(file->modificationDate() ? file->modificationDate()->nanoseconds : -1);
    }
    void didLeaveOut(const LeftOut &counts) override
    {
        for (const LeftOutReason reason : {LeftOutReason::FoundBefore, LeftOutReason::Unreadable})
            text << QString::number(counts[reason]);
    }
    void didFinishSearch(quint64 files, quint64 withMatches, quint64 matches) override
    {
        text << u"%1 %2 %3"_s.arg(files).arg(withMatches).arg(matches);
    }

    QStringList text;
};

QStringList everythingTold(const FilePath &location, int threads)
{
    setKindsInForce({{u"Any"_s, u"*"_s, true}});
    TDSearchLocation folder;
    folder.setURL(location.toUrl());
    const auto log = std::make_shared<Log>();
    TDSearchEngine engine;
    engine.setThreadCount(threads);
    engine.setDelegate(log);
    engine.startSearch(u"needle"_s, {folder}, true);
    return log->text;
}

QStringList everythingToldByAsking(const FilePath &location)
{
    const EachFileAsked asked;
    return everythingTold(location, 1);
}

TEST(ReadUnasked, TellsWhatAskingEachFileTells)
{
    std::mt19937 random(2718);
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.path().cString(), 0755), 0);
    for (int tree = 0; tree < 2; ++tree) {
        const QByteArray root = "w" + QByteArray::number(tree);
        QList<QByteArray> names;
        for (int file = 0; file < 1500; ++file) {
            const QByteArray name = root + '/' + QByteArray::number(random() % 9) + '/' +
                                    QByteArray::number(random() % 9) + '/' + QByteArray::number(file);
            if (!names.isEmpty() && random() % 5 == 0) {
                folder.makeFolder(name.left(name.lastIndexOf('/')));
                const QByteArray &other = names[qsizetype(random() % size_t(names.size()))];
                ASSERT_EQ(link(folder.path(other).cString(), folder.path(name).cString()), 0);
            } else {
                const int lines = file % 100 == 0 ? 50000 : 1;
                folder.write(name, QByteArray("hay\n").repeated(lines) +
                                       (random() % 3 == 0 ? "a needle" : "more hay") +
                                       (random() % 50 == 0 ? "\xFF" : ""));
            }
            names << name;
        }
        // Its files can be listed and not be opened; some of them have other names.
        const FilePath closed = folder.path(root + "/3/3");
        folder.makeFolder(root + "/3/3");
        ASSERT_EQ(chmod(closed.cString(), 0744), 0);
        {
            const PlainUser user;
            const QStringList expected = everythingToldByAsking(folder.path(root));
            for (const int threads : {1, 2, 4})
                ASSERT_EQ(everythingTold(folder.path(root), threads), expected) << threads;
        }
        ASSERT_EQ(chmod(closed.cString(), 0755), 0);
    }
}

TEST(ReadUnasked, SearchesWhatIsMountedOverAFileAndWhatLiesBelow)
{
#ifdef __linux__
    const TemporaryFolder folder;
    const FilePath covered = folder.write("w/a", "the needle below");
    for (const char *name : {"w/b", "w/c"})
        ASSERT_EQ(link(covered.cString(), folder.path(name).cString()), 0);
    const FilePath above = folder.write("above", "the needle above");
    if (mount(above.cString(), covered.cString(), nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "nothing can be mounted here";
    const QStringList told = everythingTold(folder.path("w"), 2);
    const QStringList expected = everythingToldByAsking(folder.path("w"));
    EXPECT_EQ(umount2(covered.cString(), MNT_DETACH), 0);
    EXPECT_EQ(told, expected);
    EXPECT_TRUE(told.contains(u"the needle above"_s));
    EXPECT_TRUE(told.contains(u"the needle below"_s));
#endif
}

/// A file in its open folder, as a walk hands it over.
class Listed
{
public:
    Listed(const TemporaryFolder &folder, const QByteArray &name, OtherPath otherPath = OtherPath::None)
        : _descriptor(::open(folder.path().cString(), O_RDONLY | O_DIRECTORY))
    {
        struct stat status = {};
        file.path = folder.path(name);
        EXPECT_EQ(::lstat(file.path.cString(), &status), 0);
        file.folderDescriptor = _descriptor.number();
        file.nameInFolder = file.path.bytes().size() - name.size();
        file.listed = ListedInode{status.st_dev, status.st_ino, otherPath};
    }

    FileToRead file;

private:
    const Descriptor _descriptor;
};

TEST(ReadUnasked, TakesTheDateAfterwardsOnlyIfNothingCanHaveChanged)
{
    if (!FileToRead::canOpenListed())
        GTEST_SKIP() << "this system always asks first";
    const TemporaryFolder folder;
    const FilePath path = folder.write("f", "needle");
    TextBlockReader reader;
    const Listed listed(folder, "f");
    const auto opened = [&](const FileToRead &file) {
        return reader.open(file, TD_ENCODING_UTF8) == TextBlockReader::Outcome::Block;
    };

    // It was written just now, or is from the future; a date that was set back doesn't hide that.
    for (const time_t date : {::time(nullptr), ::time(nullptr) + 100000, time_t(0)}) {
        const timespec times[] = {{date, 0}, {date, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.cString(), times, 0), 0);
        ASSERT_TRUE(opened(listed.file));
        EXPECT_FALSE(reader.modificationDate());
        EXPECT_FALSE(reader.settleDate());
        FileToRead again = listed.file;
        again.asksStatusFirst = true;
        ASSERT_TRUE(opened(again));
        EXPECT_TRUE(reader.settleDate());
        EXPECT_EQ(reader.modificationDate(), TDFileCommon::fileModificationDate(path));
    }
    ASSERT_TRUE(opened(Listed(folder, "f", OtherPath::Listed).file));
    EXPECT_TRUE(reader.modificationDate());

    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
    ASSERT_TRUE(opened(listed.file));
    EXPECT_TRUE(reader.settleDate());
    EXPECT_EQ(reader.modificationDate(), TDFileCommon::fileModificationDate(path));
    ASSERT_TRUE(opened(listed.file));
    const std::optional<FileDate> before = TDFileCommon::fileModificationDate(path);
    folder.write("f", "changed");
    EXPECT_FALSE(reader.settleDate());
    EXPECT_NE(before, TDFileCommon::fileModificationDate(path));
    reader.close();
}

TEST(ReadUnasked, TakesNothingFromAPipeThatTookTheFilesPlace)
{
    const TemporaryFolder folder;
    const FilePath path = folder.write("f", "needle");
    const Listed listed(folder, "f");
    ASSERT_EQ(::unlink(path.cString()), 0);
    ASSERT_EQ(::mkfifo(path.cString(), 0600), 0);
    const Descriptor pipe(::open(path.cString(), O_RDWR | O_NONBLOCK));
    ASSERT_EQ(::write(pipe.number(), "precious", 8), 8);
    TextBlockReader reader;
    EXPECT_EQ(reader.open(listed.file, TD_ENCODING_UTF8), TextBlockReader::Outcome::NeedsLineReader);
    reader.close();
    char bytes[16] = {};
    EXPECT_EQ(::read(pipe.number(), bytes, sizeof bytes), 8);
}

/// The date of what was found is never younger than what was found, or a later change would go unnoticed.
TEST(ReadUnasked, GivesTheDateOfWhatItReadWhileAnotherWrites)
{
    const TemporaryFolder folder;
    const FilePath path = folder.path("w/f");
    for (int index = 0; index < 50; ++index)
        folder.write("w/" + QByteArray::number(index), "hay");
    folder.write("w/f", "needle 0");
    std::mutex mutex;
    QList<qint64> dates{TDFileCommon::fileModificationDate(path)->nanoseconds}; // by version
    std::atomic<bool> isOver = false;
    std::thread writer([&] {
        while (!isOver) {
            // Two changes in one tick of the clock can't be told apart by anybody.
            std::this_thread::sleep_for(std::chrono::milliseconds(12));
            const std::lock_guard lock(mutex);
            folder.write("w/f", "needle " + QByteArray::number(dates.size()));
            dates << TDFileCommon::fileModificationDate(path)->nanoseconds;
        }
    });
    const auto join = qScopeGuard([&] {
        isOver = true;
        writer.join();
    });
    int seen = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (std::chrono::steady_clock::now() < end) {
        const QStringList told = everythingTold(folder.path("w"), 2);
        if (told.size() < 3 || !told[1].startsWith(u"needle "))
            continue;
        const qsizetype version = told[1].mid(7).toLongLong();
        const std::lock_guard lock(mutex);
        ASSERT_LT(version, dates.size());
        ASSERT_LE(told[2].toLongLong(), dates[version]);
        ++seen;
    }
    EXPECT_GT(seen, 3);
}

} // namespace
} // namespace tidemark::test
