#pragma once

#include "replace/RewritePlan.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tidemark {

/// What turned an old content into a new one, so that the old can be had from the new: for each stretch that
/// was changed its place and length in the new content, and the old bytes. Compact bytes that need nobody's
/// trust: what isn't a difference of contents of the given sizes is refused.

/// Of a plan, with the open file that it was made for. What old and new have in common within the stretches
/// of the plan is left out. Nothing, with errno, when the old bytes can't be read.
std::optional<QByteArray> differencesOf(const RewritePlan &plan, int oldContent);

/// A plan for the way back, from a content of `newSize` bytes to one of `oldSize`. Nothing when the
/// differences make no sense for these.
std::optional<RewritePlan> planBack(QByteArrayView differences, qint64 newSize, qint64 oldSize);

/// One plan that does what the two do one after the other.
RewritePlan composedPlan(const RewritePlan &first, const RewritePlan &second);

} // namespace tidemark
