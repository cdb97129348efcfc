#include "replace/ReplacementFormat.h"

#include "foundation/LocalizedText.h"

#include <unicode/ustring.h>

#include <array>

namespace tidemark {

namespace {

constexpr int MOST_GROUP_DIGITS = 5;

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isNameCharacter(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

/// The first character of the text as a capital where it stands at the start of a word, "ss" as "Ss".
QString titleCase(QStringView character)
{
    std::array<char16_t, 16> result = {};
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = u_strToTitle(result.data(), int32_t(result.size()), character.utf16(),
                                        int32_t(character.size()), nullptr, "", &status);
    return U_SUCCESS(status) ? QString::fromUtf16(result.data(), length) : character.toString();
}

/// Puts texts together, in the case that was asked for.
class CasedText
{
public:
    enum class Case { AsItIs, Lower, Upper };

    void append(QStringView text)
    {
        if (text.isEmpty())
            return;
        QString cased = text.toString();
        if (_case != Case::AsItIs)
            cased = _case == Case::Upper ? cased.toUpper() : cased.toLower();
        if (_next != Case::AsItIs) {
            const qsizetype length = cased[0].isHighSurrogate() && cased.size() > 1 ? 2 : 1;
            const QString first = cased.first(length);
            cased.replace(0, length, _next == Case::Upper ? titleCase(first) : first.toLower());
            _next = Case::AsItIs;
        }
        _text += cased;
    }
    void setNext(Case next) { _next = next; }
    void setCase(Case untilEnd) { _case = untilEnd; }
    QString take() { return std::move(_text); }

private:
    QString _text;
    Case _case = Case::AsItIs;
    Case _next = Case::AsItIs;
};

} // namespace

/// Thrown where a format is broken.
struct BrokenFormat
{
    QString message;
    qsizetype position;
};

class FormatParser
{
public:
    FormatParser(QStringView format, const UnicodeExpression &expression)
        : _format(format), _expression(expression)
    {}

    ReplacementFormat parse()
    {
        while (!_atEnd()) {
            const QChar c = _format[_position];
            ++_position;
            if (c == u'$')
                _readDollar();
            else if (c == u'\\')
                _readBackslash();
            else
                _addLiteral(QStringView(&c, 1));
        }
        return std::move(_result);
    }

private:
    using Kind = ReplacementFormat::Kind;

    bool _atEnd() const { return _position == _format.size(); }
    bool _takeIf(QChar c)
    {
        if (_atEnd() || _format[_position] != c)
            return false;
        ++_position;
        return true;
    }
    [[noreturn]] static void _fail(qsizetype start, const QString &message)
    {
        throw BrokenFormat{message, start};
    }

    void _addLiteral(QStringView text)
    {
        if (_result._pieces.empty() || _result._pieces.back().kind != Kind::Literal)
            _add(Kind::Literal);
        _result._pieces.back().text += text;
    }
    void _add(Kind kind, const QList<int> &groups = {}) { _result._pieces.push_back({kind, {}, groups}); }

    void _readDollar();
    void _readBackslash();
    void _readCharacterNumber(qsizetype start);
    QStringView _braced(qsizetype start);
    void _addNumbered(qsizetype start, QStringView digits);
    void _addNamed(qsizetype start, QStringView name);
    void _addLastGroup();

    QStringView _format;
    const UnicodeExpression &_expression;
    qsizetype _position = 0;
    ReplacementFormat _result;
};

void FormatParser::_readDollar()
{
    const qsizetype start = _position - 1;
    if (_takeIf(u'$'))
        return _addLiteral(u"$");
    if (_takeIf(u'&'))
        return _add(Kind::Group, {0});
    if (_takeIf(u'`'))
        return _add(Kind::Before);
    if (_takeIf(u'\''))
        return _add(Kind::After);
    if (_takeIf(u'+')) {
        if (!_takeIf(u'{'))
            return _addLastGroup();
        return _addNamed(start, _braced(start));
    }
    if (_takeIf(u'{')) {
        const QStringView inside = _braced(start);
        return isDigit(inside[0]) ? _addNumbered(start, inside) : _addNamed(start, inside);
    }
    const qsizetype digits = _position;
    while (!_atEnd() && isDigit(_format[_position]))
        ++_position;
    if (_position == digits)
        _fail(start, localizedString("a dollar sign stands for itself only as $$"));
    _addNumbered(start, _format.sliced(digits, _position - digits));
}

/// Behind the opening brace, past the closing one.
QStringView FormatParser::_braced(qsizetype start)
{
    const qsizetype inside = _position;
    while (!_atEnd() && isNameCharacter(_format[_position]))
        ++_position;
    const QStringView text = _format.sliced(inside, _position - inside);
    if (text.isEmpty() || !_takeIf(u'}'))
        _fail(start, localizedString("a number or a name and a closing brace are missing"));
    return text;
}

void FormatParser::_addNumbered(qsizetype start, QStringView digits)
{
    bool isNumber = false;
    const int group = digits.size() <= MOST_GROUP_DIGITS ? digits.toInt(&isNumber) : 0;
    if (!isNumber || group > _expression.groupCount())
        _fail(start, localizedString("the find text has no such group"));
    _add(Kind::Group, {group});
}

void FormatParser::_addNamed(qsizetype start, QStringView name)
{
    const QList<int> groups = _expression.groupsNamed(name.toString());
    if (groups.isEmpty())
        _fail(start, localizedString("the find text has no such group"));
    _add(Kind::Group, groups);
}

/// The last one that took part.
void FormatParser::_addLastGroup()
{
    QList<int> groups;
    for (int group = _expression.groupCount(); group > 0; --group)
        groups << group;
    _add(Kind::Group, groups);
}

void FormatParser::_readBackslash()
{
    const qsizetype start = _position - 1;
    if (_atEnd())
        _fail(start, localizedString("a backslash stands for itself only when it is doubled"));
    const QChar c = _format[_position];
    ++_position;
    switch (c.unicode()) {
    case u'n':
        return _addLiteral(u"\n");
    case u't':
        return _addLiteral(u"\t");
    case u'r':
        return _addLiteral(u"\r");
    case u'f':
        return _addLiteral(u"\f");
    case u'a':
        return _addLiteral(u"\a");
    case u'e':
        return _addLiteral(u"\x1B");
    case u'x':
        return _readCharacterNumber(start);
    case u'l':
        return _add(Kind::NextLower);
    case u'u':
        return _add(Kind::NextUpper);
    case u'L':
        return _add(Kind::Lower);
    case u'U':
        return _add(Kind::Upper);
    case u'E':
        return _add(Kind::EndOfCase);
    default:
        if (isNameCharacter(c) && c != u'_')
            _fail(start, localizedString("unknown character behind the backslash"));
        _addLiteral(QStringView(&c, 1));
    }
}

void FormatParser::_readCharacterNumber(qsizetype start)
{
    const bool isBraced = _takeIf(u'{');
    const qsizetype digits = _position;
    const qsizetype most = isBraced ? 8 : 2;
    const auto isHexadecimal = [](QChar c) {
        return isDigit(c) || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    };
    while (!_atEnd() && _position - digits < most && isHexadecimal(_format[_position]))
        ++_position;
    const uint number = _format.sliced(digits, _position - digits).toUInt(nullptr, 16);
    const bool isClosed = !isBraced || _takeIf(u'}');
    if (digits == _position || !isClosed || number > 0x10FFFF || QChar::isSurrogate(number))
        _fail(start, localizedString("this is no number of a character"));
    _addLiteral(QString::fromUcs4(reinterpret_cast<const char32_t *>(&number), 1));
}

std::optional<ReplacementFormat>
ReplacementFormat::parsed(QStringView format, const UnicodeExpression &expression, TextFault &fault)
{
    try {
        return FormatParser(format, expression).parse();
    } catch (const BrokenFormat &broken) {
        fault = {broken.message, broken.position};
        return {};
    }
}

QStringView ReplacementFormat::_textOf(const Piece &piece, QStringView line, const QList<TextRange> &groups)
{
    if (piece.kind == Kind::Literal)
        return piece.text;
    if (piece.kind == Kind::Before)
        return line.first(groups[0].location);
    if (piece.kind == Kind::After)
        return line.sliced(groups[0].end());
    for (const int group : piece.groups) {
        if (groups[group].isFound())
            return line.sliced(groups[group].location, groups[group].length);
    }
    return {};
}

QString ReplacementFormat::expansion(QStringView line, const QList<TextRange> &groups) const
{
    using Case = CasedText::Case;
    CasedText result;
    for (const Piece &piece : _pieces) {
        switch (piece.kind) {
        case Kind::NextLower:
        case Kind::NextUpper:
            result.setNext(piece.kind == Kind::NextUpper ? Case::Upper : Case::Lower);
            break;
        case Kind::Lower:
        case Kind::Upper:
            result.setCase(piece.kind == Kind::Upper ? Case::Upper : Case::Lower);
            break;
        case Kind::EndOfCase:
            result.setCase(Case::AsItIs);
            break;
        default:
            result.append(_textOf(piece, line, groups));
        }
    }
    return result.take();
}

} // namespace tidemark
