#pragma once

#include "text/TextEncoding.h"

namespace tidemark {

enum class ByteOrder { LittleEndian, BigEndian };

class Utf8TextConverter : public TextConverter
{
public:
    explicit Utf8TextConverter(StringEncoding encoding) : TextConverter(encoding, EncodingShape::AsciiBytes)
    {}

    std::optional<QString> decode(QByteArrayView bytes) override { return textFromUtf8(bytes); }
    std::optional<QByteArray> encode(QStringView text) override { return strictUtf8(text); }
};

/// Passes lone surrogates through in both directions. Decoding drops an odd last byte, as the platform does.
class Utf16TextConverter : public TextConverter
{
public:
    Utf16TextConverter(StringEncoding encoding, EncodingShape shape, ByteOrder order)
        : TextConverter(encoding, shape), _order(order)
    {}

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;

private:
    ByteOrder _order;
};

/// Decoding drops one to three bytes left over at the end, as the platform does.
class Utf32TextConverter : public TextConverter
{
public:
    Utf32TextConverter(StringEncoding encoding, EncodingShape shape, ByteOrder order)
        : TextConverter(encoding, shape), _order(order)
    {}

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;

private:
    ByteOrder _order;
};

} // namespace tidemark
