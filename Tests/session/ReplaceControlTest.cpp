#include "session/ReplaceControl.h"

#include "search/TDSearchEngine.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

class Collector : public TDSearchEngineDelegate
{
public:
    void didFindMatchInFile(const std::shared_ptr<TDFindResultItem> &file) override { files << file; }
    FindResultItems files;
};

FindResultItems filesWith(const QString &text, const FilePath &folder)
{
    const auto collector = std::make_shared<Collector>();
    TDSearchLocation location;
    location.setURL(folder.toUrl());
    TDSearchEngine engine;
    engine.setDelegate(collector);
    engine.startSearch(text, {location}, true);
    return collector->files;
}

TEST(ReplaceControl, AWalkAndARunAreStepsThatAreTakenBackOneAfterTheOther)
{
    const TemporaryFolder folder;
    const TemporaryFolder steps;
    const UndoJournalFolder journalFolder(steps.path());
    folder.write("a.txt", "x x\n");
    folder.write("b.txt", "an x\n");
    ReplaceControl control(
        {[] { return u"x"_s; }, [] { return u"yy"_s; }, [](const FilePath &) { return true; }});
    const FindResultItems files = filesWith(u"x"_s, folder.path());
    ASSERT_EQ(files.size(), 2);
    const FindResultItems lines = files[0]->matchLines() + files[1]->matchLines();
    EXPECT_TRUE(ReplaceExtent::of(lines).canBeUndone());
    TDError error;
    for (const qint64 match : {0, 1}) {
        lines[0]->matchLine()->setHighlightedMatchIndex(match);
        control.replaceMatch(*lines[0], error);
    }
    EXPECT_EQ(ReplaceExtent::of(lines).matches, 1U);
    control.replaceMatches(lines);
    EXPECT_EQ(folder.read("a.txt") + folder.read("b.txt"), "yy yy\nan yy\n");

    QStringList told;
    QObject::connect(&control, &ReplaceControl::replacing,
                     [&](bool is) { told << (is ? u"begin"_s : u"end"_s); });
    QObject::connect(&control, &ReplaceControl::tookBack,
                     [&](const RewriteUndo::Outcome &outcome) { told << QString::number(outcome.matches); });
    const UndoJournal journal = *UndoJournal::current();
    control.takeBack(journal.lastStep(UndoStepKind::Undo)->id);
    EXPECT_EQ(folder.read("a.txt") + folder.read("b.txt"), "yy yy\nan x\n");
    control.takeBack(journal.lastStep(UndoStepKind::Undo)->id);
    EXPECT_EQ(folder.read("a.txt"), "x x\n");
    EXPECT_EQ(told, (QStringList{u"begin"_s, u"1"_s, u"end"_s, u"begin"_s, u"2"_s, u"end"_s}));
    EXPECT_FALSE(journal.lastStep(UndoStepKind::Undo));
}

} // namespace
} // namespace tidemark::test
