#include "text/TextEncoding.h"

#include "foundation/LocalizedText.h"
#include "text/ByteTextConverter.h"
#include "text/CorrectedTextConverter.h"
#include "text/IconvTextConverter.h"
#include "text/IcuTextConverter.h"
#include "text/NonLossyAsciiTextConverter.h"
#include "text/TextEncodingTable.h"
#include "text/UnicodeTextConverters.h"

#include <algorithm>

namespace tidemark {

namespace {

/// Marks a string encoding that has no number of its own and carries the other numbering's in its low bits.
constexpr StringEncoding CORE_FOUNDATION_FLAG = 0x80000000;

bool canBeConverted(const TextEncodingRow &row)
{
    return *row.icuConverter != '\0' || row.coreFoundationEncoding == CF_ENCODING_NEXTSTEP ||
           row.coreFoundationEncoding == CF_ENCODING_NON_LOSSY_ASCII ||
           IconvTextConverter::converter(row.stringEncoding) != nullptr;
}

const TextEncodingRow *rowOfStringEncoding(StringEncoding encoding)
{
    return textEncodingRow(convertStringEncodingToCoreFoundation(encoding));
}

EncodingShape shapeOfMultiByteEncoding(CoreFoundationEncoding encoding)
{
    switch (encoding) {
    case CF_ENCODING_EUC_JP:
    case CF_ENCODING_EUC_CN:
    case CF_ENCODING_EUC_TW:
    case CF_ENCODING_EUC_KR:
        return EncodingShape::AsciiBytes;
    default:
        return EncodingShape::Opaque;
    }
}

std::unique_ptr<TextConverter> unicodeConverter(StringEncoding encoding, CoreFoundationEncoding number)
{
    switch (number) {
    case CF_ENCODING_UTF8:
        return std::make_unique<Utf8TextConverter>(encoding);
    case CF_ENCODING_UTF16:
        return std::make_unique<Utf16TextConverter>(encoding, EncodingShape::Opaque, ByteOrder::LittleEndian);
    case CF_ENCODING_UTF16_BIG_ENDIAN:
        return std::make_unique<Utf16TextConverter>(encoding, EncodingShape::Utf16BigEndian,
                                                    ByteOrder::BigEndian);
    case CF_ENCODING_UTF16_LITTLE_ENDIAN:
        return std::make_unique<Utf16TextConverter>(encoding, EncodingShape::Utf16LittleEndian,
                                                    ByteOrder::LittleEndian);
    case CF_ENCODING_UTF32:
        return std::make_unique<Utf32TextConverter>(encoding, EncodingShape::Opaque, ByteOrder::BigEndian);
    case CF_ENCODING_UTF32_BIG_ENDIAN:
        return std::make_unique<Utf32TextConverter>(encoding, EncodingShape::Utf32BigEndian,
                                                    ByteOrder::BigEndian);
    case CF_ENCODING_UTF32_LITTLE_ENDIAN:
        return std::make_unique<Utf32TextConverter>(encoding, EncodingShape::Utf32LittleEndian,
                                                    ByteOrder::LittleEndian);
    default:
        return nullptr;
    }
}

} // namespace

QList<StringEncoding> availableStringEncodings()
{
    QList<StringEncoding> encodings;
    for (const TextEncodingRow &row : offeredTextEncodings()) {
        if (canBeConverted(row))
            encodings.append(row.stringEncoding);
    }
    return encodings;
}

QString localizedNameOfStringEncoding(StringEncoding encoding)
{
    const TextEncodingRow *row = rowOfStringEncoding(encoding);
    return row && *row->displayName != '\0' ? localizedString(row->displayName) : QString();
}

CoreFoundationEncoding convertStringEncodingToCoreFoundation(StringEncoding encoding)
{
    const auto rows = allTextEncodings();
    const auto found = std::ranges::find(rows, encoding, &TextEncodingRow::stringEncoding);
    if (found != rows.end())
        return found->coreFoundationEncoding;
    const bool isFlagged = (encoding & ~(CORE_FOUNDATION_FLAG - 1)) == CORE_FOUNDATION_FLAG;
    return isFlagged ? static_cast<CoreFoundationEncoding>(encoding & ~CORE_FOUNDATION_FLAG)
                     : TD_INVALID_CORE_FOUNDATION_ENCODING;
}

StringEncoding convertCoreFoundationToStringEncoding(CoreFoundationEncoding encoding)
{
    const TextEncodingRow *row = textEncodingRow(encoding);
    return row ? row->stringEncoding : TD_FILE_COMMON_UNKNOWN_ENCODING;
}

std::unique_ptr<TextConverter> TextConverter::converterForEncoding(StringEncoding encoding)
{
    const TextEncodingRow *row = rowOfStringEncoding(encoding);
    if (!row || !canBeConverted(*row))
        return nullptr;
    if (auto converter = unicodeConverter(encoding, row->coreFoundationEncoding))
        return converter;
    if (row->coreFoundationEncoding == CF_ENCODING_NON_LOSSY_ASCII)
        return std::make_unique<NonLossyAsciiTextConverter>(encoding);
    if (const ByteTable *table = sharedByteTable(*row))
        return std::make_unique<ByteTextConverter>(encoding, *table);
    if (*row->icuConverter == '\0')
        return IconvTextConverter::converter(encoding);
    std::unique_ptr<TextConverter> converter = IcuTextConverter::converter(
        encoding, shapeOfMultiByteEncoding(row->coreFoundationEncoding), row->icuConverter);
    const auto corrections = correctionsOf(row->coreFoundationEncoding);
    if (converter && !corrections.empty())
        converter = std::make_unique<CorrectedTextConverter>(std::move(converter), corrections);
    return converter;
}

} // namespace tidemark
