#pragma once

#include "session/FindResults.h"

namespace tidemark {

/// Whether the file, or the folder, stands in the results because it couldn't be read.
bool couldNotBeRead(const TDFindResultItem &file);
/// Whether a person may say in what the file is to be read: its bytes are no text in its encoding, or
/// somebody has said so before.
bool mayBeReadAs(const TDFindResultItem &file);
/// Those of the files whose bytes are no text in the same encoding, in which this one couldn't be read
/// either; none where it could.
FindResultItems filesUnreadableLike(const TDFindResultItem &file, const FindResultItems &files);

/// "Unicode (UTF-8), default"; empty where it isn't known.
QString encodingText(SettledEncoding encoding);

} // namespace tidemark
