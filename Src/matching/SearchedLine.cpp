#include "matching/SearchedLine.h"

#include "text/CharacterSets.h"
#include "text/LineEnds.h"
#include "text/TextEncoding.h"
#include "text/Utf8.h"

namespace tidemark {

namespace {

/// With U+FFFD for each half of a surrogate pair.
QByteArray wellFormedUtf8(QStringView text)
{
    QString whole = text.toString();
    for (qsizetype index = 0; index < whole.size(); ++index) {
        const bool isPair =
            whole[index].isHighSurrogate() && index + 1 < whole.size() && whole[index + 1].isLowSurrogate();
        if (isPair)
            ++index;
        else if (whole[index].isSurrogate())
            whole[index] = QChar::ReplacementCharacter;
    }
    return whole.toUtf8();
}

} // namespace

SearchedLine::SearchedLine(QStringView text, QByteArrayView bytes, const SearchEffort &effort)
    : _text(text), _bytes(bytes), _effort(effort)
{}

QByteArrayView SearchedLine::bytes()
{
    if (_bytes.isNull()) {
        _ownBytes = generalizedUtf8(_text);
        _bytes = _ownBytes;
    }
    return _bytes;
}

TextRange SearchedLine::rest()
{
    if (!std::exchange(_isBegun, true))
        _rest = {0, rangeWithoutNewlinesAtEnds(_text).length};
    return _rest;
}

void SearchedLine::continueAt(qint64 position)
{
    if (position > _rest.end())
        finish();
    else
        _rest = {position, _rest.end() - position};
}

QByteArrayView SearchedLine::characters()
{
    if (_characters.isNull()) {
        if (_bytes.isNull()) {
            _ownCharacters = wellFormedUtf8(_text);
            _characters = withoutLineEnd(_ownCharacters);
        } else {
            _characters = withoutLineEnd(_bytes);
        }
    }
    return _characters;
}

TextRange SearchedLine::unitsOf(TextRange range)
{
    const qint64 location = _unitOf(range.location);
    return {location, _unitOf(range.end()) - location};
}

qint64 SearchedLine::_unitOf(qint64 byte)
{
    if (byte < _knownByte)
        _knownByte = _knownUnit = 0;
    for (; _knownByte < byte; ++_knownByte) {
        const auto value = static_cast<unsigned char>(_characters[_knownByte]);
        // Characters of four bytes take two units.
        _knownUnit += (value & 0xC0) != 0x80 ? 1 : 0;
        _knownUnit += value >= 0xF0 ? 1 : 0;
    }
    return _knownUnit;
}

} // namespace tidemark
