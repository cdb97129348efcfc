#include "text/CodeWalk.h"

#include "foundation/StopFlag.h"

namespace tidemark {

namespace {

/// Such as "\\u20ac".
constexpr qsizetype LONGEST_CODE = 6;
/// Decoding a code costs about as much as looking at 1,024 bytes.
constexpr qsizetype CODES_BETWEEN_STOP_CHECKS = WORK_BETWEEN_STOP_CHECKS / 1024;

/// What encoding a text by itself gives, without the changes of state around it.
struct Core
{
    QByteArrayView bytes;
    ShiftState stateBefore;
};

Core coreOf(ShiftFamily family, QByteArrayView encoded)
{
    Core core = {encoded.first(0), {}};
    ShiftState state;
    qsizetype start = -1;
    for (qsizetype position = 0; position < encoded.size();) {
        const ShiftState before = state;
        const ShiftToken token = takeShiftToken(family, encoded.sliced(position), state);
        if (token.kind == ShiftToken::Kind::Code) {
            if (start < 0) {
                start = position;
                core.stateBefore = before;
            }
            core.bytes = encoded.sliced(start, position + token.length - start);
        }
        position += token.length;
    }
    return core;
}

void passCodes(ShiftFamily family, QByteArrayView bytes, ShiftState &state)
{
    while (!bytes.isEmpty())
        bytes = bytes.sliced(takeShiftToken(family, bytes, state).length);
}

} // namespace

CodeWalk::CodeWalk(TextConverter &converter, QByteArrayView bytes, QStringView text)
    : _converter(converter), _family(shiftFamilyOf(converter.encoding())), _bytes(bytes), _text(text)
{}

bool CodeWalk::next()
{
    if (_family == ShiftFamily::Inseparable)
        return false;
    if (++_steps % CODES_BETWEEN_STOP_CHECKS == 0)
        checkForStop();
    _code.byteStart = _code.byteEnd;
    _code.unitStart = _code.unitEnd;
    if (_family == ShiftFamily::None) {
        _isAtEnd = _code.byteStart == _bytes.size();
        return _isAtEnd ? _code.unitEnd == _text.size() : _takeShortestCode();
    }
    ShiftToken token = {ShiftToken::Kind::Shift, 0};
    while (token.kind == ShiftToken::Kind::Shift) {
        _code.byteStart += token.length;
        _code.stateBefore = _code.stateAfter;
        _isAtEnd = _code.byteStart == _bytes.size();
        if (_isAtEnd)
            break;
        token = takeShiftToken(_family, _bytes.sliced(_code.byteStart), _code.stateAfter);
    }
    _code.byteEnd = _code.byteStart;
    if (_isAtEnd)
        return _code.unitEnd == _text.size();
    if (token.kind == ShiftToken::Kind::Code)
        return _takeCode(token.length);
    _code.byteEnd += token.length;
    return true;
}

bool CodeWalk::_takeShortestCode()
{
    const bool isAscii = static_cast<uchar>(_bytes[_code.byteStart]) < 0x80;
    if (isAscii && _converter.shape() == EncodingShape::AsciiBytes) {
        ++_code.byteEnd;
        ++_code.unitEnd;
        return _code.unitEnd <= _text.size();
    }
    const qsizetype longest = qMin(LONGEST_CODE, _bytes.size() - _code.byteStart);
    for (qsizetype length = 1; length <= longest; ++length) {
        if (_takeCode(length))
            return true;
    }
    return false;
}

bool CodeWalk::_takeCode(qsizetype length)
{
    const QByteArrayView bytes = _bytes.sliced(_code.byteStart, length);
    std::optional<QString> text;
    if (_family != ShiftFamily::None && length == 1 && _code.stateBefore == ShiftState()) {
        text = QChar::fromLatin1(bytes.front());
    } else if (_code.stateBefore == ShiftState()) {
        text = _converter.decode(bytes);
    } else {
        ShiftState state;
        text = _converter.decode(takeTransition(_family, state, _code.stateBefore).append(bytes));
    }
    if (!text || text->isEmpty() || !_text.sliced(_code.unitStart).startsWith(*text))
        return false;
    _code.byteEnd = _code.byteStart + length;
    _code.unitEnd = _code.unitStart + text->size();
    return true;
}

std::optional<QByteArray> CodeWalk::encodedBetween(TextConverter &converter, const ShiftState &before,
                                                   QStringView text, const ShiftState &after)
{
    std::optional<QByteArray> encoded = converter.encode(text);
    const ShiftFamily family = shiftFamilyOf(converter.encoding());
    if (!encoded || family == ShiftFamily::None)
        return encoded;
    if (family == ShiftFamily::Inseparable)
        return std::nullopt;
    ShiftState state = before;
    QByteArray bytes;
    if (!text.isEmpty()) {
        const Core core = coreOf(family, *encoded);
        bytes = takeTransition(family, state, core.stateBefore) + core.bytes.toByteArray();
        passCodes(family, core.bytes, state);
    }
    return bytes + takeTransition(family, state, after);
}

} // namespace tidemark
