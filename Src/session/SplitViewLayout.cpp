#include "session/SplitViewLayout.h"

#include "foundation/AssertionHandler.h"

#include <cmath>

namespace tidemark {

namespace {

/// Frames are summed up in floating point; a difference that no screen shows is none.
constexpr double TOLERANCE = 1.0 / 1024;

void require(bool holds, const char *description)
{
    if (!holds)
        raiseAssertion({"SplitViewLayout::resizeSubviews", "Src/TDMyDocumentController", 0, description});
}

bool areEqual(double left, double right)
{
    return std::abs(left - right) < TOLERANCE;
}

} // namespace

double SplitViewLayout::constrainSplitPosition(double proposedPosition, double windowHeight)
{
    if (proposedPosition < double(TD_SPLIT_VIEW_MINIMUM_POSITION))
        return double(TD_SPLIT_VIEW_MINIMUM_POSITION);
    const double limit = double(float(windowHeight) - TD_SPLIT_VIEW_BOTTOM_VIEW_MINIMUM_HEIGHT);
    return proposedPosition > limit ? limit : proposedPosition;
}

SplitView SplitViewLayout::resizeSubviews(const SplitView &panes, double oldHeight, double newWidth,
                                          double newHeight)
{
    const double divider = double(panes.dividerThickness);
    const double topHeight = _topHeight(panes, oldHeight, newHeight);
    SplitView laidOut = panes;
    laidOut.top.width = newWidth;
    laidOut.top.height = topHeight;
    laidOut.bottom = {0, topHeight + divider, newWidth, newHeight - topHeight - divider};
    _check(laidOut, newHeight);
    return laidOut;
}

double SplitViewLayout::_topHeight(const SplitView &panes, double oldHeight, double newHeight)
{
    const int delta = int(newHeight - oldHeight);
    const double top = panes.top.height;
    const double bottom = panes.bottom.height;
    const double topWithBottomTakingAll = newHeight - double(panes.dividerThickness) - (bottom + delta);
    if (top <= double(TD_SPLIT_VIEW_TOP_VIEW_MIN_HEIGHT) && delta < 0)
        return topWithBottomTakingAll;
    if (bottom <= double(TD_SPLIT_VIEW_BOTTOM_VIEW_MIN_HEIGHT) && delta < 0)
        return top + delta;
    if (delta >= 1)
        return topWithBottomTakingAll;
    if (delta == 0)
        return top;
    const float ratio = float((top - double(TD_SPLIT_VIEW_TOP_VIEW_MIN_HEIGHT)) / bottom);
    return top + double(ratio * float(delta));
}

void SplitViewLayout::_check(const SplitView &panes, double height)
{
    require(areEqual(panes.bottom.x, 0), "The bottom frame should always have a x origin of 0.");
    require(areEqual(panes.bottom.y, double(panes.dividerThickness) + panes.top.height),
            "The bottom frame origin should be equal to the top frame height plus the divider thickness.");
    require(areEqual(height, panes.bottom.y + panes.bottom.height),
            "The bottom frame y origin plus the bottom frame height should be equal to the height of the "
            "split view "
            "parent.");
}

} // namespace tidemark
