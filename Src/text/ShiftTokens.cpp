#include "text/ShiftTokens.h"

#include "text/TextEncodingTable.h"

namespace tidemark {

namespace {

constexpr char ESCAPE = 0x1B;
constexpr char SHIFT_IN = 0x0F;
constexpr QByteArrayView ASCII_IN_ISO_2022 = "\x1B(B";
constexpr QByteArrayView CHINESE_IN_HZ = "~{";
constexpr QByteArrayView ASCII_IN_HZ = "~}";

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

qsizetype lengthOfCodeIn(const QByteArray &set, QByteArrayView bytes)
{
    const bool hasTwoBytes = set.startsWith("\x1B$") || set == CHINESE_IN_HZ;
    return hasTwoBytes && static_cast<uchar>(bytes.front()) > ' ' ? qMin(bytes.size(), qsizetype(2)) : 1;
}

/// The index of the set that an escape sequence designates by its last but one byte.
size_t designatedSet(char intermediate)
{
    switch (intermediate) {
    case ')':
    case '-':
        return 1;
    case '*':
    case '.':
        return 2;
    case '+':
    case '/':
        return 3;
    default:
        return 0;
    }
}

ShiftToken takeEscape(ShiftFamily family, QByteArrayView bytes, ShiftState &state)
{
    // For one code only.
    if (bytes.size() > 2 && (bytes[1] == 'N' || bytes[1] == 'O'))
        return {ShiftToken::Kind::Code,
                2 + lengthOfCodeIn(state.sets[bytes[1] == 'N' ? 2 : 3], bytes.sliced(2))};
    qsizetype last = 1;
    while (last < bytes.size() && bytes[last] >= ' ' && bytes[last] <= '/')
        ++last;
    if (last == bytes.size())
        return {ShiftToken::Kind::Code, bytes.size()};
    const QByteArrayView sequence = bytes.first(last + 1);
    if (family == ShiftFamily::Iso2022Korean)
        return {ShiftToken::Kind::Mark, sequence.size()};
    state.sets[designatedSet(bytes[last - 1])] =
        sequence == ASCII_IN_ISO_2022 ? QByteArray() : sequence.toByteArray();
    return {ShiftToken::Kind::Shift, sequence.size()};
}

/// A line end takes back what holds for a line.
void endLine(ShiftFamily family, ShiftState &state)
{
    if (family == ShiftFamily::Iso2022Japanese)
        state.sets[0] = state.sets[2] = QByteArray();
    else
        state = {};
}

ShiftToken takeIso2022Token(ShiftFamily family, QByteArrayView bytes, ShiftState &state)
{
    const char byte = bytes.front();
    if (byte == ESCAPE)
        return takeEscape(family, bytes, state);
    if (byte == TD_SHIFT_OUT || byte == SHIFT_IN) {
        state.isShiftedOut = byte == TD_SHIFT_OUT;
        return {ShiftToken::Kind::Shift, 1};
    }
    static const QByteArray koreanSet = TD_KOREAN_HEADER.toByteArray();
    const bool isKorean = family == ShiftFamily::Iso2022Korean && state.isShiftedOut;
    const QByteArray set = isKorean ? koreanSet : state.sets[state.isShiftedOut ? 1 : 0];
    const qsizetype length = lengthOfCodeIn(set, bytes);
    if (isLineEnd(byte))
        endLine(family, state);
    return {ShiftToken::Kind::Code, length};
}

ShiftToken takeHzToken(QByteArrayView bytes, ShiftState &state)
{
    if (bytes.startsWith(CHINESE_IN_HZ) && state.sets[0].isEmpty()) {
        state.sets[0] = CHINESE_IN_HZ.toByteArray();
        return {ShiftToken::Kind::Shift, 2};
    }
    if (bytes.startsWith(ASCII_IN_HZ)) {
        state.sets[0] = QByteArray();
        return {ShiftToken::Kind::Shift, 2};
    }
    // The line goes on.
    if (bytes.startsWith("~\n"))
        return {ShiftToken::Kind::Mark, 2};
    if (bytes.startsWith("~~") && state.sets[0].isEmpty())
        return {ShiftToken::Kind::Code, 2};
    return {ShiftToken::Kind::Code, lengthOfCodeIn(state.sets[0], bytes)};
}

} // namespace

ShiftFamily shiftFamilyOf(StringEncoding encoding)
{
    switch (convertStringEncodingToCoreFoundation(encoding)) {
    case CF_ENCODING_UTF7:
    case CF_ENCODING_UTF7_IMAP:
        return ShiftFamily::Inseparable;
    case CF_ENCODING_ISO_2022_JP:
    case CF_ENCODING_ISO_2022_JP_1:
    case CF_ENCODING_ISO_2022_JP_2:
    case CF_ENCODING_ISO_2022_JP_3:
        return ShiftFamily::Iso2022Japanese;
    case CF_ENCODING_ISO_2022_CN:
    case CF_ENCODING_ISO_2022_CN_EXT:
        return ShiftFamily::Iso2022Chinese;
    case CF_ENCODING_ISO_2022_KR:
        return ShiftFamily::Iso2022Korean;
    case CF_ENCODING_HZ:
        return ShiftFamily::Hz;
    default:
        return ShiftFamily::None;
    }
}

ShiftToken takeShiftToken(ShiftFamily family, QByteArrayView bytes, ShiftState &state)
{
    return family == ShiftFamily::Hz ? takeHzToken(bytes, state) : takeIso2022Token(family, bytes, state);
}

QByteArray takeTransition(ShiftFamily family, ShiftState &state, const ShiftState &wanted)
{
    QByteArray bytes;
    if (state.sets[0] != wanted.sets[0]) {
        if (!wanted.sets[0].isEmpty())
            bytes += wanted.sets[0];
        else
            bytes += family == ShiftFamily::Hz ? ASCII_IN_HZ : ASCII_IN_ISO_2022;
        state.sets[0] = wanted.sets[0];
    }
    for (size_t index = 1; index < wanted.sets.size(); ++index) {
        if (!wanted.sets[index].isEmpty() && wanted.sets[index] != state.sets[index])
            bytes += state.sets[index] = wanted.sets[index];
    }
    if (state.isShiftedOut != wanted.isShiftedOut) {
        bytes += wanted.isShiftedOut ? TD_SHIFT_OUT : SHIFT_IN;
        state.isShiftedOut = wanted.isShiftedOut;
    }
    return bytes;
}

} // namespace tidemark
