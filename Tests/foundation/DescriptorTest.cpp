#include "foundation/Descriptor.h"
#include "foundation/FileSystemCalls.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <vector>

namespace tidemark::test {
namespace {

using testing::ElementsAre;

/// Only writes down what is closed, and lets it fail.
class ClosingCalls : public FileSystemCalls
{
public:
    ClosingCalls() { setCurrent(this); }
    ~ClosingCalls() override { setCurrent(nullptr); }
    std::vector<int> closed;

    int close(int descriptor) override
    {
        closed.push_back(descriptor);
        errno = EIO;
        return -1;
    }
};

TEST(DescriptorTest, EachIsClosedOnceByWhoeverHasItLast)
{
    ClosingCalls calls;
    {
        Descriptor kept(101);
        Descriptor moved(102);
        Descriptor last = std::move(moved);
        EXPECT_FALSE(moved.isOpen());
        kept = std::move(last);
        EXPECT_THAT(calls.closed, ElementsAre(101)) << "what it had before";
        EXPECT_EQ(Descriptor(103).release(), 103);
        kept = Descriptor(-1);
        kept = Descriptor(104);
    }
    EXPECT_THAT(calls.closed, ElementsAre(101, 102, 104));
}

TEST(DescriptorTest, AFailureToCloseIsToldOnceAndNeverHidesAnother)
{
    ClosingCalls calls;
    Descriptor descriptor(101);
    EXPECT_EQ(descriptor.close(), EIO);
    EXPECT_EQ(descriptor.close(), 0) << "its number may be another's by now";
    errno = ENOSPC;
    descriptor = Descriptor(102);
    descriptor = {};
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_THAT(calls.closed, ElementsAre(101, 102));
}

} // namespace
} // namespace tidemark::test
