#include "replace/UndoJournal.h"

#include "foundation/ExtendedAttributes.h"
#include "reading/EncodingDetection.h"
#include "replace/LossCheck.h"
#include "replace/UndoStepReader.h"
#include "replace/UndoTestSupport.h"
#include "support/Testing.h"

#include <csignal>
#include <random>
#include <unistd.h>

namespace tidemark::test {
namespace {

class UndoJournalTest : public UndoTest
{};

TEST_F(UndoJournalTest, ARunIsUndoneAndRedoneWithEverythingElseOfTheFiles)
{
    const QByteArray first = "a needle and\r\nanother needle\n";
    _folder.write("b.txt", "no\nneedle");
    const FilePath path = _folder.write("a.txt", first);
    EXPECT_EQ(chmod(path.cString(), 0640), 0);
    const FileIdentity identity(path);
    const auto attribute = [&] {
        return pathExtendedAttributeValueForKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
    };
    const auto before = attribute();
    EXPECT_EQ(replace(u"needle"_s, u"thread"_s).undo, UndoKeeping::Kept);
    const auto after = attribute();
    const UndoStep step = journal().steps().value(0);
    EXPECT_EQ(step.findText, u"needle"_s);
    EXPECT_EQ(step.replaceText, u"thread"_s);
    EXPECT_EQ(std::pair(step.files, step.matches), std::pair(qint64(2), qint64(3)));
    EXPECT_EQ(journal().filesOf(step.id), (QList<FilePath>{path, _folder.path("b.txt")}));

    Outcome outcome = undo();
    EXPECT_EQ(std::pair(outcome.filesDone, outcome.matches), std::pair(qint64(2), qint64(3)));
    EXPECT_EQ(outcome.files[1].newDate, TDFileCommon::fileModificationDate(path));
    EXPECT_EQ(contents({"a.txt", "b.txt"}), (QList<QByteArray>{first, "no\nneedle"}));
    EXPECT_TRUE(FileIdentity(path) == identity);
    EXPECT_EQ(attribute(), before);
    EXPECT_EQ(undo().end, End::NoStep);
    EXPECT_EQ(redo().filesDone, 2);
    EXPECT_EQ(attribute(), after);
    EXPECT_EQ(_folder.read("a.txt"), "a thread and\r\nanother thread\n");
    EXPECT_EQ(undo().filesDone, 2);
    EXPECT_EQ(_folder.read("a.txt"), first);

    // After another replacement nothing can be redone.
    EXPECT_TRUE(journal().lastStep(UndoStepKind::Redo));
    replace(u"another"_s, u"one"_s);
    EXPECT_FALSE(journal().lastStep(UndoStepKind::Redo));
    EXPECT_EQ(_folder.names(), (QList<QByteArray>{"a.txt", "b.txt"})) << "no backup is left";
    struct stat status = {};
    EXPECT_EQ(stat(_journalDirectory.path(journal().steps().value(0).id).cString(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(UndoJournalTest, OnlyWhatTheRunLeftIsTakenBackAndTheRestIsNamed)
{
    const QList<QByteArray> names = {"changed", "gone", "linked", "moved", "same", "undone"};
    for (const QByteArray &name : names)
        _folder.write(name, "a needle\n");
    replace(u"needle"_s, u"thread"_s);
    _folder.write("changed", "a thread!\n");
    _folder.write("undone", "a needle\n");
    ::unlink(_folder.path("gone").cString());
    ::unlink(_folder.path("linked").cString());
    _folder.write("other's", "a thread\n");
    EXPECT_EQ(::symlink("other's", _folder.path("linked").cString()), 0);
    // Saved by an editor that makes a new file.
    _folder.write("other", "a thread\n");
    EXPECT_EQ(::rename(_folder.path("other").cString(), _folder.path("moved").cString()), 0);
    const Outcome outcome = undo();
    QMap<QByteArray, RewriteProblem> problems;
    for (const RewriteUndo::File &file : outcome.files)
        problems[file.path.lastPathComponent()] = file.problem;
    EXPECT_EQ(problems.values(), (QList<RewriteProblem>{RewriteProblem::Changed, RewriteProblem::Missing,
                                                        RewriteProblem::Changed, RewriteProblem::None,
                                                        RewriteProblem::None, RewriteProblem::None}));
    EXPECT_EQ(contents({"changed", "moved", "same", "undone", "other's"}),
              (QList<QByteArray>{"a thread!\n", "a needle\n", "a needle\n", "a needle\n", "a thread\n"}));
    EXPECT_EQ(std::pair(outcome.filesDone, outcome.filesRefused), std::pair(qint64(2), qint64(3)));
    EXPECT_FALSE(outcome.isStepLeft) << "what can't be undone any more isn't offered again";
    EXPECT_FALSE(outcome.error.isNull());
}

TEST_F(UndoJournalTest, AStepOfWhichNothingCanBeTakenBackStays)
{
    _folder.write("a", "a needle\n");
    replace(u"needle"_s, u"thread"_s);
    EXPECT_EQ(::rename(_folder.path("a").cString(), _folder.path("away").cString()), 0);
    const Outcome refused = undo();
    EXPECT_EQ(std::pair(refused.filesRefused, refused.isStepLeft), std::pair(qint64(1), true));
    EXPECT_EQ(::rename(_folder.path("away").cString(), _folder.path("a").cString()), 0);
    EXPECT_EQ(undo().filesDone, 1);
    EXPECT_EQ(_folder.read("a"), "a needle\n");
}

TEST_F(UndoJournalTest, SingleReplacementsOfAWalkAreOneStep)
{
    const FilePath path = _folder.write("a.txt", "x 1\nx 2\nx 3 x\n");
    const auto file = searchOne(path, u"x"_s);
    UndoWalk walk;
    for (const qsizetype line : {2, 0, 1}) {
        ReplaceRequest single = request(u"x"_s, u"long\ntext"_s);
        single.undoStep = walk.step(single.findText, single.replaceText);
        TDError error;
        file->matchLines()[line]->matchLine()->setHighlightedMatchIndex(0);
        TDReplaceEngine::performReplaceWithSave(TDReplaceEngine::Save::Yes, *file->matchLines()[line], single,
                                                error);
        EXPECT_TRUE(error.isNull());
    }
    EXPECT_EQ(undo().end, End::InUse) << "the walk goes on";
    const QByteArray step = walk.end();
    EXPECT_EQ(journal().steps().value(0).matches, 3);
    const Outcome outcome = takeBack(step);
    EXPECT_EQ(outcome.files.size(), 1U);
    EXPECT_EQ(_folder.read("a.txt"), "x 1\nx 2\nx 3 x\n");
    EXPECT_EQ(outcome.matches, 3);
    redo();
    EXPECT_EQ(_folder.read("a.txt"), "long\ntext 1\nlong\ntext 2\nlong\ntext 3 x\n");
}

TEST_F(UndoJournalTest, AStopLeavesTheRestInTheStep)
{
    for (int index = 0; index < 30; ++index)
        _folder.write("file" + QByteArray::number(index), "a needle\n");
    replace(u"needle"_s, u"thread"_s);
    std::atomic<bool> stop = false;
    const auto outcome = RewriteUndo(journal(), stop, [&stop](quint64 files) {
                             stop = files > 2;
                         }).takeBack(journal().steps().value(0).id);
    EXPECT_EQ(outcome.end, End::Stopped);
    EXPECT_GT(outcome.filesDone, 0);
    EXPECT_LT(outcome.filesDone, 30);
    EXPECT_EQ(journal().lastStep(UndoStepKind::Undo)->files, 30 - outcome.filesDone);
    EXPECT_EQ(journal().lastStep(UndoStepKind::Redo)->files, outcome.filesDone);
    EXPECT_EQ(undo().filesDone, 30 - outcome.filesDone);
    for (int index = 0; index < 30; ++index)
        EXPECT_EQ(_folder.read("file" + QByteArray::number(index)), "a needle\n");
    EXPECT_TRUE(search(_folder.path(), u"thread"_s).isEmpty());
    while (journal().lastStep(UndoStepKind::Redo))
        EXPECT_EQ(redo().filesRefused, 0);
    EXPECT_TRUE(search(_folder.path(), u"needle"_s).isEmpty());
}

TEST_F(UndoJournalTest, TakesLittleRoomAndTheOldestStepsGoFirst)
{
    std::mt19937 random(1);
    for (int file = 0; file < 300; ++file) {
        QByteArray content;
        for (int line = 0; line < 40; ++line)
            content += QByteArray(int(random() % 60), 'a') + " tide " + QByteArray::number(random()) + "\n";
        _folder.write("folder/some-file" + QByteArray::number(file) + ".txt", content);
    }
    const auto outcome = replace(u"tide"_s, u"current"_s);
    const qint64 size = journal().steps().value(0).size;
    EXPECT_LT(size, qint64(outcome.replacements) * 4 * 5 / 2 + 300 * 200);
    const FindResultItems found = search(_folder.path(), u"current"_s);
    EXPECT_LT(size, UndoSizeEstimate::of(LinesByFile::ofFiles(found)));

    // Room for two such steps.
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_UNDO_JOURNAL_SIZE, 1);
    const auto fillUp = [&](qint64 bytes) {
        _journalDirectory.write("undo-0000000000000000-AAAAAA", QByteArray(bytes, 'x'));
    };
    fillUp(1000 * 1000 - size);
    EXPECT_EQ(replace(u"current"_s, u"tide"_s).undo, UndoKeeping::Kept);
    EXPECT_FALSE(_journalDirectory.names().contains("undo-0000000000000000-AAAAAA"));
    EXPECT_EQ(journal().steps().size(), 2);
    const UndoJournal small = journal(size / 2);
    EXPECT_EQ(small.newStep({}, {})->close(), UndoKeeping::Nothing);
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_UNDO_JOURNAL_SIZE, 0);
    EXPECT_EQ(replace(u"tide"_s, u"current"_s).undo, UndoKeeping::Off);
    EXPECT_EQ(journal().steps().size(), 2);
}

TEST_F(UndoJournalTest, WhatIsTooLargeOrCantBeWrittenIsNoStep)
{
    _folder.write("a.txt", "a needle\n");
    UndoStepWriter writer(journal(1000), {}, UndoStepWriter::Purpose::Replacement);
    UndoEntry entry;
    entry.path = _folder.path("a.txt");
    EXPECT_EQ(writer.append({entry}, {}), 0);
    EXPECT_EQ(_journalDirectory.names().size(), 1);
    for (int index = 0; index < 1000; ++index)
        entry.differences += char(index * index);
    std::mt19937 random(1);
    std::generate(entry.differences.begin(), entry.differences.end(), [&] { return char(random()); });
    EXPECT_EQ(writer.append({entry}, {}), 0);
    EXPECT_EQ(writer.close(), UndoKeeping::TooLarge);
    EXPECT_TRUE(_journalDirectory.names().isEmpty());

    const UndoJournalFolder unusable(_folder.path("a.txt"));
    EXPECT_EQ(replace(u"needle"_s, u"thread"_s).undo, UndoKeeping::Failed);
    EXPECT_EQ(_folder.read("a.txt"), "a thread\n");
}

TEST_F(UndoJournalTest, AStepThatAnotherProcessWritesIsLeftAlone)
{
    _folder.write("a.txt", "a needle\n");
    replace(u"needle"_s, u"thread"_s);
    const UndoStep own = journal().steps().value(0);
    ChildProcess other([this] {
        UndoStepWriter writer(journal(), {}, UndoStepWriter::Purpose::TakingBack);
        UndoEntry entry;
        entry.path = _folder.path("a.txt");
        (void)writer.append({entry}, {});
        ::raise(SIGSTOP);
    });
    ASSERT_TRUE(other.waitUntilStopped());
    const QByteArray others = journal().steps().value(0).id;
    ASSERT_NE(others, own.id);
    EXPECT_TRUE(journal().steps().value(0).isInUse);
    EXPECT_FALSE(journal().forget(others));
    EXPECT_EQ(undo().end, End::InUse) << "what came before isn't taken back first";
    EXPECT_EQ(_folder.read("a.txt"), "a thread\n");
    other.kill();
    // What it left is about a content that never was.
    EXPECT_EQ(undo().filesRefused, 1);
    EXPECT_TRUE(journal().forget(others));
    EXPECT_EQ(undo().filesDone, 1);
    EXPECT_EQ(_folder.read("a.txt"), "a needle\n");
}

TEST_F(UndoJournalTest, AStepIsTakenAsItWasWhenItsWriterLetItGo)
{
    UndoStepWriter writer(journal(), {}, UndoStepWriter::Purpose::TakingBack);
    const auto append = [&](const char *name) {
        UndoEntry entry;
        entry.path = _folder.path(name);
        EXPECT_EQ(writer.append({entry}, {}), 0);
        writer.noteDone(0);
    };
    append("a.txt");
    const auto reader =
        UndoStepReader::open(journal().folder().appendingPathComponent(writer.id()), UndoStepKind::Undo);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(reader->entries(0).size(), 1U);
    EXPECT_FALSE(reader->lock());
    append("b.txt");
    EXPECT_EQ(writer.close(), UndoKeeping::Kept);
    ASSERT_TRUE(reader->lock());
    EXPECT_EQ(reader->step().files, 2);
    ASSERT_EQ(reader->blockCount(), 2U);
    EXPECT_EQ(reader->entries(1).at(0).path, _folder.path("b.txt"));
}

TEST_F(UndoJournalTest, BackupsOfARunAreDeletedOnlyIfTheyAreTheOnesThatWereMade)
{
    setKeepsBackups(true);
    const QList<QByteArray> names = {"a", "b", "c", "d", "e"};
    for (const QByteArray &name : names)
        _folder.write(name, "a needle\n");
    replace(u"needle"_s, u"thread"_s);
    const QList<BackupRun> runs = journal().backupRuns();
    ASSERT_EQ(runs.size(), 1);
    ASSERT_EQ(runs[0].backups.size(), 5);
    EXPECT_EQ(runs[0].findText, u"needle"_s);
    const auto backupOf = [&](qsizetype index) { return runs[0].backups[index].path; };
    writeFile(backupOf(0), "A needle\n");
    ::unlink(backupOf(1).cString());
    ::unlink(backupOf(2).cString());
    writeFile(backupOf(2), "another!!\n");
    KeptBackup noBackup = runs[0].backups[3];
    noBackup.path = noBackup.file;
    QList<int> errors;
    for (const auto &failure : UndoJournal::deleteBackups(runs[0].backups.first(4) << noBackup))
        errors << failure.errorNumber;
    EXPECT_EQ(errors, (QList<int>{ESTALE, ENOENT, ESTALE, ESTALE}));
    EXPECT_EQ(contentOfFile(backupOf(0)), "A needle\n");
    EXPECT_EQ(contents({"d"}), (QList<QByteArray>{"a thread\n"}));
    const QList<BackupRun> left = journal().backupRuns();
    ASSERT_EQ(left.size(), 1);
    EXPECT_EQ(left[0].backups.last(), runs[0].backups[4]);
    // The step and the list of backups have nothing to do with each other.
    EXPECT_EQ(undo().filesDone, 5);
    EXPECT_EQ(journal().backupRuns().size(), 1);
    for (const KeptBackup &backup : left[0].backups)
        ::unlink(backup.path.cString());
    EXPECT_TRUE(journal().backupRuns().isEmpty());
    EXPECT_EQ(journal().steps().size(), 1);
}

TEST_F(UndoJournalTest, ADamagedOrCutStepDoesNoHarm)
{
    const QList<QByteArray> names = {"a", "b", "c"};
    for (const QByteArray &name : names)
        _folder.write(name, "a needle, " + name + "\n");
    const QList<QByteArray> before = contents(names);
    replace(u"needle"_s, u"thread"_s);
    const QList<QByteArray> after = contents(names);
    const QByteArray id = journal().steps().value(0).id;
    const QByteArray whole = _journalDirectory.read(id);
    std::mt19937 random(20120704);
    int undone = 0;
    for (qsizetype place = 0; place < whole.size(); ++place) {
        QByteArray damaged = whole;
        if (random() % 2 == 0)
            damaged.truncate(place);
        else
            damaged[place] = char(random());
        for (const QByteArray &name : _journalDirectory.names())
            ::unlink(_journalDirectory.path(name).cString());
        _journalDirectory.write(id, damaged);
        for (qsizetype index = 0; index < names.size(); ++index)
            _folder.write(names[index], after[index]);
        (void)journal().steps();
        const Outcome outcome = takeBack(id);
        undone += int(outcome.filesDone);
        for (qsizetype index = 0; index < names.size(); ++index) {
            const QByteArray now = _folder.read(names[index]);
            EXPECT_TRUE(now == before[index] || now == after[index]) << place;
        }
    }
    EXPECT_GT(undone, 0);
    EXPECT_LT(undone, int(whole.size()));
}

/// What a step ought to do to each of its files.
struct ExpectedStep
{
    QHash<FilePath, std::pair<QByteArray, QByteArray>> contents; ///< before and after
};

/// Random replacements in files of all encodings, undone and redone in any order while others change the
/// files.
class RandomUndoTest : public UndoTest
{
protected:
    static constexpr int FILE_COUNT = 8;

    unsigned below(size_t limit) { return unsigned(_random() % limit); }
    template <typename Value>
    const Value &anyOf(const QList<Value> &values)
    {
        return values[below(size_t(values.size()))];
    }

    QString randomText()
    {
        QString text;
        for (unsigned word = below(40); word > 0; --word)
            text += anyOf(WORDS) + anyOf(QStringList{u" "_s, u""_s, u"\n"_s, u"\r\n"_s, u"\r"_s});
        return text;
    }
    void makeFiles()
    {
        for (const QByteArray &name : _folder.names())
            ::unlink(_folder.path(name).cString());
        for (const QByteArray &name : _journalDirectory.names())
            ::unlink(_journalDirectory.path(name).cString());
        _steps.clear();
        _paths.clear();
        for (int index = 0; index < FILE_COUNT; ++index) {
            const StringEncoding encoding = anyOf(availableStringEncodings());
            const auto bytes = TextConverter::converterForEncoding(encoding)->encode(randomText());
            const FilePath path =
                _folder.write("file" + QByteArray::number(index) + ".txt", bytes.value_or("needle"));
            const auto number = QString::number(convertStringEncodingToCoreFoundation(encoding));
            setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, u"?;"_s + number,
                                                0);
            _paths << path;
        }
    }
    QHash<FilePath, QByteArray> present() const
    {
        QHash<FilePath, QByteArray> contents;
        for (const FilePath &path : _paths)
            contents.insert(path, contentOfFile(path));
        return contents;
    }
    void replaceSomething()
    {
        const auto before = present();
        const auto outcome = replace(anyOf(WORDS), anyOf(WORDS) + anyOf(QStringList{u""_s, u"x\ny"_s}));
        const auto after = present();
        ExpectedStep step;
        for (const FilePath &path : _paths) {
            if (before[path] != after[path])
                step.contents.insert(path, {before[path], after[path]});
        }
        EXPECT_EQ(outcome.undo, step.contents.isEmpty() ? UndoKeeping::Nothing : UndoKeeping::Kept);
        if (!step.contents.isEmpty())
            _steps.insert(outcome.undoStep, step);
    }
    void takeSomethingBack()
    {
        const QList<UndoStep> steps = journal().steps();
        if (steps.isEmpty())
            return;
        const QByteArray id = anyOf(steps).id;
        ASSERT_TRUE(_steps.contains(id));
        const ExpectedStep step = _steps.take(id);
        const auto before = present();
        const Outcome outcome = takeBack(id);
        ExpectedStep wayBack;
        QSet<FilePath> refused;
        for (const RewriteUndo::File &file : outcome.files) {
            if (!file.isDone)
                refused.insert(file.path);
        }
        for (const FilePath &path : _paths) {
            const auto [old, now] = step.contents.value(path);
            const bool isUndone = step.contents.contains(path) && before[path] == now;
            EXPECT_TRUE(contentOfFile(path) == (isUndone ? old : before[path])) << path.cString();
            const bool isAsked = step.contents.contains(path) && !isUndone && before[path] != old;
            EXPECT_EQ(refused.contains(path), isAsked) << path.cString();
            if (isUndone)
                wayBack.contents.insert(path, {now, old});
        }
        EXPECT_EQ(outcome.filesDone, wayBack.contents.size());
        EXPECT_EQ(outcome.isStepLeft, wayBack.contents.isEmpty() && !refused.isEmpty());
        if (outcome.isStepLeft)
            _steps.insert(id, step);
        if (!wayBack.contents.isEmpty())
            _steps.insert(outcome.newStep, wayBack);
    }
    void changeSomething()
    {
        const FilePath path = anyOf(_paths);
        QByteArray content = contentOfFile(path);
        if (below(2) == 0 && !content.isEmpty())
            content[below(size_t(content.size()))] = char(_random());
        else
            content += "x";
        writeFile(path, content);
    }

    const QStringList WORDS = {u"needle"_s, u"thread"_s, u"eedl"_s, u"hay"_s, u"ha"_s, u"y n"_s};
    std::mt19937 _random{20260704};
    QList<FilePath> _paths;
    QHash<QByteArray, ExpectedStep> _steps; ///< by id
};

TEST_F(RandomUndoTest, EachFileIsExactlyBeforeOrAfterOrRefusedAndNamed)
{
    // TIDEMARK_UNDO_RUNS sets how many.
    const int runs = qMax(qEnvironmentVariableIntValue("TIDEMARK_UNDO_RUNS"), 200);
    for (int run = 0; run < runs && !HasFatalFailure(); ++run) {
        SCOPED_TRACE(run);
        if (run % 10 == 0)
            makeFiles();
        replaceSomething();
        for (unsigned turn = below(4); turn > 0; --turn) {
            if (below(4) == 0)
                changeSomething();
            takeSomethingBack();
        }
        QSet<QByteArray> listed;
        for (const UndoStep &step : journal().steps()) {
            listed.insert(step.id);
            EXPECT_EQ(step.files, _steps.value(step.id).contents.size());
        }
        _steps.removeIf([&](auto step) { return !listed.contains(step.key()); });
        EXPECT_EQ(_steps.size(), listed.size());
    }
}

} // namespace
} // namespace tidemark::test
