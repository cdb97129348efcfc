#include "matching/TDFindResultItem.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

const FilePath PATH(QByteArray("/a/b/c.txt"));
const FileDate DATE = {1234567890123456789};

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
    const auto file = TDFindResultItem::initWithFile(PATH, DATE, u"t"_s, true);
    EXPECT_EQ(file->matchCount(), std::nullopt);
    file->setMatchLineHighlighter(highlighter);
    EXPECT_EQ(file->matchCount(), 6); // without any child node
    lines[1]->removeMatchRange(0);
    EXPECT_EQ(file->matchCount(), 5);
    highlighter->setMatchLines({});
    EXPECT_EQ(file->matchCount(), std::nullopt);
}

TEST(TDFindResultItemTest, AFileNodeShowsItsNameFolderAndPath)
{
    const auto file = TDFindResultItem::initWithFile(PATH, DATE, u"t"_s, true);
    const auto line = TDFindResultItem::initWithMatchLine(lineWithMatches(1), file.get());
    const auto second = TDFindResultItem::initWithMatchLine(lineWithMatches(1), file.get());
    file->setChildren({line, second});
    EXPECT_FALSE(file->isMatchLine());
    EXPECT_EQ(file->children().size(), 2);
    EXPECT_EQ(second->position(), 1);
    EXPECT_EQ(file->parent(), nullptr);
    EXPECT_EQ(file->findText(), u"t"_s);
    EXPECT_TRUE(file->includesBOM());
    EXPECT_TRUE(file->modificationDate() == DATE);
    EXPECT_EQ(file->filenameMatchLineSortKey(), u"c.txt"_s);
    EXPECT_EQ(file->displayFilenameOrMatchLine().text, u"c.txt"_s);
    EXPECT_EQ(file->displayPath(), u"/a/b"_s);
    EXPECT_EQ(file->displayError().text, u""_s);
    expectRed(file->displayName(), u"/a/b/c.txt"_s, {});
}

TEST(TDFindResultItemTest, AMatchLineNodeIsALeafThatShowsItsLine)
{
    const auto file = TDFindResultItem::initWithFile(PATH, DATE, u"t"_s, false);
    const auto line = TDFindResultItem::initWithMatchLine(lineWithMatches(2), file.get());
    EXPECT_TRUE(line->isMatchLine());
    EXPECT_EQ(line->parent(), file.get());
    EXPECT_TRUE(line->children().isEmpty());
    EXPECT_EQ(line->matchCount(), 0);
    EXPECT_EQ(line->displayFilenameOrMatchLine().text, u"3: text"_s);
    EXPECT_EQ(line->displayName().text, u""_s);
    EXPECT_FALSE(line->filenameMatchLineSortKey().isNull());
    EXPECT_EQ(line->filenameMatchLineSortKey(), u""_s);
}

TEST(TDFindResultItemTest, AFailedFileHasOneLeafThatShowsTheReason)
{
    const TDError error = TDError::initalizePresentErrorWithCode(4, u"Description"_s, u"Reason"_s);
    const auto file = TDFindResultItem::initWithFailedFile(PATH, {}, error);
    EXPECT_FALSE(file->isMatchLine());
    EXPECT_TRUE(file->findText().isNull());
    EXPECT_FALSE(file->includesBOM());
    EXPECT_EQ(file->matchCount(), std::nullopt);
    EXPECT_EQ(file->filenameMatchLineSortKey(), u"c.txt"_s);
    ASSERT_EQ(file->children().size(), 1);

    const TDFindResultItem &leaf = *file->children().first();
    EXPECT_TRUE(leaf.isMatchLine());
    EXPECT_EQ(leaf.parent(), file.get());
    EXPECT_EQ(leaf.matchCount(), std::nullopt);
    EXPECT_TRUE(leaf.filenameMatchLineSortKey().isNull());
    EXPECT_EQ(leaf.displayName().text, u""_s);
    expectRed(leaf.displayFilenameOrMatchLine(), u"Reason"_s, TD_COLOR_WHITE);
}

TEST(TDFindResultItemTest, NamesThatAreNotUtf8AreShownWithReplacementCharacters)
{
    const auto file = TDFindResultItem::initWithFile(FilePath("/\xFF/\xFE.txt"), DATE, u"t"_s, false);
    EXPECT_EQ(file->filenameMatchLineSortKey(), u"\uFFFD.txt"_s);
    EXPECT_EQ(file->displayPath(), u"/\uFFFD"_s);
    EXPECT_EQ(file->path().bytes(), QByteArray("/\xFF/\xFE.txt"));
}

} // namespace
} // namespace tidemark
