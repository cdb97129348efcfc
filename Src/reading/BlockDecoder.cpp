#include "reading/BlockDecoder.h"

#include "text/ByteScan.h"
#include "text/Utf8.h"

#include <cstring>

namespace tidemark {

namespace {

/// What a very long line needed isn't kept for the next file.
constexpr qsizetype LARGEST_KEPT_TEXT = 1 << 22;
/// About so many bytes are decoded at a time, unless they are ASCII: enough to make each call worth its
/// while.
constexpr qsizetype DECODED_LENGTH = 4096;

int unitSizeOf(EncodingShape shape)
{
    switch (shape) {
    case EncodingShape::Utf16LittleEndian:
    case EncodingShape::Utf16BigEndian:
        return 2;
    case EncodingShape::Utf32LittleEndian:
    case EncodingShape::Utf32BigEndian:
        return 4;
    default:
        return 1;
    }
}

/// As many lines as fit into a piece to be decoded, but at least one; everything when no line feed is left.
qsizetype lengthOfLinesToDecode(QByteArrayView bytes)
{
    const qsizetype lineFeed = lastIndexOf('\n', bytes.first(qMin(bytes.size(), DECODED_LENGTH)));
    if (lineFeed >= 0)
        return lineFeed + 1;
    const void *next = std::memchr(bytes.data(), '\n', size_t(bytes.size()));
    return next != nullptr ? static_cast<const char *>(next) + 1 - bytes.data() : bytes.size();
}

} // namespace

bool BlockDecoder::setEncoding(StringEncoding encoding)
{
    if (encoding == TD_ENCODING_UTF8) {
        _converter.reset();
        _unitSize = 1;
    } else if (encoding != _encoding || !_converter) {
        _converter = TextConverter::converterForEncoding(encoding);
        if (!_converter || !_converter->keepsLines()) {
            // The next file of the encoding before must not be taken for one of this.
            _converter.reset();
            return false;
        }
        _unitSize = unitSizeOf(_converter->shape());
    }
    _encoding = encoding;
    return true;
}

bool BlockDecoder::isLittleEndian() const
{
    return _converter && (_converter->shape() == EncodingShape::Utf16LittleEndian ||
                          _converter->shape() == EncodingShape::Utf32LittleEndian);
}

bool BlockDecoder::toUtf8(QByteArrayView bytes, QByteArrayView &block)
{
    const bool isUtf8 = _converter ? _converter->keepsAscii() && isAscii(bytes) : isValidUtf8(bytes);
    if (isUtf8) {
        block = bytes;
        return true;
    }
    if (!_converter || !_convert(bytes))
        return false;
    block = _converted;
    return true;
}

void BlockDecoder::shrink()
{
    if (_converted.capacity() > LARGEST_KEPT_TEXT)
        _converted = QByteArray();
}

/// False when the encoding doesn't allow the bytes.
bool BlockDecoder::_convert(QByteArrayView bytes)
{
    _converted.resize(0);
    while (!bytes.isEmpty()) {
        const qsizetype length = _converter->keepsAscii() ? lengthOfLinesToDecode(bytes) : bytes.size();
        const QByteArrayView piece = bytes.first(length);
        bytes = bytes.sliced(length);
        // Most of most files is.
        if (_converter->keepsAscii() && isAscii(piece)) {
            _converted.append(piece);
            continue;
        }
        const std::optional<QString> text = _converter->decode(piece);
        const std::optional<QByteArray> utf8 = text ? strictUtf8(*text) : std::nullopt;
        if (!utf8)
            return false;
        _converted.append(*utf8);
    }
    return true;
}

} // namespace tidemark
