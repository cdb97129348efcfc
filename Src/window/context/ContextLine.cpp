#include "window/context/ContextLine.h"

#include "text/CharacterSets.h"
#include "window/ShownCharacters.h"

#include <algorithm>

namespace tidemark {

namespace {

constexpr qsizetype TAB = 4;

/// Never between the halves of a character.
qsizetype wholeCharacterAt(QStringView line, qsizetype position)
{
    const bool isSplit = position > 0 && position < line.size() && line[position].isLowSurrogate();
    return isSplit ? position - 1 : position;
}

/// Nothing for the second half of a character.
QStringView characterAt(QStringView text, qsizetype index)
{
    const QChar unit = text[index];
    const bool isSecond = unit.isLowSurrogate() && index > 0 && text[index - 1].isHighSurrogate();
    const bool isFirst =
        unit.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
    return text.mid(index, isSecond ? 0 : isFirst ? 2 : 1);
}

bool isControl(QStringView character)
{
    return isControlCharacter(character.size() == 2 ? QChar::surrogateToUcs4(character[0], character[1])
                                                    : char32_t(character[0].unicode()));
}

} // namespace

ContextLine::ContextLine(const QString &line, bool isWhole, const QList<ContextMatch> &matches,
                         qsizetype center)
{
    const qsizetype latest = std::max(qsizetype(0), line.size() - MOST_UNITS);
    _first = wholeCharacterAt(line, std::clamp(center - MOST_UNITS / 2, qsizetype(0), latest));
    const qsizetype end = wholeCharacterAt(line, std::min(_first + MOST_UNITS, line.size()));
    if (_first > 0)
        _shown += ELLIPSIS;
    auto next = std::find_if(matches.begin(), matches.end(),
                             [this](const ContextMatch &match) { return match.range.end() >= _first; });
    for (qsizetype position = _first; position <= end; ++position) {
        for (; next != matches.end() && (next->range.end() <= position || position == end); ++next)
            _mark(*next);
        if (position < end)
            _append(line, position);
    }
    _places.push_back(_shown.size());
    if (end < line.size() || !isWhole)
        _shown += ELLIPSIS;
}

void ContextLine::_append(QStringView line, qsizetype position)
{
    _places.push_back(_shown.size());
    const QStringView character = characterAt(line, position);
    if (character == u'\t')
        _shown += QString(TAB - _shown.size() % TAB, u' ');
    else if (!character.isEmpty() && isControl(character))
        _shown += BULLET;
    else
        _shown += character;
}

/// At its end, which is reached.
void ContextLine::_mark(const ContextMatch &match)
{
    const auto before = qsizetype(match.range.location) - _first;
    const auto reached = qsizetype(_places.size());
    if (before > reached || (before == reached && match.range.length > 0))
        return;
    const bool begins = before >= 0 && before < reached;
    const qsizetype start = begins ? _places[size_t(before)] : before < 0 ? 0 : _shown.size();
    _marked << Marked{
        {start, _shown.size() - start}, match.isHighlighted, match.replacement.has_value(), match.isReplaced};
    if (match.replacement)
        _insert(*match.replacement);
}

void ContextLine::_insert(const QString &replacement)
{
    QString text = replacement;
    text.replace(QLatin1String("\r\n"), QString(RETURN_ARROW));
    const qsizetype start = _shown.size();
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QStringView character = characterAt(text, index);
        if (character == u'\n' || character == u'\r')
            _shown += RETURN_ARROW;
        else if (!character.isEmpty() && isControl(character))
            _shown += character == u'\t' ? QChar(u' ') : QChar(BULLET);
        else
            _shown += character;
    }
    if (_shown.size() > start)
        _marked << Marked{{start, _shown.size() - start}, false, false, true};
}

qsizetype ContextLine::shownAt(qsizetype position) const
{
    return _places[size_t(std::clamp(position, first(), last()) - _first)];
}

qsizetype ContextLine::positionAt(qsizetype shown) const
{
    const auto behind = std::upper_bound(_places.begin(), _places.end(), shown);
    const auto place = behind == _places.begin() ? behind : behind - 1;
    return _first + (place - _places.begin());
}

} // namespace tidemark
