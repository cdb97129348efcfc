#include "search/VKFolderTraverser.h"

#include "support/Testing.h"

#include <QProcess>
#include <QSet>
#include <QStandardPaths>

#include <random>

namespace tidemark::test {
namespace {

/// A tree of files and ignore files, the same for the same seed.
class RandomTree
{
public:
    RandomTree(unsigned seed, const TemporaryFolder &folder) : _random(seed), _folder(folder) {}

    /// Relative paths of all files.
    QByteArrayList make()
    {
        // As little of a repository as is one.
        _folder.write("tree/.git/HEAD", "ref: refs/heads/main\n");
        _folder.makeFolder("tree/.git/objects");
        _folder.makeFolder("tree/.git/refs");
        _fill("tree/", 0);
        _folder.write("tree/.git/info/exclude", _patterns());
        _folder.write("home/.gitconfig", "[user]\nname = x\n[core]\n\tExcludesFile = \"~/own\" # here\n");
        _folder.write("home/own", _patterns());
        return _files;
    }

private:
    size_t _below(size_t limit) { return _random() % limit; }

    void _fill(const QByteArray &folder, int depth)
    {
        if (_below(3) == 0)
            _folder.write(folder + ".gitignore", _patterns());
        const size_t count = 1 + _below(6);
        for (size_t i = 0; i < count; ++i) {
            const QByteArray path = folder + _name();
            if (_taken.contains(path))
                continue;
            _taken.insert(path);
            if (depth < 4 && _below(2) == 0) {
                _fill(path + '/', depth + 1);
            } else {
                _folder.write(path, "x");
                _files << path.mid(qsizetype(qstrlen("tree/")));
            }
        }
    }

    QByteArray _name()
    {
        static const QByteArrayList NAMES = {"a",   "b",  "ab", "abc", "foo.o", "build", "x y", "é",
                                             "[a]", "A",  "#x", "!x",  "a.b.o", ".c",    "-",   "a*",
                                             "b\\", "]b", "0",  "a^",  "a,b",   "B.TXT", "x ",  "\xFF"};
        return NAMES[qsizetype(_below(size_t(NAMES.size())))];
    }

    QByteArray _patterns()
    {
        static const QByteArrayList ENDS = {"\n", "\n", "\n", "\r\n", "  \n", "\\ \n", "\n\n#a\n", "/\n"};
        QByteArray patterns = _below(8) == 0 ? "\xEF\xBB\xBF" : "";
        for (size_t count = _below(5); count > 0; --count)
            patterns += _pattern() + ENDS[qsizetype(_below(size_t(ENDS.size())))];
        return patterns + (_below(2) == 0 ? _pattern() : QByteArray());
    }

    QByteArray _pattern()
    {
        static const QByteArrayList PIECES = {
            "a",    "b",     "ab",   "*",      "*",        "**",          "**/",     "/", "/",
            "?",    "[ab]",  "[!a]", "[^b]",   "[a-c]",    "[[:alpha:]]", "[]a]",    "[", "\\",
            "\\*",  "\\[",   ".o",   "build",  "foo",      " ",           "\xC3",    "é", "x",
            "[a/]", "[[:x]", "[a-]", "[\\]b]", "\\!",      "#",           "!",       ",", "***",
            "c",    "[b-a]", "/**/", "[--0]",  "[[:no:]]", "\\#x",        "[\\a-c]", "]", "*.o",
        };
        QByteArray pattern = _below(4) == 0 ? "!" : "";
        if (_below(3) == 0)
            return pattern + (_below(3) == 0 ? "/" : "") + _name();
        for (size_t count = 1 + _below(5); count > 0; --count)
            pattern += PIECES[qsizetype(_below(size_t(PIECES.size())))];
        return pattern;
    }

    std::mt19937 _random;
    const TemporaryFolder &_folder;
    QByteArrayList _files;
    QSet<QByteArray> _taken;
};

class Collector : public VKFolderTraverserDelegate
{
public:
    explicit Collector(const FilePath &root) : _start(root.bytes().size() + 1) {}
    void didFindFile(const FilePath &path, quint64, int, qint64, qint64) override
    {
        const QByteArray name = path.bytes().mid(_start);
        if (!name.endsWith(".gitignore"))
            files.insert(name);
    }
    QSet<QByteArray> files;

private:
    qsizetype _start;
};

class Environment
{
public:
    Environment(const char *name, const QByteArray &value) : _name(name), _before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Environment() { qputenv(_name, _before); }
    Q_DISABLE_COPY_MOVE(Environment)

private:
    const char *_name;
    QByteArray _before;
};

QSet<QByteArray> wantedByUs(const FilePath &tree)
{
    Collector collector(tree);
    VKFolderTraverser traverser;
    traverser.setDelegate(&collector);
    traverser.setFilterOptions({{}, true, true, 0});
    traverser.addSearchScopeWithFolderPath(tree, true, {u"*"_s}, SymbolicLinkHandling::TakeNamedSkipFound);
    traverser.startTraversal();
    return collector.files;
}

QSet<QByteArray> wantedByGit(const FilePath &tree, const QByteArrayList &files)
{
    QProcess git;
    git.setWorkingDirectory(tree.displayText());
    git.start(u"git"_s, {u"check-ignore"_s, u"--no-index"_s, u"-z"_s, u"--stdin"_s});
    git.write(files.join('\0') + '\0');
    git.closeWriteChannel();
    EXPECT_TRUE(git.waitForFinished());
    EXPECT_LE(git.exitCode(), 1) << git.readAllStandardError().constData();
    QSet<QByteArray> wanted(files.begin(), files.end());
    const QByteArrayList ignored = git.readAllStandardOutput().split('\0');
    for (const QByteArray &file : ignored)
        wanted.remove(file);
    return wanted;
}

TEST(GitOracleTest, LeavesOutWhatGitDoes)
{
    if (QStandardPaths::findExecutable(u"git"_s).isEmpty())
        GTEST_SKIP() << "git isn't installed";
    bool isNumber = false;
    const int given = qEnvironmentVariableIntValue("TIDEMARK_ORACLE_CASES", &isNumber);
    int leftOut = 0;
    for (unsigned seed = 1; seed <= unsigned(isNumber ? given : 200); ++seed) {
        const TemporaryFolder folder;
        const Environment home("HOME", folder.path("home").bytes());
        const Environment settings("XDG_CONFIG_HOME", folder.path("none").bytes());
        const QByteArrayList files = RandomTree(seed, folder).make();
        const FilePath tree = folder.path("tree");
        const QSet<QByteArray> ours = wantedByUs(tree);
        const QSet<QByteArray> gits = wantedByGit(tree, files);
        leftOut += int(files.size() - gits.size());
        EXPECT_EQ(ours - gits, QSet<QByteArray>()) << "seed " << seed;
        EXPECT_EQ(gits - ours, QSet<QByteArray>()) << "seed " << seed;
        if (HasFailure())
            break;
    }
    EXPECT_GT(leftOut, 0);
}

} // namespace
} // namespace tidemark::test
