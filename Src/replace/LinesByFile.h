#pragma once

#include "matching/TDFindResultItem.h"

#include <vector>

namespace tidemark {

/// Match lines that are to be replaced in, or asked about: some or all of each file's. All lines of a file
/// are taken without copying them, so that millions cost no time. Whoever has one keeps the files' nodes
/// alive.
class LinesByFile
{
public:
    struct Group
    {
        TDFindResultItem *file;
        FindResultItems lines; ///< at least one, and match lines only
    };

    LinesByFile() = default;
    /// The match lines among the nodes, in their order. A file whose lines don't follow each other makes
    /// several groups.
    LinesByFile(const FindResultItems &nodes);
    /// All lines of the files.
    static LinesByFile ofFiles(const FindResultItems &files);

    auto begin() const { return _groups.begin(); }
    auto end() const { return _groups.end(); }
    size_t size() const { return _groups.size(); }

private:
    std::vector<Group> _groups;
};

} // namespace tidemark
