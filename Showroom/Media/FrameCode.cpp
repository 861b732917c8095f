#include "Showroom/Media/FrameCode.h"

#include <cmath>

namespace showroom::media::frameCode {

namespace {

// dark | white dark white dark | number | check | dark white dark white | dark
constexpr int numberBits = 12;
constexpr int checkBits = 8;
constexpr int markCells = 4;
static_assert(2 + 2 * markCells + numberBits + checkBits == cellCount);

constexpr double narrowestCell = 2.2; // pixels
constexpr int agreeingRows = 3; // so many neighbours must read the same
constexpr int leastContrast = 60; // between black and white

int checkOf(int number)
{
    int remainder = number << checkBits;
    for (int bit = numberBits + checkBits - 1; bit >= checkBits; --bit)
        if (remainder >> bit & 1)
            remainder ^= 0x12f << (bit - checkBits); // finds every error of up to four neighbouring bits
    return (remainder ^ 0x5a) & 0xff; // so that nothing but a code reads as number 0
}

int lightOf(std::uint32_t pixel) { return int((pixel >> 16 & 255) * 2 + (pixel >> 8 & 255) * 5 + (pixel & 255)) / 8; }

// Where a row turns from dark to light or back, to parts of a pixel.
struct Edge {
    double x;
    bool rises;
};

class Row {
public:
    Row(const std::uint32_t* pixels, int count)
    {
        for (int x = 0; x < count; ++x)
            light.push_back(lightOf(pixels[x]));
        findEdges();
    }

    std::optional<int> read() const
    {
        for (std::size_t i = 0; i + 3 < edges.size(); ++i) {
            if (const auto number = readFrom(i))
                return number;
        }
        return std::nullopt;
    }

private:
    // An edge is a steady climb or fall by enough; it lies where half of that is done.
    void findEdges()
    {
        const int count = int(light.size());
        for (int from = 0, to = 0; from + 1 < count; from = to) {
            to = from + 1;
            const int direction = light[std::size_t(to)] > light[std::size_t(from)] ? 1 : -1;
            while (to + 1 < count && (light[std::size_t(to + 1)] - light[std::size_t(to)]) * direction > 0)
                ++to;
            const int start = light[std::size_t(from)], end = light[std::size_t(to)];
            if (std::abs(end - start) < leastContrast)
                continue;
            const double half = (start + end) / 2.0;
            int x = from;
            while ((light[std::size_t(x + 1)] - half) * direction < 0)
                ++x;
            const double before = light[std::size_t(x)], after = light[std::size_t(x + 1)];
            edges.push_back({ x + (half - before) / (after - before) + 0.5, direction > 0 });
        }
    }

    std::optional<int> readFrom(std::size_t first) const
    {
        const Edge* mark = &edges[first];
        if (!mark[0].rises)
            return std::nullopt;
        const double guess = (mark[3].x - mark[0].x) / 3;
        for (int i = 0; i < 3; ++i) {
            if (mark[i].rises == mark[i + 1].rises || std::abs(mark[i + 1].x - mark[i].x - guess) > 0.3 * guess)
                return std::nullopt;
        }
        // The last edge falls at the end of the last white cell.
        constexpr int span = cellCount - 2;
        for (std::size_t last = first + 4; last < edges.size(); ++last) {
            const double cell = (edges[last].x - mark[0].x) / span;
            if (edges[last].rises || cell < narrowestCell || std::abs(cell - guess) > 0.12 * guess)
                continue;
            if (const auto number = decode(mark[0].x, cell))
                return number;
        }
        return std::nullopt;
    }

    std::optional<int> decode(double start, double cell) const
    {
        const auto at = [&](int i) {
            const auto x = std::size_t(start + (i + 0.5) * cell);
            return x < light.size() ? light[x] : 0;
        };
        const int half = (at(0) + at(1)) / 2;
        int bits = 0;
        for (int i = 0; i < numberBits + checkBits; ++i)
            bits = bits << 1 | int(at(markCells + i) > half);
        for (int i = 0; i < markCells; ++i) {
            if ((at(markCells + numberBits + checkBits + i) > half) != (i % 2 == 1))
                return std::nullopt;
        }
        const int number = bits >> checkBits;
        return checkOf(number) == (bits & 0xff) ? std::optional(number) : std::nullopt;
    }

    std::vector<int> light;
    std::vector<Edge> edges;
};

} // namespace

std::vector<bool> cells(int number)
{
    number &= highestNumber;
    const int bits = number << checkBits | checkOf(number);
    std::vector<bool> made { false, true, false, true, false };
    for (int bit = numberBits + checkBits - 1; bit >= 0; --bit)
        made.push_back(bits >> bit & 1);
    for (const bool white : { false, true, false, true, false })
        made.push_back(white);
    return made;
}

std::optional<int> read(const std::uint32_t* pixels, int stride, int width, int height)
{
    std::optional<int> before;
    int agreeing = 0;
    for (int y = 0; y < height; ++y) {
        const auto number = Row(pixels + std::ptrdiff_t(y) * stride, width).read();
        agreeing = number && number == before ? agreeing + 1 : 1;
        if (number && agreeing == agreeingRows)
            return number;
        before = number;
    }
    return std::nullopt;
}

} // namespace showroom::media::frameCode
