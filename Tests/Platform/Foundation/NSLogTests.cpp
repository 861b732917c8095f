#include "Platform/Foundation/NSLog.h"

#include <gtest/gtest.h>
#include <thread>

namespace platform {

TEST(NSLog, aCallIsAlwaysOneLine)
{
    testing::internal::CaptureStderr();
    NSLog("first\nsecond\r\x01\x7f tab\tstays");
    NSLog("broken \xff byte, h\xc3\xa9llo");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "first\\nsecond\\r\\x01\\x7f tab\tstays\n"
        "broken \xef\xbf\xbd byte, h\xc3\xa9llo\n");
}

TEST(NSLog, theInnermostCaptureTakesTheLines)
{
    using Lines = std::vector<std::string>;
    LogCapture outer;
    NSLog("before");
    {
        LogCapture inner;
        NSLog("inside");
        EXPECT_EQ(inner.lines(), Lines { "inside" });
    }
    NSLog("after");
    EXPECT_EQ(outer.lines(), (Lines { "before", "after" }));
}

TEST(NSLog, linesOfSeveralThreadsStayWhole)
{
    constexpr int count = 500;
    LogCapture log;
    std::vector<std::thread> threads;
    for (const char letter : { 'a', 'b', 'c' }) {
        threads.emplace_back([letter] {
            for (int i = 0; i < count; ++i)
                NSLog(std::string(40, letter));
        });
    }
    for (auto& thread : threads)
        thread.join();
    const auto lines = log.lines();
    EXPECT_EQ(lines.size(), 3u * count);
    for (const auto& line : lines)
        EXPECT_EQ(line, std::string(40, line.front()));
}

} // namespace platform
