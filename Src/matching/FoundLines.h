#pragma once

#include "matching/TDMatchLine.h"
#include "text/TextRange.h"

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

namespace tidemark {

using MatchLines = QList<std::shared_ptr<TDMatchLine>>;

/// Lets go of lines. Where there are many, it doesn't wait until they are gone.
void releaseLines(MatchLines lines);

/// Collects the lines of a file in which something was found and makes match lines of them. These lie side by
/// side, a few thousand in one piece of memory with their texts and ranges, which lives as long as one of
/// them; a line costs no allocation of its own. Meant to be used for file after file.
class FoundLines
{
public:
    bool isEmpty() const { return _places.empty() && _done.isEmpty(); }
    void clear();

    /// A further line; `bytes` are its UTF-8 bytes, or null where these aren't at hand or it has none.
    void addLine(qint64 lineNumber, QStringView text, QByteArrayView bytes);
    /// A further range of the line added last.
    void addRange(TextRange range);

    /// All lines since the last call or clear().
    MatchLines take();

private:
    /// Where the texts and ranges of a line end, in those of all.
    struct Place
    {
        qint64 lineNumber;
        size_t textEnd;
        size_t rangesEnd;
    };
    struct Block;

    void _finishBlock();

    std::vector<Place> _places;
    std::vector<char> _texts;
    std::vector<TextRange> _ranges;
    /// Those that aren't well formed, so that they have no UTF-8, by their index among the places.
    std::vector<std::pair<size_t, QString>> _otherTexts;
    MatchLines _done;
};

} // namespace tidemark
