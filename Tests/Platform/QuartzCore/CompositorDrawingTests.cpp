#include "Tests/Platform/QuartzCore/CompositorTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Single items against what they ought to look like, computed the plain way.

namespace platform::testing {

namespace {

bool isInRounded(const CGRect& r, double radius, unsigned corners, CGPoint p)
{
    if (!r.contains(p))
        return false;
    const bool isRight = p.x > r.midX(), isBottom = p.y > r.midY();
    const double x = isRight ? r.maxX() - p.x : p.x - r.x, y = isBottom ? r.maxY() - p.y : p.y - r.y;
    const unsigned corner = 1u << ((isRight ? 1 : 0) + (isBottom ? 2 : 0));
    return !(corners & corner) || x >= radius || y >= radius || std::hypot(radius - x, radius - y) <= radius;
}

// The part of a pixel that a rounded rectangle in that space covers, by 16 by 16 points.
double coveredPart(const RenderItem& item, int x, int y)
{
    const CGAffineTransform back = item.transform.inverted();
    int hits = 0;
    for (int i = 0; i < 256; ++i) {
        const CGPoint p = back.apply(CGPoint { x + (i % 16 + 0.5) / 16, y + (i / 16 + 0.5) / 16 });
        hits += isInRounded(item.rect, item.cornerRadius, item.corners, p);
    }
    return hits / 256.0;
}

} // namespace

TEST(CompositorDrawing, coloursLieOverEachOther)
{
    const Composed frame(40, 20,
        listOf({ boxItem(1, { 0, 0, 40, 20 }, { 0.2, 0.4, 0.6, 1 }), boxItem(2, { 10, 5, 20, 10 }, { 1, 0, 0.5, 0.25 }),
            boxItem(3, { 20, 0, 5, 20 }, { 0, 1, 0, 0 }) }));
    EXPECT_EQ(frame.at(5, 10), 0x336699u);
    EXPECT_LE(difference(frame.at(15, 10), 0x664d93), 1); // a quarter of the second over the first
    EXPECT_EQ(frame.at(22, 10), frame.at(15, 10)); // a clear colour is no colour
    EXPECT_EQ(Composed(4, 4, listOf({})).at(2, 2), 0u); // opaque black lies under everything
}

TEST(CompositorDrawing, anEdgeBetweenPixelsIsPartlyCovered)
{
    const Composed frame(
        20, 20, listOf({ boxItem(1, { 4.25, 3, 0.5, 10 }, white), boxItem(2, { 8.5, 3.75, 6.25, 4.5 }, white) }));
    EXPECT_NEAR(frame.red(4, 5), 127, 2); // a line thinner than a pixel
    EXPECT_NEAR(frame.red(8, 5), 127, 2);
    EXPECT_EQ(frame.red(10, 5), 255);
    EXPECT_NEAR(frame.red(14, 5), 191, 2);
    EXPECT_NEAR(frame.red(10, 3), 64, 2);
    EXPECT_NEAR(frame.red(14, 3), 48, 2); // both edges in one pixel
    EXPECT_EQ(frame.red(15, 5), 0);
}

TEST(CompositorDrawing, aHairOverAnEdgeDoesNotShow)
{
    const Composed frame(20, 20, listOf({ boxItem(1, { 4.01, 3.99, 8, 8 }, white) }));
    EXPECT_EQ(frame.red(4, 4), 255);
    EXPECT_EQ(frame.red(3, 5), 0);
    EXPECT_EQ(frame.red(12, 5), 0);
}

TEST(CompositorDrawing, roundedRectanglesHaveTheirShape)
{
    struct Case {
        const char* why;
        CGRect rect;
        double radius;
        unsigned char corners;
        CGAffineTransform transform;
    };
    const Case cases[] = {
        { "stretched nine-part", { 5, 5, 90, 70 }, 12, 15, {} },
        { "a circle, not stretched", { 10, 10, 61, 61 }, 30.5, 15, {} },
        { "a pill", { 5, 20, 80, 20 }, 10, 15, {} },
        { "larger radius than the side", { 5, 20, 80, 20 }, 25, 15, {} },
        { "two corners", { 5, 5, 90, 70 }, 12, 3, {} },
        { "mirrored: corners change sides", { -60, 5, 50, 40 }, 14, 1, CGAffineTransform::scale(-1, 1) },
        { "upside down", { 10, -60, 50, 40 }, 14, 2, CGAffineTransform::scale(1, -1) },
        { "between pixels", { 5.5, 7.25, 60.5, 50.25 }, 9, 15, {} },
        { "stretched corners", { 5, 5, 30, 30 }, 8, 15, CGAffineTransform::scale(2.5, 1.5) },
        { "turned", { 30, 10, 50, 40 }, 10, 15, CGAffineTransform::rotation(0.4) },
        { "turned far, one corner", { 20, -70, 50, 40 }, 15, 4, CGAffineTransform::rotation(1.4) },
        { "turned, a pixel thin", { 30, 20, 60, 1 }, 0, 15, CGAffineTransform::rotation(0.3) },
        { "turned, its corners meet", { 40, 10, 12, 60 }, 6, 15, CGAffineTransform::rotation(0.3) },
        { "skewed", { 10, 10, 50, 40 }, 10, 15, CGAffineTransform { 1, 0, 0.4, 1, 0, 0 } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        RenderItem item = boxItem(1, c.rect, white);
        item.cornerRadius = std::min({ c.radius, c.rect.width / 2, c.rect.height / 2 });
        item.corners = c.corners;
        item = transformed(item, c.transform);
        const auto reference = item;
        item.cornerRadius = c.radius;
        const Composed frame(110, 100, listOf({ item }));
        int worst = 0;
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 110; ++x)
                worst = std::max(worst, std::abs(frame.red(x, y) - int(coveredPart(reference, x, y) * 255 + 0.5)));
        }
        EXPECT_LE(worst, 26); // at an antialiased edge: a tenth of a pixel
    }
}

TEST(CompositorDrawing, boxesOfOneStyleHaveTheSameCorners)
{
    const auto corner = [](double width, double height) {
        RenderItem box = boxItem(1, { 10, 10, width, height }, { 0.2, 0.7, 0.4, 0.8 });
        box.cornerRadius = 14;
        return Composed(150, 150, listOf({ box }));
    };
    const Composed small = corner(31, 33), large = corner(120, 130);
    for (int y = 0; y < 15; ++y) {
        for (int x = 0; x < 15; ++x) {
            ASSERT_EQ(small.at(10 + x, 10 + y), large.at(10 + x, 10 + y));
            ASSERT_EQ(small.at(40 - x, 42 - y), large.at(129 - x, 139 - y));
        }
    }
}

TEST(CompositorDrawing, aHairlineBorderIsOnePixel)
{
    RenderItem item = itemOf(1, { 2, 2, 10, 8 }, RenderBox { {}, white, 1.0 / 3 });
    item = transformed(item, CGAffineTransform::scale(3, 3));
    const Composed frame(50, 50, listOf({ boxItem(2, { 0, 0, 50, 50 }, { 0, 0, 1, 1 }), item }));
    EXPECT_EQ(frame.at(20, 6), 0xffffffu); // top
    EXPECT_EQ(frame.at(20, 5), 0x0000ffu);
    EXPECT_EQ(frame.at(20, 7), 0x0000ffu);
    EXPECT_EQ(frame.at(6, 15), 0xffffffu); // left
    EXPECT_EQ(frame.at(7, 15), 0x0000ffu);
    EXPECT_EQ(frame.at(35, 15), 0xffffffu); // right
    EXPECT_EQ(frame.at(20, 29), 0xffffffu); // bottom
    EXPECT_EQ(frame.at(20, 30), 0x0000ffu);
}

TEST(CompositorDrawing, aBorderIsAsWideRoundTheCorners)
{
    RenderItem item = itemOf(1, { 5, 5, 80, 80 }, RenderBox { {}, white, 6 });
    item.cornerRadius = 24;
    const Composed frame(90, 90, listOf({ item }));
    double sum = 0; // along the diagonal through a corner, in pixels across the ring
    for (int i = 0; i < 45; ++i)
        sum += frame.red(i, i) / 255.0 * std::sqrt(2.0);
    EXPECT_NEAR(sum, 6, 0.5);
    EXPECT_EQ(frame.red(45, 45), 0);
}

TEST(CompositorDrawing, fillAndBorderFadeAsOnePicture)
{
    RenderItem item = itemOf(1, { 4, 4, 20, 20 }, RenderBox { red, green, 3 });
    item.opacity = 0.5;
    const Composed frame(30, 30, listOf({ item }));
    EXPECT_LE(difference(frame.at(5, 12), 0x008000), 1); // no red shines through the border
    EXPECT_LE(difference(frame.at(12, 12), 0x800000), 1);
}

TEST(CompositorDrawing, picturesAtTheirSizeKeepEveryPixel)
{
    const auto picture = noisePicture(23, 17, PixelFormat::xrgb, 5);
    const auto& pixels = *picture->pixels();
    const auto frameOf = [&](const CGAffineTransform& transform) {
        return Composed(40, 40, listOf({ transformed(itemOf(1, { 0, 0, 23, 17 }, RenderImage { picture, {} }), transform) }));
    };
    const Composed plain = frameOf(CGAffineTransform::translation(6, 9)), sideways = frameOf({ -1, 0, 0, 1, 29, 9 }),
                   upsideDown = frameOf({ 1, 0, 0, -1, 6, 26 });
    for (int y = 0; y < 17; ++y) {
        for (int x = 0; x < 23; ++x) {
            const std::uint32_t wanted = pixels.row(y)[x] & 0xffffff;
            ASSERT_EQ(plain.at(6 + x, 9 + y), wanted);
            ASSERT_EQ(sideways.at(28 - x, 9 + y), wanted);
            ASSERT_EQ(upsideDown.at(6 + x, 25 - y), wanted);
        }
    }
    EXPECT_EQ(plain.at(5, 10), 0u);
    EXPECT_EQ(plain.at(29, 10), 0u);
}

TEST(CompositorDrawing, whatIsClearAtTheEndsOfRowsMayBeLeftOut)
{
    constexpr int width = 40, height = 12;
    const auto pixel = [](int x, int y) {
        const bool isInk = y % 3 != 0 && x >= 2 * y && x < width - y;
        return isInk ? std::uint32_t(x * 5) << 24 | std::uint32_t(x) << 16 | std::uint32_t(2 * y) : 0u;
    };
    const auto noted = Bitmap::make(width, height, PixelFormat::argb);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            noted->row(y)[x] = pixel(x, y);
    noted->noteExtents();
    EXPECT_EQ(noted->extent(0).first, noted->extent(0).end);
    EXPECT_EQ(noted->extent(4).first, 8);
    EXPECT_EQ(noted->extent(4).end, 36);
    const auto plain = pictureOf(width, height, PixelFormat::argb, pixel), lean = CGImage::fromBitmap(noted);
    struct Case {
        const char* why;
        CGAffineTransform place;
        double opacity = 1, radius = 0;
        std::optional<CGColor> tint = {};
    };
    for (const Case& c : { Case { "as it is", { 1, 0, 0, 1, 5, 5 } }, { "mirrored", { -1, 0, 0, 1, 45, 5 } },
             { "upside down", { 1, 0, 0, -1, 5, 17 } }, { "translucent", { 1, 0, 0, 1, 5, 5 }, 0.5 },
             { "round", { 1, 0, 0, 1, 5, 5 }, 1, 6 }, { "tinted and round", { -1, 0, 0, 1, 45, 5 }, 0.7, 6, green } }) {
        SCOPED_TRACE(c.why);
        const auto frameOf = [&](const std::shared_ptr<const CGImage>& picture) {
            auto item = transformed(itemOf(1, { 0, 0, width, height }, RenderImage { picture, c.tint }), c.place);
            item.opacity = c.opacity;
            item.cornerRadius = c.radius;
            return Composed(50, 22, listOf({ boxItem(2, { 0, 0, 50, 22 }, { 0.2, 0.5, 0.7, 1 }), item }));
        };
        EXPECT_EQ(difference(*frameOf(lean).compositor.frame(), *frameOf(plain).compositor.frame()), 0);
    }
}

TEST(CompositorDrawing, aRampStaysARampAtAnySize)
{
    // Linear in x and y, so that bilinear sampling has one right answer.
    const auto ramp = pictureOf(64, 48, PixelFormat::xrgb,
        [](int x, int y) { return std::uint32_t(2 * x + 60) << 16 | std::uint32_t(3 * y + 40) << 8 | 9; });
    struct Case {
        const char* why;
        CGAffineTransform transform, toPixels;
    };
    const Case cases[] = {
        { "enlarged", { 1.7, 0, 0, 2.1, 3, 5 }, {} },
        { "reduced a little", { 0.7, 0, 0, 0.8, 3, 5 }, {} },
        { "reduced to a fifth", { 0.2, 0, 0, 0.2, 10, 5 }, {} },
        { "moved by parts of a pixel", { 1, 0, 0, 1, 3.4, 5.7 }, {} },
        { "scaled by the layout, kept", { 1.5, 0, 0, 1.5, 3, 5 }, { 1.5, 0, 0, 1.5, 0, 0 } },
        { "mirrored and scaled", { -1.3, 0, 0, 1.3, 110, 5 }, {} },
        { "turned", { 1.2, 0.5, -0.5, 1.2, 40, 10 }, {} },
        { "a quarter turn", { 0, 1, -1, 0, 60, 3 }, {} },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        auto list = listOf({ transformed(itemOf(1, { 0, 0, 64, 48 }, RenderImage { ramp, {} }), c.transform) });
        list->toPixels = c.toPixels;
        const Composed frame(130, 110, list);
        const CGAffineTransform back = c.transform.inverted();
        const double margin = 1 + 1 / std::min(1.0, std::hypot(c.transform.a, c.transform.b)); // ends are held, edges soft
        int looked = 0;
        for (int y = 0; y < 110; ++y) {
            for (int x = 0; x < 130; ++x) {
                const CGPoint p = back.apply(CGPoint { x + 0.5, y + 0.5 });
                if (!CGRect { 0, 0, 64, 48 }.insetBy(margin, margin).contains(p))
                    continue;
                ++looked;
                ASSERT_NEAR(frame.red(x, y), 2 * (p.x - 0.5) + 60, 2) << x << " " << y;
                ASSERT_NEAR(frame.green(x, y), 3 * (p.y - 0.5) + 40, 2) << x << " " << y;
            }
        }
        EXPECT_GT(looked, 20);
    }
}

TEST(CompositorDrawing, aReducedPictureMissesNoPixel)
{
    // Fine checks become an even grey, and not a pattern.
    const auto checks = pictureOf(128, 128, PixelFormat::xrgb, [](int x, int y) { return (x + y) % 2 ? 0xffffffu : 0u; });
    for (const double scale : { 0.5, 0.31, 0.25, 0.1 }) {
        SCOPED_TRACE(scale);
        const Composed frame(70, 70,
            listOf({ transformed(
                itemOf(1, { 0, 0, 128, 128 }, RenderImage { checks, {} }), CGAffineTransform::scale(scale, scale)) }));
        for (int i = 1; i < int(128 * scale) - 1; ++i)
            ASSERT_NEAR(frame.red(i, i / 2 + 1), 128, 2);
    }
}

TEST(CompositorDrawing, aTintFillsThePicturesAlpha)
{
    const auto picture = pictureOf(8, 8, PixelFormat::argb, [](int x, int) { return x < 4 ? 0xff00ff00u : 0x40202020u; });
    RenderItem item = itemOf(1, { 2, 2, 8, 8 }, RenderImage { picture, CGColor { 1, 0.5, 0, 1 } });
    const Composed frame(12, 12, listOf({ item }));
    EXPECT_LE(difference(frame.at(3, 5), 0xff8000), 1);
    EXPECT_LE(difference(frame.at(8, 5), 0x402000), 1);
    item.opacity = 0.5;
    EXPECT_LE(difference(Composed(12, 12, listOf({ item })).at(3, 5), 0x804000), 1);
}

TEST(CompositorDrawing, aDrawingIsRenderedAtItsSizeInPixels)
{
    std::vector<std::pair<int, int>> asked;
    const auto drawing = CGImage::fromDrawing(10, 10, [&](int width, int height) {
        asked.emplace_back(width, height);
        return noisePicture(width, height, PixelFormat::argb, 3)->pixels();
    });
    RenderItem item = transformed(itemOf(1, { 1, 1, 20, 10 }, RenderImage { drawing, {} }), CGAffineTransform::scale(3, 3));
    auto list = listOf({ item });
    list->toPixels = CGAffineTransform::scale(3, 3);
    const Composed still(100, 100, list);
    ASSERT_EQ(asked, (std::vector<std::pair<int, int>> { { 60, 30 } }));
    // While it flies it is the same picture, sampled: drawing it anew each frame would be too slow.
    Compositor flying;
    flying.setSize(100, 100);
    asked.clear();
    for (int step = 0; step < 10; ++step) {
        auto moved = listOf({ transformed(itemOf(1, { 1, 1, 20, 10 }, RenderImage { drawing, {} }),
            CGAffineTransform::scale(3 - 0.1 * step, 3 - 0.1 * step)) });
        moved->toPixels = CGAffineTransform::scale(3, 3);
        flying.composite(moved);
    }
    EXPECT_EQ(asked, (std::vector<std::pair<int, int>> { { 60, 30 } }));
}

TEST(CompositorDrawing, gradientsPassThroughTheirStops)
{
    struct Case {
        const char* why;
        CGPoint start, end;
        CGAffineTransform transform;
    };
    const Case cases[] = {
        { "down", { 0.5, 0 }, { 0.5, 1 }, {} },
        { "up, part of the way", { 0.5, 0.9 }, { 0.5, 0.2 }, {} },
        { "along", { 0, 0.5 }, { 1, 0.5 }, {} },
        { "slanted", { 0, 0 }, { 1, 1 }, {} },
        { "in a mirrored space", { 0, 0 }, { 1, 0.3 }, { -1, 0, 0, 1, 100, 0 } },
        { "in a turned space", { 0, 0 }, { 0, 1 }, CGAffineTransform { 0.8, 0.6, -0.6, 0.8, 40, -10 } },
    };
    const std::vector<CGColor> colors { { 1, 0.2, 0, 1 }, { 0, 0.5, 1, 0.4 }, { 0.3, 1, 0.6, 1 } };
    const std::vector<double> locations { 0, 0.4, 1 };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        const RenderItem item
            = transformed(itemOf(1, { 10, 10, 80, 60 }, RenderGradient { colors, locations, c.start, c.end }), c.transform);
        const Composed frame(100, 90, listOf({ item }));
        const CGAffineTransform back = c.transform.inverted();
        for (int y = 0; y < 90; ++y) {
            for (int x = 0; x < 100; ++x) {
                const CGPoint p = back.apply(CGPoint { x + 0.5, y + 0.5 });
                if (!item.rect.insetBy(1.5, 1.5).contains(p))
                    continue;
                const double dx = c.end.x - c.start.x, dy = c.end.y - c.start.y;
                const double t = std::clamp(
                    (((p.x - 10) / 80 - c.start.x) * dx + ((p.y - 10) / 60 - c.start.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
                const std::size_t from = t < 0.4 ? 0 : 1;
                const double part = (t - locations[from]) / (locations[from + 1] - locations[from]);
                const CGColor &a = colors[from], &b = colors[from + 1];
                const auto mixed = [&](double v, double w) { return (v * a.alpha * (1 - part) + w * b.alpha * part) * 255; };
                ASSERT_NEAR(frame.red(x, y), mixed(a.red, b.red), 2) << x << " " << y;
                ASSERT_NEAR(frame.green(x, y), mixed(a.green, b.green), 2) << x << " " << y;
                ASSERT_NEAR(frame.blue(x, y), mixed(a.blue, b.blue), 2) << x << " " << y;
            }
        }
    }
}

TEST(CompositorDrawing, shapesAreFilledAndStroked)
{
    RenderShape shape { CGPath::rect({ 5, 5, 20, 10 }), red, white, 2 };
    const Composed whole(30, 20, listOf({ itemOf(1, { 0, 0, 30, 20 }, shape) }));
    EXPECT_EQ(whole.at(15, 10), 0xff0000u);
    EXPECT_EQ(whole.at(15, 5), 0xffffffu); // the line's middle is the edge
    EXPECT_EQ(whole.at(15, 4), 0xffffffu);
    EXPECT_EQ(whole.at(15, 2), 0u);
    shape.strokeEnd = 20.0 / 60; // the top side alone
    shape.fill.reset();
    const Composed part(30, 20, listOf({ itemOf(1, { 0, 0, 30, 20 }, shape) }));
    EXPECT_EQ(part.at(15, 5), 0xffffffu);
    EXPECT_EQ(part.at(15, 14), 0u);
    EXPECT_EQ(part.at(15, 10), 0u);
}

TEST(CompositorDrawing, extremeScalesDoNoHarm)
{
    const auto picture = noisePicture(30, 30, PixelFormat::argb, 1);
    const RenderGradient gradient { { red, blue }, { 0, 1 }, { 0, 0 }, { 1, 0.5 } };
    for (const double scale : { 0.0, 1e-12, 1e-6, 0.02, 700.0, 1e7 }) {
        for (const double angle : { 0.0, 0.3, 1.5707963 }) {
            const auto transform = CGAffineTransform::scale(scale, scale * 0.5).then(CGAffineTransform::rotation(angle));
            std::vector<RenderItem> items { boxItem(1, { 0, 0, 40, 40 }, white) };
            const auto add = [&](auto content) {
                RenderItem item = itemOf(items.size() + 1, { -5, -5, 30, 30 }, std::move(content));
                item.transform = transform;
                item.cornerRadius = 7;
                item.bounds = { 0, 0, 40, 40 };
                items.push_back(item);
            };
            add(RenderBox { red, green, 2 });
            add(RenderImage { picture, {} });
            add(gradient);
            add(RenderShadow { black, 3, { 1, 1 }, nullptr });
            add(RenderShape { CGPath::rect({ 0, 0, 20, 20 }), red, blue, 2 });
            add(RenderBackdrop { 3, 1 });
            const Composed frame(40, 40, listOf(items));
            if (scale == 0) {
                EXPECT_EQ(frame.at(20, 20), 0xffffffu);
            }
        }
    }
}

TEST(CompositorDrawing, nothingIsDrawnOutsideTheBounds)
{
    const auto picture = noisePicture(30, 30, PixelFormat::xrgb, 1);
    RenderItem cut = itemOf(1, { 0, 0, 30, 30 }, RenderImage { picture, {} });
    cut.bounds = { 10, 10, 5, 5 };
    const Composed frame(30, 30, listOf({ cut }));
    EXPECT_EQ(frame.at(9, 12), 0u);
    EXPECT_EQ(frame.at(12, 12), picture->pixels()->row(12)[12] & 0xffffff);
    EXPECT_EQ(frame.at(15, 12), 0u);
}

} // namespace platform::testing
