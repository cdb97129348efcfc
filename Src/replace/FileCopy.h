#pragma once

#include "foundation/FilePath.h"

namespace tidemark {

/// Copies a regular file to a name that must be free, with its mode, owner, access control lists, extended
/// attributes and dates. The copy is never open to anybody who can't open the original, also not meanwhile:
/// where owner or group can't be given to it, their rights are left out. 0, or errno with no copy left.
int copyFile(const FilePath &from, const FilePath &to);

} // namespace tidemark
