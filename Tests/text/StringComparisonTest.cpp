#include "text/StringComparison.h"

#include "SearchAlphabet.h"
#include "support/Testing.h"

#include <unicode/utf16.h>

namespace tidemark::test {
namespace {

std::vector<UChar32> codePoints(const QString &text)
{
    std::vector<UChar32> points;
    for (qsizetype i = 0; i < text.size();) {
        UChar32 point;
        U16_NEXT(text.utf16(), i, text.size(), point);
        points.push_back(point);
    }
    return points;
}

TEST(StringComparison, OrdersByCodePointsOfTheDecomposedForms)
{
    SearchAlphabet alphabet;
    int equivalents = 0;
    for (int round = 0; round < 40000; ++round) {
        alphabet.chooseAlphabet();
        const QString left = alphabet.text(4);
        const QString right = alphabet.text(4);
        const auto expected = codePoints(decomposed(left)) <=> codePoints(decomposed(right));
        ASSERT_TRUE((compare(left, right) <=> 0) == expected)
            << left.toStdString() << " / " << right.toStdString();
        equivalents += left != right && expected == 0;
    }
    EXPECT_GT(equivalents, 30);
    EXPECT_LT(compare(u"file10"_s, u"file9"_s), 0);
}

} // namespace
} // namespace tidemark::test
