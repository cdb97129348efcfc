#pragma once

#include "matching/FoundLines.h"
#include "matching/SearchedLine.h"
#include "reading/EncodingDetection.h"

#include <utility>

namespace tidemark {

/// What was found in one file.
struct FileMatches
{
    /// Lines that weren't searched to their end, as the expression took too much there; their matches found
    /// until then are among the others.
    struct LimitedLines
    {
        quint64 count = 0;
        qint64 firstNumber = 0; ///< of the first such line
        LineSearch reason = LineSearch::Found;
    };

    MatchLines lines; ///< in line order; shared by copies
    LimitedLines limitedLines;
    bool areBeyondAscii = false; ///< a line among them holds characters beyond ASCII
    SettledEncoding encoding;    ///< in which the file was read

    quint64 count() const
    {
        quint64 count = 0;
        for (const auto &line : lines)
            count += line->numberOfMatches();
        return count;
    }

    // What was found further on in the same file.
    void add(FileMatches further)
    {
        lines.append(std::move(further.lines));
        addLimitedLines(further.limitedLines);
        areBeyondAscii = areBeyondAscii || further.areBeyondAscii;
    }
    void addLimitedLines(const LimitedLines &further)
    {
        if (limitedLines.count == 0)
            limitedLines = further;
        else
            limitedLines.count += further.count;
    }
};

} // namespace tidemark
