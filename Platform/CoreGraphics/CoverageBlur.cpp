#include "Platform/CoreGraphics/CoverageBlur.h"

#include "Platform/CoreGraphics/ProcessorClones.h"
#include "Platform/CoreGraphics/RowWeights.h"

#include <cmath>
#include <cstring>
#include <vector>

namespace platform::pixels {
namespace {
using Word = std::uint32_t;
}

// Clones are functions of their own name, as one compiler wants every declaration marked.
namespace loops {

// A sliding box over columns: each sum gains the entering row and loses the leaving one.
MIVORA_CLONES void slideRow(Word* sums, const std::uint8_t* entering, const std::uint8_t* leaving, int count)
{
    for (int i = 0; i < count; ++i)
        sums[i] += Word(entering[i]) - Word(leaving[i]);
}

// Sums to averages; reciprocal is 2^16 over the box's length.
MIVORA_CLONES void averageRow(std::uint8_t* bytes, const Word* sums, int count, Word reciprocal)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = std::uint8_t((sums[i] * reciprocal + 0x8000) >> 16);
}

} // namespace loops

namespace {
constexpr double largestKernelSigma = 3; // pixels; beyond it three boxes are as good and faster

// Weights that add up to 256, from the centre outwards.
std::vector<std::uint16_t> gaussianKernel(double sigma)
{
    const int reach = int(std::ceil(3 * sigma));
    std::vector<double> exact(std::size_t(reach) + 1);
    double sum = 0;
    for (int i = 0; i <= reach; ++i) {
        exact[std::size_t(i)] = std::exp(-double(i) * i / (2 * sigma * sigma));
        sum += exact[std::size_t(i)] * (i ? 2 : 1);
    }
    std::vector<std::uint16_t> kernel;
    int rest = 256;
    for (double weight : exact) {
        kernel.push_back(std::uint16_t(std::lround(weight / sum * 256)));
        rest -= int(kernel.back()) * (kernel.size() > 1 ? 2 : 1);
    }
    kernel[0] = std::uint16_t(kernel[0] + rest);
    return kernel;
}

void transpose(const Bitmap& source, Bitmap& target)
{
    constexpr int block = 32; // pixels; both blocks stay in the nearest cache
    for (int top = 0; top < source.height(); top += block) {
        for (int left = 0; left < source.width(); left += block) {
            const int bottom = std::min(top + block, source.height()), right = std::min(left + block, source.width());
            for (int y = top; y < bottom; ++y) {
                for (int x = left; x < right; ++x)
                    target.alphaRow(x)[y] = source.alphaRow(y)[x];
            }
        }
    }
}

// Weighs whole rows, which vectorises; both directions go through it, the second one transposed.
void blurColumnsByKernel(const Bitmap& source, Bitmap& target, const std::vector<std::uint16_t>& kernel)
{
    const int width = source.width(), height = source.height(), reach = int(kernel.size()) - 1;
    std::vector<std::uint16_t> sums(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        std::fill(sums.begin(), sums.end(), std::uint16_t(0));
        for (int i = std::max(y - reach, 0); i <= std::min(y + reach, height - 1); ++i)
            weighRow(sums.data(), source.alphaRow(i), width, kernel[std::size_t(std::abs(i - y))]);
        roundRow(target.alphaRow(y), sums.data(), width);
    }
}

void blurColumnsByBox(const Bitmap& source, Bitmap& target, int length)
{
    const int width = source.width(), height = source.height(), reach = length / 2;
    std::vector<Word> sums(static_cast<std::size_t>(width));
    const std::vector<std::uint8_t> nothing(static_cast<std::size_t>(width));
    const auto rowAt = [&](int y) { return y >= 0 && y < height ? source.alphaRow(y) : nothing.data(); };
    for (int y = 0; y < reach; ++y)
        loops::slideRow(sums.data(), rowAt(y), nothing.data(), width);
    const Word reciprocal = Word((65536 + length / 2) / length);
    for (int y = 0; y < height; ++y) {
        loops::slideRow(sums.data(), rowAt(y + reach), rowAt(y - reach - 1), width);
        loops::averageRow(target.alphaRow(y), sums.data(), width, reciprocal);
    }
}

void blurColumns(Bitmap& bitmap, Bitmap& scratch, double sigma)
{
    if (sigma <= largestKernelSigma) {
        blurColumnsByKernel(bitmap, scratch, gaussianKernel(sigma));
        for (int y = 0; y < bitmap.height(); ++y)
            std::memcpy(bitmap.alphaRow(y), scratch.alphaRow(y), std::size_t(bitmap.width()));
        return;
    }
    // Three boxes of odd lengths whose variances, (length^2 - 1) / 12 each, add up to the gaussian's.
    const double ideal = std::sqrt(4 * sigma * sigma + 1);
    const int shorter = int((ideal - 1) / 2) * 2 + 1;
    const double wanted = 12 * sigma * sigma;
    const int shortOnes
        = std::clamp(int(std::lround((3.0 * (shorter + 2) * (shorter + 2) - 3 - wanted) / (4.0 * shorter + 4))), 0, 3);
    const auto length = [&](int pass) { return pass < shortOnes ? shorter : shorter + 2; };
    blurColumnsByBox(bitmap, scratch, length(0));
    blurColumnsByBox(scratch, bitmap, length(1));
    blurColumnsByBox(bitmap, scratch, length(2));
    for (int y = 0; y < bitmap.height(); ++y)
        std::memcpy(bitmap.alphaRow(y), scratch.alphaRow(y), std::size_t(bitmap.width()));
}
}

void blurCoverage(Bitmap& coverage, double sigma)
{
    if (!(sigma > 0.05))
        return;
    const auto scratch = Bitmap::make(coverage.width(), coverage.height(), PixelFormat::alpha);
    const auto turned = Bitmap::make(coverage.height(), coverage.width(), PixelFormat::alpha);
    const auto turnedScratch = Bitmap::make(coverage.height(), coverage.width(), PixelFormat::alpha);
    if (!scratch || !turned || !turnedScratch)
        return;
    blurColumns(coverage, *scratch, sigma);
    transpose(coverage, *turned);
    blurColumns(*turned, *turnedScratch, sigma);
    transpose(*turned, coverage);
}

} // namespace platform::pixels
