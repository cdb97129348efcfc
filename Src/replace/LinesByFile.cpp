#include "replace/LinesByFile.h"

#include <utility>

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
        FindResultItems lines = file->children();
        // The last one can be an error: the file's, or that of lines that took an expression too long.
        if (!lines.isEmpty() && lines.constLast()->matchLine() == nullptr)
            lines.removeIf([](const auto &line) { return line->matchLine() == nullptr; });
        if (!lines.isEmpty())
            all._groups.push_back({file.get(), std::move(lines)});
    }
    return all;
}

} // namespace tidemark
