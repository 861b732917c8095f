#pragma once

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/NSLog.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace platform {

// A test in which every console line is expected or a failure.
class QuietTest : public ::testing::Test {
protected:
    std::vector<std::string> takeLines()
    {
        auto lines = log.lines();
        log.clear();
        return lines;
    }

    void TearDown() override { EXPECT_EQ(takeLines(), std::vector<std::string>()) << "console lines that nobody expected"; }

private:
    LogCapture log;
};

// A quiet test on a clock that stands still.
class ManualClockTest : public QuietTest {
protected:
    ManualClockTest() { Clock::setCurrent(&clock); }

    ManualClock clock;
};

} // namespace platform
