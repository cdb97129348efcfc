#include "session/MyDocument.h"

#include "foundation/UserDefaults.h"
#include "support/SearchFolder.h"

#include <filesystem>

namespace tidemark::test {

namespace {

using MyDocumentTest = SearchFolderTest;

TEST_F(MyDocumentTest, TheNextWindowStartsFromWhatTheLastOneLeftInTheSettingsFile)
{
    const FilePath oddName = folder.write("caf\xE9 100%.txt", "");
    const FilePath gone = folder.write("gone.txt", "");
    const FilePath inner = folder.makeFolder("a, b");
    const QString file = folder.path("settings.ini").displayText();
    UserDefaults::setStandard(UserDefaults::atPath(file));
    {
        MyDocument document;
        EXPECT_TRUE(document.findText().isNull() && document.searchLocations().isEmpty());
        TDSearchLocation withKinds = location(inner);
        withKinds.includeSubFolders = false;
        withKinds.fileTypes = QVariantList{u"a"_s, u"b"_s};
        document.setSearchLocations({location(oddName), location(gone), withKinds, location(inner)});
        document.setFindText(u"“two”;\n\\tlines"_s);
        document.saveUserDefaultsForWindow();
        UserDefaults::standard().synchronize();
    }
    std::filesystem::remove(gone.cString());
    UserDefaults::setStandard(UserDefaults::atPath(file));
    const MyDocument next;
    ASSERT_EQ(next.searchLocations().size(), 3);
    EXPECT_EQ(next.searchLocations()[0].path(), oddName);
    EXPECT_FALSE(next.searchLocations()[0].isFolder);
    EXPECT_EQ(next.searchLocations()[1].path(), inner);
    EXPECT_TRUE(next.searchLocations()[1].isFolder && !next.searchLocations()[1].includeSubFolders);
    EXPECT_EQ(next.searchLocations()[1].fileTypes.toStringList(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_TRUE(next.searchLocations()[2].includeSubFolders);
    EXPECT_EQ(next.findText(), u"“two”;\n\\tlines"_s);
    EXPECT_FALSE(UserDefaults::standard().objectForKey(TD_USER_DEFAULTS_NAME_REPLACE_TEXT).isValid());
    UserDefaults::setStandard(UserDefaults::inMemory());
}

TEST_F(MyDocumentTest, DamagedSettingsAreDroppedEntryByEntry)
{
    const QVariantMap good = {{u"url"_s, QString::fromLatin1(folder.path().toUrl().toEncoded())}};
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS,
                                       QVariantList{QVariantMap{{u"isFolder"_s, true}}, u"text"_s,
                                                    QVariantMap{{u"url"_s, u"http://a/"_s}}, good});
    const MyDocument document;
    ASSERT_EQ(document.searchLocations().size(), 1);
    EXPECT_FALSE(document.searchLocations()[0].isFolder);
}

} // namespace

} // namespace tidemark::test
