#pragma once

#include <cstdint>

// The compositor's inner loops over rows of premultiplied 0xAARRGGBB words. Integers only where pixels are blended, so that a
// picture does not depend on the processor. Coverage is 0 to 255, and 255 leaves its operand as it is: a row that is cut in
// pieces, with some of them fully covered, gives the very pixels of the uncut one.
namespace platform::rows {

using Pixel = std::uint32_t;

// a times b over 255, rounded to the nearest.
constexpr unsigned multiply255(unsigned a, unsigned b)
{
    const unsigned t = a * b + 128;
    return (t + (t >> 8)) >> 8;
}

void copyReversed(Pixel* to, const Pixel* from, int count);

// `fromIsOpaque` says that the alpha of what comes over is to be taken as 255 (xrgb).
void over(Pixel* to, const Pixel* from, int count, unsigned coverage, bool fromIsOpaque);
void over(Pixel* to, const Pixel* from, const std::uint8_t* coverage, int count, bool fromIsOpaque);
void overColor(Pixel* to, Pixel color, int count, unsigned coverage);
void overColor(Pixel* to, Pixel color, const std::uint8_t* coverage, int count);

void multiply(std::uint8_t* to, const std::uint8_t* from, int count, unsigned factor);
void multiply(std::uint8_t* to, const std::uint8_t* a, const std::uint8_t* b, int count);
void multiplyByAlpha(Pixel* row, const Pixel* alpha, int count);
void alphaOf(std::uint8_t* to, const Pixel* from, int count);

} // namespace platform::rows
