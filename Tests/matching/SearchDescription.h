#pragma once

#include "matching/SearchContext.h"
#include "matching/TDMatchLineHighlighter.h"
#include "text/Utf8.h"

#include <ostream>

namespace tidemark {

/// Everything that a search of one file tells.
struct SearchDescription
{
    static SearchDescription byLines(const FilePath &path, const TDFindPattern &pattern,
                                     StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING)
    {
        TDMatchLineHighlighter highlighter;
        TDError error;
        const bool searched = highlighter.processWithFile(path, encoding, error, pattern);
        return {highlighter, searched, error};
    }

    static SearchDescription byBlocks(const FilePath &path, SearchContext &context,
                                      StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING)
    {
        TDMatchLineHighlighter highlighter;
        TDError error;
        const bool searched = highlighter.processWithFile(FileToRead{path}, encoding, error, context);
        return {highlighter, searched, error};
    }

    SearchDescription(const TDMatchLineHighlighter &highlighter, bool searched, const TDError &error)
        : isExpressionFault(error.hasCode(TD_ERROR_CODE_TD_MATCH_LINE_HIGHLIGHTER_REGULAR_EXPRESSION_ERROR))
    {
        if (!searched) {
            text =
                "error " + QByteArray::number(error.code()) + ' ' + error.localizedFailureReason().toUtf8();
            return;
        }
        text = highlighter.includesBOM() ? "mark" : "no mark";
        for (const auto &line : highlighter.matchLines()) {
            text += '\n' + QByteArray::number(line->lineNumber()) + ' ' +
                    generalizedUtf8(line->matchLineString()).toHex();
            for (const TextRange &range : line->matchRanges())
                text += ' ' + QByteArray::number(range.location) + '+' + QByteArray::number(range.length);
        }
    }

    friend bool operator==(const SearchDescription &, const SearchDescription &) = default;
    friend void PrintTo(const SearchDescription &description, std::ostream *out)
    {
        *out << description.text.toStdString();
    }

    QByteArray text;
    bool isExpressionFault;
};

} // namespace tidemark
