#include "text/AsciiText.h"
#include "text/TextEncodingTable.h"

#include <QHash>

#include <unicode/ucnv.h>

namespace tidemark {

namespace {

QHash<QByteArray, CoreFoundationEncoding> makeEncodingsByName()
{
    QHash<QByteArray, CoreFoundationEncoding> encodings;
    // An alias wins over another encoding's own name: "gbk" means the Windows code page.
    for (const TextEncodingRow &row : allTextEncodings()) {
        for (const QByteArray &alias : QByteArray(row.aliases).split(' '))
            encodings.insert(alias, row.coreFoundationEncoding);
    }
    for (const TextEncodingRow &row : allTextEncodings()) {
        // A name with capitals differs from another one only in case: it is given out but not recognised.
        const QByteArray name = row.charSetName;
        if (name == name.toLower() && !encodings.contains(name))
            encodings.insert(name, row.coreFoundationEncoding);
    }
    encodings.remove(QByteArray());
    return encodings;
}

/// For "iso-8859-8-i" as for "iso-8859-8": what follows the number doesn't count.
std::optional<CoreFoundationEncoding> partOfIso8859(const QByteArray &name)
{
    constexpr QByteArrayView PREFIX = "iso-8859-";
    constexpr uint LAST_PART = 16;
    if (!name.startsWith(PREFIX))
        return std::nullopt;
    uint part = 0;
    for (qsizetype i = PREFIX.size(); i < name.size() && name[i] >= '0' && name[i] <= '9'; ++i)
        part = std::min(part * 10 + static_cast<uint>(name[i] - '0'), LAST_PART + 1);
    if (part == 0 || part > LAST_PART)
        return std::nullopt;
    return CF_ENCODING_ISO_8859_BASE + part;
}

std::optional<CoreFoundationEncoding> encodingNamed(const QByteArray &lowerCaseName)
{
    static const QHash<QByteArray, CoreFoundationEncoding> encodings = makeEncodingsByName();
    if (const auto encoding = partOfIso8859(lowerCaseName))
        return encoding;
    if (lowerCaseName.startsWith("macintosh"))
        return CF_ENCODING_MAC_ROMAN;
    const auto found = encodings.find(lowerCaseName);
    if (found == encodings.end())
        return std::nullopt;
    return *found;
}

/// ICU compares names without regard to punctuation, and knows more of them.
std::optional<CoreFoundationEncoding> encodingOfIcuAlias(const QByteArray &name)
{
    for (const char *standard : {"WINDOWS", "JAVA", "MIME"}) {
        UErrorCode status = U_ZERO_ERROR;
        const char *standardName = ucnv_getStandardName(name.constData(), standard, &status);
        if (U_FAILURE(status) || !standardName)
            continue;
        if (const auto encoding = encodingNamed(QByteArray(standardName).toLower()))
            return encoding;
    }
    return std::nullopt;
}

} // namespace

CoreFoundationEncoding convertIANACharSetNameToEncoding(const QString &name)
{
    if (!isAscii(name) || name.contains(QChar::Null))
        return TD_INVALID_CORE_FOUNDATION_ENCODING;
    const QByteArray lowerCaseName = name.toLatin1().toLower();
    if (const auto encoding = encodingNamed(lowerCaseName))
        return *encoding;
    return encodingOfIcuAlias(lowerCaseName).value_or(TD_INVALID_CORE_FOUNDATION_ENCODING);
}

QString convertEncodingToIANACharSetName(CoreFoundationEncoding encoding)
{
    const TextEncodingRow *row = textEncodingRow(encoding);
    return row ? QString::fromLatin1(row->charSetName) : QString();
}

} // namespace tidemark
