#include "matching/ExpressionTranslation.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

TEST(ExpressionTranslation, KeepsWhatAMatchMustHoldAndNothingThatIsNotCertain)
{
    for (const TableRow &row : rowsOf(TIDEMARK_TEST_DATA "/translations.tsv")) {
        const CaseRule caseRule = row.bytes(0) == "ignore" ? CaseRule::Ignore : CaseRule::Exact;
        EXPECT_EQ(translatedExpression(row.fields[1], caseRule).value_or("none").toStdString(),
                  row.fields[2].toStdString())
            << row.line;
    }
}

} // namespace
} // namespace tidemark::test
