#include "reading/TDStringEncoding.h"
#include "foundation/UserDefaults.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tidemark {
namespace {

class TDStringEncodingTest : public testing::Test
{
protected:
    void TearDown() override
    {
        setDefault(QVariant());
        setAutoDetection(QVariant());
    }

    static void setDefault(const QVariant &value)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_DEFAULT_STRING_ENCODING, value);
    }
    static void setAutoDetection(const QVariant &value)
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_AUTO_DETECT_FILE_ENCODING_FROM_FILE, value);
    }
    static StringEncoding defaultIdentifier()
    {
        const TDStringEncoding *encoding = TDStringEncoding::defaultEncoding();
        return encoding ? encoding->stringEncodingId() : 0;
    }
};

TEST_F(TDStringEncodingTest, CatalogueHoldsEveryAvailableEncodingSortedByNameWithoutRegardToCase)
{
    const std::vector<TDStringEncoding> &catalogue = TDStringEncoding::availableEncodings();
    QList<StringEncoding> identifiers;
    QStringList names;
    for (const TDStringEncoding &encoding : catalogue) {
        identifiers.append(encoding.stringEncodingId());
        names.append(encoding.localizedName().toLower());
        EXPECT_TRUE(encoding.encodingsOfSystem().empty());
    }
    QList<StringEncoding> available = availableStringEncodings();
    std::ranges::sort(available);
    std::ranges::sort(identifiers);
    EXPECT_EQ(identifiers, available);
    const QStringList sorted = {QStringLiteral("greek (dos greek 1)"), QStringLiteral("greek (dos)"),
                                QStringLiteral("korean (euc)"),        QStringLiteral("non-lossy ascii"),
                                QStringLiteral("unicode (utf-8)"),     QStringLiteral("western (ascii)")};
    for (qsizetype i = 1; i < sorted.size(); ++i)
        EXPECT_LT(names.indexOf(sorted[i - 1]), names.indexOf(sorted[i])) << sorted[i].toStdString();
    EXPECT_GT(names.indexOf(sorted[0]), -1);
}

TEST_F(TDStringEncodingTest, DefaultIsFoundByItsNumberTakenAsSigned32Bits)
{
    const struct
    {
        QVariant stored;
        StringEncoding found;
    } cases[] = {
        {4, 4},
        {30, 30},
        {qint64(0x100000004), 4},
        {qint64(TD_ENCODING_UTF16), TD_ENCODING_UTF16},
        {qint64(TD_ENCODING_UTF16_BIG_ENDIAN), 0},
        {qint64(TD_ENCODING_UTF32_LITTLE_ENDIAN), 0},
        {0, 0},
        {777, 0},
    };
    for (const auto &[stored, found] : cases) {
        setDefault(stored);
        EXPECT_EQ(defaultIdentifier(), found) << stored.toLongLong();
    }
}

TEST_F(TDStringEncodingTest, FilesAreOpenedInTheDefaultUnlessTheEncodingIsDetected)
{
    setDefault(5);
    setAutoDetection(false);
    EXPECT_EQ(TDStringEncoding::userDefaultsEncoding(), 5U);
    setDefault(777);
    EXPECT_EQ(TDStringEncoding::userDefaultsEncoding(), 0U);
    setAutoDetection(true);
    EXPECT_EQ(TDStringEncoding::userDefaultsEncoding(), TD_FILE_COMMON_UNKNOWN_ENCODING);
}

} // namespace
} // namespace tidemark
