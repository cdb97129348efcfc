#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace tidemark {

/// A text encoding in the platform's string-encoding numbering.
using StringEncoding = quint64;
/// The same encodings in the platform's lower-level numbering, the one recorded with files.
using CoreFoundationEncoding = quint32;

/// Not known; given to the line reader it asks for detection.
inline constexpr StringEncoding TD_FILE_COMMON_UNKNOWN_ENCODING = ~StringEncoding(0);
inline constexpr CoreFoundationEncoding TD_INVALID_CORE_FOUNDATION_ENCODING = 0xFFFFFFFFU;

inline constexpr StringEncoding TD_ENCODING_ASCII = 0x1;
inline constexpr StringEncoding TD_ENCODING_UTF8 = 0x4;
inline constexpr StringEncoding TD_ENCODING_UTF16 = 0xA;
inline constexpr StringEncoding TD_ENCODING_UTF16_BIG_ENDIAN = 0x90000100;
inline constexpr StringEncoding TD_ENCODING_UTF16_LITTLE_ENDIAN = 0x94000100;
inline constexpr StringEncoding TD_ENCODING_UTF32 = 0x8C000100;
inline constexpr StringEncoding TD_ENCODING_UTF32_BIG_ENDIAN = 0x98000100;
inline constexpr StringEncoding TD_ENCODING_UTF32_LITTLE_ENDIAN = 0x9C000100;

/// The encodings that can be decoded here, in the platform's order.
QList<StringEncoding> availableStringEncodings();

/// The display name ("Unicode (UTF-8)"), empty for a number that names no encoding.
QString localizedNameOfStringEncoding(StringEncoding encoding);

CoreFoundationEncoding convertStringEncodingToCoreFoundation(StringEncoding encoding);
/// TD_FILE_COMMON_UNKNOWN_ENCODING for a number that names no encoding.
StringEncoding convertCoreFoundationToStringEncoding(CoreFoundationEncoding encoding);
/// TD_INVALID_CORE_FOUNDATION_ENCODING for a name that isn't known.
CoreFoundationEncoding convertIANACharSetNameToEncoding(const QString &name);
/// Empty for an encoding without a registered name.
QString convertEncodingToIANACharSetName(CoreFoundationEncoding encoding);

/// How bytes of an encoding can be examined without decoding them.
enum class EncodingShape {
    /// Every byte below 0x80 is that ASCII character wherever it stands (UTF-8, ISO 8859, Windows, Mac, EUC
    /// ...).
    AsciiBytes,
    /// Bytes below 0x80 may also be part of a longer character or change a state (Shift-JIS, Big 5, GBK,
    /// ISO 2022, HZ, UTF-7, EBCDIC ...).
    Opaque,
    Utf16LittleEndian,
    Utf16BigEndian,
    Utf32LittleEndian,
    Utf32BigEndian,
};

/// Strict conversion between the bytes of one encoding and text: what the encoding doesn't allow, or can't
/// hold, gives nothing; never a substitute and never part of a text. Each call converts a whole text by
/// itself, from the encoding's initial state. Byte-order marks are ordinary text in both directions.
/// Not to be shared between threads; cheap to make repeatedly (converters are kept per thread).
class TextConverter
{
public:
    /// Nothing when the encoding can't be converted here.
    static std::unique_ptr<TextConverter> converterForEncoding(StringEncoding encoding);
    virtual ~TextConverter() = default;

    virtual std::optional<QString> decode(QByteArrayView bytes) = 0;
    virtual std::optional<QByteArray> encode(QStringView text) = 0;

    StringEncoding encoding() const { return _encoding; }
    EncodingShape shape() const { return _shape; }

    /// True when a text of ASCII bytes only is that ASCII text.
    bool keepsAscii() const { return _traits.keepsAscii; }
    /// True when lines can be decoded together: split at the line ends of the encoding's unit, they give the
    /// same texts one by one as in one piece, and no line end but these.
    bool keepsLines() const { return _traits.keepsLines; }

protected:
    struct Traits
    {
        bool keepsAscii = false;
        bool keepsLines = false;
    };
    static constexpr Traits traitsOf(EncodingShape shape)
    {
        return {shape == EncodingShape::AsciiBytes, shape != EncodingShape::Opaque};
    }
    TextConverter(StringEncoding encoding, EncodingShape shape)
        : TextConverter(encoding, shape, traitsOf(shape))
    {}
    TextConverter(StringEncoding encoding, EncodingShape shape, Traits traits)
        : _encoding(encoding), _shape(shape), _traits(traits)
    {}

private:
    StringEncoding _encoding;
    EncodingShape _shape;
    Traits _traits;
};

/// True when every unit belongs to a well-formed character, so that the text has a UTF-8 form.
bool isWellFormed(QStringView text);
/// The text's UTF-8 bytes, nothing when it isn't well formed.
std::optional<QByteArray> strictUtf8(QStringView text);
/// The text of the bytes, nothing when they aren't UTF-8. A leading mark stays as U+FEFF.
std::optional<QString> textFromUtf8(QByteArrayView bytes);

} // namespace tidemark
