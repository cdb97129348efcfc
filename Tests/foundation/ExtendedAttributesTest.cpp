#include "foundation/ExtendedAttributes.h"
#include "support/Testing.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

std::optional<QString> value(const FilePath &path)
{
    return pathExtendedAttributeValueForKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
}

bool setValue(const FilePath &path, const QString &text, int flag = 0)
{
    return setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, text, flag);
}

TEST(ExtendedAttributesTest, AreWrittenThroughLinksAndReadFromTheFileItself)
{
    constexpr const char *NAME = "user.com.apple.TextEncoding";
    const TemporaryFolder folder;
    const FilePath file = folder.write("file", "");
    const FilePath link = folder.path("link");
    ASSERT_EQ(symlink(file.cString(), link.cString()), 0);
    if (setxattr(file.cString(), "user.probe", "", 0, 0) != 0)
        GTEST_SKIP() << "no extended attributes here";
    EXPECT_EQ(value(file), std::nullopt);
    EXPECT_TRUE(setValue(link, u"x;1"_s));
    EXPECT_EQ(value(link), std::nullopt);
    EXPECT_EQ(value(file), u"x;1"_s);

    const QString longValue(1000, u'x');
    EXPECT_TRUE(setValue(file, longValue));
    EXPECT_EQ(value(file), longValue);

    // The zero at the end is stored on request only, and never read.
    for (const auto &[flag, stored] : {std::pair(0, "\xC3\xA9"_ba), {1, "\xC3\xA9\0"_ba}}) {
        EXPECT_TRUE(setValue(file, u"é"_s, flag));
        char bytes[100];
        EXPECT_EQ(QByteArray(bytes, lgetxattr(file.cString(), NAME, bytes, sizeof bytes)), stored);
        EXPECT_EQ(value(file), u"é"_s);
    }
    ASSERT_EQ(setxattr(file.cString(), NAME, "", 0, 0), 0);
    EXPECT_EQ(value(file), u""_s);
    ASSERT_EQ(setxattr(file.cString(), NAME, "utf-8\xFF;1", 8, 0), 0);
    EXPECT_EQ(value(file), std::nullopt);

    EXPECT_EQ(value(folder.path("missing")), std::nullopt);
    EXPECT_FALSE(setValue(folder.path("missing"), u"x;1"_s));
}

TEST(ExtendedAttributesTest, AFileSystemWithoutThemIsNotAskedAgain)
{
    const TemporaryFolder folder;
    const FilePath file = folder.write("file", "");
    if (!setValue(file, u"x;1"_s))
        GTEST_SKIP() << "no extended attributes here";
    UserAttributes attributes;
    for (const char *path : {file.cString(), "/proc/self/comm", file.cString(), "/proc/self/stat"}) {
        const int descriptor = open(path, O_RDONLY);
        struct stat status = {};
        ASSERT_EQ(fstat(descriptor, &status), 0);
        const bool hasSome = path == file.cString();
        EXPECT_EQ(attributes.value(descriptor, status.st_dev, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING),
                  hasSome ? std::optional(u"x;1"_s) : std::nullopt);
        EXPECT_EQ(attributes.areMissingOn(status.st_dev), !hasSome);
        close(descriptor);
    }
}

} // namespace
} // namespace tidemark::test
