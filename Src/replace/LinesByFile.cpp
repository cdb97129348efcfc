#include "replace/LinesByFile.h"

namespace tidemark {

LinesByFile::LinesByFile(const FindResultItems &nodes)
{
    for (const auto &node : nodes) {
        if (node->matchLine() == nullptr)
            continue;
        if (_groups.empty() || _groups.back().file != node->parent())
            _groups.push_back({node->parent(), {}});
        _groups.back().lines << node;
    }
}

LinesByFile LinesByFile::ofFiles(const FindResultItems &files)
{
    LinesByFile all;
    for (const auto &file : files) {
        // Below a file that failed is its error.
        if (file->matches() != nullptr && !file->children().isEmpty())
            all._groups.push_back({file.get(), file->children()});
    }
    return all;
}

} // namespace tidemark
