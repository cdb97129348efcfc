#include "foundation/FilePath.h"
#include "support/Testing.h"

#include <cctype>

namespace tidemark::test {
namespace {

TEST(FilePathTest, EveryByteOfANameSurvivesTheUrl)
{
    for (int byte = 1; byte < 256; ++byte) {
        const FilePath path("/folder/a" + QByteArray(1, char(byte)) + "b");
        const QUrl url = path.toUrl();
        EXPECT_TRUE(url.isLocalFile());
        EXPECT_EQ(FilePath::fromUrl(url).bytes(), path.bytes());
        // Stored locations go through the encoded form.
        EXPECT_EQ(FilePath::fromUrl(QUrl::fromEncoded(url.toEncoded())).bytes(), path.bytes());
    }
}

TEST(FilePathTest, UrlsThatNameNoFileHaveNoPath)
{
    EXPECT_EQ(FilePath::fromUrl(QUrl::fromEncoded("file:///etc%00/passwd")), FilePath());
    EXPECT_EQ(FilePath::fromUrl(QUrl::fromEncoded(QByteArray("f\0le:///etc", 11))), FilePath());
}

TEST(FilePathTest, UrlsOfNamesThatLookLikeUrlPartsKeepTheirPath)
{
    for (const QByteArray bytes : {"/a?b#c", "/a%20b", "/%2F", "/..", "/a//b", "/a/./b", "/c:d", "/ a ",
                                   "/\xC3\xA9", "/e\xCC\x81", "/"})
        EXPECT_EQ(FilePath::fromUrl(FilePath(bytes).toUrl()).bytes(), bytes);
}

TEST(FilePathTest, ComponentsLeaveTrailingSlashesOut)
{
    const struct
    {
        QByteArray path;
        QByteArray last;
        QByteArray folder;
    } cases[] = {
        {"/a/b/c.txt", "c.txt", "/a/b"},
        {"/a/b/", "b", "/a"},
        {"/a//", "a", "/"},
        {"/a", "a", "/"},
        {"/", "/", "/"},
        {"a", "a", ""},
        {"a/b", "b", "a"},
        {"", "", ""},
    };
    for (const auto &[path, last, folder] : cases) {
        EXPECT_EQ(FilePath(path).lastPathComponent(), last) << path.constData();
        EXPECT_EQ(FilePath(path).deletingLastPathComponent().bytes(), folder) << path.constData();
    }
}

TEST(FilePathTest, NothingInAUrlCanBeTakenForMoreThanAName)
{
    // What opens files may pass it on as a part of a command.
    QByteArray name;
    for (int byte = 1; byte < 256; ++byte)
        name.append(char(byte));
    const QByteArray url = FilePath("/" + name).toUrl().toEncoded();
    EXPECT_TRUE(url.startsWith("file:///"));
    for (const char byte : url.sliced(8))
        EXPECT_TRUE(QByteArray("%-._~/").contains(byte) || isalnum(uchar(byte))) << byte;
}

TEST(FilePathTest, AppendingPutsExactlyOneSlashBetween)
{
    for (const auto &[folder, whole] : {std::pair("/", "/b"), {"/a", "/a/b"}, {"/a/", "/a/b"}, {"", "b"}})
        EXPECT_EQ(FilePath(folder).appendingPathComponent("b").bytes(), QByteArray(whole));
}

} // namespace
} // namespace tidemark::test
