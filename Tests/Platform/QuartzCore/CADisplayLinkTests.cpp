#include "Platform/QuartzCore/CADisplayLink.h"

#include "Platform/QuartzCore/LayerCommitter.h"

#include <gtest/gtest.h>

#include <vector>

namespace platform {
namespace {

TEST(CADisplayLinkTest, runsEveryFrameUntilItIsStopped)
{
    std::vector<double> times;
    const auto link = make<CADisplayLink>([&](double time) { times.push_back(time); });
    LayerCommitter::finishAnimations(1);
    EXPECT_FALSE(CADisplayLink::anyRuns());
    link->start();
    link->start();
    EXPECT_TRUE(LayerCommitter::needsFrame());
    EXPECT_TRUE(LayerCommitter::hasRunningAnimations());
    LayerCommitter::finishAnimations(2);
    LayerCommitter::finishAnimations(3);
    link->stop();
    LayerCommitter::finishAnimations(4);
    EXPECT_EQ(times, (std::vector<double> { 2, 3 }));
    EXPECT_FALSE(CADisplayLink::anyRuns());
}

TEST(CADisplayLinkTest, mayEndItselfAndOthersInACall)
{
    std::shared_ptr<CADisplayLink> first, second;
    int calls = 0;
    first = make<CADisplayLink>([&](double) {
        ++calls;
        second->stop();
        first = nullptr;
    });
    second = make<CADisplayLink>([&](double) { calls += 100; });
    first->start();
    second->start();
    LayerCommitter::finishAnimations(5);
    LayerCommitter::finishAnimations(6);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(CADisplayLink::anyRuns());
}

} // namespace
} // namespace platform
