#include "matching/TDFindResultItem.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

std::shared_ptr<TDMatchLine> lineWithMatches(int count)
{
    auto line = std::make_shared<TDMatchLine>();
    line->setLineNumber(3);
    line->setMatchLineString(u"text\n"_s);
    for (int index = 0; index < count; ++index)
        line->appendMatchRange({index, 1});
    return line;
}

void expectRed(const StyledText &text, const QString &expected, std::optional<StyledColor> background)
{
    EXPECT_EQ(text.text, expected);
    EXPECT_TRUE(text.font == (StyledFont{QString(), 10}));
    EXPECT_EQ(text.lineBreakMode, LineBreakMode::TruncateInMiddle);
    EXPECT_TRUE(text.foregroundAt(expected.size() - 1) == TD_COLOR_RED);
    EXPECT_TRUE(text.backgroundAt(expected.size() - 1) == background);
}

TEST(TDFindResultItemTest, AFileCountsTheRangesOfItsHighlightersLinesAnewEachTime)
{
    auto highlighter = std::make_shared<TDMatchLineHighlighter>();
    const MatchLines lines = {lineWithMatches(2), lineWithMatches(1), lineWithMatches(3)};
    highlighter->setMatchLines(lines);
    const auto file = TDFindResultItem::initWithFile(FilePath("/a"), {}, u"t"_s, true);
    EXPECT_EQ(file->matchCount(), std::nullopt);
    file->setMatchLineHighlighter(highlighter);
    EXPECT_EQ(file->matchCount(), 6); // without any child node
    lines[1]->removeMatchRange(0);
    EXPECT_EQ(file->matchCount(), 5);
    highlighter->setMatchLines({});
    EXPECT_EQ(file->matchCount(), std::nullopt);
}

TEST(TDFindResultItemTest, EachKindOfNodeShowsWhatItStandsFor)
{
    const auto file = TDFindResultItem::initWithFile(FilePath("/\xFF/\xFE.txt"), {}, u"t"_s, false);
    EXPECT_EQ(file->filenameMatchLineSortKey(), u"\uFFFD.txt"_s);
    EXPECT_EQ(file->displayPath(), u"/\uFFFD"_s);
    expectRed(file->displayName(), u"/\uFFFD/\uFFFD.txt"_s, {});

    const auto line = TDFindResultItem::initWithMatchLine(lineWithMatches(2), file.get());
    EXPECT_TRUE(line->isMatchLine() && !file->isMatchLine());
    EXPECT_EQ(line->matchCount(), 0);
    EXPECT_EQ(line->displayFilenameOrMatchLine().text, u"3: text"_s);
    EXPECT_EQ(line->displayName().text, u""_s);
    EXPECT_FALSE(line->filenameMatchLineSortKey().isNull());

    const TDError error = TDError::initalizePresentErrorWithCode(4, u"Description"_s, u"Reason"_s);
    const auto failed = TDFindResultItem::initWithFailedFile(FilePath("/a/c.txt"), {}, error);
    EXPECT_EQ(failed->matchCount(), std::nullopt);
    ASSERT_EQ(failed->children().size(), 1);
    const TDFindResultItem &leaf = *failed->children().first();
    EXPECT_TRUE(leaf.isMatchLine() && !failed->isMatchLine());
    EXPECT_EQ(leaf.parent(), failed.get());
    EXPECT_EQ(leaf.matchCount(), std::nullopt);
    EXPECT_TRUE(leaf.filenameMatchLineSortKey().isNull());
    expectRed(leaf.displayFilenameOrMatchLine(), u"Reason"_s, TD_COLOR_WHITE);
}

} // namespace
} // namespace tidemark
