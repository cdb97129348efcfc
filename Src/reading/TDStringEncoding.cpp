#include "reading/TDStringEncoding.h"

#include "foundation/UserDefaults.h"

#include <QCollator>

#include <algorithm>

namespace tidemark {

namespace {

std::vector<TDStringEncoding> sortedEncodings()
{
    std::vector<TDStringEncoding> encodings;
    for (const StringEncoding encoding : availableStringEncodings())
        encodings.emplace_back(encoding);
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::stable_sort(
        encodings,
        [&](const QString &left, const QString &right) { return collator.compare(left, right) < 0; },
        &TDStringEncoding::localizedName);
    return encodings;
}

/// The setting counts as a signed 32-bit number, so that the encodings with a fixed byte order are no
/// defaults.
StringEncoding storedDefaultEncoding()
{
    const qint64 stored = UserDefaults::standard().defaultStringEncoding();
    return static_cast<StringEncoding>(static_cast<qint64>(static_cast<qint32>(stored)));
}

} // namespace

TDStringEncoding::TDStringEncoding(StringEncoding stringEncodingId)
    : _stringEncodingId(stringEncodingId), _localizedName(localizedNameOfStringEncoding(stringEncodingId))
{}

const TDStringEncoding &TDStringEncoding::sharedStringEncoder()
{
    static const TDStringEncoding shared = [] {
        TDStringEncoding encoder;
        encoder._encodingsOfSystem = sortedEncodings();
        return encoder;
    }();
    return shared;
}

const std::vector<TDStringEncoding> &TDStringEncoding::availableEncodings()
{
    return sharedStringEncoder().encodingsOfSystem();
}

const TDStringEncoding *TDStringEncoding::defaultEncoding()
{
    const std::vector<TDStringEncoding> &encodings = availableEncodings();
    const StringEncoding wanted = storedDefaultEncoding();
    // Asked for each file that tells nothing of its encoding: the same answer, nearly always.
    static thread_local const TDStringEncoding *last = nullptr;
    if (last == nullptr || last->stringEncodingId() != wanted) {
        const auto found = std::ranges::find(encodings, wanted, &TDStringEncoding::stringEncodingId);
        last = found == encodings.end() ? nullptr : &*found;
    }
    return last;
}

StringEncoding TDStringEncoding::userDefaultsEncoding()
{
    if (UserDefaults::standard().boolFor(BooleanSetting::AutoDetectFileEncoding))
        return TD_FILE_COMMON_UNKNOWN_ENCODING;
    const TDStringEncoding *encoding = defaultEncoding();
    return encoding ? encoding->stringEncodingId() : 0;
}

} // namespace tidemark
