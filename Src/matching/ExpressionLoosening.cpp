#include "matching/ExpressionLoosening.h"

#include <string_view>
#include <utility>

namespace tidemark {

namespace {

/// Thrown where it isn't certain what an expression means.
struct NotLoosened
{};

const char BEYOND_ASCII[] = "\\x{80}-\\x{10FFFF}";

bool isOneOf(char c, std::string_view characters)
{
    return c != '\0' && characters.find(c) != std::string_view::npos;
}

class Loosening
{
public:
    Loosening(QByteArrayView expression, CaseRule caseRule)
        : _expression(expression.data(), size_t(expression.size())),
          _ignoresCase(caseRule == CaseRule::Ignore)
    {}

    QByteArray whole()
    {
        while (_position < _expression.size())
            _readNext();
        return _result;
    }

private:
    char _next() const { return _position < _expression.size() ? _expression[_position] : '\0'; }
    bool _takeIf(std::string_view text)
    {
        if (!_expression.substr(_position).starts_with(text))
            return false;
        _position += text.size();
        return true;
    }

    void _readNext();
    void _readEscape();
    void _readSet();
    void _readGroup();
    void _readQuantifier();
    void _readBeyondAscii();
    void _add(char c)
    {
        _depth -= c == ')' ? 1 : 0;
        _result += c;
    }
    void _open()
    {
        ++_depth;
        _result += "(?:";
    }
    void _addLiteral(char c);
    void _addAssertion();
    void _skipLookAround();

    std::string_view _expression;
    bool _ignoresCase;
    size_t _position = 0;
    int _depth = 0; ///< of groups that are open
    QByteArray _result;
};

void Loosening::_readNext()
{
    const char c = _next();
    if (c == '\\')
        return _readEscape();
    if (c == '[')
        return _readSet();
    if (c == '(')
        return _readGroup();
    if (isOneOf(c, "*+?{"))
        return _readQuantifier();
    if ((c & 0x80) != 0)
        return _readBeyondAscii();
    ++_position;
    if (c == '^' || c == '$')
        _addAssertion();
    else if (isOneOf(c, ".|)"))
        _add(c);
    else
        _addLiteral(c);
}

void Loosening::_addLiteral(char c)
{
    // Two letters have a third form, beyond ASCII.
    if (_ignoresCase && isOneOf(c, "kK"))
        _result += "[kK\\x{212A}]";
    else if (_ignoresCase && isOneOf(c, "sS"))
        _result += "[sS\\x{17F}]";
    else if (c < ' ' || c == 0x7F)
        throw NotLoosened();
    else
        _result += c;
}

/// What matches nothing itself is left out; repeated it would be missed.
void Loosening::_addAssertion()
{
    if (isOneOf(_next(), "*+?{") && _position < _expression.size())
        throw NotLoosened();
    _result += "(?:)";
}

void Loosening::_readEscape()
{
    ++_position;
    if (_position == _expression.size())
        throw NotLoosened();
    const char c = _expression[_position++];
    const bool isLetterOrDigit = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (isOneOf(c, "bBAzZ"))
        return _addAssertion();
    if (c == 'w')
        _result += QByteArray("[0-9A-Za-z_") + BEYOND_ASCII + ']';
    else if (c == 'd')
        _result += QByteArray("[0-9") + BEYOND_ASCII + ']';
    else if (c == 's')
        _result += QByteArray("[\\x09-\\x0D ") + BEYOND_ASCII + ']';
    else if (isOneOf(c, "WDSN"))
        _result += '.';
    else if (isOneOf(c, "123456789") && !isOneOf(_next(), "0123456789"))
        _result += "(?:.*)"; // what a group has matched
    else if (isOneOf(c, "tfe"))
        (_result += '\\') += c;
    else if (!isLetterOrDigit && (c & 0x80) == 0 && c >= ' ')
        (_result += '\\') += c;
    else
        throw NotLoosened();
}

/// A simple set stays; any other may match any character.
void Loosening::_readSet()
{
    const size_t start = _position++;
    _takeIf("^");
    _takeIf("]");
    bool isSimple = !_ignoresCase;
    for (char c = _next(); c != ']'; c = _next()) {
        if (_position >= _expression.size() || _takeIf("[:") || _takeIf("[.") || _takeIf("[="))
            throw NotLoosened();
        isSimple = isSimple && (c & 0x80) == 0 && c != '\\' && c != '[' && c >= ' ';
        const bool isLast = _position + 1 >= _expression.size();
        // These take more than one character behind them, or none.
        if (c == '\\' && (isLast || isOneOf(_expression[_position + 1], "QEc")))
            throw NotLoosened();
        _position += c == '\\' ? 2 : 1;
    }
    ++_position;
    if (isSimple)
        _result += QByteArrayView(_expression.data() + start, qsizetype(_position - start));
    else
        _result += '.';
}

void Loosening::_readGroup()
{
    ++_position;
    if (_takeIf("*"))
        throw NotLoosened();
    if (!_takeIf("?")) {
        _open();
    } else if (_takeIf(":") || _takeIf(">") || _takeIf("|")) {
        _open();
    } else if (_takeIf("=") || _takeIf("!") || _takeIf("<=") || _takeIf("<!")) {
        _skipLookAround();
        _addAssertion();
    } else if (_takeIf("<")) {
        const size_t end = _expression.find('>', _position);
        if (end == std::string_view::npos)
            throw NotLoosened();
        _position = end + 1;
        _open();
    } else {
        throw NotLoosened();
    }
}

/// Past the parenthesis that closes it.
void Loosening::_skipLookAround()
{
    // What it holds must be understood, so that its end is known.
    const QByteArray outside = std::exchange(_result, {});
    ++_depth;
    const int outerDepth = _depth - 1;
    while (_depth > outerDepth) {
        if (_position >= _expression.size())
            throw NotLoosened();
        _readNext();
    }
    _result = outside;
}

/// Whether it is possessive or lazy changes nothing.
void Loosening::_readQuantifier()
{
    if (_next() != '{') {
        _result += _expression[_position++];
    } else {
        const size_t end = _expression.find_first_not_of("0123456789,", _position + 1);
        const bool isQuantifier = end != std::string_view::npos && _expression[end] == '}' &&
                                  end > _position + 1 && _expression[_position + 1] != ',';
        if (!isQuantifier)
            throw NotLoosened();
        _result += QByteArrayView(_expression.data() + _position, qsizetype(end + 1 - _position));
        _position = end + 1;
    }
    if (!_takeIf("+"))
        _takeIf("?");
}

void Loosening::_readBeyondAscii()
{
    const size_t start = _position++;
    while ((_next() & 0xC0) == 0x80)
        ++_position;
    if (_ignoresCase)
        _result += QByteArray("[kKsS") + BEYOND_ASCII + ']';
    else
        _result += QByteArrayView(_expression.data() + start, qsizetype(_position - start));
}

} // namespace

std::optional<QByteArray> loosenedExpression(QByteArrayView expression, CaseRule caseRule)
{
    try {
        return Loosening(expression, caseRule).whole();
    } catch (const NotLoosened &) {
        return std::nullopt;
    }
}

} // namespace tidemark
