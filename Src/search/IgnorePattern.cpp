#include "search/IgnorePattern.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

namespace tidemark {

namespace {

struct NamedClass
{
    QByteArrayView name;
    int (*holds)(int);
};

// They are asked about ASCII only, on which every locale agrees.
constexpr std::array<NamedClass, 12> NAMED_CLASSES = {{
    {"alnum", std::isalnum},
    {"alpha", std::isalpha},
    {"blank", std::isblank},
    {"cntrl", std::iscntrl},
    {"digit", std::isdigit},
    {"graph", std::isgraph},
    {"lower", std::islower},
    {"print", std::isprint},
    {"punct", std::ispunct},
    {"space", std::isspace},
    {"upper", std::isupper},
    {"xdigit", std::isxdigit},
}};

uchar otherCase(uchar byte)
{
    const uchar lower = uchar(byte | 0x20);
    return lower >= 'a' && lower <= 'z' ? uchar(byte ^ 0x20) : byte;
}

} // namespace

QByteArray foldedBytes(QByteArrayView bytes)
{
    QByteArray folded = bytes.toByteArray();
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](char byte) { return char(foldedByte(uchar(byte))); });
    return folded;
}

class IgnorePattern::Parser
{
public:
    Parser(IgnorePattern &pattern, QByteArrayView body) : _pattern(pattern), _body(body) {}

    Fault parse()
    {
        while (_next < _body.size() && _fault == Fault::None) {
            const char character = _body[_next++];
            if (character == '*')
                _takeStars();
            else if (character == '?')
                _add({Element::Kind::NoSlash});
            else if (character == '[')
                _takeClass();
            else if (character != '\\')
                _addByte(character);
            else if (_next == _body.size())
                _fault = Fault::LoneBackslash;
            else
                _addByte(_body[_next++]);
            _isPlainSoFar = _isPlainSoFar && character != '*' && character != '?' && character != '[' &&
                            character != '\\';
        }
        return _fault;
    }

private:
    void _add(Element element) { _pattern._elements.push_back(element); }
    void _addByte(char byte)
    {
        const uchar value = uchar(byte);
        _add({Element::Kind::Byte, _pattern._ignoresCase ? foldedByte(value) : value});
    }

    /// Several stars cross slashes where they stand alone between two of them; what stands before the first
    /// wildcard counts as one.
    void _takeStars()
    {
        const qsizetype first = _next - 1;
        while (_next < _body.size() && _body[_next] == '*')
            ++_next;
        const bool beginsComponent = first == 0 || _body[first - 1] == '/' || _isPlainSoFar;
        const QByteArrayView rest = _body.sliced(_next);
        const bool endsComponent = rest.isEmpty() || rest.startsWith('/') || rest.startsWith("\\/");
        if (_next - first < 2 || !beginsComponent || !endsComponent) {
            _add({Element::Kind::Star});
        } else if (rest.startsWith('/')) {
            ++_next;
            _add({Element::Kind::FoldersBelow});
        } else {
            _add({Element::Kind::Anything});
        }
    }

    void _takeClass()
    {
        _set.reset();
        const bool isNegated = _next < _body.size() && (_body[_next] == '!' || _body[_next] == '^');
        if (isNegated)
            ++_next;
        std::optional<uchar> previous;
        // The first is a member even if it is a bracket.
        do {
            if (_next == _body.size())
                _fault = Fault::OpenClass;
            else
                previous = _takeMember(previous);
        } while (_fault == Fault::None && (_next == _body.size() || _body[_next] != ']'));
        if (_fault != Fault::None)
            return;
        ++_next;
        if (_pattern._ignoresCase)
            _addOtherCases();
        if (isNegated)
            _set.flip();
        _set.reset('/');
        _add({Element::Kind::Class, 0, quint32(_pattern._classes.size())});
        _pattern._classes.push_back(_set);
    }

    /// What a range may begin with, if anything.
    std::optional<uchar> _takeMember(std::optional<uchar> previous)
    {
        const char character = _body[_next++];
        const QByteArrayView rest = _body.sliced(_next);
        if (character == '-' && previous && !rest.isEmpty() && rest.front() != ']') {
            const std::optional<uchar> last = _takeMemberByte(_body[_next++]);
            for (int byte = *previous; last && byte <= *last; ++byte)
                _set.set(size_t(byte));
            return {};
        }
        if (character == '[' && rest.startsWith(':') && _takeNamedClass())
            return {};
        const std::optional<uchar> byte = _takeMemberByte(character);
        if (byte)
            _set.set(*byte);
        return byte;
    }

    std::optional<uchar> _takeMemberByte(char character)
    {
        if (character != '\\')
            return uchar(character);
        if (_next < _body.size())
            return uchar(_body[_next++]);
        _fault = Fault::OpenClass;
        return {};
    }

    /// False where the bracket is a member like another. Stands behind the bracket.
    bool _takeNamedClass()
    {
        const qsizetype nameStart = _next + 1;
        const qsizetype bracket = _body.indexOf(']', nameStart);
        if (bracket < 0) {
            _fault = Fault::OpenClass;
            return true;
        }
        if (bracket == nameStart || _body[bracket - 1] != ':')
            return false;
        const QByteArrayView name = _body.sliced(nameStart, bracket - 1 - nameStart);
        const auto found = std::find_if(NAMED_CLASSES.begin(), NAMED_CLASSES.end(),
                                        [name](const NamedClass &each) { return each.name == name; });
        if (found == NAMED_CLASSES.end()) {
            _fault = Fault::UnknownClass;
            return true;
        }
        for (int byte = 0; byte < 128; ++byte) {
            if (found->holds(byte))
                _set.set(size_t(byte));
        }
        _next = bracket + 1;
        return true;
    }

    void _addOtherCases()
    {
        const ByteSet given = _set;
        for (size_t byte = 0; byte < 128; ++byte) {
            if (given[byte])
                _set.set(otherCase(uchar(byte)));
        }
    }

    IgnorePattern &_pattern;
    QByteArrayView _body;
    qsizetype _next = 0;
    ByteSet _set;
    Fault _fault = Fault::None;
    bool _isPlainSoFar = true;
};

IgnorePattern::IgnorePattern(QByteArrayView text, CaseRule caseRule)
    : _text(text.toByteArray()), _ignoresCase(caseRule == CaseRule::Ignore)
{
    QByteArrayView body = _text;
    if (body.startsWith('!')) {
        _takesBack = true;
        body = body.sliced(1);
    }
    if (body.endsWith('/')) {
        _isForFoldersOnly = true;
        body.chop(1);
    }
    _isForPaths = body.contains('/');
    if (body.startsWith('/'))
        body = body.sliced(1);
    _fault = body.isEmpty() ? Fault::Empty : Parser(*this, body).parse();
    if (_fault == Fault::None)
        _findLiterals();
}

void IgnorePattern::_findLiterals()
{
    const bool hasStar = _elements.front().kind == Element::Kind::Star;
    QByteArray bytes;
    for (const Element &element : _elements) {
        if (element.kind == Element::Kind::Byte)
            bytes.append(char(element.byte));
        else if (!hasStar || &element != &_elements.front())
            return;
    }
    if (!hasStar)
        _literal = bytes;
    else if (!_isForPaths)
        _literalEnd = bytes.isNull() ? QByteArray("") : bytes;
}

bool IgnorePattern::_accepts(const Element &element, uchar byte) const
{
    switch (element.kind) {
    case Element::Kind::Byte:
        return element.byte == (_ignoresCase ? foldedByte(byte) : byte);
    case Element::Kind::NoSlash:
        return byte != '/';
    case Element::Kind::Class:
        return _classes[element.classIndex][byte];
    default:
        return false;
    }
}

bool IgnorePattern::matches(QByteArrayView subject) const
{
    using Kind = Element::Kind;
    if (_fault != Fault::None)
        return false;
    if (!_literal.isNull() && !_ignoresCase)
        return subject == _literal;
    // Where to go on when what follows the latest star, and the latest that crosses slashes, doesn't match.
    // Only these two can still do what an earlier one could.
    struct Retry
    {
        size_t element = 0;
        qsizetype position = -1;
    };
    Retry star;
    Retry crossing;
    qsizetype position = 0;
    size_t element = 0;
    for (;;) {
        const Kind kind = element < _elements.size() ? _elements[element].kind : Kind::Byte;
        if (element < _elements.size() && kind == Kind::Star) {
            star = {element++, position};
        } else if (element < _elements.size() && (kind == Kind::Anything || kind == Kind::FoldersBelow)) {
            crossing = {element++, position};
            star = {};
        } else if (element == _elements.size() && position == subject.size()) {
            return true;
        } else if (element < _elements.size() && position < subject.size() &&
                   _accepts(_elements[element], uchar(subject[position]))) {
            ++element;
            ++position;
        } else if (star.position >= 0 && star.position < subject.size() && subject[star.position] != '/') {
            position = ++star.position;
            element = star.element + 1;
        } else if (crossing.position >= 0 && crossing.position < subject.size()) {
            star = {};
            if (_elements[crossing.element].kind == Kind::FoldersBelow) {
                crossing.position = subject.indexOf('/', crossing.position);
                if (crossing.position < 0)
                    return false;
            }
            position = ++crossing.position;
            element = crossing.element + 1;
        } else {
            return false;
        }
    }
}

} // namespace tidemark
