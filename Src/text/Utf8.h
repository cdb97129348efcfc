#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace tidemark {

/// The text's UTF-8 bytes. A lone surrogate, which UTF-8 has no place for, takes the three bytes that its
/// number would have, so that it matches nothing but itself.
QByteArray generalizedUtf8(QStringView text);

/// The first piece of the bytes, short enough for the time between two checks for a stop. It ends between two
/// characters where there are any.
QByteArrayView firstUtf8Piece(QByteArrayView bytes);

/// Strict: no overlong forms, surrogates, numbers above U+10FFFF or cut sequences.
bool isValidUtf8(QByteArrayView bytes);

} // namespace tidemark
