#include "reading/TDReadBuffer.h"

#include "foundation/AssertionHandler.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace tidemark {
namespace {

using namespace Qt::Literals::StringLiterals;
using test::TemporaryFolder;

std::vector<AssertionFailure> recordedFailures;

class OpenFile
{
public:
    explicit OpenFile(const QByteArray &content)
        : buffer(::open(_folder.write("file", content).cString(), O_RDONLY | O_CLOEXEC))
    {}
    ~OpenFile() { EXPECT_TRUE(buffer.close(error, FilePath())); }
    QByteArray rest()
    {
        QByteArray bytes;
        for (char byte = 0; buffer.read(byte, error);)
            bytes.append(byte);
        return bytes;
    }

private:
    TemporaryFolder _folder;

public:
    TDReadBuffer buffer;
    TDError error;
};

QByteArray numberedBytes(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype index = 0; index < size; ++index)
        bytes[index] = char(index % 251);
    return bytes;
}

TEST(TDReadBufferTest, HandsOutEveryByteWhateverTheSizeIsToTheBlocks)
{
    for (const qsizetype size : {0, 1, 40959, 40960, 40961, 81920, 100000}) {
        OpenFile file(numberedBytes(size));
        EXPECT_TRUE(file.rest() == numberedBytes(size)) << size;
        EXPECT_TRUE(file.error.isNull()) << size;
        file.buffer.pushBack('a');
        file.buffer.pushBack('b');
        EXPECT_EQ(file.rest(), QByteArray("ba")) << size;
    }
}

TEST(TDReadBufferTest, TakingGivingBackAndLookingAheadKeepTheOrder)
{
    std::mt19937 random(1);
    const QByteArray content = numberedBytes(40960 + 50);
    OpenFile file(content);
    QByteArray expected = content; // what is still to come, next byte first
    for (int step = 0; step < 20000; ++step) {
        char byte = 0;
        switch (random() % 4) {
        case 0: {
            const QByteArrayView bytes = file.buffer.available(file.error);
            ASSERT_EQ(bytes.isEmpty(), expected.isEmpty());
            ASSERT_TRUE(expected.startsWith(bytes)) << step;
            const qsizetype count =
                bytes.isEmpty() ? 0 : qsizetype(random() % quint32(qMin(bytes.size(), 40) + 1));
            file.buffer.consume(count);
            expected.remove(0, count);
            break;
        }
        case 1:
            byte = char(random() % 251);
            file.buffer.pushBack(byte);
            expected.prepend(byte);
            break;
        case 2: // what was just taken
            if (!file.buffer.read(byte, file.error))
                break;
            file.buffer.pushBack(byte);
            ASSERT_EQ(byte, expected.front()) << step;
            break;
        default:
            ASSERT_EQ(file.buffer.read(byte, file.error), !expected.isEmpty()) << step;
            if (expected.isEmpty())
                break;
            ASSERT_EQ(byte, expected.front()) << step;
            expected.remove(0, 1);
        }
    }
}

TEST(TDReadBufferTest, AShortReadIsTheEndEvenWhenMoreFollows)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    TDReadBuffer buffer(ends[0]);
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
    TDReadBuffer buffer(descriptor);
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
    recordedFailures.clear();
    const AssertionHandler before =
        setAssertionHandler([](const AssertionFailure &failure) { recordedFailures.push_back(failure); });
    const int descriptor = ::open("/", O_RDONLY | O_CLOEXEC);
    {
        const TDReadBuffer buffer(descriptor);
    }
    setAssertionHandler(before);
    ASSERT_EQ(recordedFailures.size(), 1U);
    EXPECT_EQ(recordedFailures[0].function, "TDReadBuffer::~TDReadBuffer()");
    EXPECT_EQ(recordedFailures[0].file, "Src/TDFileReader");
    EXPECT_EQ(recordedFailures[0].line, 282);
    EXPECT_EQ(recordedFailures[0].description, "File descriptor not closed with close(...)");
    EXPECT_EQ(::close(descriptor), 0);
}

} // namespace
} // namespace tidemark
