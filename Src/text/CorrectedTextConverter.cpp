#include "text/CorrectedTextConverter.h"

#include "text/AsciiText.h"
#include "text/TextEncodingTable.h"

#include <algorithm>
#include <array>

namespace tidemark {

namespace {

/// Those for one encoding stand together.
constexpr std::array CORRECTIONS = {
    CodeCorrection{0x400, 0xE6, u'\u00B5'}, // code page 437
    CodeCorrection{0x412, 0xAA, u'\u00AC'}, // 852
    CodeCorrection{0x415, 0xE6, u'\u00B5'}, // 860
    CodeCorrection{0x416, 0xE6, u'\u00B5'}, // 861
    CodeCorrection{0x417, 0xE6, u'\u00B5'}, // 862
    CodeCorrection{0x418, 0xE6, u'\u00B5'}, // 863
    CodeCorrection{0x41A, 0xE6, u'\u00B5'}, // 865
    CodeCorrection{CF_ENCODING_EUC_KR, 0xA2E6, u'\u20AC'},
    CodeCorrection{CF_ENCODING_EUC_KR, 0xA2E7, u'\u00AE'},
};
static_assert(std::ranges::is_sorted(CORRECTIONS, {}, &CodeCorrection::encoding));

QByteArray bytesOf(const CodeCorrection &correction)
{
    return QByteArray(1, static_cast<char>(correction.code >> 8)) + static_cast<char>(correction.code & 0xFF);
}

} // namespace

std::span<const CodeCorrection> correctionsOf(CoreFoundationEncoding encoding)
{
    const auto first = std::ranges::lower_bound(CORRECTIONS, encoding, {}, &CodeCorrection::encoding);
    const auto last = std::ranges::upper_bound(CORRECTIONS, encoding, {}, &CodeCorrection::encoding);
    return {first, last};
}

/// The first correction from the position on, which is moved there or to the end.
const CodeCorrection *CorrectedTextConverter::_nextIn(QByteArrayView bytes, qsizetype &position) const
{
    while (position + 1 < bytes.size()) {
        const uint lead = static_cast<uchar>(bytes[position]);
        const uint code = lead << 8 | static_cast<uchar>(bytes[position + 1]);
        const auto found = std::ranges::find(_corrections, code, &CodeCorrection::code);
        if (found != _corrections.end())
            return &*found;
        position += lead < 0x80 ? 1 : 2;
    }
    position = bytes.size();
    return nullptr;
}

const CodeCorrection *CorrectedTextConverter::_nextIn(QStringView text, qsizetype &position) const
{
    for (; position < text.size(); ++position) {
        const auto found =
            std::ranges::find(_corrections, text[position].unicode(), &CodeCorrection::character);
        if (found != _corrections.end())
            return &*found;
    }
    return nullptr;
}

std::optional<QString> CorrectedTextConverter::decode(QByteArrayView bytes)
{
    if (isAscii(bytes))
        return _converter->decode(bytes);
    QString text;
    for (qsizetype start = 0; start <= bytes.size();) {
        qsizetype end = start;
        const CodeCorrection *correction = _nextIn(bytes, end);
        const std::optional<QString> piece = _converter->decode(bytes.sliced(start, end - start));
        if (!piece)
            return std::nullopt;
        text += *piece;
        if (!correction)
            break;
        text += QChar(correction->character);
        start = end + 2;
    }
    return text;
}

std::optional<QByteArray> CorrectedTextConverter::encode(QStringView text)
{
    QByteArray bytes;
    for (qsizetype start = 0; start <= text.size();) {
        qsizetype end = start;
        const CodeCorrection *correction = _nextIn(text, end);
        const std::optional<QByteArray> piece = _converter->encode(text.sliced(start, end - start));
        if (!piece)
            return std::nullopt;
        bytes += *piece;
        if (!correction)
            break;
        bytes += bytesOf(*correction);
        start = end + 1;
    }
    return bytes;
}

} // namespace tidemark
