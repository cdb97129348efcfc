#pragma once

#include "text/TextEncoding.h"

#include <QByteArrayView>
#include <QString>

#include <functional>
#include <optional>

namespace tidemark {

/// How many bytes of a file are examined for a declaration.
inline constexpr qsizetype TD_CONTENT_PROBE_SIZE = 512;

/// The encoding that an XML declaration or an HTML META element in the bytes names, or
/// TD_FILE_COMMON_UNKNOWN_ENCODING. The bytes are tried as ASCII-like text first, then as 16-bit units, then
/// as 32-bit units. Callable from any thread.
StringEncoding declaredEncoding(QByteArrayView bytes);

struct ByteOrderMark
{
    StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING;
    int length = 0; ///< in bytes; 0 where there is none
};

/// The mark at the start of a file's first four bytes, or fewer if it has fewer.
ByteOrderMark byteOrderMarkAt(QByteArrayView firstBytes);

/// Why a file is read in its encoding.
enum class EncodingSource : quint8 {
    Default, ///< nothing names one, or nothing is asked
    Mark,
    Declaration,
    Attribute,
    Chosen, ///< by a person, for this file
};

/// In what a file is read, and why.
struct SettledEncoding
{
    StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING;
    EncodingSource source = EncodingSource::Default;

    bool isKnown() const { return encoding != TD_FILE_COMMON_UNKNOWN_ENCODING; }
    /// What a reader is given to read the file in it once more. A mark has to be detected again, or it would
    /// be text.
    StringEncoding toReadAgain() const
    {
        return source == EncodingSource::Mark ? TD_FILE_COMMON_UNKNOWN_ENCODING : encoding;
    }
    friend bool operator==(const SettledEncoding &, const SettledEncoding &) = default;
};

/// The encoding of an open file that nobody named: the mark's, the one that its first bytes declare, the one
/// in its attribute, or the user's default, whichever there is first. `bytes` are those behind the mark, at
/// least TD_CONTENT_PROBE_SIZE of them where the file has so many. The attribute's value is asked for when it
/// comes to that.
SettledEncoding encodingOfContent(const ByteOrderMark &mark, QByteArrayView bytes,
                                  const std::function<std::optional<QString>()> &attribute);

/// The user's default encoding; 0 when the settings name none that can be used.
StringEncoding defaultEncodingIdentifier();

/// The encoding recorded in an attribute's value of the form "utf-8;134217984", or
/// TD_FILE_COMMON_UNKNOWN_ENCODING.
StringEncoding encodingFromAttributeValue(const QString &value);

/// The value to record for an encoding.
QString attributeValueForEncoding(StringEncoding encoding);

} // namespace tidemark
