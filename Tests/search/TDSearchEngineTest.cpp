#include "search/TDSearchEngine.h"

#include "foundation/UserDefaults.h"
#include "search/Kind.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::TemporaryFolder;
using Messages = QList<QByteArray>;

QByteArray counts(quint64 scanned, quint64 files, quint64 matches)
{
    return QByteArray::number(scanned) + ' ' + QByteArray::number(files) + ' ' + QByteArray::number(matches);
}

/// Writes down every message as a line of text, with paths from the folder on.
class Recorder : public TDSearchEngineDelegate
{
public:
    explicit Recorder(const FilePath &root) : _root(root.bytes()) {}

    void didFindFile(const FilePath &path, quint64 scanned, quint64 files, quint64 matches) override
    {
        messages << "find " + _name(path) + ' ' + counts(scanned, files, matches);
        if (onFile)
            onFile(path);
    }
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override
    {
        nodes << file;
        const TDFindResultItem &first = *file->children().first();
        if (first.error())
            messages << "error " + _name(file->path()) + ' ' + QByteArray::number(first.error().code());
        else
            messages << "match " + _name(file->path()) + ' ' +
                            QByteArray::number(file->matchCount().value_or(-1));
        if (onMatch)
            onMatch();
    }
    void errorOccured(const TDError &error) override
    {
        messages << "fault " + QByteArray::number(error.code());
    }
    void didFinishSearch(quint64 scanned, quint64 files, quint64 matches) override
    {
        messages << "finish " + counts(scanned, files, matches);
    }
    void didStopSearch(quint64 scanned, quint64 files, quint64 matches) override
    {
        messages << "stop " + counts(scanned, files, matches);
    }

    qsizetype count(const QByteArray &kind) const
    {
        return std::ranges::count_if(messages,
                                     [&](const QByteArray &text) { return text.startsWith(kind + ' '); });
    }

    Messages messages;
    QList<std::shared_ptr<TDFindResultItem>> nodes;
    std::function<void(const FilePath &)> onFile;
    std::function<void()> onMatch;

private:
    QByteArray _name(const FilePath &path) const
    {
        return path == FilePath(_root) ? QByteArray(".") : path.bytes().mid(_root.size() + 1);
    }
    QByteArray _root;
};

TDSearchLocation folderAt(const FilePath &path, bool includeSubFolders = true)
{
    TDSearchLocation location;
    location.url = path.toUrl();
    location.isFolder = true;
    location.includeSubFolders = includeSubFolders;
    return location;
}

TDSearchLocation fileAt(const FilePath &path)
{
    TDSearchLocation location;
    location.url = path.toUrl();
    return location;
}

/// The parameter is the number of threads, which must show nowhere in the messages.
class TDSearchEngineTest : public testing::TestWithParam<int>
{
protected:
    void SetUp() override
    {
        setKindsInForce({{u"Any"_s, u"*"_s, true}});
        engine.setDelegate(recorder);
        engine.setThreadCount(GetParam());
    }
    void TearDown() override
    {
        setKindsInForce(Kind::defaultKinds());
        set(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, {});
        set(TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, {});
    }
    static void set(const QString &key, const QVariant &value)
    {
        UserDefaults::standard().setObject(key, value);
    }

    Messages search(const QString &find, const QList<TDSearchLocation> &locations, bool caseSensitive = true)
    {
        engine.startSearch(find, locations, caseSensitive);
        return recorder->messages;
    }
    Messages searchFolder(const QString &find) { return search(find, {folderAt(folder.path())}); }

    TemporaryFolder folder;
    std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>(folder.path());
    TDSearchEngine engine;
};

TEST_P(TDSearchEngineTest, NoLocationsFinishAtOnce)
{
    EXPECT_EQ(search(u"a"_s, {}), Messages{"finish 0 0 0"});
}

TEST_P(TDSearchEngineTest, NobodyNeedsToListen)
{
    folder.write("a", "-a-\n");
    TDSearchEngine alone;
    alone.startSearch(u"a"_s, {folderAt(folder.path())}, true);
    alone.setDelegate(std::make_shared<TDSearchEngineDelegate>());
}

TEST_P(TDSearchEngineTest, EachFileIsToldBeforeItIsSearchedWithTheCountsSoFar)
{
    folder.write("1-two", "a\nba\n");
    folder.write("2-none", "b\nb\n");
    folder.write("3-damaged", "a\nfour\xFF\n");
    folder.write("4-long", QByteArray(25001, 'a'));
    folder.write("5-empty", "");
    folder.write("6/three", "aaa\n");
    EXPECT_EQ(searchFolder(u"a"_s),
              Messages({"find 1-two 1 0 0", "match 1-two 2", "find 2-none 2 1 2", "find 3-damaged 3 1 2",
                        "error 3-damaged 4", "find 4-long 4 1 2", "error 4-long 1", "find 5-empty 5 1 2",
                        "find 6/three 6 1 2", "match 6/three 3", "finish 6 2 5"}));
}

TEST_P(TDSearchEngineTest, EveryFileEndsInExactlyOneOutcome)
{
    QList<QByteArray> expected[3];
    for (int index = 0; index < 90; ++index) {
        const QByteArray name = QByteArray::number(index % 7) + '/' + QByteArray::number(index);
        const QByteArray contents[] = {"match\n", "other\n", "match \xFF\n"};
        folder.write(name, contents[index % 3]);
        expected[index % 3] << name;
    }
    searchFolder(u"match"_s);
    EXPECT_EQ(recorder->count("find"), 90);
    EXPECT_EQ(recorder->count("match"), expected[0].size());
    EXPECT_EQ(recorder->count("error"), expected[2].size());
    for (const QByteArray &name : expected[0])
        EXPECT_EQ(recorder->messages.count("match " + name + " 1"), 1) << name.constData();
    for (const QByteArray &name : expected[2])
        EXPECT_EQ(recorder->messages.count("error " + name + " 4"), 1) << name.constData();
    EXPECT_EQ(recorder->messages.last(), QByteArray("finish 90 30 30"));
}

TEST_P(TDSearchEngineTest, AFileNodeHoldsItsMatchLinesAndTheDateBeforeReading)
{
    const FilePath file = folder.write("file", "\xEF\xBB\xBF"
                                               "A\n\nxa a\n");
    test::setModificationDate(file, 1234567890123456789);
    const FilePath link = folder.path("link");
    ASSERT_EQ(symlink(file.cString(), link.cString()), 0);
    EXPECT_EQ(search(u"a"_s, {fileAt(link)}, false),
              Messages({"find link 1 0 0", "match link 3", "finish 1 1 3"}));

    ASSERT_EQ(recorder->nodes.size(), 1);
    const TDFindResultItem &node = *recorder->nodes.first();
    EXPECT_EQ(node.findText(), u"a"_s);
    EXPECT_TRUE(node.includesBOM());
    EXPECT_EQ(node.modificationDate().value_or(FileDate()).nanoseconds, 1234567890123456789);
    ASSERT_EQ(node.children().size(), 2);
    for (qsizetype index = 0; index < 2; ++index) {
        const TDFindResultItem &child = *node.children()[index];
        EXPECT_EQ(child.parent(), &node);
        EXPECT_EQ(child.sharedMatchLine(), node.matchLineHighlighter()->matchLines()[index]);
        EXPECT_EQ(child.matchLine()->lineNumber(), index == 0 ? 1 : 3);
    }
}

TEST_P(TDSearchEngineTest, AnErrorNodeHasTheDateAndNoFindText)
{
    const FilePath file = folder.write("file", "\xEF\xBB\xBF"
                                               "a\n\xFF");
    test::setModificationDate(file, 1000000001);
    searchFolder(u"a"_s);
    ASSERT_EQ(recorder->nodes.size(), 1);
    const TDFindResultItem &node = *recorder->nodes.first();
    EXPECT_TRUE(node.findText().isNull());
    EXPECT_FALSE(node.includesBOM());
    EXPECT_EQ(node.matchCount(), std::nullopt);
    EXPECT_EQ(node.modificationDate().value_or(FileDate()).nanoseconds, 1000000001);
    ASSERT_EQ(node.children().size(), 1);
    EXPECT_EQ(node.children().first()->parent(), &node);
}

TEST_P(TDSearchEngineTest, AFaultyExpressionIsToldOnceAndStopsTheSearch)
{
    set(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    folder.write("1-empty", "");
    folder.write("2", "-a-\n");
    folder.write("3", "-a-\n");
    EXPECT_EQ(search(u"("_s, {folderAt(folder.path()), fileAt(folder.path("3"))}),
              Messages({"find 1-empty 1 0 0", "find 2 2 0 0", "fault 36", "stop 2 0 0"}));
}

TEST_P(TDSearchEngineTest, CaseMattersOnlyWhenAskedFor)
{
    folder.write("f", "aA--");
    EXPECT_EQ(search(u"A"_s, {folderAt(folder.path())}, true).last(), QByteArray("finish 1 1 1"));
    EXPECT_EQ(TDSearchEngine().caseSensitive(), false);
    recorder->messages.clear();
    TDSearchEngine ignoring;
    ignoring.setDelegate(recorder);
    ignoring.setThreadCount(GetParam());
    ignoring.startSearch(u"A"_s, {folderAt(folder.path())}, false);
    EXPECT_EQ(recorder->messages.last(), QByteArray("finish 1 1 2"));
}

TEST_P(TDSearchEngineTest, EncodingsAreDetectedUnlessTheDefaultIsAskedFor)
{
    const FilePath file = folder.write("f", "\xFF\xFE"
                                            "a\0b\0"_ba);
    EXPECT_EQ(search(u"ab"_s, {fileAt(file)}).last(), QByteArray("finish 1 1 1"));
    set(TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, false);
    TDError error;
    EXPECT_TRUE(engine.searchFindTextInFile(file, error)->children().first()->error().hasCode(4));
    EXPECT_EQ(error.code(), 4);
}

TEST_P(TDSearchEngineTest, FilesThatVanishOrNeverExistedAreErrors)
{
    engine.setThreadCount(1); // more of them may have read the file already
    folder.write("1", "-a-\n");
    folder.write("2", "-a-\n");
    recorder->onFile = [this](const FilePath &path) {
        EXPECT_TRUE(path != folder.path("1") || unlink(path.cString()) == 0);
    };
    EXPECT_EQ(
        search(u"a"_s, {folderAt(folder.path()), fileAt(folder.path("missing")), fileAt(folder.path())}),
        Messages({"find 1 1 0 0", "error 1 1", "find 2 2 0 0", "match 2 1", "find missing 3 1 1",
                  "error missing 1", "find . 4 1 1", "error . " + QByteArray::number(EISDIR),
                  "finish 4 1 1"}));
    EXPECT_EQ(recorder->nodes.first()->children().first()->error().localizedFailureReason(),
              u"Error 2 occured."_s);
    EXPECT_EQ(recorder->nodes.first()->modificationDate(), std::nullopt);
}

TEST_P(TDSearchEngineTest, NamesThatAreNotUtf8AreSearchedLikeOthers)
{
    folder.write("\xFF\xC3/\xE9.txt", "-a-\n");
    folder.write("e\xCC\x81", "-a-\n");
    EXPECT_EQ(search(u"a"_s, {folderAt(folder.path("\xFF\xC3")), fileAt(folder.path("e\xCC\x81")),
                              fileAt(folder.path("\xFF\xC3/\xE9.txt"))}),
              Messages({"find \xFF\xC3/\xE9.txt 1 0 0", "match \xFF\xC3/\xE9.txt 1", "find e\xCC\x81 2 1 1",
                        "match e\xCC\x81 1", "find \xFF\xC3/\xE9.txt 3 2 2", "match \xFF\xC3/\xE9.txt 1",
                        "finish 3 3 3"}));
}

TEST_P(TDSearchEngineTest, FiltersAreTheIncludedKindsInTheirOrder)
{
    setKindsInForce({{u"1"_s, u"uti:public.text"_s, true},
                     {u"2"_s, u"*.b"_s, true},
                     {u"3"_s, u"uti:public.item"_s, false},
                     {u"4"_s, u"*.a"_s, true},
                     {u"5"_s, u"*.c"_s, false},
                     {u"6"_s, u"uti:"_s, true},
                     {u"7"_s, u"UTI:x"_s, true}});
    EXPECT_EQ(TDSearchEngine::_utisToInclude(), QStringList({u"public.text"_s, u""_s}));
    EXPECT_EQ(TDSearchEngine::_patternsToInclude(), QStringList({u"*.b"_s, u"*.a"_s, u"UTI:x"_s}));
}

TEST_P(TDSearchEngineTest, KindsFilterWhatFoldersHoldButNeverANamedFile)
{
    folder.write("a.txt", "-a-\n");
    folder.write("b.dat", "-a-\n");
    folder.write("c.png", "-a-\n");
    folder.write("sub/d.txt", "-a-\n");
    setKindsInForce({{u"Text"_s, u"uti:public.plain-text"_s, true}, {u"Data"_s, u"*.dat"_s, true}});
    EXPECT_EQ(search(u"a"_s, {folderAt(folder.path(), false), fileAt(folder.path("c.png"))}),
              Messages({"find a.txt 1 0 0", "match a.txt 1", "find b.dat 2 1 1", "match b.dat 1",
                        "find c.png 3 2 2", "match c.png 1", "finish 3 3 3"}));
}

TEST_P(TDSearchEngineTest, ANamedPipeHoldsNothingUp)
{
    const FilePath pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.cString(), 0600), 0);
    EXPECT_EQ(search(u"a"_s, {fileAt(pipe), fileAt(FilePath(QByteArray("/dev/null")))}).last(),
              QByteArray("finish 2 0 0"));
}

TEST_P(TDSearchEngineTest, AStopBeforeTheStartHolds)
{
    folder.write("a", "-a-\n");
    engine.stopSearch();
    EXPECT_EQ(searchFolder(u"a"_s), Messages{"stop 0 0 0"});
}

TEST_P(TDSearchEngineTest, AStopAbandonsTheFileAndNothingButTheEndFollows)
{
    const FilePath first = folder.write("1", "-a-\n");
    folder.write("2", "-a-\n");
    for (const QByteArray name : {"1", "2"}) {
        for (const QByteArray content : {"-a-\n", "a\n\n\xFF", ""}) {
            test::writeFile(folder.path(name), content);
            const auto own = std::make_shared<Recorder>(folder.path());
            TDSearchEngine stopped;
            stopped.setDelegate(own);
            stopped.setThreadCount(GetParam());
            own->onFile = [&](const FilePath &path) {
                if (path == folder.path(name))
                    stopped.stopSearch();
            };
            test::writeFile(first, name == "1" ? content : QByteArray("-a-\n"));
            stopped.startSearch(u"a"_s, {folderAt(folder.path())}, true);
            const Messages expected =
                name == "1" ? Messages{"find 1 1 0 0", "stop 1 0 0"}
                            : Messages{"find 1 1 0 0", "match 1 1", "find 2 2 1 1", "stop 2 1 1"};
            EXPECT_EQ(own->messages, expected) << content.toHex().constData();
        }
    }
}

TEST_P(TDSearchEngineTest, AStopWhileAMatchIsDeliveredEndsBehindIt)
{
    folder.write("1", "-a-\n");
    folder.write("2", "-a-\n");
    recorder->onMatch = [this] { engine.stopSearch(); };
    EXPECT_EQ(searchFolder(u"a"_s), Messages({"find 1 1 0 0", "match 1 1", "stop 1 1 1"}));
}

/// Runs the check in a process for which permission bits count, and returns what it wrote down.
QByteArray withoutPrivileges(const std::function<QByteArray()> &check)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t NOBODY = 65534;
        const QByteArray text =
            test::runsAsRoot() && setuid(NOBODY) != 0 ? QByteArray("no rights to give up") : check();
        _exit(write(ends[1], text.constData(), size_t(text.size())) == text.size() ? 0 : 1);
    }
    close(ends[1]);
    QByteArray text;
    char bytes[1000];
    for (ssize_t size = 0; (size = read(ends[0], bytes, sizeof bytes)) > 0;)
        text.append(bytes, size);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return text;
}

TEST_P(TDSearchEngineTest, WhatMayNotBeReadIsToldAndTheSearchGoesOn)
{
    const FilePath locked = folder.makeFolder("1-locked");
    const FilePath secret = folder.write("2-secret", "-a-\n");
    folder.write("3", "-a-\n");
    ASSERT_EQ(chmod(folder.path().cString(), 0755), 0);
    ASSERT_EQ(chmod(locked.cString(), 0), 0);
    ASSERT_EQ(chmod(secret.cString(), 0), 0);
    const QByteArray messages = withoutPrivileges([this] {
        searchFolder(u"a"_s);
        for (qsizetype index = 0; index < recorder->nodes.size() - 1; ++index)
            recorder->messages
                << recorder->nodes[index]->children().first()->error().localizedFailureReason().toUtf8();
        return recorder->messages.join('\n');
    });
    chmod(locked.cString(), 0700);
    EXPECT_EQ(messages,
              QByteArray("error 1-locked 1\nfind 2-secret 1 0 0\nerror 2-secret 1\nfind 3 2 0 0\nmatch 3 1\n"
                         "finish 2 1 1\nYou do not have permission to open the file.\n"
                         "You do not have permission to open the file."));
}

INSTANTIATE_TEST_SUITE_P(Threads, TDSearchEngineTest, testing::Values(1, 3),
                         testing::PrintToStringParamName());

TEST(FreshInstallation, SearchesPlainTextIgnoringCaseWithDetectionAndMakesBackups)
{
    EXPECT_FALSE(UserDefaults::standard().boolFor(BooleanSetting::RegularExpression));
    EXPECT_TRUE(UserDefaults::standard().boolFor(BooleanSetting::IgnoreCase));
    EXPECT_TRUE(UserDefaults::standard().boolFor(BooleanSetting::AutoDetectFileEncoding));
    EXPECT_TRUE(UserDefaults::standard().boolFor(BooleanSetting::CreateBackupBeforeReplacing));
    EXPECT_EQ(UserDefaults::standard().integerForKey(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING), 4);
    EXPECT_EQ(UserDefaults::standard().integerForKey(TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM),
              100);
    EXPECT_EQ(unarchivedKinds(UserDefaults::standard().objectForKey(kmIncludedKinds2Pref).toByteArray()),
              Kind::defaultKinds());
}

} // namespace
} // namespace tidemark
