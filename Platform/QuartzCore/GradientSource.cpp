#include "Platform/QuartzCore/PixelSource.h"

#include "Platform/QuartzCore/PixelCache.h"
#include "Platform/QuartzCore/SampleKernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace platform {

namespace {

using rows::Pixel;

// Colours along the gradient, mixed premultiplied, so that fading to clear does not darken.
class Ramp {
public:
    explicit Ramp(const RenderGradient& gradient)
    {
        const std::size_t count = std::min(gradient.colors.size(), gradient.locations.size());
        for (std::size_t i = 0; i < count; ++i) {
            const CGColor& c = gradient.colors[i];
            const double a = std::clamp(c.alpha, 0.0, 1.0);
            stops.push_back({ gradient.locations[i], { a, c.red * a, c.green * a, c.blue * a } });
        }
    }

    Pixel at(double t) const
    {
        if (stops.empty())
            return 0;
        std::size_t next = 0;
        while (next < stops.size() && stops[next].location <= t)
            ++next;
        if (next == 0)
            return word(stops.front().channels);
        if (next == stops.size())
            return word(stops.back().channels);
        const Stop &a = stops[next - 1], &b = stops[next];
        const double part = (t - a.location) / (b.location - a.location);
        std::array<double, 4> mixed {};
        for (std::size_t i = 0; i < 4; ++i)
            mixed[i] = a.channels[i] + (b.channels[i] - a.channels[i]) * part;
        return word(mixed);
    }

private:
    struct Stop {
        double location;
        std::array<double, 4> channels;
    };
    static Pixel word(const std::array<double, 4>& channels)
    {
        Pixel result = 0;
        for (double v : channels)
            result = result << 8 | Pixel(std::lround(std::clamp(v, 0.0, 1.0) * 255));
        return result;
    }
    std::vector<Stop> stops;
};

// The place along the gradient as a linear function of device pixels.
struct Axis {
    double start, perX, perY; // start at the centre of pixel (0, 0)

    Axis(const RenderItem& item, const RenderGradient& gradient)
    {
        const double dx = gradient.end.x - gradient.start.x, dy = gradient.end.y - gradient.start.y;
        const double length = dx * dx + dy * dy;
        if (length == 0 || item.rect.isEmpty()) {
            start = 1;
            perX = perY = 0;
            return;
        }
        const CGAffineTransform toUnit = item.transform.inverted()
                                             .then(CGAffineTransform::translation(-item.rect.x, -item.rect.y))
                                             .then(CGAffineTransform::scale(1 / item.rect.width, 1 / item.rect.height));
        const CGPoint first = toUnit.apply(CGPoint { 0.5, 0.5 });
        start = ((first.x - gradient.start.x) * dx + (first.y - gradient.start.y) * dy) / length;
        perX = (toUnit.a * dx + toUnit.b * dy) / length;
        perY = (toUnit.c * dx + toUnit.d * dy) / length;
        // Turns that rounding left over; a thousandth of a step over the whole screen.
        perX = std::abs(perX) < 1e-9 ? 0 : perX;
        perY = std::abs(perY) < 1e-9 ? 0 : perY;
    }
    double at(int x, int y) const { return start + x * perX + y * perY; }
};

constexpr int rampLength = 4096; // entries; a hard stop is off by a pixel at most

std::shared_ptr<const Bitmap> rampTable(const RenderGradient& gradient, PixelCache& cache)
{
    PixelKey key(PixelKey::ramp);
    for (const CGColor& c : gradient.colors)
        key.add(c);
    for (double l : gradient.locations)
        key.add(l);
    return cache.findOrMake(key, [&] {
        auto table = Bitmap::make(rampLength, 1, PixelFormat::argb);
        const Ramp ramp(gradient);
        for (int i = 0; table && i < rampLength; ++i)
            table->row(0)[i] = ramp.at(double(i) / (rampLength - 1));
        return table;
    });
}

bool isOpaque(const RenderGradient& gradient)
{
    return std::all_of(gradient.colors.begin(), gradient.colors.end(), [](const CGColor& c) { return c.isOpaque(); });
}

// The same colour along each row.
class RowsSource final : public PixelSource {
public:
    RowsSource(const RenderGradient& gradient, const Axis& along)
        : ramp(gradient)
        , axis(along)
        , opaque(isOpaque(gradient))
    {
    }
    SourceRow row(int, int y, int, Pixel*, std::uint8_t*) override
    {
        return { nullptr, ramp.at(axis.at(0, y)), nullptr, opaque };
    }

private:
    Ramp ramp;
    Axis axis;
    bool opaque;
};

// Every row the same.
class ColumnsSource final : public PixelSource {
public:
    ColumnsSource(const RenderItem& item, const RenderGradient& gradient, const Axis& along)
        : firstX(item.bounds.x)
        , opaque(isOpaque(gradient))
    {
        const Ramp ramp(gradient);
        line.reserve(std::size_t(item.bounds.width));
        for (int x = item.bounds.x; x < item.bounds.maxX(); ++x)
            line.push_back(ramp.at(along.at(x, 0)));
    }
    SourceRow row(int x, int, int, Pixel*, std::uint8_t*) override { return { line.data() + (x - firstX), 0, nullptr, opaque }; }

private:
    int firstX;
    bool opaque;
    std::vector<Pixel> line;
};

class SlopeSource final : public PixelSource {
public:
    SlopeSource(std::shared_ptr<const Bitmap> colors, const Axis& along, bool isOpaque)
        : table(std::move(colors))
        , axis(along)
        , opaque(isOpaque)
    {
    }
    SourceRow row(int x, int y, int count, Pixel* room, std::uint8_t*) override
    {
        const double unit = double(rampLength - 1) * 65536;
        const auto limited = [](double v) { return std::int64_t(std::clamp(v, -1e15, 1e15)); };
        const std::int64_t step = limited(axis.perX * unit);
        rows::lookUp(room, table->row(0), rampLength - 1, limited(axis.at(0, y) * unit) + 32768 + x * step, step, count);
        return { room, 0, nullptr, opaque };
    }

private:
    std::shared_ptr<const Bitmap> table;
    Axis axis;
    bool opaque;
};

} // namespace

std::unique_ptr<PixelSource> gradientSource(const RenderItem& item, const RenderGradient& gradient, PixelCache& cache)
{
    if (gradient.colors.empty() || gradient.locations.empty() || item.transform.determinant() == 0)
        return nullptr;
    const Axis axis(item, gradient);
    if (axis.perX == 0)
        return std::make_unique<RowsSource>(gradient, axis);
    if (axis.perY == 0)
        return std::make_unique<ColumnsSource>(item, gradient, axis);
    auto table = rampTable(gradient, cache);
    return table ? std::make_unique<SlopeSource>(std::move(table), axis, isOpaque(gradient)) : nullptr;
}

std::shared_ptr<const Bitmap> gradientFade(const RenderItem& item, const RenderGradient& gradient, PixelCache& cache)
{
    const auto upright = UprightRect::make(item.transform, item.rect, 0, 0);
    if (!upright || gradient.colors.empty() || gradient.locations.empty())
        return nullptr;
    const Axis axis(item, gradient);
    if (axis.perX != 0 && axis.perY != 0)
        return nullptr;
    const PixelRect area = item.bounds;
    if (!upright->outer().contains(area))
        return nullptr;
    PixelKey key(PixelKey::ramp);
    for (std::size_t i = 0; i < std::min(gradient.colors.size(), gradient.locations.size()); ++i)
        key.add(gradient.colors[i].alpha).add(gradient.locations[i]);
    key.add(axis.at(area.x, area.y)).add(axis.perX).add(axis.perY).add(std::uint64_t(area.width)).add(std::uint64_t(area.height));
    return cache.findOrMake(key, [&] {
        const bool isRow = axis.perX != 0;
        auto fade = Bitmap::make(isRow ? area.width : 1, isRow ? 1 : area.height, PixelFormat::alpha);
        const Ramp ramp(gradient);
        for (int y = 0; fade && y < fade->height(); ++y) {
            for (int x = 0; x < fade->width(); ++x)
                fade->alphaRow(y)[x] = std::uint8_t(ramp.at(axis.at(area.x + x, area.y + y)) >> 24);
        }
        return fade;
    });
}

} // namespace platform
