#pragma once

namespace tidemark {

inline constexpr float TD_SPLIT_VIEW_MINIMUM_POSITION = 140.0F;
inline constexpr float TD_SPLIT_VIEW_BOTTOM_VIEW_MINIMUM_HEIGHT = 350.0F;
inline constexpr float TD_SPLIT_VIEW_TOP_VIEW_MIN_HEIGHT = 200.0F;
inline constexpr float TD_SPLIT_VIEW_BOTTOM_VIEW_MIN_HEIGHT = 391.0F;

/// In points; y grows downwards.
struct PaneFrame
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// The two panes of a search window and the divider between them.
struct SplitView
{
    PaneFrame top;
    PaneFrame bottom;
    float dividerThickness = 0;
};

/// How the panes share the window's height.
class SplitViewLayout
{
public:
    /// Where the divider may go when it is dragged to the position; the window's height is 0 when there is
    /// none.
    static double constrainSplitPosition(double proposedPosition, double windowHeight);
    /// The panes after the split view's size has changed. Throws InternalInconsistency when they don't fill
    /// it.
    static SplitView resizeSubviews(const SplitView &panes, double oldHeight, double newWidth,
                                    double newHeight);

private:
    static double _topHeight(const SplitView &panes, double oldHeight, double newHeight);
    static void _check(const SplitView &panes, double height);
};

} // namespace tidemark
