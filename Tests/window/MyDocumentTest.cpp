#include "support/gui/WindowFixture.h"

#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace tidemark::test {

namespace {

class MyDocumentTest : public WindowTest
{};

TEST_F(MyDocumentTest, AFreshInstallationStartsEmpty)
{
    const MyDocument document(application);
    EXPECT_TRUE(document.searchLocations().isEmpty());
    EXPECT_TRUE(document.findText().isNull());
    EXPECT_TRUE(document.replaceText().isNull());
    EXPECT_EQ(document.filesWithMatchesCount(), TD_NO_SEARCH_PERFORMED);
}

TEST_F(MyDocumentTest, TheNextWindowStartsFromWhatTheLastOneLeft)
{
    const FilePath oddName = folder.write("caf\xE9 100%.txt", "");
    const FilePath gone = folder.write("gone.txt", "");
    const FilePath inner = folder.makeFolder("inner");
    {
        MyDocument document(application);
        TDSearchLocation withKinds = location(inner);
        withKinds.includeSubFolders = false;
        withKinds.fileTypes = QVariantList{u"a"_s, u"b"_s};
        document.setSearchLocations({location(oddName), location(gone), withKinds});
        document.setFindText(u"two\nlines"_s);
        document.windowWillClose();
    }
    std::filesystem::remove(gone.cString());

    const MyDocument next(application);
    ASSERT_EQ(next.searchLocations().size(), 2);
    EXPECT_EQ(next.searchLocations()[0].path(), oddName);
    EXPECT_FALSE(next.searchLocations()[0].isFolder);
    EXPECT_EQ(next.searchLocations()[1].path(), inner);
    EXPECT_TRUE(next.searchLocations()[1].isFolder);
    EXPECT_FALSE(next.searchLocations()[1].includeSubFolders);
    EXPECT_EQ(next.searchLocations()[1].fileTypes.toStringList(), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_EQ(next.findText(), u"two\nlines"_s);
    EXPECT_FALSE(UserDefaults::standard().objectForKey(TD_USER_DEFAULTS_NAME_REPLACE_TEXT).isValid());
}

TEST_F(MyDocumentTest, SettingsSurviveTheirFile)
{
    const QString file = folder.path("settings.ini").displayText();
    UserDefaults::setStandard(UserDefaults::atPath(file));
    {
        MyDocument document(application);
        document.setSearchLocations({location(folder.makeFolder("a, b"))});
        document.setReplaceText(u"“x”; \t\\n"_s);
        document.saveUserDefaultsForWindow();
        UserDefaults::standard().synchronize();
    }
    UserDefaults::setStandard(UserDefaults::atPath(file));
    const MyDocument next(application);
    ASSERT_EQ(next.searchLocations().size(), 1);
    EXPECT_TRUE(next.searchLocations()[0].includeSubFolders);
    EXPECT_EQ(next.replaceText(), u"“x”; \t\\n"_s);
}

TEST_F(MyDocumentTest, DamagedSettingsAreDroppedEntryByEntry)
{
    const QVariantMap good = {{u"url"_s, QString::fromLatin1(folder.path().toUrl().toEncoded())}};
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_SEARCH_LOCATIONS,
                                       QVariantList{QVariantMap{{u"isFolder"_s, true}}, u"text"_s,
                                                    QVariantMap{{u"url"_s, u"http://a/"_s}}, good});
    const MyDocument document(application);
    ASSERT_EQ(document.searchLocations().size(), 1);
    EXPECT_FALSE(document.searchLocations()[0].isFolder);
}

TEST_F(MyDocumentTest, ScopedBookmarksDependOnTheSystemsVersion)
{
    struct Case
    {
        int major, minor, bugFix;
        bool supported;
    };
    const Case cases[] = {{10, 6, 8, false}, {10, 7, 2, false}, {10, 7, 3, true}, {10, 8, 0, true},
                          {11, 0, 0, true},  {9, 9, 0, true},   {3, 7, 2, false}, {12, 1, 0, true}};
    for (const Case &each : cases)
        EXPECT_EQ(MyDocument::supportsSecurityScopedBookmarks(
                      {{u"major"_s, each.major}, {u"minor"_s, each.minor}, {u"bugFix"_s, each.bugFix}}),
                  each.supported)
            << each.major << '.' << each.minor << '.' << each.bugFix;
}

TEST_F(MyDocumentTest, ObserversOfTheStatusHearOfTheCount)
{
    MyDocument document(application);
    int told = 0;
    QObject::connect(&document, &MyDocument::resultsStatusTextChanged, [&told] { ++told; });
    document.setFilesWithMatchesCount(3);
    document.setResultsStatusText(u"text"_s);
    document.setResultsStatusText(u"text"_s);
    EXPECT_EQ(told, 2);
}

TEST_F(MyDocumentTest, DocumentsAreNeverFiles)
{
    MyDocument document(application);
    TDError error;
    EXPECT_TRUE(document.dataOfType(u"any"_s, error).isNull());
    EXPECT_EQ(error.domain(), u"NSOSStatusErrorDomain"_s);
    EXPECT_EQ(error.code(), -4);
    error.clear();
    EXPECT_TRUE(document.readFromData("data", u"any"_s, &error));
    EXPECT_EQ(error.code(), -4);
    EXPECT_TRUE(document.readFromData("data", u"any"_s, nullptr));
}

TEST_F(MyDocumentTest, EveryToolTipIsShownWithThisSystemsKeys)
{
    const MyDocument document(application);
    const QMetaObject *meta = document.metaObject();
    int toolTips = 0;
    for (int index = 0; index < meta->propertyCount(); ++index) {
        if (!QLatin1String(meta->property(index).name()).startsWith("tooltip"_L1))
            continue;
        ++toolTips;
        const QString text = meta->property(index).read(&document).toString();
        EXPECT_FALSE(text.isEmpty()) << meta->property(index).name();
        EXPECT_FALSE(text.contains("Cmd"_L1)) << text.toStdString();
    }
    EXPECT_EQ(toolTips, 18);
}

} // namespace

} // namespace tidemark::test
