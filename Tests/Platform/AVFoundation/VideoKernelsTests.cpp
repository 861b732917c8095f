#include "Platform/AVFoundation/VideoKernelsAVX2.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace platform {
namespace {

using namespace videoKernels;

#ifdef MIVORA_VIDEO_KERNELS_AVX2
// Samples far beyond what a picture has, so that every limit is met.
TEST(VideoKernels, giveTheSameOnEveryProcessor)
{
    if (!avx2::isSupported())
        GTEST_SKIP() << "this processor has the portable loops only";
    constexpr int longest = 70, stride = 96;
    std::mt19937 random(3);
    const auto samples = [&](int count, int limit) {
        std::vector<Sample> all(static_cast<std::size_t>(count));
        for (Sample& sample : all)
            sample = Sample(int(random() % unsigned(2 * limit)) - limit);
        return all;
    };
    const auto light = samples(2 * stride, 9000), tint = samples(6 * stride, 7000);
    for (const int share : { 0, 1, 16'384, 32'767 }) {
        const Neighbours lights { light.data(), light.data() + stride, share };
        const Neighbours tints { tint.data(), tint.data() + 3 * stride, 32'767 - share };
        for (int count = avx2::leastCount; count <= longest; ++count) {
            std::vector<std::uint32_t> wanted(longest + 1, 5), pixels = wanted;
            portable::color(wanted.data(), lights, tints, stride, count);
            avx2::color(pixels.data(), lights, tints, stride, count);
            ASSERT_EQ(pixels, wanted) << count << " pixels, share " << share;
        }
    }

    std::vector<std::uint8_t> row(64);
    for (auto& byte : row)
        byte = std::uint8_t(random());
    row[7] = 255;
    std::vector<Block> blocks(40);
    for (Block& block : blocks) {
        block.first = int(random() % (row.size() - blockSize));
        for (int i = 0; i < 2 * blockSize; i += 2) {
            const int right = int(random() % 4 ? random() % one : 0);
            block.pairs[i] = std::uint8_t(random() % blockSize);
            block.pairs[i + 1] = std::uint8_t(random() % blockSize);
            block.weights[i] = std::int8_t(right - one);
            block.weights[i + 1] = std::int8_t(-right);
        }
    }
    std::vector<Sample> wanted(blocks.size() * blockSize), stretched = wanted;
    portable::stretch(wanted.data(), row.data(), blocks.data(), int(blocks.size()));
    avx2::stretch(stretched.data(), row.data(), blocks.data(), int(blocks.size()));
    EXPECT_EQ(stretched, wanted);
}
#endif

} // namespace
} // namespace platform
