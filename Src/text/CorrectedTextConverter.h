#pragma once

#include "text/TextEncoding.h"

#include <span>

namespace tidemark {

/// A code that a library's converter reads unlike the encoding's published table.
struct CodeCorrection
{
    CoreFoundationEncoding encoding;
    quint16 code; ///< one byte, or two with the lead byte in front
    char16_t character;
};

/// The corrections for the encoding, possibly none.
std::span<const CodeCorrection> correctionsOf(CoreFoundationEncoding encoding);

/// Puts the corrections for codes of two bytes around another converter, in whose encoding every byte below
/// 0x80 is that ASCII character and the corrected characters have no other code.
class CorrectedTextConverter : public TextConverter
{
public:
    CorrectedTextConverter(std::unique_ptr<TextConverter> converter,
                           std::span<const CodeCorrection> corrections)
        : TextConverter(converter->encoding(), converter->shape(),
                        {converter->keepsAscii(), converter->keepsLines()}),
          _converter(std::move(converter)), _corrections(corrections)
    {}

    std::optional<QString> decode(QByteArrayView bytes) override;
    std::optional<QByteArray> encode(QStringView text) override;

private:
    const CodeCorrection *_nextIn(QByteArrayView bytes, qsizetype &position) const;
    const CodeCorrection *_nextIn(QStringView text, qsizetype &position) const;

    std::unique_ptr<TextConverter> _converter;
    std::span<const CodeCorrection> _corrections;
};

} // namespace tidemark
