#pragma once

#include "text/ShiftTokens.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

/// Walks through the bytes of a text code by code. A code is the shortest stretch of bytes that has a text of
/// its own, mostly one character; bytes that only change the state lie between codes. Each code is decoded by
/// itself, from the state in which it stands, and must give what the whole text has there.
class CodeWalk
{
public:
    struct Code
    {
        qsizetype byteStart = 0;
        qsizetype byteEnd = 0;
        qsizetype unitStart = 0; ///< in the text
        qsizetype unitEnd = 0;   ///< the same as the start for a mark that has no text
        ShiftState stateBefore;  ///< at its first byte
        ShiftState stateAfter;   ///< behind its last
    };

    /// The bytes and their text must outlive the walk. It begins before the first code.
    CodeWalk(TextConverter &converter, QByteArrayView bytes, QStringView text);

    /// Moves to the next code; behind the last one, to an empty code at the end. False when the bytes that
    /// follow can't be taken apart.
    bool next();
    bool isAtEnd() const { return _isAtEnd; }
    const Code &code() const { return _code; }

    /// The bytes of a text that stands between these states, with no more changes of state than it takes.
    /// Nothing when the encoding can't hold it.
    static std::optional<QByteArray> encodedBetween(TextConverter &converter, const ShiftState &before,
                                                    QStringView text, const ShiftState &after);

private:
    bool _takeShortestCode();
    bool _takeCode(qsizetype length);

    TextConverter &_converter;
    ShiftFamily _family;
    QByteArrayView _bytes;
    QStringView _text;
    Code _code;
    qint64 _steps = 0;
    bool _isAtEnd = false;
};

} // namespace tidemark
