#pragma once

#include <string>

namespace test {

// What a film for a test is like. Every frame carries its number as a code in the middle, black and white on a grey that is
// lighter at the top than at the bottom; at the left edge there is a red column, at the right one a blue one.
struct TestVideo {
    int width = 640; // pixels, even
    int height = 480;
    int frames = 60;
    int framesPerSecond = 30;
    double loudness = 0.5; // of its tone, 0 to 1; 0: no sound at all
    int framesFromKeyToKey = 30;
};

// Writes it as MP4 (H.264, Opus). False, after a test failure, when that does not work.
bool writeTestVideo(const std::string& path, const TestVideo& video = {});

} // namespace test
