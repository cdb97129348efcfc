#include "matching/SearchedLine.h"

#include "foundation/CharacterSets.h"
#include "foundation/Utf8.h"

namespace tidemark {

SearchedLine::SearchedLine(QStringView text, QByteArrayView bytes)
    : _text(text), _bytes(bytes), _rest{0, rangeWithoutNewlinesAtEnds(text).length}, _effort(text.size())
{}

QByteArrayView SearchedLine::bytes()
{
    if (_bytes.isNull()) {
        _ownBytes = generalizedUtf8(_text);
        _bytes = _ownBytes;
    }
    return _bytes;
}

void SearchedLine::continueAt(qint64 position)
{
    if (position > _rest.end())
        finish();
    else
        _rest = {position, _rest.end() - position};
}

} // namespace tidemark
