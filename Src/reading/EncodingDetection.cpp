#include "reading/EncodingDetection.h"

#include "reading/TDStringEncoding.h"

#include <boost/regex.hpp>

#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace tidemark {

namespace {

constexpr std::array<const char *, 2> DECLARATION_PATTERNS = {
    R"(^\s*<\?[^>]*encoding\s*=\s*["']([^"']*)["'][^>]*\?>)", // XML declaration
    R"(<META[^>]+charset\s*=\s*([^"'>\s]+))",                 // HTML META
};

const auto SEARCH_FLAGS = boost::match_single_line | boost::match_not_eol;

StringEncoding encodingForCharSetName(const QString &name)
{
    const CoreFoundationEncoding number = convertIANACharSetNameToEncoding(name);
    return number == TD_INVALID_CORE_FOUNDATION_ENCODING ? TD_FILE_COMMON_UNKNOWN_ENCODING
                                                         : convertCoreFoundationToStringEncoding(number);
}

boost::regex narrowExpression(const char *pattern)
{
    boost::regex expression;
    expression.imbue(std::locale::classic());
    expression.assign(pattern, boost::regex::perl | boost::regex::icase);
    return expression;
}

bool isSpace(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

/// Cheap and never wrong about "no": what an XML declaration must begin with.
bool mayHoldXmlDeclaration(QByteArrayView bytes)
{
    qsizetype index = 0;
    while (index < bytes.size() && isSpace(bytes[index]))
        ++index;
    return bytes.sliced(index).startsWith("<?");
}

bool mayHoldMetaElement(QByteArrayView bytes)
{
    qsizetype index = bytes.indexOf('<');
    while (index >= 0 && index + 5 <= bytes.size()) {
        if (qstrnicmp(bytes.data() + index, 5, "<META", 5) == 0)
            return true;
        index = bytes.indexOf('<', index + 1);
    }
    return false;
}

StringEncoding encodingFromMatch(QByteArrayView bytes, const boost::regex &expression)
{
    try {
        boost::cmatch match;
        if (!boost::regex_search(bytes.begin(), bytes.end(), match, expression, SEARCH_FLAGS))
            return TD_FILE_COMMON_UNKNOWN_ENCODING;
        const std::optional<QString> name = textFromUtf8(QByteArrayView(match[1].first, match[1].second));
        return name ? encodingForCharSetName(*name) : TD_FILE_COMMON_UNKNOWN_ENCODING;
    } catch (const std::runtime_error &) {
        return TD_FILE_COMMON_UNKNOWN_ENCODING;
    }
}

StringEncoding declaredEncodingInBytes(QByteArrayView bytes)
{
    static const boost::regex xmlDeclaration = narrowExpression(DECLARATION_PATTERNS[0]);
    static const boost::regex metaElement = narrowExpression(DECLARATION_PATTERNS[1]);
    StringEncoding encoding = TD_FILE_COMMON_UNKNOWN_ENCODING;
    if (mayHoldXmlDeclaration(bytes))
        encoding = encodingFromMatch(bytes, xmlDeclaration);
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING && mayHoldMetaElement(bytes))
        encoding = encodingFromMatch(bytes, metaElement);
    return encoding;
}

/// Code units of `Unit`'s width, in the machine's byte order, each widened to a wide character; what is left
/// over at the end is dropped.
template <typename Unit>
std::wstring widened(QByteArrayView bytes)
{
    std::wstring text;
    for (qsizetype index = 0; index + qsizetype(sizeof(Unit)) <= bytes.size();
         index += qsizetype(sizeof(Unit))) {
        Unit unit = 0;
        std::memcpy(&unit, bytes.data() + index, sizeof unit);
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

template <typename Unit>
QByteArray narrowed(const std::wstring &text)
{
    QByteArray bytes;
    for (const wchar_t character : text) {
        const Unit unit = static_cast<Unit>(std::bit_cast<std::uint32_t>(character));
        bytes.append(reinterpret_cast<const char *>(&unit), sizeof unit);
    }
    return bytes;
}

template <typename Unit>
std::vector<boost::wregex> expressionsInUnits(TextConverter &converter)
{
    std::vector<boost::wregex> expressions;
    for (const char *pattern : DECLARATION_PATTERNS) {
        boost::wregex expression;
        expression.imbue(std::locale::classic());
        if (const std::optional<QByteArray> bytes = converter.encode(QString::fromLatin1(pattern)))
            expression.assign(widened<Unit>(*bytes), boost::wregex::perl | boost::wregex::icase);
        expressions.push_back(expression);
    }
    return expressions;
}

/// Both patterns given in `tried`, looked for in the bytes taken as units of that width. As the units aren't
/// swapped, a pattern given in the other byte order has no special characters: it only finds itself.
template <typename Unit, StringEncoding tried>
StringEncoding detectEncoding(QByteArrayView bytes)
{
    const auto converter = TextConverter::converterForEncoding(tried);
    static const std::vector<boost::wregex> expressions = expressionsInUnits<Unit>(*converter);
    const std::wstring text = widened<Unit>(bytes);
    for (const boost::wregex &expression : expressions) {
        try {
            boost::wsmatch match;
            if (!boost::regex_search(text, match, expression, SEARCH_FLAGS))
                continue;
            const std::optional<QString> name = converter->decode(narrowed<Unit>(match[1].str()));
            const StringEncoding encoding =
                name ? encodingForCharSetName(*name) : TD_FILE_COMMON_UNKNOWN_ENCODING;
            if (encoding != TD_FILE_COMMON_UNKNOWN_ENCODING)
                return encoding;
        } catch (const std::runtime_error &) {
            continue;
        }
    }
    return TD_FILE_COMMON_UNKNOWN_ENCODING;
}

StringEncoding declaredEncodingInUnits(QByteArrayView bytes)
{
    StringEncoding encoding = detectEncoding<std::uint16_t, TD_ENCODING_UTF16_LITTLE_ENDIAN>(bytes);
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING)
        encoding = detectEncoding<std::uint16_t, TD_ENCODING_UTF16_BIG_ENDIAN>(bytes);
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING)
        encoding = detectEncoding<std::uint32_t, TD_ENCODING_UTF32_LITTLE_ENDIAN>(bytes);
    if (encoding == TD_FILE_COMMON_UNKNOWN_ENCODING)
        encoding = detectEncoding<std::uint32_t, TD_ENCODING_UTF32_BIG_ENDIAN>(bytes);
    return encoding;
}

/// Leading white space, a sign, digits; held to the range of 32 bits; 0 when there are no digits.
qint32 integerValue(QStringView text)
{
    text = text.trimmed();
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.sliced(1);
    qint64 value = 0;
    for (const QChar digit : text) {
        if (digit < u'0' || digit > u'9')
            break;
        value = qMin(value * 10 + (digit.unicode() - u'0'), qint64(1) << 32);
    }
    constexpr qint64 LARGEST = std::numeric_limits<qint32>::max();
    return static_cast<qint32>(negative ? -qMin(value, LARGEST + 1) : qMin(value, LARGEST));
}

} // namespace

StringEncoding declaredEncoding(QByteArrayView bytes)
{
    const StringEncoding encoding = declaredEncodingInBytes(bytes);
    // Every pattern has ASCII characters, which wider units hold beside zero bytes.
    if (encoding != TD_FILE_COMMON_UNKNOWN_ENCODING || !bytes.contains('\0'))
        return encoding;
    return declaredEncodingInUnits(bytes);
}

ByteOrderMark byteOrderMarkAt(QByteArrayView firstBytes)
{
    const QByteArrayView bytes = firstBytes.first(qMin(firstBytes.size(), qsizetype(4)));
    // A UTF-16 file whose first character is U+0000 is taken for UTF-32 here.
    if (bytes == QByteArrayView("\xFF\xFE\0\0", 4))
        return {TD_ENCODING_UTF32_LITTLE_ENDIAN, 4};
    if (bytes == QByteArrayView("\0\0\xFE\xFF", 4))
        return {TD_ENCODING_UTF32_BIG_ENDIAN, 4};
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return {TD_ENCODING_UTF8, 3};
    if (bytes.startsWith("\xFF\xFE"))
        return {TD_ENCODING_UTF16_LITTLE_ENDIAN, 2};
    if (bytes.startsWith("\xFE\xFF"))
        return {TD_ENCODING_UTF16_BIG_ENDIAN, 2};
    return {};
}

StringEncoding defaultEncodingIdentifier()
{
    const TDStringEncoding *standard = TDStringEncoding::defaultEncoding();
    return standard == nullptr ? 0 : standard->stringEncodingId();
}

StringEncoding encodingFromAttributeValue(const QString &value)
{
    const QStringList parts = value.split(u';');
    const qint32 number = parts.size() < 2 ? 0 : integerValue(parts[1]);
    return number == 0 ? TD_FILE_COMMON_UNKNOWN_ENCODING
                       : convertCoreFoundationToStringEncoding(static_cast<CoreFoundationEncoding>(number));
}

QString attributeValueForEncoding(StringEncoding encoding)
{
    const CoreFoundationEncoding number = convertStringEncodingToCoreFoundation(encoding);
    return convertEncodingToIANACharSetName(number) + u';' + QString::number(number);
}

SettledEncoding encodingOfContent(const ByteOrderMark &mark, QByteArrayView bytes,
                                  const std::function<std::optional<QString>()> &attribute)
{
    if (mark.length > 0)
        return {mark.encoding, EncodingSource::Mark};
    const StringEncoding declared = declaredEncoding(bytes.first(qMin(bytes.size(), TD_CONTENT_PROBE_SIZE)));
    if (declared != TD_FILE_COMMON_UNKNOWN_ENCODING)
        return {declared, EncodingSource::Declaration};
    const std::optional<QString> value = attribute();
    const StringEncoding recorded =
        value ? encodingFromAttributeValue(*value) : TD_FILE_COMMON_UNKNOWN_ENCODING;
    if (recorded != TD_FILE_COMMON_UNKNOWN_ENCODING)
        return {recorded, EncodingSource::Attribute};
    return {defaultEncodingIdentifier(), EncodingSource::Default};
}

} // namespace tidemark
