#include "text/LikelyEncodings.h"

#include <unicode/ucsdet.h>

#include <memory>

namespace tidemark {

namespace {

constexpr qsizetype MOST_PROPOSED = 6;

StringEncoding encodingOfMatch(const UCharsetMatch *match)
{
    UErrorCode error = U_ZERO_ERROR;
    const char *name = ucsdet_getName(match, &error);
    const CoreFoundationEncoding number = U_SUCCESS(error)
                                              ? convertIANACharSetNameToEncoding(QString::fromLatin1(name))
                                              : TD_INVALID_CORE_FOUNDATION_ENCODING;
    return number != TD_INVALID_CORE_FOUNDATION_ENCODING ? convertCoreFoundationToStringEncoding(number)
                                                         : TD_FILE_COMMON_UNKNOWN_ENCODING;
}

bool allows(StringEncoding encoding, QByteArrayView bytes)
{
    const auto converter = TextConverter::converterForEncoding(encoding);
    return converter && converter->decode(bytes);
}

} // namespace

QList<StringEncoding> likelyEncodings(QByteArrayView bytes)
{
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UCharsetDetector, void (*)(UCharsetDetector *)> detector(ucsdet_open(&error),
                                                                                   ucsdet_close);
    ucsdet_setText(detector.get(), bytes.data(), int32_t(bytes.size()), &error);
    int32_t count = 0;
    const UCharsetMatch **matches = ucsdet_detectAll(detector.get(), &count, &error);
    QList<StringEncoding> likely;
    for (int32_t index = 0; U_SUCCESS(error) && index < count && likely.size() < MOST_PROPOSED; ++index) {
        const StringEncoding encoding = encodingOfMatch(matches[index]);
        // The detector looks at frequencies and forgives what a converter doesn't.
        if (!likely.contains(encoding) && allows(encoding, bytes))
            likely << encoding;
    }
    return likely;
}

} // namespace tidemark
