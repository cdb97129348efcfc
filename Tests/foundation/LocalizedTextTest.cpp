#include "foundation/LocalizedText.h"
#include "support/Testing.h"

namespace tidemark::test {
namespace {

TEST(LocalizedTextTest, FormatsAreFilledFromLeftToRight)
{
    const struct
    {
        QString format;
        QList<FormatArgument> arguments;
        QString text;
    } cases[] = {
        {u"‘%@’"_s, {u"/a"_s}, u"‘/a’"_s},
        {u"%d of %lu in %@"_s,
         {-3, quint64(18446744073709551615U), u"x"_s},
         u"-3 of 18446744073709551615 in x"_s},
        {u"%@%@"_s, {u"%@"_s, u"%d"_s}, u"%@%d"_s},
        {u"%@ and %@"_s, {u"one"_s}, u"one and %@"_s},
        {u"%@"_s, {u"one"_s, u"two"_s}, u"one"_s},
        {u"100% %l %@"_s, {u"x"_s}, u"100% %l x"_s},
        {u"nothing"_s, {}, u"nothing"_s},
    };
    for (const auto &[format, arguments, text] : cases)
        EXPECT_EQ(formatted(format, arguments), text) << format.toStdString();
}

} // namespace
} // namespace tidemark::test
