#include "foundation/Utf8.h"

#include "foundation/AsciiText.h"
#include "foundation/TextEncoding.h"

namespace tidemark {

namespace {

void appendSurrogate(QByteArray &bytes, char16_t unit)
{
    bytes.append(char(0xE0 | (unit >> 12)));
    bytes.append(char(0x80 | ((unit >> 6) & 0x3F)));
    bytes.append(char(0x80 | (unit & 0x3F)));
}

/// How many bytes at the start are ASCII.
qsizetype asciiPrefixLength(const uchar *bytes, qsizetype count)
{
    constexpr qsizetype BLOCK = 64;
    qsizetype index = 0;
    while (index + BLOCK <= count && unitsAreAscii(bytes + index, BLOCK))
        index += BLOCK;
    while (index < count && bytes[index] < 0x80)
        ++index;
    return index;
}

bool isTrail(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

/// The length of the well-formed sequence at the start of the bytes, the first of which isn't ASCII; 0 for
/// none.
qsizetype lengthOfSequence(const uchar *bytes, qsizetype count)
{
    const uchar lead = bytes[0];
    if (lead >= 0xC2 && lead <= 0xDF)
        return count >= 2 && isTrail(bytes[1]) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        if (count < 3 || !isTrail(bytes[1]) || !isTrail(bytes[2]))
            return 0;
        const bool isOverlong = lead == 0xE0 && bytes[1] < 0xA0;
        const bool isSurrogate = lead == 0xED && bytes[1] >= 0xA0;
        return isOverlong || isSurrogate ? 0 : 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        if (count < 4 || !isTrail(bytes[1]) || !isTrail(bytes[2]) || !isTrail(bytes[3]))
            return 0;
        const bool isOverlong = lead == 0xF0 && bytes[1] < 0x90;
        const bool isTooLarge = lead == 0xF4 && bytes[1] >= 0x90;
        return isOverlong || isTooLarge ? 0 : 4;
    }
    return 0;
}

} // namespace

bool isValidUtf8(QByteArrayView view)
{
    const auto *bytes = reinterpret_cast<const uchar *>(view.data());
    const qsizetype count = view.size();
    qsizetype index = 0;
    while (index < count) {
        // Long stretches of ASCII go by in vector instructions, short ones byte by byte.
        if (bytes[index] < 0x80) {
            index += asciiPrefixLength(bytes + index, count - index);
            continue;
        }
        const qsizetype length = lengthOfSequence(bytes + index, count - index);
        if (length == 0)
            return false;
        index += length;
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
