#include "foundation/UserDefaults.h"
#include "support/Testing.h"

#include <filesystem>
#include <sys/stat.h>

namespace tidemark::test {
namespace {

const QString BOOLEAN = TD_USER_DEFAULTS_NAME_IGNORE_CASE;

std::unique_ptr<UserDefaults> storeAt(const FilePath &path)
{
    auto store = UserDefaults::atPath(path.displayText());
    store->registerDefaults({{BOOLEAN, true}, {u"number"_s, 100}, {u"text"_s, u"factory"_s}});
    return store;
}

TEST(UserDefaultsTest, StoredValuesHideRegisteredOnesUntilTheyAreRemoved)
{
    const auto store = UserDefaults::inMemory();
    store->setObject(u"text"_s, u""_s);
    store->registerDefaults({{u"text"_s, u"factory"_s}, {BOOLEAN, true}});
    EXPECT_EQ(store->stringForKey(u"text"_s), u""_s);
    EXPECT_TRUE(store->boolFor(BooleanSetting::IgnoreCase));
    store->setObject(BOOLEAN, false);
    EXPECT_FALSE(store->boolForKey(BOOLEAN));
    EXPECT_FALSE(store->boolFor(BooleanSetting::IgnoreCase));
    EXPECT_FALSE(store->boolFor(BooleanSetting::RegularExpression));

    store->setObject(u"text"_s, QVariant());
    store->setObject(BOOLEAN, QVariant());
    EXPECT_EQ(store->stringForKey(u"text"_s), u"factory"_s);
    EXPECT_TRUE(store->boolFor(BooleanSetting::IgnoreCase));
    EXPECT_FALSE(store->objectForKey(u"unknown"_s).isValid());
}

TEST(UserDefaultsTest, EachCachedBooleanFollowsItsOwnKeyBeforeTheChangeIsTold)
{
    const std::pair<QString, BooleanSetting> settings[] = {
        {u"regularExpression"_s, BooleanSetting::RegularExpression},
        {u"ignoreCase"_s, BooleanSetting::IgnoreCase},
        {u"autoDetectFileEncodingFromFile"_s, BooleanSetting::AutoDetectFileEncoding},
        {u"createBackupBeforeReplacing"_s, BooleanSetting::CreateBackupBeforeReplacing},
    };
    for (const auto &changed : settings) {
        const auto store = UserDefaults::inMemory();
        int told = 0;
        QObject::connect(store.get(), &UserDefaults::valueChanged, store.get(), [&] {
            ++told;
            for (const auto &[key, setting] : settings)
                EXPECT_EQ(store->boolFor(setting), setting == changed.second) << key.toStdString();
        });
        store->setObject(changed.first, true);
        EXPECT_EQ(told, 1);
    }
}

TEST(UserDefaultsTest, ChangesAreToldOnceAndOnlyWhenSomethingChanged)
{
    const auto store = UserDefaults::inMemory();
    QStringList changes;
    QObject::connect(store.get(), &UserDefaults::valueChanged, store.get(),
                     [&](const QString &key) { changes << key + u'=' + store->stringForKey(key); });
    for (const QVariant &value :
         {QVariant(u""_s), QVariant(u""_s), QVariant(u"a"_s), QVariant(u"a"_s), QVariant(), QVariant()})
        store->setObject(u"text"_s, value);
    EXPECT_EQ(changes, QStringList({u"text="_s, u"text=a"_s, u"text="_s}));
}

TEST(UserDefaultsTest, WhatConvertsToAValueIsNotThatValueYet)
{
    for (const QVariant &value : {QVariant(u"2"_s), QVariant(u"perhaps"_s), QVariant(QByteArray("1"))}) {
        const auto store = UserDefaults::inMemory();
        store->setObject(u"setting"_s, value);
        store->setObject(u"setting"_s, true);
        EXPECT_TRUE(store->boolForKey(u"setting"_s)) << value.typeName();
    }
}

TEST(UserDefaultsTest, EverythingStoredComesBackFromTheFile)
{
    const TemporaryFolder folder;
    const QStringList texts =
        u"| blanks around |a, b;c|\"quoted\" \\d+\\n|@Invalid()|@ByteArray(x)|line\r\nend\ttab|"
        "é ‘😀’ %41 [x] #=&|true|\u0001"_s.split(u'|');
    const QByteArray bytes = QByteArray::fromHex("00ff410a0d2c22");
    {
        const auto store = storeAt(folder.path("settings"));
        for (qsizetype index = 0; index < texts.size(); ++index)
            store->setObject(u"text%1"_s.arg(index), texts[index]);
        store->setObject(u"list"_s, texts);
        store->setObject(u"bytes"_s, bytes);
        store->setObject(BOOLEAN, false);
        store->setObject(u"number"_s, qint64(0x90000100));
        store->setObject(u"text"_s, u"changed"_s);
        store->setObject(u"text"_s, QVariant());
        EXPECT_TRUE(store->synchronize());
        EXPECT_EQ(folder.names(), QList<QByteArray>({"settings"}));
    }
    // Another name, so that nothing comes from a cache of this process.
    const auto store = storeAt(folder.write("copy", folder.read("settings")));
    for (qsizetype index = 0; index < texts.size(); ++index)
        EXPECT_EQ(store->stringForKey(u"text%1"_s.arg(index)), texts[index]);
    EXPECT_EQ(store->objectForKey(u"list"_s).toStringList(), texts);
    EXPECT_EQ(store->objectForKey(u"bytes"_s).toByteArray(), bytes);
    EXPECT_FALSE(store->boolFor(BooleanSetting::IgnoreCase));
    EXPECT_EQ(store->integerForKey(u"number"_s), qint64(0x90000100));
    EXPECT_EQ(store->stringForKey(u"text"_s), u"factory"_s);
}

TEST(UserDefaultsTest, OnlyTheOwnerMayReadWhatIsWritten)
{
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.write("open", "text=old\n").cString(), 0644), 0);
    for (const char *name : {"open", "new", "folder/new"}) {
        const auto store = storeAt(folder.path(name));
        store->setObject(u"text"_s, u"mine"_s);
        struct stat status = {};
        ASSERT_EQ(stat(folder.path(name).cString(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777, 0600U) << name;
        EXPECT_TRUE(store->synchronize());
        ASSERT_EQ(stat(folder.path(name).cString(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 0777, 0600U) << name;
        EXPECT_TRUE(folder.read(name).contains("mine")) << name;
    }
}

TEST(UserDefaultsTest, ADamagedFileCountsAsEmptyAndCanBeWrittenAgain)
{
    const TemporaryFolder folder;
    int number = 0;
    for (const QByteArray &content :
         {QByteArray::fromHex("00010203fffe8081"), "no setting at all\n"_ba, "[General\nignoreCase"_ba,
          "ignoreCase=[\n=\n"_ba, "ignoreCase=@Variant(\\0\\0\\0\n"_ba}) {
        const QByteArray name = QByteArray::number(++number);
        const auto damaged = storeAt(folder.write(name, content));
        EXPECT_TRUE(damaged->boolFor(BooleanSetting::IgnoreCase)) << number;
        damaged->setObject(u"text"_s, u"mine"_s);
        EXPECT_TRUE(damaged->synchronize()) << number;
        const auto store = storeAt(folder.write("copy of " + name, folder.read(name)));
        EXPECT_EQ(store->stringForKey(u"text"_s), u"mine"_s) << number;
        EXPECT_TRUE(store->boolFor(BooleanSetting::IgnoreCase)) << number;
    }
}

TEST(UserDefaultsTest, AFailureToWriteIsToldAsLongAsItLasts)
{
    const TemporaryFolder folder;
    folder.write("folder", "");
    const auto store = storeAt(folder.path("folder/settings"));
    store->setObject(u"text"_s, u"mine"_s);
    EXPECT_FALSE(store->synchronize());
    EXPECT_EQ(store->stringForKey(u"text"_s), u"mine"_s);

    std::filesystem::remove(folder.path("folder").cString());
    folder.makeFolder("folder");
    EXPECT_TRUE(store->synchronize());
    EXPECT_TRUE(folder.read("folder/settings").contains("mine"));
}

} // namespace
} // namespace tidemark::test
