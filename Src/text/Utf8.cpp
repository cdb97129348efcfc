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

/// Long enough to make each call worth its while, and so short that most pieces of most text are ASCII.
constexpr qsizetype VALIDATED_PIECE = 1024;

QByteArrayView firstPiece(QByteArrayView bytes, qsizetype length)
{
    if (bytes.size() <= length)
        return bytes;
    for (int i = 0; i < 3 && (bytes[length] & 0xC0) == 0x80; ++i)
        --length;
    return bytes.first(length);
}

} // namespace

QByteArrayView firstUtf8Piece(QByteArrayView bytes)
{
    return firstPiece(bytes, WORK_BETWEEN_STOP_CHECKS);
}

bool isValidUtf8(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const QByteArrayView piece = firstPiece(bytes, VALIDATED_PIECE);
        // Vector instructions tell ASCII faster.
        if (!isAscii(piece) && !QUtf8StringView(piece.data(), piece.size()).isValidUtf8())
            return false;
        bytes = bytes.sliced(piece.size());
        if (!bytes.isEmpty())
            checkForStop();
    }
    return true;
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
