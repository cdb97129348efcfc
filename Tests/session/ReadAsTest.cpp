#include "foundation/ExtendedAttributes.h"
#include "session/EncodingSampler.h"
#include "session/ListedFiles.h"
#include "session/MyDocument.h"
#include "session/ReplaceControl.h"
#include "session/ResultsExport.h"
#include "session/ResultsFilter.h"
#include "session/SearchControl.h"
#include "session/UnreadableFiles.h"
#include "support/Events.h"
#include "support/ResultNodes.h"
#include "support/SearchFolder.h"

#include <QBuffer>

#include <sys/xattr.h>

namespace tidemark::test {

namespace {

constexpr StringEncoding LATIN1 = 5;
constexpr StringEncoding SHIFT_JIS = 0x80000A01;
constexpr StringEncoding WINDOWS_LATIN1 = 12;

const char *const NAMES[] = {"broken.txt", "latin.txt", "shift.txt"};
const QByteArray CONTENTS[] = {"good \xC3\x28 foo\r\nfoo",
                               "K\xF6ln foo\nGr\xFC\xDF"
                               "e\n",
                               "\x93\xFA\x96\x7B foo \x8C\xEA\n"};

/// A folder with files that are no UTF-8, and one that is, searched for "foo".
class ReadAsTest : public SearchFolderTest
{
protected:
    ReadAsTest()
    {
        for (int number = 0; number < 3; ++number)
            folder.write(NAMES[number], CONTENTS[number]);
        folder.write("a.txt", "foo\n");
        document.setSearchLocations({location(folder.path())});
        document.setFindText(u"foo"_s);
        search();
    }
    void search()
    {
        control.startSearch();
        EXPECT_TRUE(waitFor([this] { return !control.searching(); }));
    }
    void readAs(const FindResultItems &files, StringEncoding encoding)
    {
        control.readAs(files, encoding);
        EXPECT_TRUE(waitFor([this] { return !control.searching(); }));
    }
    std::shared_ptr<TDFindResultItem> file(const char *name) const
    {
        for (const auto &file : document.findResults().files()) {
            if (file->path() == folder.path(name))
                return file;
        }
        return nullptr;
    }
    QByteArrayList listed() const
    {
        QByteArrayList names;
        for (const auto &file : document.findResults().files())
            names << file->path().lastPathComponent();
        return names;
    }
    ReplaceControl::Outcome replaceAll(const QString &replaceText)
    {
        ReplaceControl replace({[] { return u"foo"_s; }, [replaceText] { return replaceText; },
                                [](const FilePath &) { return false; }});
        ReplaceControl::Outcome outcome;
        replace.replaceMatches(filesAndLines(document.findResults().files()),
                               [&outcome](const ReplaceControl::Outcome &ended) { outcome = ended; });
        return outcome;
    }
    std::optional<QString> attributeOf(const char *name) const
    {
        return pathExtendedAttributeValueForKey(folder.path(name), TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
    }

    MyDocument document;
    SearchControl control{document};
};

TEST_F(ReadAsTest, FilesAreSearchedAtTheirPlaceAndReplacedInTheChosenEncoding)
{
    EXPECT_EQ(filesUnreadableLike(*file("latin.txt"), document.findResults().files()).size(), 3);
    EXPECT_FALSE(mayBeReadAs(*file("a.txt")));
    EXPECT_EQ(control.leftOut()[LeftOutReason::Unreadable], 3U);
    const QByteArrayList before = listed();
    readAs({file("latin.txt")}, LATIN1);
    readAs({file("shift.txt")}, SHIFT_JIS);
    EXPECT_EQ(filesUnreadableLike(*file("broken.txt"), document.findResults().files()).size(), 1);
    readAs({file("broken.txt")}, WINDOWS_LATIN1);
    EXPECT_EQ(listed(), before);
    EXPECT_EQ(encodingText(file("shift.txt")->encoding()), u"Japanese (Shift JIS), chosen"_s);
    EXPECT_EQ(control.leftOut()[LeftOutReason::Unreadable], 0U);
    EXPECT_EQ(document.resultsStatusText(),
              u"Search completed (5 matches found in 4 files • 4 files searched) • "
              "1 file read as Western (Windows Latin 1)"_s);
    QBuffer exported;
    exported.open(QIODevice::WriteOnly);
    EXPECT_TRUE(ResultsExport(ResultsFormat::Csv, nullptr, exported).write({file("shift.txt")}));
    EXPECT_TRUE(exported.data().contains(",shift_jis,"));

    // What Latin 1 can't hold is refused there alone.
    EXPECT_EQ(replaceAll(u"本"_s).failures.size(), 2U);
    search();
    for (const char *name : {"broken.txt", "latin.txt"})
        readAs({file(name)}, name == NAMES[1] ? LATIN1 : WINDOWS_LATIN1);
    EXPECT_EQ(replaceAll(u"b\u00E4r"_s).failures.size(), 0U);
    EXPECT_EQ(folder.read("broken.txt"), "good \xC3\x28 b\xE4r\r\nb\xE4r");
    EXPECT_EQ(folder.read("latin.txt"), "K\xF6ln b\xE4r\nGr\xFC\xDF"
                                        "e\n");
    EXPECT_EQ(folder.read("shift.txt"), "\x93\xFA\x96\x7B \x96\x7B \x8C\xEA\n");
    if (setxattr(folder.path("a.txt").cString(), "user.note", "", 0, 0) != 0)
        return; // no extended attributes here
    EXPECT_EQ(attributeOf("broken.txt"), u"windows-1252;1280"_s);
    EXPECT_EQ(attributeOf("latin.txt"), u"iso-8859-1;513"_s);
    EXPECT_EQ(attributeOf("shift.txt"), u"shift_jis;2561"_s);
    document.setFindText(u"本"_s);
    search();
    EXPECT_EQ(encodingText(file("shift.txt")->encoding()), u"Japanese (Shift JIS), noted with the file"_s);
}

TEST_F(ReadAsTest, WhatIsStillNoTextStaysAnErrorAndWhatHasNoMatchGoes)
{
    folder.write("none.txt", "K\xF6ln\n");
    search();
    document.findResults().setFilter(std::make_shared<ResultsFilter>(u"latin"_s, QList<FilePath>()));
    const FindResultItems alike = filesUnreadableLike(*file("latin.txt"), document.findResults().files());
    ASSERT_EQ(alike.size(), 1) << "what a filter hides stays as it is";
    document.findResults().setFilter(nullptr);
    FindResultItems read;
    QObject::connect(&control, &SearchControl::readAgain,
                     [&read](const FindResultItems &files) { read = files; });
    readAs(filesUnreadableLike(*file("latin.txt"), document.findResults().files()), SHIFT_JIS);
    EXPECT_EQ(listed(), (QByteArrayList{"a.txt", "broken.txt", "latin.txt", "shift.txt"}));
    EXPECT_EQ(read.size(), 3);
    EXPECT_TRUE(couldNotBeRead(*file("latin.txt")));
    EXPECT_EQ(file("latin.txt")->encoding(), (SettledEncoding{SHIFT_JIS, EncodingSource::Chosen}));
    EXPECT_FALSE(couldNotBeRead(*file("broken.txt")));
    EXPECT_EQ(document.resultsStatusText(),
              u"Search completed (4 matches found in 3 files • 5 files searched) • "
              "3 files read as Japanese (Shift JIS)"_s);
    EXPECT_EQ(document.filesWithMatchesCount(), 4);

    readAs({file("latin.txt")}, LATIN1);
    EXPECT_EQ(file("latin.txt")->matchCount(), 1);
    EXPECT_EQ(control.leftOut()[LeftOutReason::Unreadable], 0U);
}

TEST_F(ReadAsTest, AStopLeavesWhatWasNotSearchedAndANewSearchGetsNothingOfIt)
{
    for (const bool isNewSearch : {false, true}) {
        const FindResultItems before = document.findResults().files();
        control.readAs(filesUnreadableLike(*file("latin.txt"), before), LATIN1);
        EXPECT_TRUE(control.searching());
        if (isNewSearch) {
            search();
            EXPECT_EQ(document.findResults().count(), 4);
            EXPECT_TRUE(couldNotBeRead(*file("latin.txt")));
            continue;
        }
        control.stopSearch();
        EXPECT_FALSE(control.searching());
        EXPECT_EQ(document.findResults().count(), 4);
        const FindResultItems now = document.findResults().files();
        QCoreApplication::processEvents();
        EXPECT_EQ(document.findResults().files(), now) << "nothing comes in later";
        search();
    }
}

TEST_F(ReadAsTest, AfterUndoingFilesAreReadInWhatWasChosen)
{
    readAs({file("latin.txt")}, LATIN1);
    ListedFiles listedFiles;
    removexattr(folder.path("latin.txt").cString(), "user.com.apple.TextEncoding");
    const auto again = listedFiles.searchedAgain(document.findResults().files(), {folder.path("latin.txt")},
                                                 *control.searchedTerms(), [] { return false; });
    ASSERT_TRUE(again);
    for (const auto &each : *again) {
        if (each->path() == folder.path("latin.txt")) {
            EXPECT_EQ(each->encoding(), (SettledEncoding{LATIN1, EncodingSource::Chosen}));
        }
    }
}

TEST_F(ReadAsTest, WhatIsReplacedStaysListedAlsoWithoutANote)
{
    readAs({file("latin.txt")}, LATIN1);
    EXPECT_EQ(replaceAll(u"bar"_s).filesRewritten, 2U);
    removexattr(folder.path("latin.txt").cString(), "user.com.apple.TextEncoding");
    const auto again = ListedFiles().searchedAgain(document.findResults().files(), {folder.path("latin.txt")},
                                                   *control.searchedTerms(), [] { return false; });
    ASSERT_TRUE(again);
    const auto stays = [this](const auto &each) { return each->path() == folder.path("latin.txt"); };
    EXPECT_TRUE(std::any_of(again->begin(), again->end(), stays));
}

TEST_F(ReadAsTest, ASampleTellsTheFirstLineThatIsNoTextAndWhatItMayBe)
{
    const FilePath path = folder.write(
        "long.txt", QByteArray("a line\n").repeated(5000) + "\xC3\xA9t\xC3\xA9\n" +
                        QByteArray("\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x95\xB6\x8F\xCD\n").repeated(20));
    EncodingSample sample;
    const auto take = [&](StringEncoding encoding) {
        EncodingSampler sampler;
        bool isTaken = false;
        QObject::connect(&sampler, &EncodingSampler::sampled, [&](const EncodingSample &taken) {
            sample = taken;
            isTaken = true;
        });
        sampler.start(path, encoding);
        EXPECT_TRUE(waitFor([&] { return isTaken; }));
    };
    take(TD_ENCODING_UTF8);
    EXPECT_EQ(sample.lineNumber, 5002);
    EXPECT_TRUE(sample.likely.contains(SHIFT_JIS));
    take(LATIN1);
    EXPECT_EQ(sample.lineNumber, 0);
    // Nobody waits for this one.
    EncodingSampler().start(path, TD_ENCODING_UTF8);
}

} // namespace

} // namespace tidemark::test
