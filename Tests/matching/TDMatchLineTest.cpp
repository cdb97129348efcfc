#include "matching/TDMatchLine.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

TEST(TDMatchLineTest, OffsetMovesTheRangesFromAnIndexOn)
{
    TDMatchLine line;
    line.setMatchRanges({{0, 3}, {10, 3}, {20, 3}});
    line.offsetMatchRangesBy(-2, 1);
    EXPECT_TRUE((line.matchRanges() == QList<TextRange>{{0, 3}, {8, 3}, {18, 3}}));
    line.offsetMatchRangesBy(5, 3);
    EXPECT_TRUE((line.matchRanges() == QList<TextRange>{{0, 3}, {8, 3}, {18, 3}}));
    TDMatchLine empty;
    empty.offsetMatchRangesBy(1, 0);
    EXPECT_EQ(empty.numberOfMatches(), 0U);
}

} // namespace
} // namespace tidemark::test
