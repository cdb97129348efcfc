#include "search/VKFolderTraverser.h"

#include "support/PlainUser.h"
#include "support/Testing.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

/// Writes down what it is told: "a/b" for a file below the folder, "!a 13" for a failure, and the end.
class VKFolderTraverserTest : public testing::Test, public VKFolderTraverserDelegate
{
protected:
    VKFolderTraverserTest() { traverser.setDelegate(this); }

    void didFindFile(const FilePath &path, quint64 scannedCount, int level, qint64 size,
                     qint64 sizeOnDisk) override
    {
        log << nameOf(path);
        levels << level;
        sizes << size;
        EXPECT_EQ(scannedCount, quint64(sizes.size()));
        EXPECT_EQ(sizeOnDisk < 0, size < 0);
        if (onFile)
            onFile();
    }
    void didFailToReadFolder(const FilePath &path, int errorNumber) override
    {
        log << '!' + nameOf(path) + ' ' + QByteArray::number(errorNumber);
    }
    bool readsFoldersAhead() override { return listens; }
    void didListFolder(const QByteArray &path, const QByteArrayList &foldersToCome) override
    {
        QByteArray line = nameOf(FilePath(path)) + ':';
        for (const QByteArray &next : foldersToCome)
            line += ' ' + nameOf(FilePath(next));
        toCome << line;
    }
    void traversalFinished() override { log << "finished"; }
    void traversalStopped() override { log << "stopped"; }

    QByteArray nameOf(const FilePath &path) const
    {
        return path.bytes().mid(folder.path().bytes().size() + 1);
    }
    void write(const QByteArrayList &names, const QByteArray &content = {}) const
    {
        for (const QByteArray &name : names)
            folder.write(name, content);
    }
    void link(const QByteArray &name, const char *target) const
    {
        EXPECT_EQ(symlink(target, folder.path(name).cString()), 0);
    }
    void addFolder(const QByteArray &name, const QStringList &patterns = {u"*"_s}, bool subFolders = true)
    {
        const FilePath path = name == "." ? folder.path() : folder.path(name);
        traverser.addSearchScopeWithFolderPath(path, subFolders, patterns, HANDLING);
    }
    void addFile(const QByteArray &name)
    {
        traverser.addSearchScopeWithFilePath(folder.path(name), HANDLING);
    }
    QByteArray walk()
    {
        traverser.startTraversal();
        return log.join(", ");
    }

    static constexpr SymbolicLinkHandling HANDLING = SymbolicLinkHandling::TakeNamedSkipFound;
    const TemporaryFolder folder;
    VKFolderTraverser traverser;
    QByteArrayList log;
    bool listens = false;
    QByteArrayList toCome;
    QList<int> levels;
    QList<qint64> sizes;
    std::function<void()> onFile;
};

TEST_F(VKFolderTraverserTest, TellsOfFoldersToComeOnceSomebodyReadsThemAhead)
{
    write({"a/1", "a/b/2", "a/c/3", "a/.h/4", "d/5", "e/f/6"});
    onFile = [this] { listens = true; };
    addFolder(".");
    addFolder("e", {u"*"_s}, false);
    walk();
    EXPECT_EQ(toCome, QByteArrayList({"a/b: d e a/c", "a/c:", "d:", "e: e/f", "e/f:"}));
}

TEST_F(VKFolderTraverserTest, ReportsFilesDepthFirstInByteOrder)
{
    write({"b/z", "b/a/1", "b.c", "B", "a", "\xFF\x80", "b-2", "longer than eight b", "longer than eight a",
           "\xC3\xA9"});
    addFolder(".");
    EXPECT_EQ(walk(),
              "B, a, b/a/1, b/z, b-2, b.c, longer than eight a, longer than eight b, \xC3\xA9, \xFF\x80, "
              "finished");
}

TEST_F(VKFolderTraverserTest, ReportsNamesOfEveryByte)
{
    QByteArrayList expected;
    for (const QByteArray &name : namesOfEveryByte())
        expected << name + "/" + name;
    write(expected);
    addFolder(".");
    walk();
    EXPECT_EQ(log, expected << "finished");
}

TEST_F(VKFolderTraverserTest, TellsLevelsAndSizesAsAskedFor)
{
    write({"a", "b/c/d"}, "12345");
    addFolder(".");
    addFolder(".", {u"*"_s}, false);
    EXPECT_EQ(walk(), "a, b/c/d, a, finished");
    EXPECT_EQ(levels, (QList<int>{0, 2, 0}));
    EXPECT_EQ(sizes, (QList<qint64>{5, 5, 5}));
    sizes.clear();
    traverser.setReportsSizes(false);
    walk();
    EXPECT_EQ(sizes, (QList<qint64>{-1, -1, -1}));
}

TEST_F(VKFolderTraverserTest, SkipsHiddenEntriesLinksAndSpecialFilesFoundInside)
{
    write({"a", ".hidden", ".git/config", "real/x"});
    link("linkToFile", "a");
    link("linkToFolder", "real");
    link("real/loop", "..");
    link("loop", "loop");
    makeSpecialFiles(folder);
    addFolder(".");
    EXPECT_EQ(walk(), "a, real/x, finished");
}

TEST_F(VKFolderTraverserTest, OwnBackupsAreLeftOutUnlessTheyAreNamed)
{
    write({"a", "a.TDMBackup.aB1", "a.TDMBackup.abc123", "b.TDMBackup.ab", "c.TDMBackup.abcd",
           "d.TDMBackup.a-1", "e.TDMBackup.abc.txt", "f/g.TDMBackup.xyz", "h.TDMBackup.abc/i",
           ".TDMBackup.abc", "jTDMBackup.abc"});
    addFile("a.TDMBackup.aB1");
    addFolder(".");
    EXPECT_EQ(walk(), "a.TDMBackup.aB1, a, b.TDMBackup.ab, c.TDMBackup.abcd, d.TDMBackup.a-1, "
                      "e.TDMBackup.abc.txt, jTDMBackup.abc, finished");
}

TEST_F(VKFolderTraverserTest, TakesNamedScopesAsTheyAreInTheOrderAdded)
{
    write({".hidden/.file", ".hidden/a"}, "123");
    link("link", ".hidden");
    link("linkToFile", ".hidden/.file");
    addFolder("link");
    addFile("missing");
    addFile("linkToFile");
    addFile(".hidden/.file");
    addFolder(".hidden/", {u"A"_s});
    addFolder("missing");
    addFolder("linkToFile");
    EXPECT_EQ(walk(), "link/a, missing, linkToFile, .hidden/.file, .hidden/a, !missing " +
                          QByteArray::number(ENOENT) + ", !linkToFile " + QByteArray::number(ENOTDIR) +
                          ", finished");
    EXPECT_EQ(sizes, (QList<qint64>{3, -1, 3, 3, 3}));
}

TEST_F(VKFolderTraverserTest, FiltersByTypeOrPatternOfTheScope)
{
    write({"a.txt", "b.zip", "c.png", "d", "f.[x]"}, "text");
    folder.write("e", QByteArray("\0data", 5));
    addFolder(".", {});
    traverser.setUtis({u"public.text"_s});
    addFolder(".", {u"*.ZIP"_s});
    traverser.setUtis({u"public.image"_s});
    addFolder(".", {});
    traverser.setUtis({u"public.item"_s});
    addFolder(".", {});
    EXPECT_EQ(walk(), "a.txt, b.zip, d, f.[x], c.png, a.txt, b.zip, c.png, d, e, f.[x], finished");
}

TEST_F(VKFolderTraverserTest, UnreadableFoldersAreReportedAndUnreadableFilesAreNotPassedOver)
{
    write({"a/x", "b/y", "c/secret"}, QByteArray("\0", 1));
    chmod(folder.path().cString(), 0755);
    chmod(folder.path("b").cString(), 0);
    chmod(folder.path("c/secret").cString(), 0);
    addFolder(".");
    traverser.setUtis({u"public.text"_s});
    addFolder("c", {});
    {
        const PlainUser user;
        walk();
    }
    EXPECT_EQ(log.join(", "), "a/x, !b " + QByteArray::number(EACCES) + ", c/secret, c/secret, finished");
    chmod(folder.path("b").cString(), 0700);
}

TEST_F(VKFolderTraverserTest, StopsBeforeTheNextFile)
{
    write({"a/1", "a/2", "b/1"});
    onFile = [this] { traverser.stopTraversal(); };
    addFolder("a");
    addFile("b/1");
    EXPECT_EQ(walk(), "a/1, stopped");
    EXPECT_EQ(walk(), "a/1, stopped, stopped") << "stopped before the start";
}

TEST_F(VKFolderTraverserTest, AStopAtTheLastFileIsTold)
{
    write({"a"});
    onFile = [this] { traverser.stopTraversal(); };
    addFolder(".");
    EXPECT_EQ(walk(), "a, stopped");
}

TEST_F(VKFolderTraverserTest, HandsOverTheFolderAndTheNameInItAndAPathThatStaysWhatItWas)
{
    class Reader : public VKFolderTraverserDelegate
    {
    public:
        void didFindFileInFolder(const FoundEntry &entry, const FilePath &path, quint64, int, qint64,
                                 qint64) override
        {
            char bytes[16] = {};
            const int file = openat(entry.folderDescriptor, entry.name, O_RDONLY);
            EXPECT_EQ(read(file, bytes, sizeof bytes), 7);
            close(file);
            paths << path;
        }
        QList<FilePath> paths;
    } reader;
    write({"a/long name", "a/x", "b"}, "content");
    addFolder(".");
    traverser.setDelegate(&reader);
    traverser.startTraversal();
    EXPECT_EQ(reader.paths,
              (QList<FilePath>{folder.path("a/long name"), folder.path("a/x"), folder.path("b")}));
}

qsizetype openDescriptors()
{
    qsizetype count = 0;
    DIR *folder = opendir("/proc/self/fd");
    while (readdir(folder))
        ++count;
    closedir(folder);
    return count;
}

/// Nested folders "d", deeper than paths can be long, with a file "f" behind the subfolder at every hundredth
/// level.
class NestedFolders
{
public:
    NestedFolders(const FilePath &root, int depth) : _depth(depth)
    {
        _folder = open(root.cString(), O_RDONLY | O_DIRECTORY);
        for (int level = 0; level < depth; ++level) {
            EXPECT_EQ(mkdirat(_folder, "d", 0700), 0);
            if (level % 100 == 0)
                close(openat(_folder, "f", O_CREAT | O_WRONLY, 0600));
            _move("d");
        }
        close(openat(_folder, "f", O_CREAT | O_WRONLY, 0600));
    }
    ~NestedFolders()
    {
        for (int level = 0; level < _depth; ++level) {
            unlinkat(_folder, "f", 0);
            _move("..");
            unlinkat(_folder, "d", AT_REMOVEDIR);
        }
        close(_folder);
    }
    Q_DISABLE_COPY_MOVE(NestedFolders)

private:
    void _move(const char *name)
    {
        const int next = openat(_folder, name, O_RDONLY | O_DIRECTORY);
        close(_folder);
        _folder = next;
    }

    int _depth;
    int _folder;
};

TEST_F(VKFolderTraverserTest, DepthAndPathLengthHaveNoLimitAndDescriptorsStayFew)
{
    constexpr int DEPTH = 10000;
    const NestedFolders nested(folder.path(), DEPTH);
    const qsizetype before = openDescriptors();
    qsizetype most = 0;
    onFile = [&] { most = std::max(most, openDescriptors()); };
    addFolder(".");
    walk();
    QList<int> expected{DEPTH};
    for (int level = DEPTH - 100; level >= 0; level -= 100)
        expected << level;
    EXPECT_EQ(levels, expected);
    EXPECT_EQ(log.first().size(), 2 * DEPTH + 1);
    EXPECT_EQ(log.mid(log.size() - 2).join(' '), "f finished");
    EXPECT_EQ(log.size(), expected.size() + 1);
    EXPECT_LT(most - before, 100);
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(VKFolderTraverserTest, AFolderMovedWhileItIsWalkedDoesNotLeadAstray)
{
    constexpr int DEPTH = 300;
    const TemporaryFolder elsewhere;
    elsewhere.write("f", "");
    folder.makeFolder("d/d");
    write({"f", "d/f"});
    const NestedFolders nested(folder.path("d/d"), DEPTH);
    onFile = [&] { rename(folder.path("d/d").cString(), elsewhere.path("moved").cString()); };
    addFolder(".");
    walk();
    EXPECT_EQ(levels, (QList<int>{DEPTH + 2, 202, 102, 2, 1, 0}));
    EXPECT_EQ(log.size(), 7);
}

TEST_F(VKFolderTraverserTest, AFolderThatIsGoneOnTheWayBackIsReported)
{
    constexpr int DEPTH = 300;
    const TemporaryFolder elsewhere;
    folder.makeFolder("a/d");
    write({"b"});
    const NestedFolders nested(folder.path("a/d"), DEPTH);
    onFile = [&] {
        rename(folder.path("a/d").cString(), elsewhere.path("moved").cString());
        rmdir(folder.path("a").cString());
    };
    addFolder("a");
    addFile("b");
    walk();
    EXPECT_EQ(levels, (QList<int>{DEPTH + 1, 201, 101, 1, 0}));
    EXPECT_EQ(log.mid(log.size() - 3).join(", "), "!a " + QByteArray::number(ENOENT) + ", b, finished");
}

TEST_F(VKFolderTraverserTest, AFolderRemovedWhileItIsWalkedEndsThere)
{
    write({"a/1", "a/b/2", "a/c/3", "z"});
    onFile = [this] { std::filesystem::remove_all(folder.path("a").cString()); };
    addFolder(".");
    const QByteArray gone = ' ' + QByteArray::number(ENOENT);
    EXPECT_EQ(walk(), "a/1, !a/b" + gone + ", !a/c" + gone + ", z, finished");
}

} // namespace
} // namespace tidemark::test
