#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <sys/wait.h>

using tidemark::test::TemporaryFolder;

namespace {

struct DriverRun
{
    int exitStatus;
    QByteArray output; ///< standard output and standard error
};

/// Through a shell, as names that aren't UTF-8 have to reach the driver as they are.
DriverRun run(const QByteArray &arguments)
{
    FILE *pipe = ::popen((QByteArray(TIDEMARK_DRIVER " ") + arguments + " 2>&1").constData(), "r");
    DriverRun run = {-1, {}};
    char buffer[4096];
    while (const size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
        run.output.append(buffer, qsizetype(count));
    run.exitStatus = WEXITSTATUS(::pclose(pipe));
    return run;
}

} // namespace

TEST(Driver, ListsLinesAndErrorsInTheOrderOfTheWalk)
{
    const TemporaryFolder folder;
    folder.write("b.txt", "no\nfoo, Foo\n");
    folder.write("a/c.txt", "grün foo");
    folder.write("a/d\xFF.txt", "foo\n");
    folder.write("e.txt", "foo \xFF\n");
    const QByteArray root = folder.path().bytes();
    const DriverRun found = run("--find foo --list --errors --quiet " + root);
    EXPECT_EQ(found.exitStatus, 0);
    EXPECT_EQ(found.output,
              root + "/a/c.txt:1:5+3\n" + root + "/a/d\xFF.txt:1:0+3\n" + root + "/b.txt:2:0+3,5+3\n" + root +
                  "/e.txt: error 4: The chosen character encoding ‘Unicode (UTF-8)’ is unable to "
                  "read the contents of the file. Check in Preferences that the default character "
                  "encoding is appropriate for this file.\n");
    EXPECT_EQ(run("--find foo --list --quiet --no-subfolders --case-sensitive " + root).output,
              root + "/b.txt:2:0+3\n");
    EXPECT_EQ(run("--find foo --list --quiet --kind 'B.*' " + root).output, root + "/b.txt:2:0+3,5+3\n");
}

TEST(Driver, TakesUnicodeAndWholeWords)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "é tides tide");
    const QByteArray file = folder.path("a.txt").bytes();
    EXPECT_EQ(run("--find '(?<= )TIDE' --regex --unicode --list --quiet " + file).output,
              file + ":1:2+4,8+4\n");
    EXPECT_EQ(run("--find tide --whole-words --list --quiet " + file).output, file + ":1:8+4\n");
}

TEST(Driver, ReadsOnceMoreWhatIsNoText)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "K\xF6ln foo\n");
    folder.write("b.txt", "foo\n");
    folder.write("c.txt", "\x81 foo\n");
    const QByteArray root = folder.path().bytes();
    const QByteArray found = run("--find foo --list --errors --quiet --read-as windows-1252 " + root).output;
    EXPECT_TRUE(
        found.startsWith(root + "/b.txt:1:0+3\n" + root + "/a.txt:1:5+3\n" + root + "/c.txt: error 4: "));
    const QJsonObject counts =
        QJsonDocument::fromJson(
            run("--find foo --replace \xE2\x82\xAC --no-backup --json --read-as windows-1252 " + root).output)
            .object();
    for (const auto &[name, expected] : {std::pair{"files", 3},
                                         {"filesWithMatches", 2},
                                         {"matches", 2},
                                         {"errors", 1},
                                         {"filesRewritten", 2}})
        EXPECT_EQ(counts[QLatin1String(name)], expected) << name;
    EXPECT_EQ(counts[QLatin1String("leftOut")][QLatin1String("unreadable")], 1);
    EXPECT_EQ(folder.read("a.txt"), "K\xF6ln \x80\n");
    EXPECT_EQ(run("--find foo --read-as nothing " + root).exitStatus, 2);
}

TEST(Driver, ReplacesAndCounts)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "key=value\r\nother\r\nk=v");
    folder.write("b.txt", "nothing");
    const DriverRun done =
        run("--find '(\\w+)=(\\w+)' --regex --replace '$2=$1' --no-backup --json " + folder.path().bytes());
    EXPECT_EQ(done.exitStatus, 0);
    const QJsonObject counts = QJsonDocument::fromJson(done.output).object();
    for (const auto &[name, expected] : {std::pair{"files", 2},
                                         {"filesWithMatches", 1},
                                         {"matches", 2},
                                         {"errors", 0},
                                         {"filesRewritten", 1},
                                         {"replacements", 2},
                                         {"filesFailed", 0}})
        EXPECT_EQ(counts.value(QLatin1String(name)).toInt(-1), expected) << name;
    EXPECT_EQ(folder.read("a.txt"), "value=key\r\nother\r\nv=k");
    EXPECT_EQ(folder.names(), QList<QByteArray>({"a.txt", "b.txt"}));
}

TEST(Driver, AByteOrderMarkInAnArgumentIsText)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "key key\xEF\xBB\xBFkey\n");
    const DriverRun done = run("--find '\xEF\xBB\xBFkey' --replace '\xEF\xBB\xBFk' --no-backup --quiet " +
                               folder.path().bytes());
    EXPECT_EQ(done.exitStatus, 0) << done.output.constData();
    EXPECT_EQ(folder.read("a.txt"), "key key\xEF\xBB\xBFk\n");
}

TEST(Driver, TellsMalformedExpressionsAndWrongUsageByItsExitStatus)
{
    const TemporaryFolder folder;
    folder.write("a.txt", "text");
    const DriverRun malformed = run("--find '(' --regex " + folder.path().bytes());
    EXPECT_EQ(malformed.exitStatus, 1);
    EXPECT_TRUE(malformed.output.contains("The find text regular expression is malformed."))
        << malformed.output.constData();
    for (const char *arguments :
         {"", "--find", "--find x", "--find x --threads 0 /tmp", "--find x --unknown /tmp",
          "--find x --unicode /tmp", "--find x --encoding no-such-name /tmp", "--find '\xFF' /tmp"})
        EXPECT_EQ(run(arguments).exitStatus, 2) << arguments;
}

TEST(Driver, PreviewsReplacesUndoesAndRedoes)
{
    const TemporaryFolder folder;
    const TemporaryFolder journal;
    const QByteArray a = folder.write("a\xFF b.txt", "no\r\ncolour, colour\r\n").bytes();
    const QByteArray b = folder.write("b.txt", "colour").bytes();
    const QByteArray change = "--find 'c(o)l' --regex --replace 'k$1l' --no-backup --journal " +
                              journal.path().bytes() + ' ' + folder.path().bytes();
    EXPECT_EQ(run("--preview --quiet " + change).output, a + ":2:kolour, kolour\n" + b + ":1:kolour\n");
    EXPECT_EQ(folder.read("b.txt"), "colour");
    EXPECT_TRUE(journal.names().isEmpty());
    EXPECT_NE(run("--json " + change).output.indexOf("\"journal\":\"kept\""), -1);
    EXPECT_EQ(folder.read("a\xFF b.txt"), "no\r\nkolour, kolour\r\n");
    const QByteArray steps = run("--history " + journal.path().bytes()).output;
    EXPECT_TRUE(steps.startsWith("undo\t20")) << steps.data();
    EXPECT_TRUE(steps.endsWith("\tc%28o%29l\tk%241l\n")) << steps.data();
    EXPECT_EQ(steps.split('\t').sliced(2, 2), (QList<QByteArray>{"2", "3"}));

    folder.write("b.txt", "kolour!");
    const QByteArray encoded = folder.path().bytes() + "/a%FF%20b.txt";
    const DriverRun undone = run("--undo " + journal.path().bytes());
    EXPECT_EQ(undone.output, b + ": changed\nrefused\t" + b + "\ndone\t" + encoded + "\n");
    EXPECT_EQ(undone.exitStatus, 1);
    EXPECT_EQ(folder.read("a\xFF b.txt"), "no\r\ncolour, colour\r\n");
    const DriverRun redone = run("--redo " + journal.path().bytes());
    EXPECT_EQ(redone.output, "done\t" + encoded + "\n");
    EXPECT_EQ(redone.exitStatus, 0);
    EXPECT_EQ(run("--redo " + journal.path().bytes()).exitStatus, 1);
    EXPECT_EQ(run("--preview --find x " + folder.path().bytes()).exitStatus, 2);
}
