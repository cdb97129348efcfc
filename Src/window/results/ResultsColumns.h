#pragma once

class QHeaderView;

namespace tidemark {

/// Shows the columns of the results for which there is room, in pixels, and Encoding where the settings want
/// it. Does nothing before there are columns.
void showColumnsThatFit(QHeaderView &header, int width);

} // namespace tidemark
