#include "text/LikelyEncodings.h"

#include "support/Testing.h"

namespace tidemark::test {
namespace {

TEST(LikelyEncodings, TextsOfManyLanguagesAreAmongTheLikelyAndNothingElseIsProposed)
{
    const std::pair<const char *, QString> texts[] = {
        {"iso-8859-1", u"Die größte Überraschung für den Müller war die schöne Mühle am Bach.\n"_s},
        {"windows-1252", u"L’été déjà passé, le garçon s’est arrêté près de la forêt…\n"_s},
        {"shift_jis", u"日本語の文章をここに書きます。テストのための短い文です。\n"_s},
        {"euc-jp", u"日本語の文章をここに書きます。テストのための短い文です。\n"_s},
        {"windows-1251", u"Полная вода — это морской прилив, а не речной поток.\n"_s},
        {"koi8-r", u"Полная вода это морской прилив а не речной поток\n"_s},
        {"big5", u"這是一個用來測試編碼的中文句子，內容並不重要。\n"_s},
    };
    for (const auto &[name, text] : texts) {
        const StringEncoding encoding =
            convertCoreFoundationToStringEncoding(convertIANACharSetNameToEncoding(QLatin1String(name)));
        const QByteArray bytes = TextConverter::converterForEncoding(encoding)->encode(text).value();
        const QList<StringEncoding> likely = likelyEncodings(bytes.repeated(3));
        EXPECT_LT(likely.indexOf(encoding), 3) << name;
        EXPECT_TRUE(likely.contains(encoding)) << name;
        for (const StringEncoding each : likely)
            EXPECT_TRUE(TextConverter::converterForEncoding(each)->decode(bytes)) << name;
    }
    EXPECT_FALSE(likelyEncodings("gut \xC3\x28\n").contains(TD_ENCODING_UTF8));
    likelyEncodings({});
}

} // namespace
} // namespace tidemark::test
