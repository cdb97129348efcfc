#include "session/FindReplaceHistory.h"

#include "foundation/UserDefaults.h"
#include "support/Testing.h"

namespace tidemark::test {

namespace {

const QString KEY = TD_USER_DEFAULTS_NAME_FIND_TEXT_HISTORY;

QStringList historyAfter(UserDefaults &settings, const QStringList &texts)
{
    for (const QString &text : texts)
        addStringToHistoryArrayForKey(settings, text, KEY);
    return settings.objectForKey(KEY).toStringList();
}

TEST(FindReplaceHistory, KeepsEachTextOnceTheLatestFirst)
{
    EXPECT_EQ(historyAfter(*UserDefaults::inMemory(), {u"A"_s, u"B"_s, u"A"_s}),
              (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(historyAfter(*UserDefaults::inMemory(), {u"A"_s, u"a"_s, u""_s, u"A "_s}),
              (QStringList{u"A "_s, u"a"_s, u"A"_s}));
}

TEST(FindReplaceHistory, DropsTheOldestBeyondAMaximum)
{
    const QStringList all = {u"4"_s, u"3"_s, u"2"_s, u"1"_s};
    for (const auto &[maximum, expected] :
         {std::pair(QVariant(3), all.mid(0, 3)), {0, {}}, {-1, all}, {QVariant(), all}}) {
        const auto settings = UserDefaults::inMemory();
        settings->setObject(TD_USER_DEFAULTS_NAME_FIND_REPLACE_TEXT_HISTORY_MAXIMUM, maximum);
        EXPECT_EQ(historyAfter(*settings, {u"1"_s, u"2"_s, u"3"_s, u"4"_s}), expected);
    }
}

TEST(FindReplaceHistory, AnEmptyReplaceTextLeavesItsListAlone)
{
    const auto settings = UserDefaults::inMemory();
    saveFindReplaceTextHistory(*settings, u"find"_s, u"replace"_s);
    saveFindReplaceTextHistory(*settings, u"other"_s, {});
    EXPECT_EQ(settings->objectForKey(KEY).toStringList(), (QStringList{u"other"_s, u"find"_s}));
    EXPECT_EQ(settings->objectForKey(TD_USER_DEFAULTS_NAME_REPLACE_TEXT_HISTORY).toStringList(),
              QStringList{u"replace"_s});
}

} // namespace

} // namespace tidemark::test
