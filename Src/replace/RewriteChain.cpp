#include "replace/RewriteChain.h"

#include <algorithm>

namespace tidemark::RewriteChain {

namespace {

using Rewrite = RewriteRecord::Left::File;

bool settles(const Rewrite &later, const Rewrite &earlier)
{
    return later.oldContent == earlier.newContent || later.oldContent == earlier.oldContent;
}

} // namespace

size_t beginning(const Rewrites &rewrites, size_t last)
{
    while (last > 0 && settles(rewrites[last], rewrites[last - 1]))
        --last;
    return last;
}

Rewrites leftOpen(const Rewrites &rewrites, size_t first, size_t last)
{
    Rewrites open(rewrites.begin(), rewrites.begin() + qsizetype(first));
    Rewrites settled(rewrites.begin() + qsizetype(first), rewrites.begin() + qsizetype(last) + 1);
    for (size_t index = last + 1; index < rewrites.size(); ++index) {
        const Rewrite &later = rewrites[index];
        const bool isSettled = std::any_of(settled.begin(), settled.end(),
                                           [&](const Rewrite &earlier) { return settles(later, earlier); });
        (isSettled ? settled : open).push_back(later);
    }
    return open;
}

size_t latestThatFoundWhole(const Rewrites &rewrites)
{
    size_t latest = rewrites.size() - 1;
    while (latest > 0 && !settles(rewrites[latest], rewrites[latest - 1]))
        --latest;
    return latest;
}

std::vector<FilePath> unneededBackups(const Rewrites &rewrites, size_t first, const ContentDigest &now)
{
    std::vector<FilePath> backups;
    bool isFinished = false;
    for (size_t index = rewrites.size(); index-- > first;) {
        const Rewrite &rewrite = rewrites[index];
        isFinished = isFinished || rewrite.newContent == now;
        if (isFinished ? !rewrite.isBackupKept : rewrite.oldContent == now)
            backups.push_back(rewrite.backup);
    }
    return backups;
}

} // namespace tidemark::RewriteChain
