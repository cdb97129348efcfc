#include "reading/TDReadBuffer.h"

#include "foundation/AssertionHandler.h"
#include "support/Testing.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tidemark::test {
namespace {

TEST(TDReadBufferTest, AShortReadIsTheEndEvenWhenMoreFollows)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    TDReadBuffer buffer{Descriptor(ends[0])};
    TDError error;
    char byte = 0;
    ASSERT_EQ(write(ends[1], "a", 1), 1);
    EXPECT_TRUE(buffer.read(byte, error));
    ASSERT_EQ(write(ends[1], "b", 1), 1);
    EXPECT_FALSE(buffer.read(byte, error));
    EXPECT_TRUE(error.isNull());
    EXPECT_TRUE(buffer.close(error, FilePath()));
    close(ends[1]);
}

TEST(TDReadBufferTest, FailuresToReadAndToCloseGiveTheSystemsNumber)
{
    const int descriptor = ::open("/", O_RDONLY | O_CLOEXEC);
    TDReadBuffer buffer{Descriptor(descriptor)};
    TDError error;
    char byte = 0;
    EXPECT_FALSE(buffer.read(byte, error));
    EXPECT_EQ(error.domain(), TD_POSIX_ERROR_DOMAIN);
    EXPECT_EQ(error.code(), EISDIR);
    EXPECT_TRUE(buffer.available(error).isEmpty());
    EXPECT_EQ(error.code(), EISDIR);

    const FilePath path(QByteArray("/a/b"));
    ASSERT_EQ(::close(descriptor), 0);
    EXPECT_FALSE(buffer.close(error, path));
    EXPECT_EQ(error.code(), EBADF);
    EXPECT_EQ(error.localizedFailureReason(), u"An error occurred while closing ‘/a/b’."_s);
    EXPECT_EQ(error.userInfo().value(TDError::FILE_PATH_KEY).value<FilePath>(), path);

    ASSERT_EQ(::open("/", O_RDONLY | O_CLOEXEC), descriptor);
    EXPECT_TRUE(buffer.close(error, path));
    EXPECT_EQ(buffer.descriptor(), -1);
    EXPECT_TRUE(buffer.close(error, path)) << "a second time is allowed";
    EXPECT_TRUE(error.isNull());
}

TEST(TDReadBufferTest, DestroyingAnOpenBufferIsReportedAndNeverMended)
{
    static std::vector<AssertionFailure> failures;
    const AssertionHandler before =
        setAssertionHandler([](const AssertionFailure &failure) { failures.push_back(failure); });
    const int descriptor = ::open("/", O_RDONLY | O_CLOEXEC);
    {
        const TDReadBuffer buffer{Descriptor(descriptor)};
    }
    setAssertionHandler(before);
    ASSERT_EQ(failures.size(), 1U);
    EXPECT_EQ(failures[0].description, "File descriptor not closed with close(...)");
    EXPECT_EQ(::close(descriptor), 0);
}

} // namespace
} // namespace tidemark::test
