#pragma once

#include "foundation/FilePath.h"

#include <QHash>

namespace tidemark {

/// Resolves symbolic links, looking at each folder once: a folder that is moved meanwhile is looked for where
/// it was. For one thread at a time.
class ResolvedPaths
{
public:
    /// As far as it can be resolved: a path that leads nowhere stays as it is.
    FilePath resolving(const FilePath &path);

private:
    FilePath _resolvingFolder(const FilePath &folder);

    QHash<FilePath, FilePath> _folders;
};

} // namespace tidemark
