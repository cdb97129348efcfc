#include "search/WildcardPattern.h"

#include <QChar>
#include <QList>

#include <algorithm>
#include <optional>

namespace tidemark {

WildcardSubject::WildcardSubject(std::string_view fileName)
{
    const auto isAscii = [](char byte) { return (byte & 0x80) == 0; };
    if (!std::all_of(fileName.begin(), fileName.end(), isAscii)) {
        _setText(QString::fromUtf8(fileName.data(), qsizetype(fileName.size())));
        return;
    }
    _characters.resize(qsizetype(fileName.size()));
    std::copy(fileName.begin(), fileName.end(), _characters.begin());
}

WildcardSubject::WildcardSubject(const QString &name)
{
    _setText(name);
}

void WildcardSubject::_setText(const QString &text)
{
    for (const uint character : text.normalized(QString::NormalizationForm_C).toUcs4())
        _characters.append(character);
}

WildcardPattern::WildcardPattern(const QString &pattern)
{
    const QList<uint> characters = pattern.normalized(QString::NormalizationForm_C).toUcs4();
    for (qsizetype position = 0; position < characters.size();) {
        Element element;
        const uint character = characters[position];
        if (character == '[' && _parseSet(characters, position, element)) {
            _elements.push_back(std::move(element));
            continue;
        }
        ++position;
        if (character == '*')
            element.kind = Element::Kind::AnySequence;
        else if (character == '?')
            element.kind = Element::Kind::Any;
        else
            element.character = QChar::toCaseFolded(character);
        _elements.push_back(std::move(element));
    }
}

/// Leaves the position alone when nothing closes the set.
bool WildcardPattern::_parseSet(const QList<uint> &pattern, qsizetype &position, Element &element)
{
    qsizetype next = position + 1;
    const bool negated = next < pattern.size() && (pattern[next] == '!' || pattern[next] == '^');
    if (negated)
        ++next;
    const qsizetype close = pattern.indexOf(']', next + 1);
    if (close < 0)
        return false;

    element.kind = Element::Kind::Set;
    element.negated = negated;
    while (next < close) {
        const bool isRange = next + 2 < close && pattern[next + 1] == '-';
        element.ranges.push_back({pattern[next], pattern[isRange ? next + 2 : next]});
        next += isRange ? 3 : 1;
    }
    position = close + 1;
    return true;
}

bool WildcardPattern::Element::accepts(char32_t candidate) const
{
    const auto contains = [this](char32_t form) {
        return std::any_of(ranges.begin(), ranges.end(),
                           [form](const Range &range) { return range.first <= form && form <= range.last; });
    };
    switch (kind) {
    case Kind::Character:
        return candidate == character || QChar::toCaseFolded(candidate) == character;
    case Kind::Set:
        return negated != (contains(candidate) || contains(QChar::toLower(candidate)) ||
                           contains(QChar::toUpper(candidate)));
    case Kind::Any:
    case Kind::AnySequence:
        break;
    }
    return true;
}

bool WildcardPattern::matches(const WildcardSubject &subject) const
{
    const auto &name = subject.characters();
    qsizetype position = 0;
    size_t element = 0;
    // Giving the latest star one character more is enough: what an earlier one could still take, it can too.
    std::optional<size_t> star;
    qsizetype starEnd = 0;
    while (position < name.size()) {
        if (element < _elements.size() && _elements[element].kind == Element::Kind::AnySequence) {
            star = element++;
            starEnd = position;
        } else if (element < _elements.size() && _elements[element].accepts(name[position])) {
            ++element;
            ++position;
        } else if (star) {
            element = *star + 1;
            position = ++starEnd;
        } else {
            return false;
        }
    }
    while (element < _elements.size() && _elements[element].kind == Element::Kind::AnySequence)
        ++element;
    return element == _elements.size();
}

} // namespace tidemark
