#include "matching/ExpressionTranslation.h"

#include "matching/ByteExpression.h"
#include "matching/ExpressionReader.h"
#include "matching/RegularExpression.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace tidemark {

namespace {

/// Thrown where the translation isn't certain.
struct NotTranslated
{};

/// An expression that takes more bytes than this is slow to compile and slower to match.
constexpr size_t MOST_BYTES_OF_EXPRESSION = 2000;
constexpr unsigned MOST_BOUND_DIGITS = 5;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isWordCharacter(char c)
{
    return isDigit(c) || isLetter(c) || c == '_';
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

/// A letter of these, a number, a control character, or punctuation.
void requireByteEscape(const ExpressionToken &escape, std::string_view letters)
{
    const char c = escape.escaped();
    const size_t size = escape.text.size();
    if (size < 2)
        throw NotTranslated();
    if (isOneOf(c, letters) || c == '0')
        return;
    // Of more than two digits it isn't a byte.
    const bool isByte = c == 'x' && size > 2 && size <= std::string_view("\\x{00}").size();
    const bool isControl = c == 'c' && size > 2;
    if ((isLetter(c) || isDigit(c)) && !isByte && !isControl)
        throw NotTranslated();
}

void requireTranslatedFlags(std::string_view group)
{
    if (isOneOf('x', group))
        throw NotTranslated();
}

void requireWord(std::string_view name)
{
    if (name.empty() || !std::all_of(name.begin(), name.end(), isWordCharacter))
        throw NotTranslated();
}

void requireClassName(std::string_view item)
{
    std::string_view name = item.substr(2);
    name.remove_prefix(name.starts_with('^') ? 1 : 0);
    const bool isClosed = name.ends_with(":]");
    name.remove_suffix(isClosed ? 2 : 0);
    if (!isClosed || name.empty() || !std::all_of(name.begin(), name.end(), isLetter))
        throw NotTranslated();
}

unsigned takeBound(std::string_view &text)
{
    const size_t digits = std::min(text.size(), text.find_first_not_of("0123456789"));
    if (digits == 0 || digits > MOST_BOUND_DIGITS)
        throw NotTranslated();
    const unsigned bound = unsigned(std::stoul(std::string(text.substr(0, digits))));
    text.remove_prefix(digits);
    return bound;
}

void skipSpaces(std::string_view &text)
{
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(SPACES)));
}

/// What braces enclose, with these.
std::pair<unsigned, unsigned> boundsOf(std::string_view text)
{
    text.remove_prefix(1);
    skipSpaces(text);
    const unsigned least = takeBound(text);
    unsigned most = least;
    skipSpaces(text);
    if (text.starts_with(',')) {
        text.remove_prefix(1);
        skipSpaces(text);
        most = text == "}" ? ByteExpression::UNBOUNDED : takeBound(text);
        skipSpaces(text);
    }
    if (text != "}")
        throw NotTranslated();
    return {least, most};
}

/// Behind a brace that is literal.
void requireNoBounds(std::string_view text)
{
    skipSpaces(text);
    if (!text.empty() && isOneOf(text.front(), "0123456789+-,"))
        throw NotTranslated();
}

class Translator
{
public:
    Translator(std::string_view expression, CaseRule caseRule)
        : _reader(expression), _caseRule(caseRule), _changesCase(mayChangeFlag(expression, 'i'))
    {}

    ByteExpression whole()
    {
        ByteExpression result = _choice();
        if (!_reader.isAtEnd() || result.size() > MOST_BYTES_OF_EXPRESSION)
            throw NotTranslated();
        return result;
    }

private:
    using Kind = ExpressionToken::Kind;
    using Group = ExpressionToken::Group;

    ByteExpression _choice();
    ByteExpression _sequence();
    ByteExpression _atom();
    ByteExpression _group(const ExpressionToken &start);
    ByteExpression _escape(const ExpressionToken &escape) const;
    ByteExpression _set(const ExpressionToken &set) const;
    ByteExpression _literal(char c) const;
    ByteExpression _piece(std::string_view piece) const;
    void _repeat(ByteExpression &expression);

    ExpressionReader _reader;
    CaseRule _caseRule;
    bool _changesCase;
};

ByteExpression Translator::_choice()
{
    std::vector<ByteExpression> alternatives;
    do {
        alternatives.push_back(_sequence());
    } while (_reader.takeIf("|"));
    return ByteExpression::choice(std::move(alternatives));
}

ByteExpression Translator::_sequence()
{
    ByteExpression sequence;
    while (!_reader.isAtEnd() && !_reader.isNextOneOf("|)")) {
        ByteExpression atom = _atom();
        _repeat(atom);
        sequence.append(std::move(atom));
    }
    return sequence;
}

ByteExpression Translator::_atom()
{
    // With nothing to repeat it encloses no bounds.
    if (_reader.takeIf("{"))
        return _literal('{');
    const ExpressionToken token = _reader.next();
    switch (token.kind) {
    case Kind::GroupStart:
        return _group(token);
    case Kind::Set:
        return _set(token);
    case Kind::Escape:
        return _escape(token);
    case Kind::AnyCharacter:
        return ByteExpression::oneOf(ByteSet().set());
    case Kind::LineStart:
    case Kind::LineEnd:
        return {};
    case Kind::Flags:
        requireTranslatedFlags(token.text);
        return {};
    case Kind::Literal:
        return _literal(token.first());
    default:
        throw NotTranslated();
    }
}

/// To the closing parenthesis.
ByteExpression Translator::_group(const ExpressionToken &start)
{
    if (start.group == Group::Conditional || start.group == Group::Unknown)
        throw NotTranslated();
    if (start.group == Group::WithFlags)
        requireTranslatedFlags(start.text);
    if (start.group == Group::Named)
        requireWord(start.text.substr(3, start.text.size() - 4));
    ByteExpression content = _choice();
    if (!_reader.takeIf(")"))
        throw NotTranslated();
    const bool looksAround = start.group == Group::LookAhead || start.group == Group::LookBehind;
    return looksAround ? ByteExpression() : content;
}

/// Outside sets.
ByteExpression Translator::_escape(const ExpressionToken &escape) const
{
    const char c = escape.escaped();
    if (escape.text.size() < 2)
        throw NotTranslated();
    if (isOneOf(c, "bB<>`'AzZG"))
        return {};
    const bool isReference = isOneOf(c, "gk");
    const bool isProperty = isOneOf(c, "pP");
    if ((isReference || isProperty) && escape.text.size() == 2)
        throw NotTranslated();
    if (isReference || (isDigit(c) && c != '0'))
        return ByteExpression::anything();
    if (!isProperty)
        requireByteEscape(escape, "dDwWsSlLuUhHvVCaefnrt");
    return _piece(escape.text);
}

ByteExpression Translator::_set(const ExpressionToken &set) const
{
    const ExpressionReader::SetContent content = ExpressionReader::contentOf(set);
    if (!content.isClosed)
        throw NotTranslated();
    for (size_t index = 0; index < content.items.size(); ++index) {
        const ExpressionToken &item = content.items[index];
        const bool mayEndRange = index > 0 && content.items[index - 1].text.back() == '-';
        // Collating elements may be of two bytes.
        if (item.kind == Kind::CollatingName || (item.kind == Kind::ClassName && mayEndRange))
            throw NotTranslated();
        if (item.kind == Kind::ClassName)
            requireClassName(item.text);
        else if (item.kind == Kind::Escape)
            requireByteEscape(item, "dDwWsSlLuUhHvVaefnrtb");
    }
    return _piece(set.text);
}

void Translator::_repeat(ByteExpression &expression)
{
    if (!_reader.isNextOneOf("*+?{"))
        return;
    const ExpressionReader before = _reader;
    const ExpressionToken token = _reader.next();
    if (token.kind != Kind::Repetition) {
        requireNoBounds(_reader.rest());
        _reader = before;
        return;
    }
    unsigned least = 0;
    unsigned most = ByteExpression::UNBOUNDED;
    if (token.first() == '+')
        least = 1;
    else if (token.first() == '?')
        most = 1;
    else if (token.first() == '{')
        std::tie(least, most) = boundsOf(token.text);
    // Neither a lazy nor a possessive repetition matches where the plain one doesn't.
    _reader.takeIf("?");
    _reader.takeIf("+");
    expression.repeat(least, most);
}

ByteExpression Translator::_piece(std::string_view piece) const
{
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
