#include "foundation/AbandonableWork.h"
#include "foundation/StopFlag.h"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <thread>

namespace tidemark {
namespace {

using namespace std::chrono_literals;

TEST(AbandonableWork, HandsOverWhatTheWorkReturnsOrThrows)
{
    EXPECT_EQ(resultOfAbandonable([] { return 3; }, 10s), 3);
    EXPECT_THROW(runAbandonably([] { throw std::runtime_error("no"); }, 10s), std::runtime_error);
    EXPECT_FALSE(isAbandonedWorkRunning());
}

TEST(AbandonableWork, HoldsUpNeitherAStopNorItsTimeLimit)
{
    for (const bool isStopped : {true, false}) {
        const auto release = std::make_shared<std::promise<void>>();
        const auto endless = [released = release->get_future().share()] { released.wait(); };
        std::atomic<bool> stop = false;
        const StopScope scope(&stop, nullptr);
        if (isStopped) {
            const auto stopAndGoOn = [&stop, endless] {
                stop = true;
                endless();
            };
            EXPECT_THROW(runAbandonably(stopAndGoOn, 1h), WorkStopped);
        } else {
            EXPECT_FALSE(runAbandonably(endless, 1ms));
        }
        EXPECT_TRUE(isAbandonedWorkRunning());
        release->set_value();
        while (isAbandonedWorkRunning())
            std::this_thread::yield();
    }
}

} // namespace
} // namespace tidemark
