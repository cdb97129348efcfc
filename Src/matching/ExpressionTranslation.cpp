#include "matching/ExpressionTranslation.h"

#include "matching/ByteExpression.h"
#include "matching/RegularExpression.h"

#include <string>
#include <string_view>
#include <utility>

namespace tidemark {

namespace {

/// Thrown where the translation isn't certain.
struct NotTranslated
{};

/// An expression that takes more bytes than this is slow to compile and slower to match.
constexpr size_t MOST_BYTES = 2000;
constexpr unsigned MOST_BOUND_DIGITS = 5;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isOctalDigit(char c)
{
    return c >= '0' && c <= '7';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isWordCharacter(char c)
{
    return isDigit(c) || isLetter(c) || c == '_';
}

bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isOneOf(char c, std::string_view characters)
{
    return characters.find(c) != std::string_view::npos;
}

/// Whether a group like `(?i)` or `(?-i:` may occur; it doesn't matter when there are fewer than it seems.
bool changesCase(std::string_view expression)
{
    for (size_t i = expression.find("(?"); i != std::string_view::npos; i = expression.find("(?", i + 1)) {
        const std::string_view rest = expression.substr(i + 2);
        const std::string_view flags = rest.substr(0, rest.find_first_not_of("imsx-"));
        if (flags.find('i') != std::string_view::npos)
            return true;
    }
    return false;
}

/// What a piece of an expression that stands for one byte matches. The expression's own compiler is asked, so
/// that classes and case mean the same here and there.
ByteSet bytesMatchedBy(std::string_view piece, CaseRule caseRule)
{
    const boost::regex compiled =
        compiledExpression(QByteArrayView(piece.data(), qsizetype(piece.size())), caseRule);
    ByteSet bytes;
    for (unsigned value = 0; value < bytes.size(); ++value) {
        const char byte = char(value);
        bytes[value] = boost::regex_match(&byte, &byte + 1, compiled);
    }
    return bytes;
}

class Translator
{
public:
    Translator(std::string_view expression, CaseRule caseRule)
        : _expression(expression), _caseRule(caseRule), _changesCase(changesCase(expression))
    {}

    ByteExpression whole()
    {
        ByteExpression result = _choice();
        if (!_atEnd() || result.size() > MOST_BYTES)
            throw NotTranslated();
        return result;
    }

private:
    bool _atEnd() const { return _position == _expression.size(); }
    bool _isNext(char c) const { return !_atEnd() && _expression[_position] == c; }
    char _next() const { return _atEnd() ? throw NotTranslated() : _expression[_position]; }
    char _take();
    bool _takeIf(char c);
    void _expect(char c);
    size_t _skipWhile(bool (*holds)(char));

    ByteExpression _choice();
    ByteExpression _sequence();
    ByteExpression _atom();
    ByteExpression _group();
    ByteExpression _groupContent();
    ByteExpression _escape();
    ByteExpression _backReference();
    void _repeat(ByteExpression &expression);
    bool _takeBounds(unsigned &least, unsigned &most);
    unsigned _bound();
    void _skipByteEscape(std::string_view letters);
    void _skipHexadecimal();
    void _skipProperty();
    void _skipSet();
    void _skipBracketInSet(size_t setStart);

    ByteExpression _piece(size_t start) const;
    ByteExpression _literal(char c) const;

    std::string_view _expression;
    size_t _position = 0;
    CaseRule _caseRule;
    bool _changesCase;
};

char Translator::_take()
{
    const char c = _next();
    ++_position;
    return c;
}

bool Translator::_takeIf(char c)
{
    if (!_isNext(c))
        return false;
    ++_position;
    return true;
}

void Translator::_expect(char c)
{
    if (!_takeIf(c))
        throw NotTranslated();
}

size_t Translator::_skipWhile(bool (*holds)(char))
{
    const size_t start = _position;
    while (!_atEnd() && holds(_expression[_position]))
        ++_position;
    return _position - start;
}

ByteExpression Translator::_choice()
{
    std::vector<ByteExpression> alternatives;
    do {
        alternatives.push_back(_sequence());
    } while (_takeIf('|'));
    return ByteExpression::choice(std::move(alternatives));
}

ByteExpression Translator::_sequence()
{
    ByteExpression sequence;
    while (!_atEnd() && !_isNext('|') && !_isNext(')')) {
        ByteExpression atom = _atom();
        _repeat(atom);
        sequence.append(std::move(atom));
    }
    return sequence;
}

ByteExpression Translator::_atom()
{
    const size_t start = _position;
    const char c = _take();
    switch (c) {
    case '(':
        return _group();
    case '[':
        _skipSet();
        return _piece(start);
    case '\\':
        return _escape();
    case '.':
        return ByteExpression::oneOf(ByteSet().set());
    case '^':
    case '$':
        return {};
    case '*':
    case '+':
    case '?':
        throw NotTranslated();
    default:
        return _literal(c);
    }
}

/// After the opening parenthesis, to the closing one.
ByteExpression Translator::_group()
{
    if (_isNext('*'))
        throw NotTranslated();
    ByteExpression group;
    if (_takeIf('?'))
        group = _groupContent();
    else
        group = _choice();
    _expect(')');
    return group;
}

/// After the question mark that makes a group a special one.
ByteExpression Translator::_groupContent()
{
    const char kind = _take();
    if (isOneOf(kind, ":|>"))
        return _choice();
    const bool looksBehind = kind == '<' && (_isNext('=') || _isNext('!'));
    if (looksBehind || isOneOf(kind, "=!")) {
        if (looksBehind)
            ++_position;
        _choice();
        return {};
    }
    if (isOneOf(kind, "<'")) {
        if (_skipWhile(isWordCharacter) == 0)
            throw NotTranslated();
        _expect(kind == '<' ? '>' : '\'');
        return _choice();
    }
    if (!isOneOf(kind, "ims-"))
        throw NotTranslated();
    _skipWhile([](char c) { return isOneOf(c, "ims-"); });
    if (_isNext(')'))
        return {};
    _expect(':');
    return _choice();
}

/// After the backslash, outside sets.
ByteExpression Translator::_escape()
{
    const size_t start = _position - 1;
    const char c = _next();
    if (isOneOf(c, "bB<>`'AzZG")) {
        ++_position;
        return {};
    }
    if ((isDigit(c) && c != '0') || isOneOf(c, "gk"))
        return _backReference();
    if (isOneOf(c, "pP"))
        _skipProperty();
    else
        _skipByteEscape("dDwWsSlLuUhHvVCaefnrt");
    return _piece(start);
}

ByteExpression Translator::_backReference()
{
    const char c = _take();
    if (!isDigit(c)) {
        const char opening = _take();
        if (!isOneOf(opening, "{<'"))
            throw NotTranslated();
        _takeIf('-');
        _skipWhile(isWordCharacter);
        _expect(opening == '{' ? '}' : opening == '<' ? '>' : '\'');
    }
    return ByteExpression::anything();
}

/// An escape that stands for one byte: one of the letters, a number, a control character, or punctuation.
void Translator::_skipByteEscape(std::string_view letters)
{
    const char c = _take();
    if (isOneOf(c, letters))
        return;
    if (c == 'x') {
        _skipHexadecimal();
    } else if (c == '0') {
        for (int digits = 0; digits < 3 && !_atEnd() && isOctalDigit(_next()); ++digits)
            ++_position;
    } else if (c == 'c') {
        if (!isLetter(_take()))
            throw NotTranslated();
    } else if (isLetter(c) || isDigit(c)) {
        throw NotTranslated();
    }
}

void Translator::_skipHexadecimal()
{
    const bool braced = _takeIf('{');
    const size_t start = _position;
    while (_position - start < 2 && !_atEnd() && isHexDigit(_next()))
        ++_position;
    if (_position - start < (braced ? 1 : 2))
        throw NotTranslated();
    if (braced)
        _expect('}');
}

void Translator::_skipProperty()
{
    ++_position;
    if (!_takeIf('{')) {
        if (!isLetter(_take()))
            throw NotTranslated();
        return;
    }
    _skipWhile(isLetter);
    _expect('}');
}

/// After the opening bracket, past the closing one.
void Translator::_skipSet()
{
    const size_t start = _position;
    _takeIf('^');
    _takeIf(']');
    while (true) {
        const char c = _take();
        if (c == ']')
            return;
        if (c == '[')
            _skipBracketInSet(start);
        else if (c == '\\')
            _skipByteEscape("dDwWsSlLuUhHvVaefnrtb");
    }
}

void Translator::_skipBracketInSet(size_t setStart)
{
    const char c = _next();
    // Collating elements may be of two bytes.
    if (isOneOf(c, ".="))
        throw NotTranslated();
    if (c != ':')
        return;
    const bool mayEndRange = _position >= setStart + 2 && _expression[_position - 2] == '-';
    if (mayEndRange)
        throw NotTranslated();
    ++_position;
    _takeIf('^');
    if (_skipWhile(isLetter) == 0)
        throw NotTranslated();
    _expect(':');
    _expect(']');
}

void Translator::_repeat(ByteExpression &expression)
{
    unsigned least = 0;
    unsigned most = ByteExpression::UNBOUNDED;
    if (_takeIf('+'))
        least = 1;
    else if (_takeIf('?'))
        most = 1;
    else if (!_takeIf('*') && !_takeBounds(least, most))
        return;
    // Neither a lazy nor a possessive repetition matches where the plain one doesn't.
    _takeIf('?');
    _takeIf('+');
    expression.repeat(least, most);
}

/// A brace that doesn't enclose bounds is literal and is left.
bool Translator::_takeBounds(unsigned &least, unsigned &most)
{
    const size_t start = _position;
    if (!_takeIf('{'))
        return false;
    _skipWhile(isSpace);
    if (_atEnd() || !isOneOf(_next(), "0123456789+-,")) {
        _position = start;
        return false;
    }
    least = most = _bound();
    _skipWhile(isSpace);
    if (_takeIf(',')) {
        _skipWhile(isSpace);
        most = _isNext('}') ? ByteExpression::UNBOUNDED : _bound();
        _skipWhile(isSpace);
    }
    _expect('}');
    return true;
}

unsigned Translator::_bound()
{
    const size_t start = _position;
    const size_t digits = _skipWhile(isDigit);
    if (digits == 0 || digits > MOST_BOUND_DIGITS)
        throw NotTranslated();
    return unsigned(std::stoul(std::string(_expression.substr(start, digits))));
}

ByteExpression Translator::_piece(size_t start) const
{
    const std::string_view piece = _expression.substr(start, _position - start);
    ByteSet bytes = bytesMatchedBy(piece, _caseRule);
    if (_changesCase)
        bytes |= bytesMatchedBy(piece, _caseRule == CaseRule::Ignore ? CaseRule::Exact : CaseRule::Ignore);
    if (bytes.none())
        throw NotTranslated();
    return ByteExpression::oneOf(bytes);
}

ByteExpression Translator::_literal(char c) const
{
    ByteSet bytes;
    bytes.set(static_cast<unsigned char>(c));
    if (isLetter(c) && (_changesCase || _caseRule == CaseRule::Ignore))
        bytes.set(static_cast<unsigned char>(c ^ ('a' ^ 'A')));
    return ByteExpression::oneOf(bytes);
}

} // namespace

std::optional<QByteArray> translatedExpression(QByteArrayView expression, CaseRule caseRule)
{
    try {
        Translator translator(std::string_view(expression.data(), size_t(expression.size())), caseRule);
        ByteExpression translated = translator.whole();
        compiledExpression(expression, caseRule);
        translated.trim();
        if (translated.matchesEmpty())
            return std::nullopt;
        return translated.pattern();
    } catch (const NotTranslated &) {
        return std::nullopt;
    } catch (const std::runtime_error &) {
        return std::nullopt;
    }
}

} // namespace tidemark
