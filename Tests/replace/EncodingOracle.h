#pragma once

#include "text/TextEncoding.h"

#include <QString>

#include <iconv.h>

namespace tidemark::test {

using namespace Qt::Literals::StringLiterals;

inline constexpr StringEncoding EBCDIC = 0x80000C02;

/// Where a line isn't split off whole, or needs what a line before it designated.
inline bool mayRefuse(StringEncoding encoding)
{
    constexpr StringEncoding ISO_2022_CN = 0x80000830;
    return encoding == TD_ENCODING_UTF16 || encoding == TD_ENCODING_UTF32 || encoding == ISO_2022_CN;
}

/// Encodes whole texts with the C library, where it knows the encoding.
class EncodingOracle
{
public:
    explicit EncodingOracle(StringEncoding encoding) : _own(TextConverter::converterForEncoding(encoding))
    {
        QByteArray name =
            convertEncodingToIANACharSetName(convertStringEncodingToCoreFoundation(encoding)).toLatin1();
        // The C library would add marks to these.
        if (encoding == TD_ENCODING_UTF16)
            name = "utf-16le";
        if (encoding == TD_ENCODING_UTF32)
            name = "utf-32be";
        // No name would be that of the locale's encoding.
        _iconv = name.isEmpty() ? NO_CONVERTER : iconv_open(name.constData(), "UTF-16LE");
        if (isIndependent() && !_bytes(u"needle\r\n"_s))
            _close();
    }
    ~EncodingOracle() { _close(); }
    EncodingOracle(const EncodingOracle &) = delete;
    EncodingOracle &operator=(const EncodingOracle &) = delete;

    bool isIndependent() const { return _iconv != NO_CONVERTER; }
    std::optional<QByteArray> encode(const QString &text) const
    {
        return isIndependent() ? _bytes(text) : _own->encode(text);
    }
    /// Both have the character, and as the same bytes.
    bool agreesOn(const QString &character) const
    {
        const auto bytes = encode(character);
        return bytes && bytes == _own->encode(character) && _own->decode(*bytes) == character;
    }

private:
    static inline const iconv_t NO_CONVERTER = iconv_t(-1);

    std::optional<QByteArray> _bytes(QString text) const
    {
        QByteArray bytes(text.size() * 8 + 16, Qt::Uninitialized);
        char *source = reinterpret_cast<char *>(text.data());
        size_t sourceLeft = size_t(text.size()) * 2;
        char *target = bytes.data();
        size_t targetLeft = size_t(bytes.size());
        iconv(_iconv, nullptr, nullptr, nullptr, nullptr);
        if (iconv(_iconv, &source, &sourceLeft, &target, &targetLeft) != 0 ||
            iconv(_iconv, nullptr, nullptr, &target, &targetLeft) != 0)
            return {};
        bytes.truncate(target - bytes.constData());
        return bytes;
    }
    void _close()
    {
        if (isIndependent())
            iconv_close(_iconv);
        _iconv = NO_CONVERTER;
    }

    std::unique_ptr<TextConverter> _own;
    iconv_t _iconv;
};

} // namespace tidemark::test
