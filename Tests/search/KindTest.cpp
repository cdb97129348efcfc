#include "search/Kind.h"
#include "support/Testing.h"

#include <atomic>
#include <thread>

namespace tidemark::test {
namespace {

TEST(Kind, ArchivesKeepOrderAndValuesAndDamagedOnesGiveNothing)
{
    const QList<Kind> kinds{{u"Zweite „Wahl“"_s, u"*.[ch]"_s, true}, {u""_s, u"uti:"_s, false}};
    bool ok = false;
    EXPECT_EQ(unarchivedKinds(archivedKinds(kinds), &ok), kinds);
    EXPECT_TRUE(ok);
    EXPECT_TRUE(unarchivedKinds(archivedKinds({}), &ok).isEmpty());
    EXPECT_TRUE(ok);
    // What is missing or of a wrong type is empty.
    EXPECT_EQ(unarchivedKinds(R"([{"title":"T","uti":"*.x"}, {"title":7,"uti":["a"],"include":"yes"}, 3])"),
              (QList<Kind>{{u"T"_s, u"*.x"_s, false}, {}}));
    const QByteArray whole = archivedKinds(kinds);
    for (const QByteArray &damaged : {""_ba, "{}"_ba, whole.chopped(1), "\xFF\0\x80"_ba}) {
        ok = true;
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
} // namespace tidemark::test
