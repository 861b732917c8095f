#pragma once

#include "Benchmarks/Measure.h"

#include <string>

namespace bench {

// K6: the kit's live screen as the sample shop opens it, with chat, products and the host's video playing. Every frame of figures
// is one of the video, 30 a second; the screen's frames between two of them count to it.
struct LiveScreenFigures {
    double decoding = 0; // milliseconds of CPU a frame: the decoder alone, nobody looks
    FrameFigures quiet; // nothing happens but the video
    FrameFigures busy; // a message and a reaction come before each frame
    double quietScreenFrames = 0, busyScreenFrames = 0; // drawn for each of the video's
};

// Nothing is measured, after a line on the error stream, when the show cannot be joined. `picture` names a PNG of the last frame,
// or is empty.
LiveScreenFigures measureLiveScreen(int frames, const std::string& picture);

} // namespace bench
