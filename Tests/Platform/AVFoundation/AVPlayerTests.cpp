#include "Tests/Platform/AVFoundation/MediaTest.h"

namespace platform {
namespace {

TEST_F(MediaTest, handsOutTheFrameOfTheClocksTime)
{
    open(films.plain())->play();
    host.advance(0);
    EXPECT_EQ(player->currentItem()->status(), AVPlayerItemStatus::readyToPlay);
    EXPECT_EQ(shownFrame(), 0);
    int frame = 0;
    for (const double seconds : { 0.1, 0.5, 1.0 / 30, 0.01, 0.01, 0.02 }) {
        host.advance(seconds);
        frame = int(player->currentTime() * 30 + 1e-6);
        EXPECT_EQ(shownFrame(), frame) << player->currentTime();
    }
}

} // namespace
} // namespace platform
