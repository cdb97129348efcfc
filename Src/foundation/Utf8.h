#pragma once

#include <QByteArray>
#include <QStringView>

namespace tidemark {

/// The text's UTF-8 bytes. A lone surrogate, which UTF-8 has no place for, takes the three bytes that its number
/// would have, so that it matches nothing but itself.
QByteArray generalizedUtf8(QStringView text);

} // namespace tidemark
