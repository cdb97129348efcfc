#include "matching/TDFindResultItem.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

std::shared_ptr<TDMatchLine> lineWithMatches(int count)
{
    auto line = std::make_shared<TDMatchLine>();
    line->setLineNumber(3);
    line->setMatchLineString(u"text\n"_s);
    for (int index = 0; index < count; ++index)
        line->appendMatchRange({index, 1});
    return line;
}

TEST(TDFindResultItemTest, AFileCountsTheRangesOfItsLinesAnewEachTime)
{
    const MatchLines lines = {lineWithMatches(2), lineWithMatches(1), lineWithMatches(3)};
    const auto file = TDFindResultItem::initWithFile(FilePath("/a"), {}, u"t"_s, true);
    EXPECT_EQ(file->matchCount(), std::nullopt);
    file->setMatches({lines, {}, false, {}});
    EXPECT_EQ(file->matchCount(), 6); // without any child node
    lines[1]->removeMatchRange(0);
    EXPECT_EQ(file->matchCount(), 5);
    file->setMatches({});
    EXPECT_EQ(file->matchCount(), std::nullopt);
}

TEST(TDFindResultItemTest, NodesOfFilesAndOfTheReasonForAFailureAreRed)
{
    const TDError error = TDError::initalizePresentErrorWithCode(4, u"Description"_s, u"Reason"_s);
    const auto failed = TDFindResultItem::initWithFailedFile(FilePath("/\xFF/\xFE.txt"), {}, error);
    EXPECT_EQ(failed->filenameMatchLineSortKey(), u"\uFFFD.txt"_s);
    EXPECT_EQ(failed->displayPath(), u"/\uFFFD"_s);
    EXPECT_EQ(failed->matchCount(), std::nullopt);
    const TDFindResultItem &leaf = *failed->children().first();
    EXPECT_EQ(leaf.matchCount(), std::nullopt);
    EXPECT_TRUE(leaf.filenameMatchLineSortKey().isNull());
    for (const auto &[text, shown, background] :
         {std::tuple(failed->displayName(), u"/\uFFFD/\uFFFD.txt"_s, std::optional<StyledColor>()),
          {leaf.displayError(), u"Reason"_s, TD_COLOR_WHITE}}) {
        EXPECT_EQ(text.text, shown);
        EXPECT_EQ(text.lineBreakMode, LineBreakMode::TruncateInMiddle);
        EXPECT_TRUE(text.foregroundAt(shown.size() - 1) == TD_COLOR_RED);
        EXPECT_TRUE(text.backgroundAt(shown.size() - 1) == background);
    }
}

} // namespace
} // namespace tidemark::test
