#include "text/Utf8.h"

#include "foundation/StopFlag.h"
#include "text/AsciiText.h"
#include "text/TextEncoding.h"

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

QByteArrayView firstUtf8Piece(QByteArrayView bytes)
{
    qsizetype length = WORK_BETWEEN_STOP_CHECKS;
    if (bytes.size() <= length)
        return bytes;
    for (int i = 0; i < 3 && (bytes[length] & 0xC0) == 0x80; ++i)
        --length;
    return bytes.first(length);
}

bool isValidUtf8(QByteArrayView bytes)
{
    for (;;) {
        const QByteArrayView piece = firstUtf8Piece(bytes);
        // Most text is ASCII by the block, which vector instructions tell faster.
        if (!isAscii(piece) && !QUtf8StringView(piece.data(), piece.size()).isValidUtf8())
            return false;
        if (piece.size() == bytes.size())
            return true;
        bytes = bytes.sliced(piece.size());
        checkForStop();
    }
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
