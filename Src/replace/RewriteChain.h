#pragma once

#include "replace/RewriteRecord.h"

#include <vector>

namespace tidemark {

/// What the rewrites of one file, as left records name them, say about each other. They are given in the
/// order of their records. Nothing here looks at a file. Any thread.
///
/// A rewrite that found what the one before it found or left settles that one: nothing of it is open. Such
/// rewrites make a chain.
namespace RewriteChain {

using Rewrites = std::vector<RewriteRecord::Left::File>;

/// The index of the first rewrite of the chain that ends with the one given.
size_t beginning(const Rewrites &rewrites, size_t last);

/// The rewrites that the chain from `first` to `last` settles nothing of: those in front of it, and those
/// behind it that found another content than any before them found or left, since the dates of records aren't
/// always in their order.
Rewrites leftOpen(const Rewrites &rewrites, size_t first, size_t last);

/// The index of the latest rewrite that didn't find what another had left half written. There must be a
/// rewrite.
size_t latestThatFoundWhole(const Rewrites &rewrites);

/// The backups that nobody needs once the file holds `now`, which a rewrite of the chain found or left.
/// `first` is where the chain begins: what is in front of it isn't looked at.
std::vector<FilePath> unneededBackups(const Rewrites &rewrites, size_t first, const ContentDigest &now);

} // namespace RewriteChain

} // namespace tidemark
