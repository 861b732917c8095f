#pragma once

namespace bench {

// What a frame of the shop's video costs the whole process on a phone's screen. Milliseconds of CPU a frame.
struct VideoFigures {
    int frames = 0;
    double decoding = 0; // the decoder alone: a player that no layer shows
    double converting = 0; // conversion and scaling alone: 720 x 1280 over 1179 x 2556 pixels
    double whole = 0; // decoded, converted, composed over the whole screen
};

VideoFigures measureVideoFrames(int frames);
// The decoder alone. Milliseconds of CPU a frame.
double measureDecoding(int frames);

} // namespace bench
