#pragma once

#include "text/TextEncoding.h"

namespace tidemark {

/// ASCII in which every other UTF-16 unit is an escape: \ooo below U+0100, \uxxxx above, \\ for the
/// backslash.
class NonLossyAsciiTextConverter : public TextConverter
{
public:
    explicit NonLossyAsciiTextConverter(StringEncoding encoding)
        : TextConverter(encoding, EncodingShape::Opaque)
    {}

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;
};

} // namespace tidemark
