#pragma once

#include "text/TextEncoding.h"

namespace tidemark {

/// Converts through ICU. The library's converter is opened once per thread and encoding.
class IcuTextConverter : public TextConverter
{
public:
    /// Null when ICU has no converter of that name. The name must outlive the converter.
    static std::unique_ptr<IcuTextConverter> converter(StringEncoding encoding, EncodingShape shape,
                                                       const char *icuName);

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;

    bool hasSingleBytes() const;

private:
    IcuTextConverter(StringEncoding encoding, EncodingShape shape, Traits traits, const char *icuName)
        : TextConverter(encoding, shape, traits), _icuName(icuName)
    {}

    const char *_icuName;
};

} // namespace tidemark
