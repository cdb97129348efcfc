#include "matching/ExpressionLoosening.h"

#include "matching/CharacterClasses.h"
#include "matching/ExpressionReader.h"

#include <string>
#include <string_view>
#include <utility>

namespace tidemark {

namespace {

/// Thrown where it isn't certain what an expression means.
struct NotLoosened
{};

const char BEYOND_ASCII[] = "\\x{80}-\\x{10FFFF}";

class Loosening
{
public:
    Loosening(QByteArrayView expression, CaseRule caseRule)
        : _reader(std::string_view(expression.data(), size_t(expression.size()))),
          _ignoresCase(caseRule == CaseRule::Ignore), _classes(caseRule)
    {}

    QByteArray whole()
    {
        while (!_reader.isAtEnd())
            _readNext();
        return _result;
    }

private:
    using Kind = ExpressionToken::Kind;
    using Group = ExpressionToken::Group;

    void _readNext();
    void _readEscape(const ExpressionToken &escape);
    void _readSet(const ExpressionToken &set);
    void _beginGroup(const ExpressionToken &group);
    void _repeat(std::string_view bounds);
    void _readLiteral(char c);
    void _readBeyondAscii(char first);
    void _addAssertion();
    void _addClass(std::string_view piece);
    void _skipLookAround();
    void _add(std::string_view text) { _result += QByteArrayView(text.data(), qsizetype(text.size())); }

    ExpressionReader _reader;
    bool _ignoresCase;
    CharacterClasses _classes;
    int _depth = 0; ///< of groups that are open
    QByteArray _result;
};

void Loosening::_readNext()
{
    const ExpressionToken token = _reader.next();
    switch (token.kind) {
    case Kind::Literal:
        return _readLiteral(token.first());
    case Kind::AnyCharacter:
    case Kind::Alternative:
        return _add(token.text);
    case Kind::LineStart:
    case Kind::LineEnd:
        return _addAssertion();
    case Kind::Repetition:
        return _repeat(token.text);
    case Kind::Escape:
        return _readEscape(token);
    case Kind::Set:
        return _readSet(token);
    case Kind::GroupStart:
        return _beginGroup(token);
    case Kind::GroupEnd:
        --_depth;
        return _add(token.text);
    default:
        throw NotLoosened();
    }
}

void Loosening::_readLiteral(char c)
{
    if ((c & 0x80) != 0)
        return _readBeyondAscii(c);
    if (c == '{' || c == 0x7F || (c & 0xE0) == 0)
        throw NotLoosened();
    // Two letters have a third form, beyond ASCII.
    if (_ignoresCase && isOneOf(c, "kK"))
        _result += "[kK\\x{212A}]";
    else if (_ignoresCase && isOneOf(c, "sS"))
        _result += "[sS\\x{17F}]";
    else
        _result += c;
}

/// An assertion is left out. One that is repeated can't be: the repetition would apply to nothing.
void Loosening::_addAssertion()
{
    if (_reader.isNextOneOf("*+?{"))
        throw NotLoosened();
    _result += "(?:)";
}

void Loosening::_readEscape(const ExpressionToken &escape)
{
    const char c = escape.escaped();
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
    else if (isOneOf(c, "pP") && escape.text.size() > 2)
        _addClass(escape.text);
    else if (isOneOf(c, "123456789") && !_reader.isNextOneOf("0123456789"))
        _result += "(?:.*)"; // what a group has matched
    else if (isOneOf(c, "tfe") || (!isLetterOrDigit && (c & 0x80) == 0 && c >= ' '))
        (_result += '\\') += c;
    else
        throw NotLoosened();
}

bool isClassName(std::string_view item)
{
    const std::string_view name = item.substr(2, item.size() - std::min<size_t>(item.size(), 4));
    return item.ends_with(":]") && name.find_first_not_of("^abcdefghijklmnopqrstuvwxyz") == name.npos;
}

/// A simple set stays. Where the case is ignored, two letters beyond ASCII may belong to it.
void Loosening::_readSet(const ExpressionToken &set)
{
    const ExpressionReader::SetContent content = ExpressionReader::contentOf(set);
    bool isSimple = true;
    for (const ExpressionToken &item : content.items) {
        // These take more than one character behind them, or none.
        const bool isUncertain = item.kind == Kind::Escape && isOneOf(item.escaped(), "QEc");
        const bool isNoName = item.kind == Kind::ClassName && !isClassName(item.text);
        if (isUncertain || isNoName || item.kind == Kind::CollatingName)
            throw NotLoosened();
        const char c = item.first();
        isSimple = isSimple && (c & 0x80) == 0 && c != '\\' && c != '[' && c >= ' ';
    }
    if (!content.isClosed)
        throw NotLoosened();
    const char first = set.text[1];
    if (isSimple && (!_ignoresCase || first == '^'))
        _add(set.text);
    else if (isSimple && first != ']' && first != '-')
        _add("[\\x{17F}\\x{212A}" + std::string(set.text.substr(1)));
    else
        _addClass(set.text);
}

/// What stands for one character.
void Loosening::_addClass(std::string_view piece)
{
    _result += _classes.explicitSet(piece).value_or(".");
}

void Loosening::_beginGroup(const ExpressionToken &group)
{
    ++_depth;
    switch (group.group) {
    case Group::LookAhead:
    case Group::LookBehind:
        _skipLookAround();
        return _addAssertion();
    case Group::Named:
        if (group.text[2] != '<')
            throw NotLoosened();
        break;
    case Group::WithFlags:
    case Group::Conditional:
    case Group::Unknown:
        throw NotLoosened();
    default:
        break;
    }
    _result += "(?:";
}

/// Past the parenthesis that closes it.
void Loosening::_skipLookAround()
{
    // What it holds must be understood, so that its end is known.
    const QByteArray outside = std::exchange(_result, {});
    const int outerDepth = _depth - 1;
    while (_depth > outerDepth) {
        if (_reader.isAtEnd())
            throw NotLoosened();
        _readNext();
    }
    _result = outside;
}

/// Whether it is possessive or lazy changes nothing.
void Loosening::_repeat(std::string_view bounds)
{
    const bool isCertain =
        bounds.find_first_not_of("0123456789,", 1) + 1 == bounds.size() && bounds[1] != ',';
    if (bounds.size() > 1 && !isCertain)
        throw NotLoosened();
    _add(bounds);
    if (!_reader.takeIf("+"))
        _reader.takeIf("?");
}

void Loosening::_readBeyondAscii(char first)
{
    QByteArray character(1, first);
    while (!_reader.isAtEnd() && (_reader.rest().front() & 0xC0) == 0x80)
        character += _reader.next().first();
    if (_ignoresCase)
        _addClass(std::string_view(character.constData(), size_t(character.size())));
    else
        _result += character;
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
