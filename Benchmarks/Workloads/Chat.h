#pragma once

#include "Benchmarks/Measure.h"

#include <optional>
#include <string>

namespace bench {

// W2: before each frame one more message comes into a chat of 10,000 over a still picture. `assets` is a folder with
// backdrop.jpg and chat.json, or empty; `picture` names a PNG of the last frame, or is empty.
FrameFigures measureChatFlood(int frames, const std::string& assets, const std::string& picture);

// The same over the shop's video, a message a frame of it.
struct ChatOverVideoFigures {
    double video = 0; // milliseconds of CPU a frame: decoded, converted and shown, before there is a chat
    FrameFigures all;
};
ChatOverVideoFigures measureChatOverVideo(int frames, const std::string& assets);

// W6: W2's screen at rest.
struct IdleFigures {
    double cpu = 0; // milliseconds in the seconds measured
    int frames = 0; // drawn in that time
    double memory = 0; // MiB
};
// With the real clock and no display.
IdleFigures measureIdle(double seconds, const std::string& assets);
// In a window. Nothing, after a line on the error stream, where there is no display.
std::optional<IdleFigures> measureIdleWindow(double seconds, const std::string& assets);

} // namespace bench
