#include "replace/InterruptedRewrites.h"
#include "replace/LossCheck.h"
#include "replace/UndoTestSupport.h"
#include "support/Testing.h"
#include "support/TimeLimit.h"

#include <random>
#include <unistd.h>

namespace tidemark::test {
namespace {

/// Without the disk, which takes most of the time.
class UnflushedStoppingCalls : public StoppingCalls
{
public:
    using StoppingCalls::StoppingCalls;
    int sync(int) override { return 0; }
    int syncFileSystem(int) override { return 0; }
};

class UndoKillsTest : public UndoTest
{
protected:
    static constexpr int FILE_COUNT = 24; ///< enough for several groups

    UndoKillsTest()
    {
        for (int index = 0; index < FILE_COUNT; ++index) {
            QByteArray content;
            for (int line = 0; line < 1 + index * index; ++line)
                content +=
                    line % 7 == 0 ? "a needle and another needle\r\n" : "nothing but hay in this line\n";
            _before.insert(_folder.write("file" + QByteArray::number(index), content), content);
        }
        _stepId = replace(u"needle"_s, u"a longer thread"_s).undoStep;
        _step = _journalDirectory.read(_stepId);
        for (const FilePath &path : _before.keys()) {
            _after.insert(path, contentOfFile(path));
            // To be put back: what holds the new content at the start.
            _check.add(path, _after[path], _before[path]);
        }
    }

    void startAnew()
    {
        for (const QByteArray &name : _folder.names())
            ::unlink(_folder.path(name).cString());
        for (const QByteArray &name : _journalDirectory.names())
            ::unlink(_journalDirectory.path(name).cString());
        for (const FilePath &path : _before.keys())
            writeFile(path, _after[path]);
        _journalDirectory.write(_stepId, _step);
    }
    /// Undoes in a process of its own, which is killed before the call with that number; how many it made.
    int undoAndDie(int deadlyCall)
    {
        _counts.all = 0;
        ChildProcess child([&] {
            const UnflushedStoppingCalls calls(_counts, {-1, deadlyCall});
            const RewriteRecordFolder records(_state.path());
            (void)takeBack(_stepId);
        });
        (void)child.waitUntilStopped();
        child.kill();
        return _counts.all;
    }
    void takeEverythingBack(UndoStepKind kind)
    {
        for (int steps = 0; journal().lastStep(kind) && steps < FILE_COUNT; ++steps)
            EXPECT_EQ(takeBackLast(kind).filesRefused, 0);
        EXPECT_FALSE(journal().lastStep(kind));
    }
    void expectContents(const QHash<FilePath, QByteArray> &expected)
    {
        for (auto file = expected.cbegin(); file != expected.cend(); ++file)
            EXPECT_TRUE(contentOfFile(file.key()) == file.value()) << file.key().cString();
    }

    TemporaryFolder _state;
    CallCounts &_counts = CallCounts::inSharedMemory();
    QHash<FilePath, QByteArray> _before;
    QHash<FilePath, QByteArray> _after;
    LossCheck _check{_state.path()};
    QByteArray _stepId;
    QByteArray _step;
};

TEST_F(UndoKillsTest, AKillAtAnyMomentLosesNothingAndTheRestIsUndoneLater)
{
    // TIDEMARK_UNDO_KILLS sets how many.
    const int kills = qMax(qEnvironmentVariableIntValue("TIDEMARK_UNDO_KILLS"), rounds(50));
    startAnew();
    const int calls = undoAndDie(-1);
    expectContents(_before);
    std::mt19937 random(20120704);
    Losses losses;
    for (int kill = 0; kill < kills; ++kill) {
        SCOPED_TRACE(kill);
        startAnew();
        (void)undoAndDie(int(random() % unsigned(calls)));
        {
            const InterruptedRewrites left(_state.path());
            const auto step = journal().lastStepOf(left.ownersOfRunsCutShort());
            EXPECT_TRUE(!step || step->kind == UndoStepKind::Redo) << "what the killed run wrote";
        }
        _check.checkAndDecide(LossCheck::Decision::PutBack, losses);
        takeEverythingBack(UndoStepKind::Undo);
        expectContents(_before);
        takeEverythingBack(UndoStepKind::Redo);
        expectContents(_after);
    }
    EXPECT_EQ(losses.lost + losses.falselyTold + losses.overwritten + losses.notPutBack +
                  losses.presentContentGone,
              0)
        << losses.messages.join(u'\n').toStdString();
    if (kills >= 500) {
        EXPECT_GT(losses.damaged, 0) << "no kill met a file that was being written";
    }
    std::printf("%d kills, %d files partly written\n", kills, losses.damaged);
}

TEST_F(UndoKillsTest, AfterAKillTheWholeStepOfTheReplacementCanBeUndone)
{
    startAnew();
    for (const FilePath &path : _before.keys())
        writeFile(path, _before[path]);
    for (const QByteArray &name : _journalDirectory.names())
        ::unlink(_journalDirectory.path(name).cString());
    const FindResultItems files = search(_folder.path(), u"needle"_s);
    const auto replaceAndDie = [&](int deadlyCall) {
        _counts.all = 0;
        ChildProcess child([&] {
            const UnflushedStoppingCalls calls(_counts, {-1, deadlyCall});
            const RewriteRecordFolder records(_state.path());
            replaceAll(files, u"needle"_s, u"a longer thread"_s);
        });
        (void)child.waitUntilStopped();
    };
    replaceAndDie(700);
    QByteArray step;
    {
        InterruptedRewrites left(_state.path());
        const auto found = journal().lastStepOf(left.ownersOfRunsCutShort());
        ASSERT_TRUE(found);
        step = found->id;
        left.putBack();
    }
    EXPECT_EQ(takeBack(step).filesRefused, 0);
    expectContents(_before);
}

} // namespace
} // namespace tidemark::test
