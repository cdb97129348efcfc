#pragma once

#include "foundation/FilePath.h"

struct stat;

namespace tidemark {

enum class Flush {
    No,
    Yes, ///< what was written is on the disk when the call returns
};

/// Gives a copy the owner, group, mode, access control lists, extended attributes and dates of the original,
/// whose status is given. The copy is never open to anybody who can't open the original: where owner or group
/// can't be given to it, their rights are left out. What the system keeps for itself, and what the file
/// system doesn't have, stays.
void copyMetadata(int from, int to, const struct stat &status);

/// Gives an open file the extended attributes of another, without access control lists, and the dates of its
/// status.
void copyAttributesAndDates(int from, int to, const struct stat &status);

/// Brings the names in a folder to the disk; 0, or errno. Where the file system can't do that, it counts as
/// done.
int flushFolder(const FilePath &folder);

} // namespace tidemark
