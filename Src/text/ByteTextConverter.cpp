#include "text/ByteTextConverter.h"

#include "foundation/StopFlag.h"
#include "text/AsciiText.h"
#include "text/CorrectedTextConverter.h"
#include "text/IconvTextConverter.h"
#include "text/IcuTextConverter.h"
#include "text/TextEncodingTable.h"

#include <QMutex>
#include <QMutexLocker>

#include <algorithm>
#include <numeric>
#include <unordered_map>

namespace tidemark {

namespace {

constexpr size_t ASCII_COUNT = 0x80;

/// The bytes from 0x80 on; the last two mean nothing.
// clang-format off
constexpr std::array<char16_t, 128> NEXTSTEP_UPPER_HALF = {
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7,
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF,
    0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9,
    0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7,
    0x00A9, 0x00A1, 0x00A2, 0x00A3, 0x2044, 0x00A5, 0x0192, 0x00A7,
    0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02,
    0x00AE, 0x2013, 0x2020, 0x2021, 0x00B7, 0x00A6, 0x00B6, 0x2022,
    0x201A, 0x201E, 0x201D, 0x00BB, 0x2026, 0x2030, 0x00AC, 0x00BF,
    0x00B9, 0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9,
    0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD, 0x02DB, 0x02C7,
    0x2014, 0x00B1, 0x00BC, 0x00BD, 0x00BE, 0x00E0, 0x00E1, 0x00E2,
    0x00E3, 0x00E4, 0x00E5, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB,
    0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1,
    0x0141, 0x00D8, 0x0152, 0x00BA, 0x00F2, 0x00F3, 0x00F4, 0x00F5,
    0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB, 0x0131, 0x00FC, 0x00FD,
    0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, ByteTable::NO_CHARACTER, ByteTable::NO_CHARACTER,
};
// clang-format on

ByteTable::Characters identity()
{
    ByteTable::Characters characters;
    std::iota(characters.begin(), characters.end(), u'\0');
    return characters;
}

ByteTable::Characters nextStepCharacters()
{
    ByteTable::Characters characters = identity();
    std::ranges::copy(NEXTSTEP_UPPER_HALF, characters.begin() + ASCII_COUNT);
    return characters;
}

ByteTable::Characters charactersOf(TextConverter &converter)
{
    ByteTable::Characters characters;
    for (size_t byte = 0; byte < characters.size(); ++byte) {
        const char bytes[] = {static_cast<char>(byte)};
        const auto text = converter.decode(QByteArrayView(bytes, 1));
        characters[byte] = text && text->size() == 1 ? text->front().unicode() : ByteTable::NO_CHARACTER;
    }
    return characters;
}

/// With what the converter reads unlike the encoding's table.
ByteTable::Characters correctedCharactersOf(TextConverter &converter, CoreFoundationEncoding encoding)
{
    ByteTable::Characters characters = charactersOf(converter);
    for (const CodeCorrection &correction : correctionsOf(encoding))
        characters[correction.code] = correction.character;
    // The bytes that the encoding leaves open aren't the C1 controls.
    if (encoding == CF_ENCODING_WINDOWS_LATIN1) {
        for (const size_t byte : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
            characters[byte] = ByteTable::NO_CHARACTER;
    }
    return characters;
}

/// Null when its characters aren't single bytes.
std::unique_ptr<TextConverter> singleByteConverter(const TextEncodingRow &row)
{
    if (*row.icuConverter != '\0') {
        auto icu = IcuTextConverter::converter(row.stringEncoding, EncodingShape::Opaque, row.icuConverter);
        return icu && icu->hasSingleBytes() ? std::move(icu) : nullptr;
    }
    auto iconv = IconvTextConverter::converter(row.stringEncoding);
    return iconv && iconv->hasSingleBytes() ? std::move(iconv) : nullptr;
}

std::unique_ptr<const ByteTable> makeByteTable(const TextEncodingRow &row)
{
    switch (row.coreFoundationEncoding) {
    case CF_ENCODING_ASCII:
        return std::make_unique<const ByteTable>(identity(), static_cast<int>(ASCII_COUNT));
    case CF_ENCODING_ISO_LATIN1:
        return std::make_unique<const ByteTable>(identity());
    case CF_ENCODING_NEXTSTEP:
        return std::make_unique<const ByteTable>(nextStepCharacters());
    default:
        break;
    }
    const std::unique_ptr<TextConverter> converter = singleByteConverter(row);
    return converter ? std::make_unique<const ByteTable>(
                           correctedCharactersOf(*converter, row.coreFoundationEncoding))
                     : nullptr;
}

} // namespace

ByteTable::ByteTable(const Characters &characters, int encodableCount) : _characters(characters)
{
    Page empty;
    empty.fill(NO_BYTE);
    _pages.push_back(empty);
    for (int byte = 0; byte < encodableCount; ++byte) {
        const char16_t character = _characters[byte];
        if (character == NO_CHARACTER)
            continue;
        quint16 &page = _pageOfHighByte[character >> 8];
        if (page == 0) {
            page = static_cast<quint16>(_pages.size());
            _pages.push_back(empty);
        }
        quint16 &slot = _pages[page][character & 0xFF];
        slot = std::min(slot, quint16(byte));
    }
    const auto upperHalf = _characters.begin() + ASCII_COUNT;
    const Characters ascii = identity();
    _keepsAscii = std::equal(_characters.begin(), upperHalf, ascii.begin());
    const bool hasAsciiAbove =
        std::any_of(upperHalf, _characters.end(), [](char16_t character) { return character < ASCII_COUNT; });
    for (const char16_t lineEnd : {u'\n', u'\r'}) {
        _keepsLines = _keepsLines && _characters[lineEnd] == lineEnd &&
                      std::count(_characters.begin(), _characters.end(), lineEnd) == 1;
    }
    _shape = _keepsAscii && !hasAsciiAbove ? EncodingShape::AsciiBytes : EncodingShape::Opaque;
}

const ByteTable *sharedByteTable(const TextEncodingRow &row)
{
    static QMutex mutex;
    static std::unordered_map<CoreFoundationEncoding, std::unique_ptr<const ByteTable>> tables;
    const QMutexLocker locker(&mutex);
    const auto [entry, isNew] = tables.try_emplace(row.coreFoundationEncoding);
    if (isNew)
        entry->second = makeByteTable(row);
    return entry->second.get();
}

std::optional<QString> ByteTextConverter::decode(QByteArrayView bytes)
{
    if (_table.keepsAscii() && bytes.size() <= WORK_BETWEEN_STOP_CHECKS && isAscii(bytes))
        return QString::fromLatin1(bytes);
    QString text(bytes.size(), Qt::Uninitialized);
    QChar *target = text.data();
    while (!bytes.isEmpty()) {
        bool isRefused = false;
        const QByteArrayView piece = bytes.first(qMin(bytes.size(), qsizetype(WORK_BETWEEN_STOP_CHECKS)));
        for (const char byte : piece) {
            const char16_t character = _table.characterOf(static_cast<uchar>(byte));
            isRefused |= character == ByteTable::NO_CHARACTER;
            *target++ = character;
        }
        if (isRefused)
            return std::nullopt;
        bytes = bytes.sliced(piece.size());
        if (!bytes.isEmpty())
            checkForStop();
    }
    return text;
}

std::optional<QByteArray> ByteTextConverter::encode(QStringView text)
{
    if (_table.keepsAscii() && isAscii(text))
        return text.toLatin1();
    QByteArray bytes(text.size(), Qt::Uninitialized);
    char *target = bytes.data();
    quint16 refused = 0;
    for (const QChar character : text) {
        const quint16 byte = _table.byteOf(character.unicode());
        refused |= byte & ByteTable::NO_BYTE;
        *target++ = static_cast<char>(byte);
    }
    if (refused != 0)
        return std::nullopt;
    return bytes;
}

} // namespace tidemark
