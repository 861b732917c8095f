#pragma once

#include <memory>
#include <string>

#include "Showroom/Media/Picture.h"

namespace showroom::media {

// The host of a show at her table: she talks, and brings one product after the other. Begins anew after `frameCount` frames
// without a jump.
class HostScene {
public:
    static constexpr int width = 720; // pixels
    static constexpr int height = 1280;
    static constexpr int framesPerSecond = 30;
    static constexpr int frameCount = 1800;

    // Objects as SVG files from that folder. Throws std::runtime_error when one cannot be read.
    explicit HostScene(const std::string& objects);
    ~HostScene();

    // The frame of that number, with its number as a code. The code lies where no screen's crop cuts it: see the .cpp file.
    const Picture& draw(int number);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

// How loud the host talks at that time (seconds), 0 to 1: her head moves with her voice.
double talkAt(double seconds);

} // namespace showroom::media
