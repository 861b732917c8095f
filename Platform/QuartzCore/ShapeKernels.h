#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <cstdint>

// Loops over rows that find out what a shape covers.
namespace platform::rows {

// A rectangle with round corners, in a space of its own.
struct RoundedRect {
    CGAffineTransform toLocal; // device pixels to the rectangle's space
    CGRect rect;
    double radius = 0;
    unsigned corners = 15; // as CACornerMask
};
// How much of the pixels at (x, y), (x + 1, y)... the rectangle covers, by the distance of their centres from its edges.
void coverRow(std::uint8_t* to, const RoundedRect& shape, int x, int y, int count);
// row[i] += weight * other[i].
void accumulate(float* row, const float* other, float weight, int count);

} // namespace platform::rows
