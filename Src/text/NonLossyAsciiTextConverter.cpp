#include "text/NonLossyAsciiTextConverter.h"

namespace tidemark {

namespace {

struct Escape
{
    char16_t unit;
    qsizetype length; ///< of what follows the backslash
};

/// The value of exactly `count` digits.
std::optional<uint> digitsValue(QByteArrayView bytes, qsizetype count, int base)
{
    constexpr QByteArrayView DIGITS = "0123456789abcdef";
    if (bytes.size() < count)
        return std::nullopt;
    uint value = 0;
    for (const char byte : bytes.first(count)) {
        const char lowerCase = byte >= 'A' && byte <= 'F' ? static_cast<char>(byte - 'A' + 'a') : byte;
        const qsizetype digit = DIGITS.indexOf(lowerCase);
        if (digit < 0 || digit >= base)
            return std::nullopt;
        value = value * static_cast<uint>(base) + static_cast<uint>(digit);
    }
    return value;
}

/// What follows a backslash.
std::optional<Escape> readEscape(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return std::nullopt;
    if (bytes.front() == '\\')
        return Escape{u'\\', 1};
    const bool isHexadecimal = bytes.front() == 'u' || bytes.front() == 'U';
    const auto value = isHexadecimal ? digitsValue(bytes.sliced(1), 4, 16) : digitsValue(bytes, 3, 8);
    if (!value || (!isHexadecimal && *value > 0xFF))
        return std::nullopt;
    return Escape{static_cast<char16_t>(*value), isHexadecimal ? 5 : 3};
}

bool isWrittenAsIs(QChar character)
{
    return character == u'\t' || character == u'\n' || character == u'\r' ||
           (character >= u' ' && character <= u'~');
}

} // namespace

std::optional<QString> NonLossyAsciiTextConverter::decode(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (qsizetype position = 0; position < bytes.size(); ++position) {
        const auto byte = static_cast<uchar>(bytes[position]);
        if (byte >= 0x80)
            return std::nullopt;
        if (byte != '\\') {
            text += QLatin1Char(static_cast<char>(byte));
            continue;
        }
        const auto escape = readEscape(bytes.sliced(position + 1));
        if (!escape)
            return std::nullopt;
        text += QChar(escape->unit);
        position += escape->length;
    }
    return text;
}

std::optional<QByteArray> NonLossyAsciiTextConverter::encode(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar character : text) {
        const uint unit = character.unicode();
        if (character == u'\\')
            bytes += "\\\\";
        else if (isWrittenAsIs(character))
            bytes += static_cast<char>(unit);
        else if (unit < 0x100)
            bytes += '\\' + QByteArray::number(unit, 8).rightJustified(3, '0');
        else
            bytes += "\\u" + QByteArray::number(unit, 16).rightJustified(4, '0');
    }
    return bytes;
}

} // namespace tidemark
