#include "Platform/QuartzCore/PixelKernels.h"
#include "Platform/QuartzCore/SampleKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

namespace platform {
namespace {

using rows::Pixel;

Pixel eachChannel(const std::function<unsigned(int shift)>& channel)
{
    Pixel result = 0;
    for (int shift = 0; shift < 32; shift += 8)
        result |= (channel(shift) & 255) << shift;
    return result;
}
unsigned at(Pixel p, int shift) { return p >> shift & 255; }

Pixel scaled(Pixel p, unsigned factor)
{
    return eachChannel([&](int shift) { return rows::multiply255(at(p, shift), factor); });
}
Pixel over(Pixel below, Pixel above)
{
    return eachChannel([&](int shift) { return at(above, shift) + rows::multiply255(at(below, shift), 255 - (above >> 24)); });
}

// Rows of every length from nothing to several of what a processor takes at once, beginning at any pixel.
class PixelKernels : public testing::Test {
protected:
    static constexpr int longest = 37, spare = 3;

    PixelKernels()
    {
        for (int i = 0; i < longest + spare; ++i) {
            below.push_back(premultiplied());
            above.push_back(premultiplied());
            coverage.push_back(std::uint8_t(i % 5 == 0 ? 0 : i % 5 == 1 ? 255 : random() & 255));
        }
    }
    Pixel premultiplied()
    {
        const unsigned choice = random() % 4, alpha = choice == 0 ? 0 : choice == 1 ? 255 : random() & 255;
        Pixel pixel = alpha << 24;
        for (int shift = 0; shift < 24; shift += 8)
            pixel |= Pixel(random() % (alpha + 1)) << shift;
        return pixel;
    }
    // Draws into a copy of the row below, and compares every pixel, those around the drawn ones too.
    void expectEach(const std::function<void(Pixel* to, int first, int count)>& draw, const std::function<Pixel(int)>& expected)
    {
        for (int first = 0; first < spare; ++first) {
            for (int count = 0; count <= longest; ++count) {
                auto row = below;
                draw(row.data() + first, first, count);
                for (int i = 0; i < int(row.size()); ++i) {
                    const bool isDrawn = i >= first && i < first + count;
                    const auto index = std::size_t(i);
                    ASSERT_EQ(row[index], isDrawn ? expected(i) : below[index])
                        << "pixel " << i << " of " << first << "+" << count;
                }
            }
        }
    }

    std::mt19937 random { 7 };
    std::vector<Pixel> below, above;
    std::vector<std::uint8_t> coverage;
};

TEST_F(PixelKernels, blendPicturesExactly)
{
    for (const bool isOpaque : { false, true }) {
        const auto from = [&](int i) { return above[std::size_t(i)] | (isOpaque ? 0xff000000u : 0); };
        for (const unsigned part : { 255u, 254u, 100u, 1u, 0u }) {
            expectEach([&](Pixel* to, int first, int n) { rows::over(to, above.data() + first, n, part, isOpaque); },
                [&](int i) { return over(below[std::size_t(i)], scaled(from(i), part)); });
        }
        expectEach(
            [&](Pixel* to, int first, int n) { rows::over(to, above.data() + first, coverage.data() + first, n, isOpaque); },
            [&](int i) { return over(below[std::size_t(i)], scaled(from(i), coverage[std::size_t(i)])); });
    }
}

TEST_F(PixelKernels, blendColorsExactly)
{
    for (const Pixel color : { 0xff80ff01u, 0x80402010u, 0x01010100u, 0u }) {
        for (const unsigned part : { 255u, 131u, 0u }) {
            expectEach([&](Pixel* to, int, int n) { rows::overColor(to, color, n, part); },
                [&](int i) { return over(below[std::size_t(i)], scaled(color, part)); });
        }
        expectEach([&](Pixel* to, int first, int n) { rows::overColor(to, color, coverage.data() + first, n); },
            [&](int i) { return over(below[std::size_t(i)], scaled(color, coverage[std::size_t(i)])); });
    }
}

TEST_F(PixelKernels, fadeAndMixExactly)
{
    expectEach([&](Pixel* to, int first, int n) { rows::multiplyByAlpha(to, above.data() + first, n); },
        [&](int i) { return scaled(below[std::size_t(i)], above[std::size_t(i)] >> 24); });
    for (const unsigned weight : { 0u, 1u, 128u, 255u, 256u }) {
        expectEach([&](Pixel* to, int first,
                       int n) { rows::mixRows(to, std::vector(below).data() + first, above.data() + first, n, weight); },
            [&](int i) {
                return eachChannel([&](int shift) {
                    const auto index = std::size_t(i);
                    return (at(below[index], shift) * (256 - weight) + at(above[index], shift) * weight + 128) >> 8;
                });
            });
    }
}

TEST_F(PixelKernels, sampleExactly)
{
    constexpr std::int64_t last = longest - 1, end = last << 16;
    for (const std::int64_t step : { 1, 30'000, 65'536, 65'537, 131'072, 190'000, -40'000, 0 }) {
        for (const std::int64_t start : { -70'000, 0, 12'345, 1'200'000, 3'000'000 }) {
            for (int count = 0; count <= 2 * longest; ++count) {
                std::vector<Pixel> row(std::size_t(count) + 1, 77);
                rows::sampleRow(row.data(), above.data(), int(last), start, step, count);
                for (int i = 0; i < count; ++i) {
                    const std::int64_t place = std::clamp<std::int64_t>(start + i * step, 0, end);
                    const auto left = std::size_t(place >> 16), right = std::min(left + 1, std::size_t(last));
                    const unsigned weight = unsigned(place >> 8) & 255;
                    const Pixel wanted = eachChannel([&](int shift) {
                        return (at(above[left], shift) * (256 - weight) + at(above[right], shift) * weight + 128) >> 8;
                    });
                    ASSERT_EQ(row[std::size_t(i)], wanted) << i << " of " << count << ", " << step << " from " << start;
                }
                ASSERT_EQ(row.back(), 77u);
            }
        }
    }
}

} // namespace
} // namespace platform
