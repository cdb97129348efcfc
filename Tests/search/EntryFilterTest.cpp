#include "search/VKFolderTraverser.h"

#include "foundation/UserDefaults.h"
#include "search/UserIgnoreFile.h"
#include "support/PlainUser.h"
#include "support/Testing.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

constexpr SymbolicLinkHandling HANDLING = SymbolicLinkHandling::TakeNamedSkipFound;

class EntryFilterTest : public testing::Test, public VKFolderTraverserDelegate
{
protected:
    EntryFilterTest() { qputenv("HOME", folder.path("home").bytes()); }
    ~EntryFilterTest() override { qputenv("HOME", _home); }

    void didFindFile(const FilePath &path, quint64, int, qint64, qint64) override
    {
        found << path.bytes().mid(folder.path().bytes().size() + 1);
    }
    void didLeaveOut(const LeftOut &counts) override { leftOut = counts; }

    void write(const QByteArrayList &names, const QByteArray &content = "x") const
    {
        for (const QByteArray &name : names)
            folder.write(name, content);
    }
    QByteArray walk(const EntryFilterOptions &options, const QByteArrayList &locations = {"w"})
    {
        VKFolderTraverser traverser;
        traverser.setDelegate(this);
        traverser.setFilterOptions(options);
        for (const QByteArray &name : locations)
            traverser.addSearchScopeWithFolderPath(folder.path(name), true, {u"*"_s}, HANDLING);
        found.clear();
        traverser.startTraversal();
        return found.join(' ');
    }
    quint64 countOf(LeftOutReason reason) const { return leftOut[reason]; }

    const TemporaryFolder folder;
    const QByteArray _home = qgetenv("HOME");
    QByteArrayList found;
    LeftOut leftOut;
};

TEST_F(EntryFilterTest, PatternsMatchAsInIgnoreFiles)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/ignore-patterns.tsv")) {
        const CaseRule caseRule = row.fields.value(3) == "case" ? CaseRule::Ignore : CaseRule::Exact;
        const IgnorePatterns patterns = IgnorePatterns::ofField(row.text(0), caseRule);
        const QByteArray path = row.bytes(1);
        const QByteArray trimmed = path.endsWith('/') ? path.chopped(1) : path;
        const int match = patterns.lastMatch(FilePath(trimmed).lastPathComponent(), trimmed,
                                             path.endsWith('/') ? EntryKind::Folder : EntryKind::File);
        EXPECT_EQ(match >= 0 && !patterns.all()[size_t(match)].takesBack(), row.flag(2)) << row.line;
    }
}

TEST_F(EntryFilterTest, TellsFaultyPatternsApart)
{
    using Fault = IgnorePattern::Fault;
    for (const auto &[text, fault] :
         std::initializer_list<std::pair<const char *, Fault>>{{"a", Fault::None},
                                                               {"[]]", Fault::None},
                                                               {"!", Fault::Empty},
                                                               {"/", Fault::Empty},
                                                               {"a[b", Fault::OpenClass},
                                                               {"[]", Fault::OpenClass},
                                                               {"[a\\", Fault::OpenClass},
                                                               {"[[:alpha:]", Fault::OpenClass},
                                                               {"[[:letter:]]", Fault::UnknownClass},
                                                               {"a\\", Fault::LoneBackslash}}) {
        EXPECT_EQ(IgnorePattern(text, CaseRule::Exact).fault(), fault) << text;
    }
}

TEST_F(EntryFilterTest, PatternsHoldRelativeToEachLocationAndAreCounted)
{
    write({"w/build/a", "w/b/build/c", "w/b/keep.o", "w/b/x.o", "v/build/d", "v/e.o", "w/top"});
    EXPECT_EQ(walk({u"/build/ *.o, !keep.o"_s, false, false, 0}, {"w", "w/build", "v"}),
              "w/b/build/c w/b/keep.o w/top w/build/a");
    EXPECT_EQ(leftOut.byPattern, (QList<LeftOut::Share>{{"/build/", 2}, {"*.o", 2}}));
    EXPECT_EQ(countOf(LeftOutReason::Pattern), 4U);
    EXPECT_EQ(leftOut.total(), 4U);
}

TEST_F(EntryFilterTest, ReadsIgnoreFilesFromTheRepositoryDown)
{
    write({"w/r/.git/HEAD", "w/r/s/a.o", "w/r/s/b.tmp", "w/r/s/c.log", "w/r/s/d", "w/r/s/e.own", "w/r/s/f"});
    folder.write("w/.gitignore", "d\n");
    folder.write("w/r/.gitignore", "*.o\n/s/f\n");
    folder.write("w/r/.git/info/exclude", "*.tmp\n");
    folder.write("w/r/s/.ignore", "*.log\n");
    folder.write("home/.config/git/ignore", "*.own\n");
    const EntryFilterOptions obeying = {{}, false, true, 0};
    EXPECT_EQ(walk(obeying, {"w/r/s"}), "w/r/s/d") << "what lies above the repository doesn't hold";
    EXPECT_EQ(countOf(LeftOutReason::IgnoreFile), 5U);
    EXPECT_EQ(walk(obeying), "w/r/s/d") << "nor where it is come upon";
    EXPECT_EQ(leftOut.byIgnoreFile.size(), 4);
    EXPECT_EQ(walk({u"!*.o !f"_s, true, true, 0}), "w/.gitignore w/r/.gitignore w/r/s/.ignore w/r/s/a.o "
                                                   "w/r/s/d w/r/s/f");
    EXPECT_EQ(walk({}), "w/r/s/a.o w/r/s/b.tmp w/r/s/c.log w/r/s/d w/r/s/e.own w/r/s/f");
}

TEST_F(EntryFilterTest, AWorkingTreeThatWasAddedIsARepository)
{
    folder.write("main/.git/info/exclude", "*.tmp\n");
    folder.write("main/.git/worktrees/w/commondir", "../..\n");
    folder.write("w/.git", "gitdir: ../main/.git/worktrees/w\n");
    write({"w/a.tmp", "w/b"});
    EXPECT_EQ(walk({{}, true, true, 0}), "w/b");
}

TEST_F(EntryFilterTest, BrokenIgnoreFilesAreNamedAndTheRestHolds)
{
    folder.makeFolder("w/a/.gitignore");
    write({"w/a/x.o", "w/b/x.o", "w/c"});
    folder.write("w/.gitignore", "[x\n*.o\ny\\\n");
    folder.write("w/b/.ignore", "c");
    ASSERT_EQ(chmod(folder.path("w/b/.ignore").cString(), 0), 0);
    ASSERT_EQ(chmod(folder.path().cString(), 0755), 0);
    {
        const PlainUser user;
        EXPECT_EQ(walk({{}, false, true, 0}), "w/c");
    }
    ASSERT_EQ(leftOut.brokenIgnoreFiles.size(), 3);
    EXPECT_EQ(leftOut.brokenIgnoreFiles[0].faultyPatterns, (QList<QByteArray>{"[x", "y\\"}));
    EXPECT_EQ(leftOut.brokenIgnoreFiles[1].errorNumber, EISDIR);
    EXPECT_EQ(leftOut.brokenIgnoreFiles[2].errorNumber, EACCES);
}

TEST_F(EntryFilterTest, HiddenEntriesAndLargeFilesAreAsTheSettingsSay)
{
    write({"w/.a", "w/.b/c", "w/d"});
    folder.write("w/large", QByteArray(101, 'x'));
    UserDefaults &settings = UserDefaults::standard();
    EXPECT_EQ(walk(EntryFilterOptions::withUserDefaults()), "w/d w/large");
    EXPECT_EQ(countOf(LeftOutReason::Hidden), 2U);
    settings.setObject(u"searchHiddenFiles"_s, true);
    settings.setObject(u"largestFileSize"_s, 100);
    EXPECT_EQ(walk(EntryFilterOptions::withUserDefaults()), "w/.a w/.b/c w/d");
    EXPECT_EQ(countOf(LeftOutReason::Size), 1U);
    settings.setObject(u"leaveOutPatterns"_s, u".b"_s);
    settings.setObject(u"largestFileSize"_s, -1);
    EXPECT_EQ(walk(EntryFilterOptions::withUserDefaults()), "w/.a w/d w/large");
}

TEST_F(EntryFilterTest, CountsWhatItWouldNotSearchAnyway)
{
    write({"w/a", "w/b.TDMBackup.abc", "w/c.TDMBackup.abc/d", "w/e/f"});
    ASSERT_EQ(symlink("a", folder.path("w/l").cString()), 0);
    ASSERT_EQ(symlink("..", folder.path("w/e/l").cString()), 0);
    ASSERT_EQ(mkfifo(folder.path("w/p").cString(), 0600), 0);
    EXPECT_EQ(walk({}), "w/a w/e/f");
    EXPECT_EQ(countOf(LeftOutReason::OwnBackup), 2U);
    EXPECT_EQ(countOf(LeftOutReason::Link), 2U);
    EXPECT_EQ(countOf(LeftOutReason::Special), 1U);
}

/// Every entry that isn't a folder, and every hidden one.
struct Entries
{
    quint64 all = 0;
    quint64 outsideHidden = 0;
};

Entries entriesBelow(const std::filesystem::path &top)
{
    namespace fs = std::filesystem;
    Entries entries;
    constexpr fs::directory_options SKIP = fs::directory_options::skip_permission_denied;
    int hiddenDepth = -1; // of the outermost hidden folder that the entry is in
    for (fs::recursive_directory_iterator each(top, SKIP); each != fs::recursive_directory_iterator();
         ++each) {
        const bool isFolder = each->is_directory() && !each->is_symlink();
        const bool isHidden = each->path().filename().native().front() == '.';
        if (each.depth() <= hiddenDepth)
            hiddenDepth = -1;
        if (!isFolder)
            ++entries.all;
        if (hiddenDepth < 0 && (!isFolder || isHidden))
            ++entries.outsideHidden;
        if (isFolder && isHidden && hiddenDepth < 0)
            hiddenDepth = each.depth();
    }
    return entries;
}

TEST_F(EntryFilterTest, CountsAddUpToWhatIsThere)
{
    const auto countsOf = [this](const EntryFilterOptions &options) {
        VKFolderTraverser traverser;
        traverser.setDelegate(this);
        traverser.setFilterOptions(options);
        traverser.setUtis({u"public.source-code"_s});
        traverser.addSearchScopeWithFolderPath(FilePath("/usr"), true, {}, HANDLING);
        found.clear();
        traverser.startTraversal();
        EXPECT_GT(found.size(), 0);
        return quint64(found.size()) + leftOut.total();
    };
    const Entries entries = entriesBelow("/usr");
    EXPECT_EQ(countsOf({}), entries.outsideHidden);
    EXPECT_EQ(countsOf(EntryFilterOptions::everything()), entries.all);
    EXPECT_GT(countOf(LeftOutReason::Kind), 0U);
}

TEST_F(EntryFilterTest, ReadsTheConfigurationOfGit)
{
    for (const auto &[text, value] : std::initializer_list<std::pair<QByteArray, QByteArray>>{
             {"[core]\nexcludesfile=/a b ; c", "/a b"},
             {"[user]\nexcludesFile = x\n[Core] ExcludesFile = \"/a #b\"c # d\n", "/a #bc"},
             {"[core \"x\"]\nexcludesFile = x\n", {}},
             {"[core]\nexcludesFile = /a\\\n/\\\"b\\\\\nexcludesFile = /c/\\\nd\n", "/c/d"},
             {"[core]\nbare\n# excludesFile = x\n\texcludesFile =\n", ""},
             {"[core\nexcludesFile = x", {}}}) {
        EXPECT_EQ(excludesFileIn(text), value) << text.constData();
        EXPECT_EQ(excludesFileIn(text).isNull(), value.isNull()) << text.constData();
    }
}

} // namespace
} // namespace tidemark::test
