#include "support/Testing.h"
#include "text/TextEncodingTable.h"

namespace tidemark::test {
namespace {

TEST(CharSetNamesTest, NamesAreUnderstood)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/charset-names.tsv")) {
        for (const QString &name : row.text(1).split(u','))
            EXPECT_EQ(convertIANACharSetNameToEncoding(name), row.number(0)) << name.toStdString();
    }
}

TEST(CharSetNamesTest, NamesGivenOutAreUnderstood)
{
    for (const TextEncodingRow &row : allTextEncodings()) {
        const QString name = convertEncodingToIANACharSetName(row.coreFoundationEncoding);
        QStringList names = QString::fromLatin1(row.aliases).split(u' ', Qt::SkipEmptyParts);
        const bool isUnderstoodAsAnother = name == u"GBK" || name == u"Shift_JIS";
        if (!name.isEmpty() && !isUnderstoodAsAnother)
            names << name;
        for (const QString &each : names)
            EXPECT_EQ(convertIANACharSetNameToEncoding(each), row.coreFoundationEncoding)
                << each.toStdString();
    }
    EXPECT_EQ(convertEncodingToIANACharSetName(0x420), QStringLiteral("cp932"));
    EXPECT_TRUE(convertEncodingToIANACharSetName(0xBFF).isEmpty());
    EXPECT_TRUE(convertEncodingToIANACharSetName(0x20C).isEmpty());
}

} // namespace
} // namespace tidemark::test
