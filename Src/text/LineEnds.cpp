#include "text/LineEnds.h"

#include "text/ByteScan.h"

namespace tidemark {

namespace {

template <typename Text, typename Character>
Text lineWithoutEnd(Text line, Character lineFeed, Character carriageReturn)
{
    if (line.endsWith(lineFeed))
        line.chop(1);
    if (line.endsWith(carriageReturn))
        line.chop(1);
    return line;
}

} // namespace

qsizetype lengthOfFirstLine(QByteArrayView bytes)
{
    const qsizetype end = indexOfLineEnd(bytes);
    if (end < 0)
        return bytes.size();
    const bool isPair = bytes[end] == '\r' && end + 1 < bytes.size() && bytes[end + 1] == '\n';
    return end + (isPair ? 2 : 1);
}

QByteArrayView withoutLineEnd(QByteArrayView line)
{
    return lineWithoutEnd(line, '\n', '\r');
}

QStringView withoutLineEnd(QStringView line)
{
    return lineWithoutEnd(line, u'\n', u'\r');
}

qint64 countLines(QStringView text)
{
    if (!text.contains(u'\r'))
        return text.count(u'\n') + (text.isEmpty() || text.endsWith(u'\n') ? 0 : 1);
    qint64 count = 0;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const bool endsLine =
            text[index] == u'\n' || (text[index] == u'\r' && text.mid(index + 1, 1) != u"\n");
        if (endsLine || index + 1 == text.size())
            ++count;
    }
    return count;
}

} // namespace tidemark
