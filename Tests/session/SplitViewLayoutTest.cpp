#include "session/SplitViewLayout.h"
#include "support/Testing.h"

namespace tidemark::test {

namespace {

TEST(SplitViewLayout, TheDividerStopsShortOfBothEdgesAndTheResultsRoomCountsMore)
{
    for (const auto &[proposed, height, allowed] : {std::tuple(100.0, 800.0, 140.0),
                                                    {139.5, 800, 140},
                                                    {300, 800, 300},
                                                    {451, 800, 450},
                                                    {200, 400, 50},
                                                    {200, 0, -350}})
        EXPECT_EQ(SplitViewLayout::constrainSplitPosition(proposed, height), allowed);
}

TEST(SplitViewLayout, PanesShareAChangeOfHeight)
{
    const struct
    {
        const char *what;
        double top;
        double bottom;
        double delta;
        double expectedTop;
    } cases[] = {
        {"the results take all growth", 250, 450, 100, 250},
        {"a low form keeps its height", 200, 450, -30, 200},
        {"a low form keeps its height even beside low results", 180, 300, -30, 180},
        {"low results keep theirs", 260, 391, -30, 230},
        {"both shrink in proportion", 300, 400, -40, 290},
        {"a fraction of a point is no change", 300, 400, 0.9, 300},
        {"a third", 210, 400, -100, double(210 - 0.025F * 100)},
    };
    for (const auto &resize : cases) {
        const double oldHeight = resize.top + 9 + resize.bottom;
        SplitView panes{{0, 0, 600, resize.top}, {0, resize.top + 9, 600, resize.bottom}, 9};
        panes = SplitViewLayout::resizeSubviews(panes, oldHeight, 640, oldHeight + resize.delta);
        EXPECT_DOUBLE_EQ(panes.top.height, resize.expectedTop) << resize.what;
        EXPECT_DOUBLE_EQ(panes.bottom.y, panes.top.height + 9) << resize.what;
        EXPECT_DOUBLE_EQ(panes.bottom.y + panes.bottom.height, oldHeight + resize.delta) << resize.what;
        EXPECT_TRUE(panes.top.width == 640 && panes.bottom.width == 640) << resize.what;
    }
}

} // namespace

} // namespace tidemark::test
