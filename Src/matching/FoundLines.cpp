#include "matching/FoundLines.h"

#include "foundation/FreedMemory.h"
#include "text/TextEncoding.h"

namespace tidemark {

namespace {

/// Large enough that a block costs next to nothing for a line, small enough that what is collected can be
/// copied into blocks of the right size while it is in the cache.
constexpr size_t MOST_LINES = 2048;
constexpr size_t MOST_BYTES = 1 << 17;
/// So many are gone within a few milliseconds.
constexpr qsizetype LINES_RELEASED_AT_ONCE = 30000;

} // namespace

void releaseLines(MatchLines lines)
{
    if (lines.size() > LINES_RELEASED_AT_ONCE)
        releaseElsewhere(std::move(lines));
}

struct FoundLines::Block
{
    std::vector<char> texts;
    std::vector<TextRange> ranges;
    std::vector<TDMatchLine> lines;
};

void FoundLines::clear()
{
    if (_texts.capacity() > 4 * MOST_BYTES || _ranges.capacity() > MOST_BYTES)
        *this = {};
    _places.clear();
    _texts.clear();
    _ranges.clear();
    _otherTexts.clear();
    releaseLines(std::exchange(_done, {}));
}

void FoundLines::addLine(qint64 lineNumber, QStringView text, QByteArrayView bytes)
{
    if (_places.size() == MOST_LINES || _texts.size() > MOST_BYTES)
        _finishBlock();
    if (!bytes.isNull()) {
        _texts.insert(_texts.end(), bytes.begin(), bytes.end());
    } else if (const std::optional<QByteArray> utf8 = strictUtf8(text)) {
        _texts.insert(_texts.end(), utf8->begin(), utf8->end());
    } else {
        _otherTexts.emplace_back(_places.size(), text.toString());
    }
    _places.push_back({lineNumber, _texts.size(), _ranges.size()});
}

void FoundLines::addRange(TextRange range)
{
    _ranges.push_back(range);
    _places.back().rangesEnd = _ranges.size();
}

MatchLines FoundLines::take()
{
    _finishBlock();
    return std::exchange(_done, {});
}

void FoundLines::_finishBlock()
{
    if (_places.empty())
        return;
    const auto block = std::make_shared<Block>(Block{_texts, _ranges, {}});
    block->lines.reserve(_places.size());
    // Further blocks leave it to the list to grow faster than they do.
    if (_done.isEmpty())
        _done.reserve(qsizetype(_places.size()));
    size_t text = 0;
    size_t range = 0;
    for (const Place &place : _places) {
        block->lines.emplace_back(place.lineNumber,
                                  QByteArrayView(block->texts.data() + text, qsizetype(place.textEnd - text)),
                                  std::span(block->ranges.data() + range, place.rangesEnd - range));
        _done.emplaceBack(block, &block->lines.back());
        text = place.textEnd;
        range = place.rangesEnd;
    }
    for (const auto &[index, line] : _otherTexts) {
        block->lines[index].setMatchLineString(line);
        block->lines[index].setSavedLineString(line);
        block->lines[index].setFoundLineString(line);
    }
    _places.clear();
    _texts.clear();
    _ranges.clear();
    _otherTexts.clear();
}

} // namespace tidemark
