#include "matching/ByteExpression.h"

#include <algorithm>

namespace tidemark {

namespace {

/// Repetitions that would take more bytes than this, written out, are loosened: the block matcher writes them
/// out.
constexpr size_t MOST_REPEATED_BYTES = 64;

ByteSet withoutLineEnds(ByteSet bytes)
{
    bytes.reset('\n');
    bytes.reset('\r');
    return bytes;
}

bool isPlain(unsigned byte)
{
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '_' || byte == ' ';
}

void writeByte(unsigned byte, QByteArray &pattern)
{
    static const char DIGITS[] = "0123456789ABCDEF";
    if (isPlain(byte)) {
        pattern += char(byte);
        return;
    }
    pattern += "\\x";
    pattern += DIGITS[byte / 16];
    pattern += DIGITS[byte % 16];
}

void writeSet(const ByteSet &bytes, QByteArray &pattern)
{
    pattern += '[';
    for (unsigned first = 0; first < bytes.size(); ++first) {
        if (!bytes[first])
            continue;
        unsigned last = first;
        while (last + 1 < bytes.size() && bytes[last + 1])
            ++last;
        writeByte(first, pattern);
        if (last > first) {
            pattern += '-';
            writeByte(last, pattern);
        }
        first = last;
    }
    pattern += ']';
}

void writeRepetition(unsigned least, unsigned most, QByteArray &pattern)
{
    if (least == 1 && most == 1)
        return;
    const bool unbounded = most == ByteExpression::UNBOUNDED;
    if (least == 0 && most == 1) {
        pattern += '?';
    } else if (unbounded && least <= 1) {
        pattern += least == 0 ? '*' : '+';
    } else {
        pattern += '{' + QByteArray::number(least);
        if (most != least)
            pattern += ',' + (unbounded ? QByteArray() : QByteArray::number(most));
        pattern += '}';
    }
}

} // namespace

ByteExpression ByteExpression::oneOf(const ByteSet &bytes)
{
    ByteExpression expression;
    expression._kind = Kind::Bytes;
    // A set of line ends only can't match within a line. Left as it is, it doesn't match there either.
    const ByteSet ofLines = withoutLineEnds(bytes);
    expression._bytes = ofLines.any() ? ofLines : bytes;
    expression._size = 1;
    return expression;
}

ByteExpression ByteExpression::choice(std::vector<ByteExpression> alternatives)
{
    if (alternatives.size() == 1)
        return std::move(alternatives.front());
    ByteExpression expression;
    expression._kind = Kind::Choice;
    for (const ByteExpression &alternative : alternatives)
        expression._size += alternative.size();
    expression._parts = std::move(alternatives);
    return expression;
}

ByteExpression ByteExpression::anything()
{
    ByteExpression expression = oneOf(ByteSet().set());
    expression.repeat(0, UNBOUNDED);
    return expression;
}

void ByteExpression::append(ByteExpression next)
{
    if (next._isEmpty())
        return;
    _size += next.size();
    _parts.push_back(std::move(next));
}

void ByteExpression::repeat(unsigned least, unsigned most)
{
    if (_isEmpty())
        return;
    if (_least != 1 || _most != 1) {
        ByteExpression outer;
        outer.append(std::move(*this));
        *this = std::move(outer);
    }
    const size_t allowed = std::max<size_t>(1, MOST_REPEATED_BYTES / std::max<size_t>(1, _size));
    _least = unsigned(std::min<size_t>(least, allowed));
    _most = most > allowed ? UNBOUNDED : most;
    if (_most == 0)
        *this = {};
}

bool ByteExpression::matchesEmpty() const
{
    const auto partMatchesEmpty = [](const ByteExpression &part) { return part.matchesEmpty(); };
    if (_least == 0)
        return true;
    if (_kind == Kind::Choice)
        return std::any_of(_parts.begin(), _parts.end(), partMatchesEmpty);
    return _kind == Kind::Sequence && std::all_of(_parts.begin(), _parts.end(), partMatchesEmpty);
}

void ByteExpression::trim()
{
    _trim(Side::Start);
    _trim(Side::End);
}

void ByteExpression::_trim(Side side)
{
    if (matchesEmpty()) {
        *this = {};
        return;
    }
    _most = _least;
    if (_least > 1)
        return;
    if (_kind == Kind::Sequence)
        _trimSequence(side);
    if (_kind == Kind::Choice) {
        for (ByteExpression &alternative : _parts)
            alternative._trim(side);
    }
}

void ByteExpression::_trimSequence(Side side)
{
    // The sequence doesn't match the empty text, so one of its parts ends the loop.
    while (true) {
        const auto outermost = side == Side::Start ? _parts.begin() : _parts.end() - 1;
        outermost->_trim(side);
        if (!outermost->_isEmpty())
            return;
        _parts.erase(outermost);
    }
}

QByteArray ByteExpression::pattern() const
{
    QByteArray pattern;
    _write(pattern);
    return pattern;
}

void ByteExpression::_write(QByteArray &pattern) const
{
    const bool repeated = _least != 1 || _most != 1;
    const bool grouped = _kind == Kind::Choice || (_kind == Kind::Sequence && repeated);
    if (grouped)
        pattern += "(?:";
    _writeContent(pattern);
    if (grouped)
        pattern += ')';
    writeRepetition(_least, _most, pattern);
}

void ByteExpression::_writeContent(QByteArray &pattern) const
{
    if (_kind == Kind::Bytes) {
        if (_bytes.count() > 1)
            writeSet(_bytes, pattern);
        else
            writeByte(unsigned(_bytes._Find_first()), pattern);
        return;
    }
    for (const ByteExpression &part : _parts) {
        if (_kind == Kind::Choice && &part != &_parts.front())
            pattern += '|';
        part._write(pattern);
    }
}

} // namespace tidemark
