#include "text/IcuTextConverter.h"

#include "foundation/StopFlag.h"
#include "text/AsciiText.h"

#include <unicode/ucnv.h>

#include <array>
#include <numeric>
#include <string_view>
#include <unordered_map>

namespace tidemark {

namespace {

struct ConverterCloser
{
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};

/// One of ICU's converters with what has to be known to use it.
struct OpenConverter
{
    std::unique_ptr<UConverter, ConverterCloser> icu;
    bool hasSingleBytes = false;
    bool rotatesControls = false; ///< takes the bytes 1A, 1C and 7F for U+001C, U+007F and U+001A
    bool keepsAscii = false;      ///< a text of ASCII bytes only is that ASCII text
    bool keepsLines = false;      ///< no line end is part of anything longer, or made of anything else
};

/// ICU's own callbacks for stopping let characters that can be ignored vanish; leaving the error as it is
/// stops for these too.
void stopDecoding(const void *, UConverterToUnicodeArgs *, const char *, int32_t, UConverterCallbackReason,
                  UErrorCode *)
{}

void stopEncoding(const void *, UConverterFromUnicodeArgs *, const UChar *, int32_t, UChar32,
                  UConverterCallbackReason, UErrorCode *)
{}

std::optional<QString> decodeWithIcu(UConverter *icu, QByteArrayView bytes)
{
    ucnv_resetToUnicode(icu);
    QString text(bytes.size() + 1, Qt::Uninitialized);
    const char *source = bytes.data();
    qsizetype length = 0;
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        if (length == text.size())
            text.resize(text.size() * 2);
        auto *begin = reinterpret_cast<UChar *>(text.data());
        UChar *target = begin + length;
        status = U_ZERO_ERROR;
        const char *pieceEnd = source + qMin(bytes.end() - source, qptrdiff(WORK_BETWEEN_STOP_CHECKS));
        ucnv_toUnicode(icu, &target, begin + text.size(), &source, pieceEnd, nullptr, pieceEnd == bytes.end(),
                       &status);
        length = target - begin;
        if (U_SUCCESS(status) && pieceEnd < bytes.end()) {
            status = U_BUFFER_OVERFLOW_ERROR;
            checkForStop();
        }
    }
    if (U_FAILURE(status))
        return std::nullopt;
    text.truncate(length);
    return text;
}

std::optional<QByteArray> encodeWithIcu(UConverter *icu, QStringView text)
{
    ucnv_resetFromUnicode(icu);
    QByteArray bytes(text.size() * 2 + 16, Qt::Uninitialized);
    const UChar *source = text.utf16();
    qsizetype length = 0;
    UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
    while (status == U_BUFFER_OVERFLOW_ERROR) {
        if (length == bytes.size())
            bytes.resize(bytes.size() * 2);
        char *target = bytes.data() + length;
        status = U_ZERO_ERROR;
        ucnv_fromUnicode(icu, &target, bytes.data() + bytes.size(), &source, text.utf16() + text.size(),
                         nullptr, true, &status);
        length = target - bytes.data();
    }
    if (U_FAILURE(status))
        return std::nullopt;
    bytes.truncate(length);
    return bytes;
}

void rotateControlsFromIcu(QString &text)
{
    for (QChar &character : text) {
        if (character == u'\x1C')
            character = u'\x1A';
        else if (character == u'\x7F')
            character = u'\x1C';
        else if (character == u'\x1A')
            character = u'\x7F';
    }
}

QString withControlsForIcu(QStringView text)
{
    QString rotated = text.toString();
    for (QChar &character : rotated) {
        if (character == u'\x1A')
            character = u'\x1C';
        else if (character == u'\x1C')
            character = u'\x7F';
        else if (character == u'\x7F')
            character = u'\x1A';
    }
    return rotated;
}

std::optional<QString> decodeWith(const OpenConverter &converter, QByteArrayView bytes)
{
    std::optional<QString> text = decodeWithIcu(converter.icu.get(), bytes);
    if (text && converter.rotatesControls)
        rotateControlsFromIcu(*text);
    return text;
}

bool findOutWhetherAsciiIsKept(const OpenConverter &converter)
{
    // In converters of other types an ASCII byte can change the state.
    if (ucnv_getType(converter.icu.get()) != UCNV_MBCS)
        return false;
    QByteArray allOfAscii(0x80, Qt::Uninitialized);
    std::iota(allOfAscii.begin(), allOfAscii.end(), '\0');
    return decodeWith(converter, allOfAscii) == QString::fromLatin1(allOfAscii);
}

/// Tries each byte in front of a line end, since it may be the lead byte of a longer character. Characters of
/// more than two bytes need no look: the encodings that have them allow no control characters within.
bool findOutWhetherLinesAreKept(const OpenConverter &converter)
{
    if (ucnv_getType(converter.icu.get()) != UCNV_MBCS)
        return false;
    for (const char lineEnd : {'\n', '\r'}) {
        const QChar character = QLatin1Char(lineEnd);
        for (int byte = 0; byte < 0x100; ++byte) {
            const std::array<char, 2> bytes = {char(byte), lineEnd};
            const std::optional<QString> alone = decodeWith(converter, QByteArrayView(bytes.data(), 1));
            const bool isItself = bytes[0] == lineEnd;
            if (alone && isItself != alone->contains(character))
                return false;
            const std::optional<QString> together = decodeWith(converter, bytes);
            if (together && (!alone || *together != *alone + character))
                return false;
        }
    }
    return true;
}

OpenConverter openConverter(const char *icuName)
{
    OpenConverter converter;
    UErrorCode status = U_ZERO_ERROR;
    converter.icu.reset(ucnv_open(icuName, &status));
    ucnv_setToUCallBack(converter.icu.get(), stopDecoding, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter.icu.get(), stopEncoding, nullptr, nullptr, nullptr, &status);
    if (U_FAILURE(status)) {
        converter.icu.reset();
        return converter;
    }
    ucnv_setFallback(converter.icu.get(), false);
    converter.hasSingleBytes = ucnv_getMaxCharSize(converter.icu.get()) == 1;
    converter.rotatesControls = decodeWithIcu(converter.icu.get(), "\x1A") == u"\x1C";
    converter.keepsAscii = findOutWhetherAsciiIsKept(converter);
    converter.keepsLines = findOutWhetherLinesAreKept(converter);
    return converter;
}

/// This thread's own; its `icu` is null when ICU has none of that name.
const OpenConverter &threadConverter(const char *icuName)
{
    thread_local std::unordered_map<std::string_view, OpenConverter> converters;
    const auto found = converters.find(icuName);
    if (found != converters.end())
        return found->second;
    return converters.emplace(icuName, openConverter(icuName)).first->second;
}

} // namespace

std::unique_ptr<IcuTextConverter> IcuTextConverter::converter(StringEncoding encoding, EncodingShape shape,
                                                              const char *icuName)
{
    const OpenConverter &converter = threadConverter(icuName);
    if (!converter.icu)
        return nullptr;
    const Traits traits = {converter.keepsAscii, converter.keepsLines};
    return std::unique_ptr<IcuTextConverter>(new IcuTextConverter(encoding, shape, traits, icuName));
}

bool IcuTextConverter::hasSingleBytes() const
{
    return threadConverter(_icuName).hasSingleBytes;
}

std::optional<QString> IcuTextConverter::decode(QByteArrayView bytes)
{
    const OpenConverter &converter = threadConverter(_icuName);
    if (converter.keepsAscii && bytes.size() <= WORK_BETWEEN_STOP_CHECKS && isAscii(bytes))
        return QString::fromLatin1(bytes);
    return decodeWith(converter, bytes);
}

std::optional<QByteArray> IcuTextConverter::encode(QStringView text)
{
    const OpenConverter &converter = threadConverter(_icuName);
    if (converter.keepsAscii && isAscii(text))
        return text.toLatin1();
    std::optional<QByteArray> bytes = converter.rotatesControls
                                          ? encodeWithIcu(converter.icu.get(), withControlsForIcu(text))
                                          : encodeWithIcu(converter.icu.get(), text);
    // Fallbacks for private characters and the like can't be switched off.
    if (!bytes || decodeWith(converter, *bytes) != text)
        return std::nullopt;
    return bytes;
}

} // namespace tidemark
