#include "text/UnicodeTextConverters.h"

#include "foundation/StopFlag.h"
#include "text/AsciiText.h"
#include "text/Utf8.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>

namespace tidemark {

namespace {

/// In rows that vector instructions take at once.
bool hasSurrogates(QStringView text)
{
    constexpr qsizetype ROW = 64;
    const auto isSurrogate = [](char16_t unit) { return (unit & 0xF800) == 0xD800; };
    const char16_t *units = text.utf16();
    qsizetype index = 0;
    for (; index + ROW <= text.size(); index += ROW) {
        quint16 found = 0;
        for (qsizetype column = 0; column < ROW; ++column)
            found |= quint16(isSurrogate(units[index + column]));
        if (found != 0)
            return true;
    }
    return std::any_of(units + index, units + text.size(), isSurrogate);
}

} // namespace

/// Surrogates are rare, and only where there are some they have to be paired.
bool isWellFormed(QStringView text)
{
    constexpr qsizetype PIECE = 1024;
    while (!text.isEmpty()) {
        qsizetype length = qMin(text.size(), PIECE);
        if (hasSurrogates(text.first(length))) {
            if (length < text.size() && text[length - 1].isHighSurrogate())
                ++length;
            if (!text.first(length).isValidUtf16())
                return false;
        }
        text = text.sliced(length);
    }
    return true;
}

std::optional<QByteArray> strictUtf8(QStringView text)
{
    QByteArray bytes;
    for (;;) {
        qsizetype length = qMin(text.size(), qsizetype(WORK_BETWEEN_STOP_CHECKS));
        if (length < text.size() && text[length - 1].isHighSurrogate())
            --length;
        const QStringView piece = text.first(length);
        if (!isWellFormed(piece))
            return std::nullopt;
        bytes += piece.toUtf8();
        if (length == text.size())
            return bytes;
        text = text.sliced(length);
        checkForStop();
    }
}

namespace {

std::optional<QString> textFromUtf8Piece(QByteArrayView bytes)
{
    if (isAscii(bytes))
        return QString::fromLatin1(bytes);
    // Stateless: a truncated last character is an error. ConvertInitialBom: a leading mark stays.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace

std::optional<QString> textFromUtf8(QByteArrayView bytes)
{
    QByteArrayView piece = firstUtf8Piece(bytes);
    std::optional<QString> text = textFromUtf8Piece(piece);
    if (piece.size() == bytes.size())
        return text;
    QByteArrayView rest = bytes;
    while (text && piece.size() < rest.size()) {
        checkForStop();
        rest = rest.sliced(piece.size());
        piece = firstUtf8Piece(rest);
        if (const std::optional<QString> next = textFromUtf8Piece(piece))
            text->append(*next);
        else
            text.reset();
    }
    return text;
}

std::optional<QString> Utf16TextConverter::decode(QByteArrayView bytes)
{
    const qsizetype count = bytes.size() / 2;
    // Where the order isn't stated the platform gives an empty text for half a character instead of refusing.
    if (count == 0 && !bytes.isEmpty() && shape() != EncodingShape::Opaque)
        return std::nullopt;
    if (count == 0)
        return QString();
    QString text(count, Qt::Uninitialized);
    for (qsizetype done = 0; done < count; done += WORK_BETWEEN_STOP_CHECKS) {
        const qsizetype piece = qMin(count - done, qsizetype(WORK_BETWEEN_STOP_CHECKS));
        if (_order == ByteOrder::BigEndian)
            qFromBigEndian<quint16>(bytes.data() + done * 2, piece, text.data() + done);
        else
            qFromLittleEndian<quint16>(bytes.data() + done * 2, piece, text.data() + done);
        if (done > 0)
            checkForStop();
    }
    return text;
}

std::optional<QByteArray> Utf16TextConverter::encode(QStringView text)
{
    if (text.isEmpty())
        return QByteArray();
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    if (_order == ByteOrder::BigEndian)
        qToBigEndian<quint16>(text.utf16(), text.size(), bytes.data());
    else
        qToLittleEndian<quint16>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

std::optional<QString> Utf32TextConverter::decode(QByteArrayView bytes)
{
    constexpr qsizetype UNIT = 4;
    if (bytes.size() < UNIT && !bytes.isEmpty())
        return std::nullopt;
    QString text;
    text.reserve(bytes.size() / UNIT);
    for (qsizetype position = 0; position + UNIT <= bytes.size(); position += UNIT) {
        const char *unit = bytes.data() + position;
        const char32_t codePoint =
            _order == ByteOrder::BigEndian ? qFromBigEndian<quint32>(unit) : qFromLittleEndian<quint32>(unit);
        if (codePoint > QChar::LastValidCodePoint || QChar::isSurrogate(codePoint))
            return std::nullopt;
        text.append(QStringView(QChar::fromUcs4(codePoint)));
        if (position > 0 && position % WORK_BETWEEN_STOP_CHECKS == 0)
            checkForStop();
    }
    return text;
}

std::optional<QByteArray> Utf32TextConverter::encode(QStringView text)
{
    if (text.isEmpty())
        return QByteArray();
    if (!isWellFormed(text))
        return std::nullopt;
    const QList<uint> codePoints = text.toUcs4();
    QByteArray bytes(codePoints.size() * 4, Qt::Uninitialized);
    if (_order == ByteOrder::BigEndian)
        qToBigEndian<quint32>(codePoints.constData(), codePoints.size(), bytes.data());
    else
        qToLittleEndian<quint32>(codePoints.constData(), codePoints.size(), bytes.data());
    return bytes;
}

} // namespace tidemark
