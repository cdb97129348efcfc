#pragma once

#include "text/TextEncoding.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>

namespace tidemark {

/// The state of an encoding whose bytes change their meaning on the way: which character sets are designated,
/// each given by the bytes that designate it, and which of them is in use. In other encodings it never
/// changes.
struct ShiftState
{
    std::array<QByteArray, 4> sets; ///< the first is empty for ASCII, the others while there is none
    bool isShiftedOut = false;      ///< the second set is in use, not the first

    friend bool operator==(const ShiftState &, const ShiftState &) = default;
};

/// What ISO-2022-KR has once in a file, before the first Korean character. It counts as no part of the state.
inline constexpr QByteArrayView TD_KOREAN_HEADER = "\x1B$)C";
inline constexpr char TD_SHIFT_OUT = 0x0E;

/// How an encoding changes its state.
enum class ShiftFamily {
    None,
    /// The state takes up parts of bytes, so that no code stands by itself (UTF-7).
    Inseparable,
    Iso2022Japanese,
    Iso2022Chinese,
    Iso2022Korean,
    Hz,
};

ShiftFamily shiftFamilyOf(StringEncoding encoding);

/// What comes next in the bytes of an encoding that has states.
struct ShiftToken
{
    enum class Kind {
        Shift, ///< changes the state, nothing else
        Mark,  ///< has no text and stays where it is
        Code,
    };
    Kind kind = Kind::Code;
    qsizetype length = 1;
};

/// The token at the start of the bytes, which must not be empty. Makes the state that behind the token. Not
/// for ShiftFamily::None.
ShiftToken takeShiftToken(ShiftFamily family, QByteArrayView bytes, ShiftState &state);

/// The bytes that lead from `state` to `wanted`. Makes `state` what holds behind them: sets that `wanted`
/// doesn't have stay designated, since nothing undoes that.
QByteArray takeTransition(ShiftFamily family, ShiftState &state, const ShiftState &wanted);

} // namespace tidemark
