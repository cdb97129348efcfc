#include "matching/ExpressionReader.h"

#include <algorithm>

namespace tidemark {

namespace {

constexpr std::string_view HEX_DIGITS = "0123456789abcdefABCDEF";
constexpr std::string_view LETTERS = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::string_view WORD = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
constexpr std::string_view FLAGS = "imsx-";

/// How many bytes at the start are of these, but no more than `most`.
size_t countOf(std::string_view text, std::string_view bytes, size_t most = std::string_view::npos)
{
    return std::min(most, std::min(text.size(), text.find_first_not_of(bytes)));
}

/// The size of `opening content closing` at the start of the text; 0 where it isn't there.
size_t enclosedSize(std::string_view text, char opening, std::string_view content, char closing)
{
    if (!text.starts_with(opening))
        return 0;
    const size_t end = 1 + countOf(text.substr(1), content);
    return end < text.size() && text[end] == closing ? end + 1 : 0;
}

size_t hexadecimalSize(std::string_view text)
{
    if (text.starts_with('{')) {
        const size_t size = enclosedSize(text, '{', HEX_DIGITS, '}');
        return size > 2 ? size : 0;
    }
    return countOf(text, HEX_DIGITS, 2) == 2 ? 2 : 0;
}

size_t referenceSize(std::string_view text)
{
    const size_t sign = text.size() > 1 && text[1] == '-' ? 1 : 0;
    const char opening = text.empty() ? '\0' : text[0];
    if (!isOneOf(opening, "{<'"))
        return 0;
    const size_t end = 1 + sign + countOf(text.substr(1 + sign), WORD);
    const char closing = opening == '{' ? '}' : opening == '<' ? '>' : '\'';
    return end < text.size() && text[end] == closing ? end + 1 : 0;
}

/// What belongs to an escape behind its first byte.
size_t sizeBehindEscaped(char escaped, std::string_view text)
{
    switch (escaped) {
    case 'x':
        return hexadecimalSize(text);
    case '0':
        return countOf(text, "01234567", 3);
    case 'c':
        return countOf(text, LETTERS, 1);
    case 'p':
    case 'P':
        return text.starts_with('{') ? enclosedSize(text, '{', LETTERS, '}') : countOf(text, LETTERS, 1);
    case 'g':
    case 'k':
        return referenceSize(text);
    default:
        return 0;
    }
}

} // namespace

ExpressionToken ExpressionReader::next()
{
    const size_t start = _position;
    ExpressionToken token;
    if (_expression[start] == '(') {
        ++_position;
        token.kind = _readGroup(token.group);
    } else {
        token.kind = _read();
    }
    token.text = _expression.substr(start, _position - start);
    return token;
}

bool ExpressionReader::takeIf(std::string_view text)
{
    if (!rest().starts_with(text))
        return false;
    _position += text.size();
    return true;
}

bool ExpressionReader::_isBlank() const
{
    return !isAtEnd() && _expression[_position] > 0 && _expression[_position] <= ' ';
}

void ExpressionReader::skipBlanks()
{
    while (_blanks != Blanks::Kept && _isBlank())
        ++_position;
}

ExpressionReader::Kind ExpressionReader::_read()
{
    const bool isPassedOver = _blanks != Blanks::Kept && _isBlank();
    switch (_expression[_position++]) {
    case '\\':
        return _readEscape();
    case '[':
        _skipSet();
        return Kind::Set;
    case ')':
        return Kind::GroupEnd;
    case '|':
        return Kind::Alternative;
    case '.':
        return Kind::AnyCharacter;
    case '^':
        return Kind::LineStart;
    case '$':
        return Kind::LineEnd;
    case '*':
    case '+':
    case '?':
        return Kind::Repetition;
    case '{':
        return _readBrace();
    case '#':
        return _readHash();
    default:
        return isPassedOver ? Kind::Blank : Kind::Literal;
    }
}

/// Behind the brace, which is literal unless it encloses bounds.
ExpressionReader::Kind ExpressionReader::_readBrace()
{
    const std::string_view text = rest();
    const size_t end = text.find_first_not_of("0123456789,+- \t\n\v\f\r");
    const bool holdsBounds = text.find_first_not_of(SPACES) < end;
    if (end == std::string_view::npos || text[end] != '}' || !holdsBounds)
        return Kind::Literal;
    _position += end + 1;
    return Kind::Repetition;
}

ExpressionReader::Kind ExpressionReader::_readHash()
{
    if (_blanks != Blanks::SkippedWithComments)
        return Kind::Literal;
    _skipPast("\n");
    return Kind::Blank;
}

/// Behind the backslash.
ExpressionReader::Kind ExpressionReader::_readEscape()
{
    if (!takeIf("Q")) {
        _skipEscape();
        return Kind::Escape;
    }
    _skipPast("\\E");
    return Kind::Quotation;
}

void ExpressionReader::_skipEscape()
{
    if (isAtEnd())
        return;
    const char escaped = _expression[_position++];
    _position += sizeBehindEscaped(escaped, rest());
}

/// Behind the parenthesis.
ExpressionReader::Kind ExpressionReader::_readGroup(Group &group)
{
    if (takeIf("?"))
        return _readSpecialGroup(group);
    if (!takeIf("*"))
        return Kind::GroupStart;
    _skipPast(")");
    return Kind::Verb;
}

/// Behind the question mark.
ExpressionReader::Kind ExpressionReader::_readSpecialGroup(Group &group)
{
    if (takeIf("#")) {
        _skipPast(")");
        return Kind::Comment;
    }
    if (takeIf("<=") || takeIf("<!"))
        group = Group::LookBehind;
    else if (takeIf("=") || takeIf("!"))
        group = Group::LookAhead;
    else if (takeIf("("))
        group = _readConditional();
    else if (takeIf(":"))
        group = Group::Plain;
    else if (takeIf("|"))
        group = Group::BranchReset;
    else if (takeIf(">"))
        group = Group::Atomic;
    else
        return _readFlagsOrName(group);
    return Kind::GroupStart;
}

ExpressionReader::Kind ExpressionReader::_readFlagsOrName(Group &group)
{
    const size_t flags = countOf(rest(), FLAGS);
    _position += flags;
    if (flags > 0 && takeIf(")"))
        return Kind::Flags;
    group = Group::Unknown;
    if (flags > 0 && takeIf(":")) {
        group = Group::WithFlags;
        return Kind::GroupStart;
    }
    const bool isInAngles = rest().starts_with('<');
    const bool isInQuotes = rest().starts_with('\'');
    _position += std::min(rest().size(), rest().find_first_of(":)|>(['\\"));
    if (takeIf(")"))
        return Kind::Call;
    if (isInQuotes)
        takeIf("'");
    if (isInAngles || isInQuotes) {
        const bool isClosed = _skipPast(isInAngles ? ">" : "'");
        group = flags == 0 && isClosed ? Group::Named : Group::Unknown;
    } else if (!takeIf(":") && !takeIf("|")) {
        takeIf(">");
    }
    return Kind::GroupStart;
}

/// Behind the second parenthesis.
ExpressionReader::Group ExpressionReader::_readConditional()
{
    if (isNextOneOf("?"))
        --_position;
    else
        _skipPast(")");
    return Group::Conditional;
}

/// Behind the opening bracket.
void ExpressionReader::_skipSet()
{
    takeIf("^");
    takeIf("]");
    while (!isAtEnd() && !takeIf("]"))
        _readSetItem();
}

ExpressionReader::Kind ExpressionReader::_readSetItem()
{
    if (takeIf("\\")) {
        _skipEscape();
        return Kind::Escape;
    }
    if (takeIf("[:")) {
        _skipPast(":]");
        return Kind::ClassName;
    }
    if (rest().starts_with("[.") || rest().starts_with("[=")) {
        const char closing[] = {rest()[1], ']'};
        _position += 2;
        _skipPast(std::string_view(closing, 2));
        return Kind::CollatingName;
    }
    ++_position;
    return Kind::Literal;
}

ExpressionReader::SetContent ExpressionReader::contentOf(const ExpressionToken &set)
{
    ExpressionReader reader(set.text);
    reader.takeIf("[");
    reader.takeIf("^");
    SetContent content;
    while (!reader.isAtEnd()) {
        const size_t start = reader._position;
        content.isClosed = !content.items.empty() && reader.takeIf("]");
        if (content.isClosed)
            break;
        const Kind kind = reader._readSetItem();
        content.items.push_back({kind, {}, set.text.substr(start, reader._position - start)});
    }
    return content;
}

/// False, with everything skipped, where it doesn't come.
bool ExpressionReader::_skipPast(std::string_view end)
{
    const size_t found = _expression.find(end, _position);
    const bool isFound = found != std::string_view::npos;
    _position = isFound ? found + end.size() : _expression.size();
    return isFound;
}

bool mayChangeFlag(std::string_view expression, char flag)
{
    for (size_t i = expression.find("(?"); i != std::string_view::npos; i = expression.find("(?", i + 1)) {
        const std::string_view behind = expression.substr(i + 2);
        if (isOneOf(flag, behind.substr(0, countOf(behind, FLAGS))))
            return true;
    }
    return false;
}

} // namespace tidemark
