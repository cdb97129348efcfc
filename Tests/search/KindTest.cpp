#include "search/Kind.h"

#include "foundation/LocalizedText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(Kind, FactoryListIncludesTextOnly)
{
    const QList<Kind> kinds = Kind::defaultKinds();
    QStringList utis;
    QStringList included;
    for (const Kind &kind : kinds) {
        utis << kind.uti;
        if (kind.include)
            included << kind.uti;
        EXPECT_FALSE(kind.title.isEmpty());
    }
    EXPECT_EQ(utis,
              (QStringList{localizedString("IDS_WildcardSample1Uti"),
                           localizedString("IDS_WildcardSample2Uti"), u"uti:public.item"_s,
                           u"uti:public.text"_s, u"uti:public.content"_s, u"uti:public.source-code"_s}));
    EXPECT_EQ(included, QStringList{u"uti:public.text"_s});
}

TEST(Kind, DescriptionStaysUnclosedAndLeavesPlaceholdersInValuesAlone)
{
    EXPECT_EQ((Kind{u"100 %@"_s, u"*.%d"_s, true}).description(),
              u"<Kind: title = 100 %@ uti = *.%d include = 1"_s);
}

TEST(Kind, ArchiveRoundTripKeepsOrderAndValues)
{
    const QList<Kind> kinds{{u"Zweite „Wahl“"_s, u"*.[ch]"_s, true}, {u""_s, u"uti:"_s, false}};
    bool ok = false;
    EXPECT_EQ(unarchivedKinds(archivedKinds(kinds), &ok), kinds);
    EXPECT_TRUE(ok);
    EXPECT_TRUE(unarchivedKinds(archivedKinds({}), &ok).isEmpty());
    EXPECT_TRUE(ok);
}

TEST(Kind, MissingAndWronglyTypedFieldsAreEmpty)
{
    const QList<Kind> kinds =
        unarchivedKinds(R"([{"title":"T","uti":"*.x"}, {"title":7,"uti":["a"],"include":"yes"}, 3])");
    EXPECT_EQ(kinds, (QList<Kind>{{u"T"_s, u"*.x"_s, false}, {}}));
}

TEST(Kind, DamagedArchiveGivesNothing)
{
    const QByteArray whole = archivedKinds(Kind::defaultKinds());
    for (const QByteArray &damaged :
         {QByteArray(), QByteArray("{}"), whole.chopped(1), QByteArray("\xFF\0\x80", 3)}) {
        bool ok = true;
        EXPECT_TRUE(unarchivedKinds(damaged, &ok).isEmpty());
        EXPECT_FALSE(ok);
    }
}

TEST(Kind, KindsInForceAreReplacedAsAWhole)
{
    const QList<Kind> before = kindsInForce();
    const QList<Kind> one{{u"a"_s, u"a"_s, true}};
    const QList<Kind> two{{u"b"_s, u"b"_s, true}, {u"c"_s, u"c"_s, true}};
    setKindsInForce(one);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (int i = 0; i < 2000; ++i)
            setKindsInForce(i % 2 ? one : two);
        done = true;
    });
    while (!done) {
        const QList<Kind> seen = kindsInForce();
        EXPECT_TRUE(seen == one || seen == two);
    }
    writer.join();
    setKindsInForce(before);
}

} // namespace
} // namespace tidemark
