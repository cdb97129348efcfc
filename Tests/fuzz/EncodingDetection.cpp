// Declarations of encodings, by the same patterns in another library.

#include "reading/EncodingDetection.h"

#include "Fuzzing.h"

#include <QRegularExpression>

namespace tidemark::fuzz {

namespace {

using namespace Qt::Literals::StringLiterals;

StringEncoding named(const QString &latinName)
{
    const std::optional<QString> name = textFromUtf8(latinName.toLatin1());
    const CoreFoundationEncoding number =
        name ? convertIANACharSetNameToEncoding(*name) : TD_INVALID_CORE_FOUNDATION_ENCODING;
    return number == TD_INVALID_CORE_FOUNDATION_ENCODING ? TD_FILE_COMMON_UNKNOWN_ENCODING
                                                         : convertCoreFoundationToStringEncoding(number);
}

StringEncoding expectedIn(const QByteArray &bytes)
{
    static const QRegularExpression expressions[] = {
        QRegularExpression(uR"(\A\s*<\?[^>]*encoding\s*=\s*["']([^"']*)["'][^>]*\?>)"_s,
                           QRegularExpression::CaseInsensitiveOption),
        QRegularExpression(uR"(<META[^>]+charset\s*=\s*([^"'>\s]+))"_s,
                           QRegularExpression::CaseInsensitiveOption)};
    for (const QRegularExpression &expression : expressions) {
        const QRegularExpressionMatch match = expression.match(QString::fromLatin1(bytes));
        const StringEncoding encoding =
            match.hasMatch() ? named(match.captured(1)) : TD_FILE_COMMON_UNKNOWN_ENCODING;
        if (encoding != TD_FILE_COMMON_UNKNOWN_ENCODING)
            return encoding;
    }
    return TD_FILE_COMMON_UNKNOWN_ENCODING;
}

/// The declaration as it would stand in a file of that encoding.
void checkInUnits(const QByteArray &ascii)
{
    const auto converter = TextConverter::converterForEncoding(TD_ENCODING_UTF16_LITTLE_ENDIAN);
    const QByteArray units = *converter->encode(QString::fromLatin1(ascii));
    require(declaredEncoding(units) == expectedIn(ascii), "the same in units of 16 bits");
}

} // namespace

void run(Input &input)
{
    const bool isTriedInUnits = input.below(16) == 0; // which takes its time
    const QByteArray bytes = input.rest().left(TD_CONTENT_PROBE_SIZE);
    const TimeLimit limit;
    const StringEncoding found = declaredEncoding(bytes);
    limit.check("detection ends soon", 0.05);
    const StringEncoding expected = expectedIn(bytes);
    if (!bytes.contains('\0') || expected != TD_FILE_COMMON_UNKNOWN_ENCODING)
        require(found == expected, "what is declared is found");
    const bool isAscii = bytes.isValidUtf8() && QString::fromUtf8(bytes).size() == bytes.size();
    if (isTriedInUnits && isAscii && !bytes.contains('\0'))
        checkInUnits(bytes);

    const ByteOrderMark mark = byteOrderMarkAt(bytes);
    require(mark.length <= bytes.size(), "a mark lies within the bytes");
    require((mark.length > 0) == (mark.encoding != TD_FILE_COMMON_UNKNOWN_ENCODING),
            "a mark is of an encoding");
}

} // namespace tidemark::fuzz
