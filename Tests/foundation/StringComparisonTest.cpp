#include "foundation/StringComparison.h"

#include <gtest/gtest.h>
#include <unicode/unorm2.h>

#include <QString>

#include <random>
#include <vector>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

int sign(int value)
{
    return (value > 0) - (value < 0);
}

std::vector<uint> decomposed(const QString &text)
{
    UErrorCode status = U_ZERO_ERROR;
    std::u16string result(size_t(text.size()) * 4 + 1, u'\0');
    const int length = unorm2_normalize(unorm2_getNFDInstance(&status), QStringView(text).utf16(),
                                        int32_t(text.size()), result.data(), int32_t(result.size()), &status);
    std::vector<uint> characters;
    for (int i = 0; i < length; ++i) {
        if (QChar::isHighSurrogate(result[size_t(i)]) && i + 1 < length &&
            QChar::isLowSurrogate(result[size_t(i) + 1])) {
            characters.push_back(QChar::surrogateToUcs4(result[size_t(i)], result[size_t(i) + 1]));
            ++i;
        } else {
            characters.push_back(result[size_t(i)]);
        }
    }
    return characters;
}

TEST(StringComparison, OrdersByCodePointsOfTheDecomposedForms)
{
    struct Case
    {
        QString left;
        QString right;
        int order;
    };
    const Case cases[] = {
        {u""_s, u""_s, 0},
        {u""_s, u"\u0301"_s, -1},
        {u"\u00E9"_s, u"e\u0301"_s, 0},
        {u"\u00C5"_s, u"\u212B"_s, 0},
        {u"\uAC00"_s, u"\u1100\u1161"_s, 0},
        {u"z"_s, u"\u00E9"_s, 1},
        {u"\u00E9"_s, u"e"_s, 1},
        {u"\u00E9"_s, u"f"_s, -1},
        {u"B"_s, u"a"_s, -1},
        {u"file10"_s, u"file9"_s, -1},
        {u"file"_s, u"file1"_s, -1},
        {u"\uFFFF"_s, QString::fromUcs4(U"\U00010000"), -1},
        {u"a\u200D"_s, u"a"_s, 1},
        {u"\uFEFFa"_s, u"a"_s, 1},
        {QString(u"a\0"_s), u"a"_s, 1},
        {u"a\u0345"_s, u"a\u0345\u0301"_s, 1},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(sign(compare(c.left, c.right)), c.order)
            << c.left.toStdString() << " / " << c.right.toStdString();
        EXPECT_EQ(sign(compare(c.right, c.left)), -c.order)
            << c.right.toStdString() << " / " << c.left.toStdString();
    }
}

TEST(StringComparison, AgreesWithComparingDecomposedTexts)
{
    const std::vector<QString> alphabet = {u"e"_s,
                                           u"\u00E9"_s,
                                           u"\u0301"_s,
                                           u"\u0323"_s,
                                           u"\u0345"_s,
                                           u"\u1F80"_s,
                                           u"\u03B1"_s,
                                           u"\uAC01"_s,
                                           u"\u1100"_s,
                                           u"\u11A8"_s,
                                           u"\uFFFF"_s,
                                           u"Z"_s,
                                           QString::fromUcs4(U"\U0001109A"),
                                           QString(QChar(0xD804)),
                                           QString(QChar(0xDC99)),
                                           u"\u212B"_s,
                                           u"\u00C5"_s};
    std::minstd_rand random(7);
    const auto text = [&] {
        QString result;
        for (unsigned i = random() % 5; i > 0; --i)
            result += alphabet[random() % alphabet.size()];
        return result;
    };
    for (int round = 0; round < 20000; ++round) {
        const QString left = text();
        const QString right = text();
        const auto order = decomposed(left) <=> decomposed(right);
        ASSERT_EQ(sign(compare(left, right)), order < 0   ? -1
                                              : order > 0 ? 1
                                                          : 0)
            << left.toStdString() << " / " << right.toStdString();
    }
}

} // namespace
} // namespace tidemark
