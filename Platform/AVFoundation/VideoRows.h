#pragma once

#include "Platform/AVFoundation/VideoFrame.h"
#include "Platform/AVFoundation/VideoKernels.h"

#include <cstdint>
#include <vector>

namespace platform {

// A part of a picture, in its pixels; may begin and end inside of pixels.
struct VideoPart {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// Rows of that part of a decoded picture, scaled to exactly so many opaque pixels: conversion and scaling in one pass, bilinear.
// Keeps the source rows that it stretched last, since several of its own may lie between them. The planes must outlive it.
class VideoRows {
public:
    VideoRows(const VideoPlanes& planes, const VideoPart& part, int width, int height);

    // `count` pixels from (x, y) to the right.
    void draw(std::uint32_t* to, int x, int y, int count);

private:
    using Sample = videoKernels::Sample;

    // Positions in 1/65536 of a source sample, from the first one's centre.
    struct Axis {
        std::int64_t start;
        std::int64_t step;
        int last; // the last source sample

        std::int64_t at(int i) const;
    };

    // Blocks of neighbouring results.
    struct Range {
        int first = 0, end = 0;
        bool contains(const Range& other) const { return first <= other.first && other.end <= end; }
    };

    // Where a row of results lies in a row of sources.
    class Columns {
    public:
        Columns(const Axis& axis, int blockCount);
        void stretch(Sample* to, const std::uint8_t* row, const Range& range) const;

    private:
        int last;
        std::vector<std::int32_t> left;
        std::vector<Sample> share;
        std::vector<videoKernels::Block> blocks; // empty when some lie too far apart for them
    };

    // A source row's brightness, or its three tints, stretched in a range.
    struct Row {
        int number = -1;
        Range range;
        std::vector<Sample> samples;
    };

    static Axis axisFor(double from, double length, int results, int sources);
    static Axis colorAxis(const Axis& axis, double offset, int sources);
    template <typename Make> static const Sample* rowOf(Row (&kept)[2], int number, const Range& range, const Make& make);
    template <typename Make>
    static videoKernels::Neighbours neighbours(Row (&kept)[2], const Axis& axis, int y, const Range& range, const Make& make);

    VideoPlanes planes;
    videoKernels::Matrix matrix;
    Axis across, down, colorAcross, colorDown;
    int blockCount, stride; // results in a row of whole blocks
    Columns columns, colorColumns;
    Row light[2], tint[2]; // by the last bit of their numbers
    std::vector<Sample> stretchedU, stretchedV;
};

} // namespace platform
