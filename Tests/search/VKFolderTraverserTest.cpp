#include "search/VKFolderTraverser.h"

#include "support/PlainUser.h"
#include "support/Testing.h"

#include <QList>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

using Names = QList<QByteArray>;

constexpr SymbolicLinkHandling HANDLING = SymbolicLinkHandling::TakeNamedSkipFound;

class Recorder : public VKFolderTraverserDelegate
{
public:
    void didFindFile(const FilePath &path, quint64 scannedCount, int level, qint64 size,
                     qint64 sizeOnDisk) override
    {
        paths << path.bytes();
        levels << level;
        sizes << size;
        EXPECT_EQ(scannedCount, quint64(paths.size()));
        EXPECT_EQ(sizeOnDisk < 0, size < 0);
        if (onFile)
            onFile();
    }
    void didFailToReadFolder(const FilePath &path, int errorNumber) override
    {
        failures << path.bytes() + ' ' + QByteArray::number(errorNumber);
    }
    void traversalFinished() override { ends << "finished"; }
    void traversalStopped() override { ends << "stopped"; }

    /// The paths without the part that all share.
    Names names(const FilePath &root) const
    {
        Names names = paths;
        for (QByteArray &name : names)
            name.remove(0, root.bytes().size() + 1);
        return names;
    }

    Names paths;
    QList<int> levels;
    QList<qint64> sizes;
    Names failures;
    Names ends;
    std::function<void()> onFile;
};

struct FolderWalk
{
    explicit FolderWalk(const FilePath &path, bool includeSubFolders = true,
                        const QStringList &patterns = {u"*"_s})
    {
        traverser.setDelegate(&found);
        traverser.addSearchScopeWithFolderPath(path, includeSubFolders, patterns, HANDLING);
    }
    Recorder run()
    {
        traverser.startTraversal();
        return found;
    }

    Recorder found;
    VKFolderTraverser traverser;
};

qsizetype openDescriptors()
{
    qsizetype count = 0;
    DIR *folder = opendir("/proc/self/fd");
    while (readdir(folder))
        ++count;
    closedir(folder);
    return count;
}

TEST(VKFolderTraverser, ReportsFilesDepthFirstInByteOrder)
{
    const TemporaryFolder folder;
    for (const char *name : {"b/z", "b/a/1", "b.c", "B", "a", "\xFF\x80", "b-2", "longer than eight b",
                             "longer than eight a", "\xC3\xA9"})
        folder.write(name, "12345");
    const Recorder found = FolderWalk(folder.path()).run();
    EXPECT_EQ(found.names(folder.path()),
              (Names{"B", "a", "b/a/1", "b/z", "b-2", "b.c", "longer than eight a", "longer than eight b",
                     "\xC3\xA9", "\xFF\x80"}));
}

TEST(VKFolderTraverser, TellsLevelAndSizesAsAskedFor)
{
    const TemporaryFolder folder;
    folder.write("a", "12345");
    folder.write("b/c/d", "");
    FolderWalk walk(folder.path());
    EXPECT_EQ(walk.run().levels, (QList<int>{0, 2}));
    EXPECT_EQ(walk.found.sizes, (QList<qint64>{5, 0}));
    FolderWalk withoutSizes(folder.path());
    withoutSizes.traverser.setReportsSizes(false);
    EXPECT_EQ(withoutSizes.run().sizes, (QList<qint64>{-1, -1}));
    EXPECT_EQ(FolderWalk(folder.path(), false).run().names(folder.path()), Names{"a"});
}

TEST(VKFolderTraverser, SkipsHiddenEntriesLinksAndSpecialFilesFoundInside)
{
    const TemporaryFolder folder;
    folder.write("a", "");
    folder.write(".hidden", "");
    folder.write(".git/config", "");
    folder.write("real/x", "");
    ASSERT_EQ(symlink("a", folder.path("linkToFile").cString()), 0);
    ASSERT_EQ(symlink("real", folder.path("linkToFolder").cString()), 0);
    ASSERT_EQ(symlink("..", folder.path("real/loop").cString()), 0);
    ASSERT_EQ(mkfifo(folder.path("pipe").cString(), 0600), 0);
    const Recorder found = FolderWalk(folder.path()).run();
    EXPECT_EQ(found.names(folder.path()), (Names{"a", "real/x"}));
    EXPECT_TRUE(found.failures.isEmpty());
}

TEST(VKFolderTraverser, TakesNamedScopesAsTheyAreInTheOrderAdded)
{
    const TemporaryFolder folder;
    const FilePath hidden = folder.write(".hidden/.file", "123");
    folder.write(".hidden/a", "");
    ASSERT_EQ(symlink(".hidden", folder.path("link").cString()), 0);
    ASSERT_EQ(symlink(".hidden/.file", folder.path("linkToFile").cString()), 0);
    FolderWalk walk(folder.path("link"));
    walk.traverser.addSearchScopeWithFilePath(folder.path("missing"), HANDLING);
    walk.traverser.addSearchScopeWithFilePath(folder.path("linkToFile"), HANDLING);
    walk.traverser.addSearchScopeWithFilePath(hidden, HANDLING);
    walk.traverser.addSearchScopeWithFolderPath(folder.path(".hidden/"), true, {u"A"_s}, HANDLING);
    EXPECT_EQ(walk.run().names(folder.path()),
              (Names{"link/a", "missing", "linkToFile", ".hidden/.file", ".hidden/a"}));
    EXPECT_EQ(walk.found.sizes, (QList<qint64>{0, -1, 3, 3, 0}));
    EXPECT_EQ(walk.found.ends, Names{"finished"});
}

TEST(VKFolderTraverser, FiltersByTypeOrPatternOfTheScope)
{
    const TemporaryFolder folder;
    for (const char *name : {"a.txt", "b.zip", "c.png", "d", "e", "f.[x]"})
        folder.write(name, "text");
    folder.write("e", QByteArray("\0data", 5));
    VKFolderTraverser traverser;
    Recorder found;
    traverser.setDelegate(&found);
    traverser.addSearchScopeWithFolderPath(folder.path(), true, {}, HANDLING);
    traverser.setUtis({u"public.text"_s});
    traverser.addSearchScopeWithFolderPath(folder.path(), true, {u"*.ZIP"_s}, HANDLING);
    traverser.setUtis({u"public.image"_s});
    traverser.addSearchScopeWithFolderPath(folder.path(), true, {}, HANDLING);
    traverser.setUtis({u"public.item"_s});
    traverser.addSearchScopeWithFolderPath(folder.path(), true, {}, HANDLING);
    traverser.startTraversal();
    EXPECT_EQ(found.names(folder.path()),
              (Names{"a.txt", "b.zip", "d", "f.[x]", "c.png", "a.txt", "b.zip", "c.png", "d", "e", "f.[x]"}));
}

TEST(VKFolderTraverser, ScopesThatAreNoFoldersAreReportedAndTheWalkGoesOn)
{
    const TemporaryFolder folder;
    const FilePath file = folder.write("file", "");
    FolderWalk walk(folder.path("missing"));
    walk.traverser.addSearchScopeWithFolderPath(file, true, {u"*"_s}, HANDLING);
    walk.traverser.addSearchScopeWithFilePath(file, HANDLING);
    const QByteArray root = folder.path().bytes();
    EXPECT_EQ(walk.run().failures, (Names{root + "/missing " + QByteArray::number(ENOENT),
                                          root + "/file " + QByteArray::number(ENOTDIR)}));
    EXPECT_EQ(walk.found.names(folder.path()), Names{"file"});
    EXPECT_EQ(walk.found.ends, Names{"finished"});
}

TEST(VKFolderTraverser, UnreadableFoldersAreReportedAndUnreadableFilesAreNotPassedOver)
{
    const TemporaryFolder folder;
    folder.write("a/x", "");
    const FilePath locked = folder.makeFolder("b");
    const FilePath secret = folder.write("c/secret", QByteArray("\0", 1));
    ASSERT_EQ(chmod(folder.path().cString(), 0755), 0);
    ASSERT_EQ(chmod(locked.cString(), 0), 0);
    ASSERT_EQ(chmod(secret.cString(), 0), 0);
    FolderWalk walk(folder.path());
    walk.traverser.setUtis({u"public.text"_s});
    walk.traverser.addSearchScopeWithFolderPath(folder.path("c"), true, {}, HANDLING);
    {
        const PlainUser user;
        walk.run();
    }
    EXPECT_EQ(walk.found.names(folder.path()), (Names{"a/x", "c/secret", "c/secret"}));
    EXPECT_EQ(walk.found.failures, Names{locked.bytes() + ' ' + QByteArray::number(EACCES)});
    EXPECT_EQ(walk.found.ends, Names{"finished"});
    chmod(locked.cString(), 0700);
}

TEST(VKFolderTraverser, StopsBeforeTheNextFile)
{
    const TemporaryFolder folder;
    for (const char *name : {"a/1", "a/2", "b/1"})
        folder.write(name, "");
    FolderWalk walk(folder.path());
    walk.traverser.addSearchScopeWithFilePath(folder.path("a/1"), HANDLING);
    walk.found.onFile = [&] { walk.traverser.stopTraversal(); };
    EXPECT_EQ(walk.run().names(folder.path()), Names{"a/1"});
    EXPECT_EQ(walk.found.ends, Names{"stopped"});

    FolderWalk last(folder.path("b"));
    last.found.onFile = [&] { last.traverser.stopTraversal(); };
    EXPECT_EQ(last.run().ends, Names{"stopped"});

    FolderWalk stoppedBefore(folder.path());
    stoppedBefore.traverser.stopTraversal();
    EXPECT_TRUE(stoppedBefore.run().paths.isEmpty());
    EXPECT_EQ(stoppedBefore.found.ends, Names{"stopped"});
}

TEST(VKFolderTraverser, HandsOverTheFolderAndTheNameInItAndAPathThatStaysWhatItWas)
{
    const TemporaryFolder folder;
    for (const char *name : {"a/long name", "a/x", "b"})
        folder.write(name, name);
    class Reader : public VKFolderTraverserDelegate
    {
    public:
        void didFindFileInFolder(int descriptor, const char *name, const FilePath &path, quint64, int, qint64,
                                 qint64) override
        {
            char bytes[16] = {};
            const int file = openat(descriptor, name, O_RDONLY);
            EXPECT_GT(read(file, bytes, sizeof bytes), 0);
            close(file);
            contents << bytes;
            paths << path;
        }
        Names contents;
        QList<FilePath> paths;
    } reader;
    FolderWalk walk(folder.path());
    walk.traverser.setDelegate(&reader);
    walk.run();
    EXPECT_EQ(reader.contents, (Names{"a/long name", "a/x", "b"}));
    EXPECT_EQ(reader.paths,
              (QList<FilePath>{folder.path("a/long name"), folder.path("a/x"), folder.path("b")}));
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

TEST(VKFolderTraverser, DepthAndPathLengthHaveNoLimitAndDescriptorsStayFew)
{
    constexpr int DEPTH = 10000;
    const TemporaryFolder folder;
    const NestedFolders nested(folder.path(), DEPTH);
    const qsizetype before = openDescriptors();
    FolderWalk walk(folder.path());
    qsizetype most = 0;
    walk.found.onFile = [&] { most = std::max(most, openDescriptors()); };
    walk.run();

    EXPECT_TRUE(walk.found.failures.isEmpty());
    QList<int> levels{DEPTH};
    for (int level = DEPTH - 100; level >= 0; level -= 100)
        levels << level;
    EXPECT_EQ(walk.found.levels, levels);
    EXPECT_EQ(walk.found.paths.first().size(), folder.path().bytes().size() + 2 * DEPTH + 2);
    EXPECT_EQ(walk.found.paths.last(), folder.path("f").bytes());
    EXPECT_LT(most - before, 100);
    EXPECT_EQ(openDescriptors(), before);
}

/// What happens once, when the first file is found.
std::function<void()> once(const Recorder &found, std::function<void()> action)
{
    return [&found, action = std::move(action)] {
        if (found.paths.size() == 1)
            action();
    };
}

void move(const FilePath &from, const FilePath &to)
{
    EXPECT_EQ(rename(from.cString(), to.cString()), 0);
}

TEST(VKFolderTraverser, FolderMovedWhileItIsWalkedDoesNotLeadAstray)
{
    constexpr int DEPTH = 300;
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    elsewhere.write("f", "");
    folder.makeFolder("d/d");
    folder.write("d/f", "");
    folder.write("f", "");
    const NestedFolders nested(folder.path("d/d"), DEPTH);

    FolderWalk walk(folder.path());
    walk.found.onFile = once(walk.found, [&] { move(folder.path("d/d"), elsewhere.path("moved")); });
    walk.run();
    EXPECT_EQ(walk.found.levels, (QList<int>{DEPTH + 2, 202, 102, 2, 1, 0}));
    EXPECT_TRUE(walk.found.failures.isEmpty());
}

TEST(VKFolderTraverser, FolderThatIsGoneOnTheWayBackIsReported)
{
    constexpr int DEPTH = 300;
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    folder.makeFolder("a/d");
    folder.write("b", "");
    const NestedFolders nested(folder.path("a/d"), DEPTH);

    FolderWalk walk(folder.path("a"));
    walk.traverser.addSearchScopeWithFilePath(folder.path("b"), HANDLING);
    walk.found.onFile = once(walk.found, [&] {
        move(folder.path("a/d"), elsewhere.path("moved"));
        EXPECT_EQ(rmdir(folder.path("a").cString()), 0);
    });
    walk.run();
    EXPECT_EQ(walk.found.failures, Names{folder.path("a").bytes() + ' ' + QByteArray::number(ENOENT)});
    EXPECT_EQ(walk.found.levels, (QList<int>{DEPTH + 1, 201, 101, 1, 0}));
}

} // namespace
} // namespace tidemark::test
