#pragma once

#include <QString>

namespace tidemark {

/// A tool tip that shows the text as it stands: the toolkit takes what looks like styled text for that, and
/// names of files may look like anything.
QString plainToolTip(const QString &text);

} // namespace tidemark
