#pragma once

#include "text/TextEncoding.h"

namespace tidemark {

/// Converts through the C library's iconv, for the few encodings that ICU doesn't have. The library's
/// converters are opened once per thread and encoding.
class IconvTextConverter : public TextConverter
{
public:
    /// Null when the encoding isn't one of those, or the C library here doesn't have it.
    static std::unique_ptr<IconvTextConverter> converter(StringEncoding encoding);

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;

    bool hasSingleBytes() const;

private:
    struct Source;
    static const Source *_sourceOf(StringEncoding encoding);
    IconvTextConverter(StringEncoding encoding, const Source &source)
        : TextConverter(encoding, EncodingShape::Opaque), _source(source)
    {}

    const Source &_source;
};

} // namespace tidemark
