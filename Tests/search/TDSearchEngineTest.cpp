#include "search/TDSearchEngine.h"

#include "foundation/UserDefaults.h"
#include "matching/TDMatchLineHighlighter.h"
#include "search/Kind.h"
#include "support/PlainUser.h"
#include "support/Testing.h"
#include "support/TimeLimit.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tidemark::test {
namespace {

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
    void didFindMoreInFile(const FoundPart &part) override
    {
        EXPECT_EQ(part.file, nodes.last());
        EXPECT_TRUE(messages.last().startsWith("match ") || messages.last() == "more");
        if (messages.last() != "more")
            messages << "more";
        TDSearchEngineDelegate::didFindMoreInFile(part);
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

TDSearchLocation fileAt(const FilePath &path)
{
    TDSearchLocation location;
    location.url = path.toUrl();
    return location;
}

TDSearchLocation folderAt(const FilePath &path, bool includeSubFolders = true)
{
    TDSearchLocation location = fileAt(path);
    location.isFolder = true;
    location.includeSubFolders = includeSubFolders;
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

TEST_P(TDSearchEngineTest, NoLocationsFinishAtOnceAndNobodyNeedsToListen)
{
    EXPECT_EQ(search(u"a"_s, {}), Messages{"finish 0 0 0"});
    folder.write("a", "-a-\n");
    TDSearchEngine().startSearch(u"a"_s, {folderAt(folder.path())}, true);
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

TEST_P(TDSearchEngineTest, EveryFileEndsInExactlyOneOutcomeInTheOrderOfTheWalk)
{
    Messages expected;
    int matches = 0;
    for (int index = 100; index < 250; ++index) {
        const QByteArray name = "folder" + QByteArray::number(index / 50) + '/' + QByteArray::number(index);
        const QByteArray contents[] = {"match\n", "other\n", "match \xFF\n"};
        folder.write(name, contents[index % 3]);
        expected << "find " + name + ' ' + counts(quint64(index - 99), quint64(matches), quint64(matches));
        if (index % 3 == 0)
            expected << "match " + name + " 1";
        if (index % 3 == 2)
            expected << "error " + name + " 4";
        matches += index % 3 == 0 ? 1 : 0;
    }
    EXPECT_EQ(searchFolder(u"match"_s), expected << "finish 150 50 50");
}

TEST_P(TDSearchEngineTest, NodesHoldTheirLinesAndTheDateBeforeReading)
{
    const FilePath file = folder.write("file", "\xEF\xBB\xBF\x41\n\nxa a\n");
    const FilePath damaged = folder.write("damaged", "\xEF\xBB\xBF\x61\n\xFF");
    setModificationDate(file, 1234567890123456789);
    setModificationDate(damaged, 1000000001);
    const FilePath link = folder.path("link");
    ASSERT_EQ(symlink(file.cString(), link.cString()), 0);
    EXPECT_EQ(search(u"a"_s, {fileAt(link), fileAt(damaged)}, false),
              Messages({"find link 1 0 0", "match link 3", "find damaged 2 1 3", "error damaged 4",
                        "finish 2 1 3"}));

    ASSERT_EQ(recorder->nodes.size(), 2);
    const TDFindResultItem &node = *recorder->nodes[0];
    EXPECT_EQ(node.findText(), u"a"_s);
    EXPECT_TRUE(node.includesBOM());
    EXPECT_EQ(node.modificationDate().value_or(FileDate()).nanoseconds, 1234567890123456789);
    ASSERT_EQ(node.children().size(), 2);
    for (qsizetype index = 0; index < 2; ++index) {
        const TDFindResultItem &child = *node.children()[index];
        EXPECT_EQ(child.parent(), &node);
        EXPECT_EQ(child.sharedMatchLine(), node.matches()->lines[index]);
        EXPECT_EQ(child.matchLine()->lineNumber(), index == 0 ? 1 : 3);
    }
    const TDFindResultItem &failed = *recorder->nodes[1];
    EXPECT_TRUE(failed.findText().isNull());
    EXPECT_FALSE(failed.includesBOM());
    EXPECT_EQ(failed.modificationDate().value_or(FileDate()).nanoseconds, 1000000001);
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

TEST_P(TDSearchEngineTest, OptionsThatChangeInMidSearchCountFromTheNextOneOn)
{
    folder.write("1", "a.c\n");
    folder.write("2", "abc a.c\n");
    recorder->onFile = [this](const FilePath &) {
        set(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
        set(TD_USER_DEFAULTS_NAME_WHOLE_WORDS, true);
    };
    EXPECT_EQ(search(u"a.c"_s, {folderAt(folder.path())}).last(), QByteArray("finish 2 2 2"));
}

TEST_P(TDSearchEngineTest, ALineThatTakesTooLongIsARowOfItsFileAndTheSearchGoesOn)
{
    set(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    set(TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, true);
    const QByteArray slow = QByteArray(40, 'x') + "zxxy\n";
    folder.write("1", "xxy\n" + slow + slow);
    folder.write("2", slow);
    folder.write("3", "xxy\n");
    EXPECT_EQ(search(u"(x+x+)+y"_s, {folderAt(folder.path())}).last(), QByteArray("finish 3 2 2"));
    ASSERT_EQ(recorder->nodes.size(), 3);
    const TDFindResultItem &row = *recorder->nodes[0]->children().last();
    EXPECT_EQ(recorder->nodes[0]->children().size(), 2);
    EXPECT_EQ(row.error().localizedFailureReason(),
              u"Line 2: the expression takes longer than a second there. So it is on 2 lines in all."_s);
    EXPECT_TRUE(recorder->nodes[1]->children().first()->error().hasCode(1));
}

TEST_P(TDSearchEngineTest, CaseAndTheDetectionOfEncodingsFollowWhatIsAskedFor)
{
    const FilePath file = folder.write("f", "\xFF\xFE\x61\0A\0"_ba);
    EXPECT_EQ(search(u"A"_s, {fileAt(file)}, true).last(), QByteArray("finish 1 1 1"));
    TDSearchEngine ignoring;
    ignoring.setDelegate(recorder);
    ignoring.setThreadCount(GetParam());
    ignoring.startSearch(u"A"_s, {fileAt(file)}, false);
    EXPECT_EQ(recorder->messages.last(), QByteArray("finish 1 1 2"));
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
    folder.write("\xE9", "-a-\n");
    EXPECT_EQ(search(u"a"_s, {folderAt(folder.path("\xFF\xC3")), fileAt(folder.path("e\xCC\x81")),
                              fileAt(folder.path("\xE9"))}),
              Messages({"find \xFF\xC3/\xE9.txt 1 0 0", "match \xFF\xC3/\xE9.txt 1", "find e\xCC\x81 2 1 1",
                        "match e\xCC\x81 1", "find \xE9 3 2 2", "match \xE9 1", "finish 3 3 3"}));
}

TEST_P(TDSearchEngineTest, IncludedKindsFilterWhatFoldersHoldButNeverANamedFile)
{
    for (const char *name : {"a.txt", "b.dat", "c.png", "d.zip", "sub/d.txt"})
        folder.write(name, "-a-\n");
    setKindsInForce({{u"1"_s, u"uti:public.plain-text"_s, true},
                     {u"2"_s, u"*.dat"_s, true},
                     {u"3"_s, u"uti:public.item"_s, false},
                     {u"4"_s, u"*.zip"_s, false},
                     {u"5"_s, u"uti:"_s, true},
                     {u"6"_s, u"UTI:public.item"_s, true}});
    EXPECT_EQ(search(u"a"_s, {folderAt(folder.path(), false), fileAt(folder.path("c.png"))}),
              Messages({"find a.txt 1 0 0", "match a.txt 1", "find b.dat 2 1 1", "match b.dat 1",
                        "find c.png 3 2 2", "match c.png 1", "finish 3 3 3"}));
}

TEST_P(TDSearchEngineTest, NamedPipesSocketsAndDevicesAreErrorsAndHoldNothingUp)
{
    const TemporaryFolder elsewhere;
    QList<TDSearchLocation> locations;
    for (const QByteArray &name : makeSpecialFiles(elsewhere))
        locations << fileAt(elsewhere.path(name));
    for (const char *device : {"/dev/zero", "/dev/full", "/dev/null", "/dev/urandom", "/dev/tty"})
        locations << fileAt(FilePath(device));
    ASSERT_EQ(symlink("/dev/zero", folder.path("link").cString()), 0);
    locations << fileAt(folder.path("link")) << folderAt(elsewhere.path());
    // What the link leads to is among them.
    const qsizetype count = locations.size() - 2;
    EXPECT_EQ(search(u"a"_s, locations).last(), "finish " + counts(quint64(count), 0, 0));
    EXPECT_EQ(recorder->count("error"), count);
    EXPECT_TRUE(recorder->nodes.last()->children().first()->error().localizedFailureReason().startsWith(
        u"It is a device"_s));
}

TEST_P(TDSearchEngineTest, FilesReplacedAfterTheyWereFoundAreErrors)
{
    engine.setThreadCount(1);
    for (const char *name : {"1", "2-link", "3-pipe", "4"})
        folder.write(name, "-a-\n");
    recorder->onFile = [this](const FilePath &path) {
        if (path == folder.path("1") || path == folder.path("4"))
            return;
        ASSERT_EQ(unlink(path.cString()), 0);
        ASSERT_EQ(path == folder.path("3-pipe") ? mkfifo(path.cString(), 0600) : symlink("1", path.cString()),
                  0);
    };
    EXPECT_EQ(searchFolder(u"a"_s),
              Messages({"find 1 1 0 0", "match 1 1", "find 2-link 2 1 1", "error 2-link 1",
                        "find 3-pipe 3 1 1", "error 3-pipe 1", "find 4 4 1 1", "match 4 1", "finish 4 2 2"}));
}

/// Changes the file over and over, on a thread of its own.
class Disturber
{
public:
    explicit Disturber(std::function<void()> disturb)
        : _thread([this, disturb = std::move(disturb)] {
              while (!_isEnding)
                  disturb();
          })
    {}
    ~Disturber()
    {
        _isEnding = true;
        _thread.join();
    }

private:
    std::atomic<bool> _isEnding = false;
    std::thread _thread;
};

TEST_P(TDSearchEngineTest, FilesThatGrowAndShrinkWhileTheyAreReadComeToAnEnd)
{
    const QByteArray content = QByteArray("one match in a line\n").repeated(5000);
    const FilePath growing = folder.write("growing", content);
    const FilePath shrinking = folder.write("shrinking", content);
    const Disturber grow([&growing] {
        std::ofstream(growing.cString(), std::ios::app) << "one match in a line\n" << std::flush;
    });
    const Disturber shrink([&shrinking, &content] {
        EXPECT_EQ(truncate(shrinking.cString(), 100), 0);
        writeFile(shrinking, content);
    });
    for (int round = 0; round < 4; ++round) {
        writeFile(growing, content);
        const auto own = std::make_shared<Recorder>(folder.path());
        TDSearchEngine anew;
        anew.setDelegate(own);
        anew.setThreadCount(GetParam());
        anew.startSearch(u"match"_s, {folderAt(folder.path())}, true);
        EXPECT_EQ(own->count("find"), 2);
        EXPECT_EQ(own->count("error"), 0);
        ASSERT_FALSE(own->nodes.isEmpty());
        EXPECT_GE(own->nodes.first()->matchCount().value_or(0), 5000);
    }
}

TEST_P(TDSearchEngineTest, NamesOfEveryByteAreSearchedInFoldersAndAsLocations)
{
    QList<TDSearchLocation> locations = {folderAt(folder.makeFolder("folder"))};
    for (const QByteArray &name : namesOfEveryByte()) {
        folder.write("folder/" + name, "-a-\n");
        locations << fileAt(folder.write("file" + name, "-a-\n"));
    }
    const quint64 files = quint64(locations.size() - 1);
    EXPECT_EQ(search(u"a"_s, locations).last(), "finish " + counts(2 * files, 2 * files, 2 * files));
    EXPECT_EQ(recorder->count("error"), 0);
}

TEST(HugeFiles, LinesThatNoMemoryHoldsAreErrorsAndTheSearchGoesOn)
{
    if (IS_SANITIZED)
        GTEST_SKIP() << "It takes long, and shows nothing to sanitizers.";
    const TemporaryFolder folder;
    const FilePath huge = folder.write("huge", "");
    ASSERT_EQ(truncate(huge.cString(), qint64(5) << 30), 0);
    std::ofstream(huge.cString(), std::ios::app) << "\nneedle\n" << std::flush;
    folder.write("other", "needle\n");
    const auto recorder = std::make_shared<Recorder>(folder.path());
    TDSearchEngine engine;
    engine.setDelegate(recorder);
    engine.startSearch(u"needle"_s, {fileAt(huge), fileAt(folder.path("other"))}, true);
    EXPECT_EQ(recorder->messages, Messages({"find huge 1 0 0", "error huge 1", "find other 2 0 0",
                                            "match other 1", "finish 2 1 1"}));
}

/// Beyond eight megabytes, with a match in each fourth line.
QByteArray largeContent()
{
    return QByteArray("one match in a line\nnone\nnone at all\nnone\n").repeated(250000);
}

TEST_P(TDSearchEngineTest, ALargeFileComesInPartsWhichMakeUpTheSame)
{
    folder.write("0", "match\n");
    const FilePath large = folder.write("1-large", "\xEF\xBB\xBF" + largeContent() + "a match \xC3\xA9");
    ASSERT_EQ(::link(large.cString(), folder.path("2-link").cString()), 0);
    folder.write("3", "match\n");
    TDMatchLineHighlighter byLines;
    TDError error;
    ASSERT_TRUE(byLines.processWithFile(large, TD_FILE_COMMON_UNKNOWN_ENCODING, error, false, u"match"_s));

    const Messages messages = searchFolder(u"match"_s);
    EXPECT_EQ(messages.last(), "finish 3 3 250003");
    EXPECT_EQ(recorder->count("match"), 3);
    EXPECT_EQ(messages.count("more"), 1);
    const TDFindResultItem &node = *recorder->nodes[1];
    EXPECT_TRUE(node.includesBOM());
    EXPECT_TRUE(node.matches()->areBeyondAscii);
    EXPECT_EQ(node.modificationDate(), TDFileCommon::fileModificationDate(large));
    ASSERT_EQ(node.children().size(), byLines.matchLines().size());
    for (qsizetype index = 0; index < node.children().size(); ++index) {
        const TDFindResultItem &child = *node.children()[index];
        const TDMatchLine &expected = *byLines.matchLines()[index];
        ASSERT_EQ(child.parent(), &node);
        ASSERT_EQ(child.position(), index);
        ASSERT_EQ(child.sharedMatchLine(), node.matches()->lines[index]);
        ASSERT_EQ(child.matchLine()->lineNumber(), expected.lineNumber());
        ASSERT_EQ(child.matchLine()->matchLineString(), expected.matchLineString());
        ASSERT_EQ(child.matchLine()->matchRanges(), expected.matchRanges());
    }
}

TEST_P(TDSearchEngineTest, ALargeFileThatEndsInAnErrorLosesItsPartsAgain)
{
    folder.write("1-damaged", largeContent() + "\xFF");
    folder.write("2-long", largeContent() + QByteArray(30000, 'x'));
    folder.write("3", "match\n");
    EXPECT_EQ(searchFolder(u"match"_s).last(), "finish 3 1 1");
    ASSERT_EQ(recorder->nodes.size(), 3);
    for (const auto &[index, code] : {std::pair(0, 4), {1, 1}}) {
        const TDFindResultItem &node = *recorder->nodes[index];
        ASSERT_EQ(node.children().size(), 1);
        EXPECT_EQ(node.children().first()->error().code(), code);
        EXPECT_EQ(node.children().first()->parent(), &node);
        EXPECT_EQ(node.matches(), nullptr);
    }
}

TEST_P(TDSearchEngineTest, AnExpressionThatFailsInALargeFileTakesItsPartsBack)
{
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    folder.write("1-large", largeContent() + "aab " + QByteArray(3000, 'a') + "!\n");
    const Messages messages = searchFolder(u"one match|aab (a|aa|a*)+$"_s);
    EXPECT_EQ(messages.last(), "stop 1 0 0");
    ASSERT_EQ(recorder->nodes.size(), 1);
    EXPECT_TRUE(recorder->nodes[0]->children().isEmpty());
}

TEST_P(TDSearchEngineTest, AStopWithinALargeFileLeavesThePartsThatCame)
{
    folder.write("1-large", largeContent());
    folder.write("2", "match\n");
    recorder->onMatch = [this] { engine.stopSearch(); };
    const Messages messages = searchFolder(u"match"_s);
    ASSERT_EQ(recorder->nodes.size(), 1);
    const qsizetype lines = recorder->nodes[0]->children().size();
    EXPECT_GT(lines, 0);
    EXPECT_LT(lines, 250000);
    EXPECT_EQ(messages.last(), "stop " + counts(1, 1, quint64(lines)));
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
            writeFile(folder.path(name), content);
            const auto own = std::make_shared<Recorder>(folder.path());
            TDSearchEngine stopped;
            stopped.setDelegate(own);
            stopped.setThreadCount(GetParam());
            own->onFile = [&](const FilePath &path) {
                if (path == folder.path(name))
                    stopped.stopSearch();
            };
            writeFile(first, name == "1" ? content : QByteArray("-a-\n"));
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

TEST_P(TDSearchEngineTest, WhatMayNotBeReadIsToldAndTheSearchGoesOn)
{
    const FilePath locked = folder.makeFolder("1-locked");
    const FilePath secret = folder.write("2-secret", "-a-\n");
    folder.write("3", "-a-\n");
    ASSERT_EQ(chmod(folder.path().cString(), 0755), 0);
    ASSERT_EQ(chmod(locked.cString(), 0), 0);
    ASSERT_EQ(chmod(secret.cString(), 0), 0);
    {
        const PlainUser user;
        searchFolder(u"a"_s);
    }
    chmod(locked.cString(), 0700);
    EXPECT_EQ(recorder->messages, Messages({"error 1-locked 1", "find 2-secret 1 0 0", "error 2-secret 1",
                                            "find 3 2 0 0", "match 3 1", "finish 2 1 1"}));
    for (const qsizetype node : {0, 1})
        EXPECT_EQ(recorder->nodes[node]->children().first()->error().localizedFailureReason(),
                  u"You do not have permission to open the file."_s);
}

INSTANTIATE_TEST_SUITE_P(Threads, TDSearchEngineTest, testing::Values(1, 3),
                         testing::PrintToStringParamName());

} // namespace
} // namespace tidemark::test
