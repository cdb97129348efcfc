#include "foundation/Utf8.h"

#include "foundation/AsciiText.h"
#include "foundation/TextEncoding.h"

#include <QUtf8StringView>

namespace tidemark {

namespace {

void appendSurrogate(QByteArray &bytes, char16_t unit)
{
    bytes.append(char(0xE0 | (unit >> 12)));
    bytes.append(char(0x80 | ((unit >> 6) & 0x3F)));
    bytes.append(char(0x80 | (unit & 0x3F)));
}

} // namespace

bool isValidUtf8(QByteArrayView bytes)
{
    // Most text is ASCII by the block, which vector instructions tell faster.
    return isAscii(bytes) || QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8();
}

QByteArray generalizedUtf8(QStringView text)
{
    if (isWellFormed(text))
        return text.toUtf8();
    QByteArray bytes;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const qsizetype length =
            text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate() ? 2
                                                                                                         : 1;
        if (length == 1 && text[index].isSurrogate())
            appendSurrogate(bytes, text[index].unicode());
        else
            bytes.append(text.sliced(index, length).toUtf8());
        index += length - 1;
    }
    return bytes;
}

} // namespace tidemark
