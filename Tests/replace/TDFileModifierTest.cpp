#include "replace/TDFileModifier.h"

#include "foundation/ExtendedAttributes.h"
#include "replace/ReplaceTestSupport.h"
#include "replace/RewriteRun.h"

#include <sys/xattr.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

using namespace Qt::Literals::StringLiterals;

std::shared_ptr<TDMatchLine> line(qint64 number, const QString &oldText, const QString &newText)
{
    auto line = std::make_shared<TDMatchLine>();
    line->setLineNumber(number);
    line->setSavedLineString(oldText);
    line->setMatchLineString(newText);
    return line;
}

class TDFileModifierTest : public ReplaceTest
{
protected:
    /// The error's code, 0 when the file was rewritten.
    qint64 rewrite(const FilePath &path, const MatchLines &lines, bool hadByteOrderMarker = false)
    {
        const auto modifier = TDFileModifier::fileModifierWithFile(
            path, TDFileCommon::fileModificationDate(path), lines, TD_FILE_COMMON_UNKNOWN_ENCODING,
            hadByteOrderMarker, _areFilesSearchLocations, _error);
        EXPECT_EQ(modifier == nullptr, !_error.isNull());
        _writtenPath = modifier ? modifier->path() : FilePath();
        return _error.code();
    }

    TDError _error;
    FilePath _writtenPath;
};

struct Refusal
{
    const char *why;
    QByteArray content;
    bool hadByteOrderMarker;
    MatchLines lines;
    qint64 code;
    QByteArray attribute = {};
};

TEST_F(TDFileModifierTest, WhatCantBeReproducedIsRefusedWithNothingTouched)
{
    const QByteArray latin1 = "iso-8859-1;513";
    const QString loneSurrogate = QString(QChar(0xD83D));
    const Refusal refusals[] = {
        {"a character that the encoding lacks",
         "one\ntwo\n",
         false,
         {line(1, u"one\n"_s, u"\u6F22\n"_s)},
         4,
         latin1},
        {"half a character", "one\n", false, {line(1, u"one\n"_s, loneSurrogate)}, 4},
        {"invalid bytes in a line that stays", "one\n\xFF\n", false, {line(1, u"one\n"_s, u"1\n"_s)}, 4},
        {"invalid bytes in the last line", "one\ntwo\xC3", false, {line(1, u"one\n"_s, u"1\n"_s)}, 4},
        {"half a unit at the end", QByteArray("\xFF\xFEo\0\n\0x", 7), true, {line(1, u"o\n"_s, u"1\n"_s)}, 4},
        {"a file too short for its mark", "abc", false, {line(1, {}, u"x"_s)}, 4},
        {"a mark that nobody announced", "\xEF\xBB\xBFone\n", false, {line(1, u"one\n"_s, u"1\n"_s)}, 4},
        {"a mark that isn't there", "one\ntwo\n", true, {line(1, u"one\n"_s, u"1\n"_s)}, 4},
        {"another text in the line", "one\ntwo\n", false, {line(2, u"one\n"_s, u"1\n"_s)}, 30},
        {"a longer line", "one more\n", false, {line(1, u"one"_s, u"1"_s)}, 30},
        {"fewer lines than the line had", "one\ntwo\n", false, {line(2, u"two\nthree\n"_s, u"1\n"_s)}, 30},
        {"no such line any more",
         "one\ntwo\n",
         false,
         {line(1, u"one\n"_s, u"1\n"_s), line(3, u"c"_s, u"d"_s)},
         30},
    };
    for (const Refusal &refusal : refusals) {
        SCOPED_TRACE(refusal.why);
        const FilePath path = _folder.write("a.txt", refusal.content);
        removexattr(path.cString(), "user.com.apple.TextEncoding");
        if (!refusal.attribute.isEmpty())
            setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING,
                                                QString::fromLatin1(refusal.attribute), 0);
        const auto date = TDFileCommon::fileModificationDate(path);
        EXPECT_EQ(rewrite(path, refusal.lines, refusal.hadByteOrderMarker), refusal.code);
        EXPECT_EQ(_folder.read("a.txt"), refusal.content);
        EXPECT_TRUE(TDFileCommon::fileModificationDate(path) == date);
        EXPECT_EQ(_folder.names(), QList<QByteArray>{"a.txt"}) << "the needless backup stays";
        EXPECT_FALSE(RewriteRun::isPathToModifiedFile(path));
    }
}

TEST_F(TDFileModifierTest, LinesAreFoundByNumberWhateverTheirOrder)
{
    const FilePath path = _folder.write("a.txt", "1\r2\r\n3\n\n5");
    EXPECT_EQ(rewrite(path, {line(5, u"5"_s, u"five"_s), line(2, u"2\r\n"_s, u"two\r\n"_s),
                             line(2, u"2\r\n"_s, u"zwei\r\n"_s), line(4, u"\n"_s, QString())}),
              0);
    EXPECT_EQ(_folder.read("a.txt"), "1\rtwo\r\nzwei\r\n3\nfive");
}

TEST_F(TDFileModifierTest, NoLineIsWrittenTwiceWithoutBeingChanged)
{
    const FilePath path = _folder.write("a.txt", "1\n2\n2\n");
    const std::shared_ptr<TDMatchLine> others[] = {line(2, u"2\n"_s, u"2\n"_s),
                                                   line(2, u"1\n"_s, u"one\n"_s)};
    for (const auto &other : others) {
        EXPECT_EQ(rewrite(path, {line(1, u"1\n"_s, u"one\n"_s), line(2, u"2\n"_s, u"two\n"_s), other}),
                  TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR);
        EXPECT_EQ(_folder.read("a.txt"), "1\n2\n2\n");
    }
}

TEST_F(TDFileModifierTest, LinesOfUnknownTextThatTheFileDoesntHaveAreLeftOut)
{
    const FilePath path = _folder.write("a.txt", "1st\n2nd\n");
    EXPECT_EQ(rewrite(path, {line(0, {}, u"zero\n"_s), line(2, {}, u"two\n"_s), line(9, {}, u"nine\n"_s)}),
              0);
    EXPECT_EQ(_folder.read("a.txt"), "1st\ntwo\n");
}

TEST_F(TDFileModifierTest, AFileNotOfTheVeryDateIsRefused)
{
    const FilePath path = _folder.write("a.txt", "one\n");
    const qint64 date = 1'500'000'000'123'456'789;
    for (const qint64 difference : {-1, 1}) {
        setModificationDate(path, date + difference);
        EXPECT_FALSE(
            TDFileModifier::fileModifierWithFile(path, FileDate{date}, {line(1, u"one\n"_s, u"1\n"_s)},
                                                 TD_FILE_COMMON_UNKNOWN_ENCODING, false, false, _error));
        EXPECT_TRUE(_error.hasCode(TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_MODIFIED_ERROR));
    }
    EXPECT_EQ(_folder.read("a.txt"), "one\n");
    setModificationDate(path, date);
    EXPECT_TRUE(TDFileModifier::fileModifierWithFile(path, FileDate{date}, {line(1, u"one\n"_s, u"1\n"_s)},
                                                     TD_FILE_COMMON_UNKNOWN_ENCODING, false, false, _error));
    EXPECT_EQ(_folder.read("a.txt"), "1\n");
}

TEST_F(TDFileModifierTest, MissingAndReadOnlyFilesAreRefused)
{
    const FilePath missing = _folder.path("missing.txt");
    EXPECT_EQ(rewrite(missing, {}), TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_EXIST_ERROR);
    EXPECT_EQ(_error.localizedFailureReason(), u"The file ‘%1’ does not exist."_s.arg(missing.displayText()));

    const FilePath path = _folder.write("a.txt", "one\n");
    ASSERT_EQ(chmod(path.cString(), 0444), 0);
    {
        const OrdinaryUser user(_folder.path());
        EXPECT_EQ(rewrite(path, {line(1, u"one\n"_s, u"1\n"_s)}),
                  TD_ERROR_CODE_TD_FILE_MODIFIER_FILE_NOT_WRITABLE_ERROR);
    }
    ASSERT_EQ(chmod(path.cString(), 0666), 0);
    ASSERT_EQ(chmod(_folder.path().cString(), 0555), 0);
    {
        const OrdinaryUser user(_folder.path());
        EXPECT_EQ(rewrite(path, {line(1, u"one\n"_s, u"1\n"_s)}),
                  TD_ERROR_CODE_TD_FILE_MODIFIER_BACKUP_FILE_CREATION_ERROR);
    }
    ASSERT_EQ(chmod(_folder.path().cString(), 0755), 0);
    EXPECT_EQ(
        _error.localizedFailureReason(),
        u"Creating a temporary file for ‘%1’ was not possible due to the file permissions of the parent "
        "folder being too restrictive."_s.arg(path.displayText()));
    EXPECT_EQ(_folder.read("a.txt"), "one\n");
}

TEST_F(TDFileModifierTest, OnlyTheFirstRewriteKeepsABackup)
{
    const FilePath path = _folder.write("caf\xE9 \\.txt", "one\n");
    ASSERT_EQ(chmod(path.cString(), 0640), 0);
    setxattr(path.cString(), "user.note", "kept", 4, 0);
    const FileIdentity identity(path);
    EXPECT_EQ(rewrite(path, {line(1, u"one\n"_s, u"two\n"_s)}), 0);
    EXPECT_EQ(rewrite(path, {line(1, u"two\n"_s, u"three\n"_s)}), 0);
    EXPECT_EQ(contentOfFile(path), "three\n");
    EXPECT_TRUE(FileIdentity(path) == identity);

    ASSERT_EQ(backupNames(_folder).size(), 1);
    const QByteArray name = backupNames(_folder).first();
    EXPECT_TRUE(name.startsWith("caf\xE9 \\.txt.TDMBackup.")) << name.constData();
    EXPECT_EQ(name.size(), qsizetype(qstrlen("caf\xE9 \\.txt.TDMBackup.")) + 3);
    EXPECT_EQ(_folder.read(name), "one\n");
    const FileIdentity backup(_folder.path(name));
    EXPECT_EQ(backup.mode, identity.mode);
    EXPECT_TRUE(backup.attributes == identity.attributes);

    const FilePath other = _folder.write("other.txt", "one\n");
    setKeepsBackups(false);
    EXPECT_EQ(rewrite(other, {line(1, u"one\n"_s, u"two\n"_s)}), 0);
    setKeepsBackups(true);
    EXPECT_EQ(rewrite(other, {line(1, u"two\n"_s, u"three\n"_s)}), 0);
    EXPECT_EQ(backupNames(_folder).size(), 1) << "what this process wrote needs no backup";
}

TEST_F(TDFileModifierTest, TransientBackupsAreNeverKept)
{
    _areFilesSearchLocations = true;
    const FilePath path = _folder.write("a.txt", "one\n");
    const FilePath refused = _folder.write("b.txt", "one\n\xFF");
    EXPECT_EQ(rewrite(path, {line(1, u"one\n"_s, u"two\n"_s)}), 0);
    EXPECT_EQ(rewrite(refused, {line(1, u"one\n"_s, u"two\n"_s)}), 4);
    EXPECT_EQ(_folder.names(), (QList<QByteArray>{"a.txt", "b.txt"}));
    EXPECT_TRUE(_transientFolder.names().isEmpty());
}

TEST_F(TDFileModifierTest, LinksAreFollowed)
{
    const FilePath target = _folder.write("there/target.txt", "one\n");
    const FilePath link = _folder.path("link.txt");
    ASSERT_EQ(symlink("there/target.txt", link.cString()), 0);
    EXPECT_EQ(rewrite(link, {line(1, u"one\n"_s, u"two\n"_s)}), 0);
    EXPECT_TRUE(_writtenPath == target) << _writtenPath.cString();
    EXPECT_EQ(contentOfFile(target), "two\n");
    EXPECT_TRUE(S_ISLNK(FileIdentity(link).mode));
    EXPECT_TRUE(backupNames(_folder).isEmpty()) << "it lies beside the target";

    EXPECT_EQ(rewrite(link, {line(1, u"one\n"_s, u"two\n"_s)}), 30);
    EXPECT_TRUE(_error.localizedFailureReason().contains(target.displayText()));
}

TEST_F(TDFileModifierTest, TheSetEncodingIsUsedWhereNothingIsDetected)
{
    const FilePath path = _folder.write("a.txt", "\xE9 one\n\xE8\n");
    constexpr StringEncoding WINDOWS_1252 = 0xC;
    EXPECT_TRUE(TDFileModifier::fileModifierWithFile(path, TDFileCommon::fileModificationDate(path),
                                                     {line(1, u"\u00E9 one\n"_s, u"\u20AC\n"_s)},
                                                     WINDOWS_1252, false, false, _error));
    EXPECT_EQ(_folder.read("a.txt"), "\x80\n\xE8\n");
    EXPECT_EQ(pathExtendedAttributeValueForKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING),
              u"windows-1252;1280"_s);
}

} // namespace
} // namespace tidemark::test
