#pragma once

#include "Platform/AVFoundation/VideoFrame.h"
#include "Platform/CoreGraphics/Bitmap.h"

namespace platform {

// A part of a picture, in its pixels; may begin and end inside of pixels.
struct VideoPart {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// That part of a decoded picture, scaled to exactly so many opaque pixels: conversion and scaling in one pass, bilinear (from
// halved planes where it shrinks to less than half). Integers only. Null when there is no memory. Any thread.
std::shared_ptr<Bitmap> drawVideo(const VideoPlanes& planes, const VideoPart& part, int width, int height);

} // namespace platform
