#include "reading/TDStringEncoding.h"
#include "foundation/UserDefaults.h"
#include "support/Testing.h"

#include <algorithm>

namespace tidemark::test {
namespace {

TEST(TDStringEncodingTest, CatalogueHoldsEveryAvailableEncodingSortedByNameWithoutRegardToCase)
{
    QList<StringEncoding> identifiers;
    QStringList names;
    for (const TDStringEncoding &encoding : TDStringEncoding::availableEncodings()) {
        identifiers.append(encoding.stringEncodingId());
        names.append(encoding.localizedName().toLower());
    }
    QList<StringEncoding> available = availableStringEncodings();
    std::ranges::sort(available);
    std::ranges::sort(identifiers);
    EXPECT_EQ(identifiers, available);
    const QStringList some = {u"greek (dos greek 1)"_s, u"greek (dos)"_s,     u"korean (euc)"_s,
                              u"non-lossy ascii"_s,     u"unicode (utf-8)"_s, u"western (ascii)"_s};
    names.removeIf([&some](const QString &name) { return !some.contains(name); });
    EXPECT_EQ(names, some);
}

TEST(TDStringEncodingTest, FilesAreOpenedInTheDefaultUnlessTheEncodingIsDetected)
{
    UserDefaults &settings = UserDefaults::standard();
    settings.setObject(TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, false);
    // The stored number counts as one of 32 bits with a sign.
    for (const auto &[stored, used] : {std::pair(4LL, 4U),
                                       {30, 30},
                                       {0x100000004, 4},
                                       {qint64(TD_ENCODING_UTF16), TD_ENCODING_UTF16},
                                       {qint64(TD_ENCODING_UTF16_BIG_ENDIAN), 0},
                                       {0, 0},
                                       {777, 0}}) {
        settings.setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, stored);
        EXPECT_EQ(TDStringEncoding::userDefaultsEncoding(), used) << stored;
    }
    settings.setObject(TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, {});
    settings.setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, {});
    EXPECT_EQ(TDStringEncoding::userDefaultsEncoding(), TD_FILE_COMMON_UNKNOWN_ENCODING);
}

} // namespace
} // namespace tidemark::test
