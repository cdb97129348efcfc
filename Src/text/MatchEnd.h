#pragma once

#include <QStringView>

namespace tidemark {

/// True when a match may end before `position` of the searched stretch: not before a character that extends
/// the one in front of it, and after a joiner, a jamo or a virama only at the boundary of an extended
/// grapheme cluster. `position` is more than 0 and at most the length; the end of the stretch is always fine.
bool mayMatchEndAt(QStringView stretch, qsizetype position);

} // namespace tidemark
