#include "foundation/ExtendedAttributes.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/xattr.h>
#include <unistd.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;

class ExtendedAttributesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (setxattr(file.cString(), "user.probe", "", 0, 0) != 0)
            GTEST_SKIP() << "no extended attributes here";
    }
    static std::optional<QString> value(const FilePath &path)
    {
        return pathExtendedAttributeValueForKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING);
    }
    static bool setValue(const FilePath &path, const QString &text, int flag = 0)
    {
        return setPathValueForExtendedAttributeKey(path, TD_EXTENDED_ATTRIBUTE_TEXT_ENCODING, text, flag);
    }
    static void setRaw(const FilePath &path, const QByteArray &bytes)
    {
        ASSERT_EQ(setxattr(path.cString(), NAME, bytes.constData(), size_t(bytes.size()), 0), 0);
    }
    static QByteArray raw(const FilePath &path)
    {
        char bytes[100];
        const ssize_t size = lgetxattr(path.cString(), NAME, bytes, sizeof bytes);
        return size < 0 ? QByteArray("none") : QByteArray(bytes, size);
    }

    static constexpr const char *NAME = "user.com.apple.TextEncoding";
    test::TemporaryFolder folder;
    FilePath file = folder.write("file", "");
};

TEST_F(ExtendedAttributesTest, TheTerminatingZeroIsStoredOnlyOnRequestAndNeverRead)
{
    EXPECT_EQ(value(file), std::nullopt);
    EXPECT_TRUE(setValue(file, u"utf-8;134217984"_s));
    EXPECT_EQ(raw(file), QByteArray("utf-8;134217984"));
    EXPECT_EQ(value(file), u"utf-8;134217984"_s);
    EXPECT_TRUE(setValue(file, u"é"_s, 1));
    EXPECT_EQ(raw(file), QByteArray("\xC3\xA9\0", 3));
    EXPECT_EQ(value(file), u"é"_s);
    setRaw(file, "");
    EXPECT_EQ(value(file), u""_s);
}

TEST_F(ExtendedAttributesTest, AValueThatIsNotUtf8IsNothing)
{
    setRaw(file, "utf-8\xFF;134217984");
    EXPECT_EQ(value(file), std::nullopt);
}

TEST_F(ExtendedAttributesTest, WritingFollowsALinkAndReadingDoesNot)
{
    const FilePath link = folder.path("link");
    ASSERT_EQ(symlink(file.cString(), link.cString()), 0);
    EXPECT_TRUE(setValue(link, u"x;1"_s));
    EXPECT_EQ(value(link), std::nullopt);
    EXPECT_EQ(value(file), u"x;1"_s);
}

TEST_F(ExtendedAttributesTest, AMissingFileHasNoneAndTakesNone)
{
    EXPECT_EQ(value(folder.path("missing")), std::nullopt);
    EXPECT_FALSE(setValue(folder.path("missing"), u"x;1"_s));
}

} // namespace
} // namespace tidemark
