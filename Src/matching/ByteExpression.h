#pragma once

#include <QByteArray>

#include <algorithm>
#include <bitset>
#include <limits>
#include <vector>

namespace tidemark {

using ByteSet = std::bitset<256>;

/// An expression over single bytes that knows sequence, choice and repetition only, so that what it matches
/// can be reasoned about. It is built with the functions below, which keep it small by loosening repetitions
/// of many bytes: what it matches then includes what was asked for.
class ByteExpression
{
public:
    static constexpr unsigned UNBOUNDED = std::numeric_limits<unsigned>::max();

    /// Matches the empty text.
    ByteExpression() = default;

    static ByteExpression oneOf(const ByteSet &bytes);
    static ByteExpression choice(std::vector<ByteExpression> alternatives);
    /// Any number of the bytes that a line holds.
    static ByteExpression anything();

    void append(ByteExpression next);
    /// To be repeated from `least` to `most` times, both included.
    void repeat(unsigned least, unsigned most);

    bool matchesEmpty() const;
    /// How many single bytes it takes to write it without repetitions.
    size_t size() const { return _size * std::max(1U, _most == UNBOUNDED ? _least : _most); }

    /// Takes away what a text that contains a match may lack at the match's ends: the same texts contain a
    /// match afterwards, but fewer and shorter ones.
    void trim();

    /// In the block matcher's syntax, as pure ASCII without line ends.
    QByteArray pattern() const;

private:
    enum class Kind { Bytes, Sequence, Choice };
    enum class Side { Start, End };

    bool _isEmpty() const { return _kind == Kind::Sequence && _parts.empty(); }
    void _trim(Side side);
    void _trimSequence(Side side);
    void _write(QByteArray &pattern) const;
    void _writeContent(QByteArray &pattern) const;

    Kind _kind = Kind::Sequence;
    ByteSet _bytes;
    std::vector<ByteExpression> _parts;
    unsigned _least = 1;
    unsigned _most = 1;
    size_t _size = 0;
};

} // namespace tidemark
