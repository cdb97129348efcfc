#pragma once

#include "replace/RewritePlan.h"

#include <QByteArrayView>

#include <functional>

namespace tidemark {

/// Takes a stretch of content; 0, or an errno that ends the handing out.
using ContentSink = std::function<int(QByteArrayView)>;

/// Hands out the content that a plan describes, in order, in stretches of at most a few hundred KB unless a
/// line is longer. What stays is taken from the open file with the old content, which is read front to back
/// and stays the caller's. 0, or errno of reading or of the sink.
int handOutNewContent(const RewritePlan &plan, int oldContent, const ContentSink &sink);
/// The same with the old content in memory.
int handOutNewContent(const RewritePlan &plan, QByteArrayView oldContent, const ContentSink &sink);

/// As many bytes as are worth a call of the system.
inline constexpr qint64 BYTES_AT_ONCE = 1 << 18;

/// Reads up to `count` bytes from the offset on, fewer only at the end of the file; how many, or -1 and
/// errno.
qint64 readFully(int descriptor, char *bytes, qint64 count, qint64 offset);

/// Writes all of it; 0, or errno with part of it written.
int writeAll(int descriptor, QByteArrayView bytes);

} // namespace tidemark
