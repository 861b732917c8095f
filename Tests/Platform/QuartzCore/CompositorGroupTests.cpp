#include "Tests/Platform/QuartzCore/CompositorTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// What is composed of several items: groups, masks, clips, shadows, blurs behind.

namespace platform::testing {

namespace {

RenderClip clipOf(const CGRect& rect, double radius, int parent = -1)
{
    RenderClip clip;
    clip.rect = rect;
    clip.cornerRadius = radius;
    clip.parent = parent;
    return clip;
}

// The gaussian's integral.
double upTo(double x, double sigma) { return 0.5 * std::erfc(-x / sigma / std::sqrt(2.0)); }

} // namespace

TEST(CompositorGroup, fadesAsOnePicture)
{
    const std::vector<RenderItem> content { boxItem(1, { 5, 5, 20, 20 }, red), boxItem(2, { 15, 15, 20, 20 }, green) };
    RenderItem group = groupItem(3, content);
    group.opacity = 0.5;
    const auto under = boxItem(4, { 0, 0, 40, 40 }, { 0, 0, 1, 1 });
    const Composed frame(40, 40, listOf({ under, group }));
    EXPECT_LE(difference(frame.at(8, 8), 0x800080), 1);
    EXPECT_LE(difference(frame.at(20, 20), 0x008080), 1); // no red shines through
    EXPECT_LE(difference(frame.at(2, 2), 0x0000ff), 0);
}

TEST(CompositorGroup, atFullOpacityEqualsItsItems)
{
    const std::vector<RenderItem> content { boxItem(1, { 5, 5, 20, 20 }, { 1, 0, 0, 0.5 }),
        boxItem(2, { 15, 15, 20, 20 }, { 0, 1, 0, 0.3 }) };
    const auto under = boxItem(4, { 0, 0, 40, 40 }, { 0, 0.3, 1, 1 });
    const Composed grouped(40, 40, listOf({ under, groupItem(3, content) }));
    const Composed flat(40, 40, listOf({ under, content[0], content[1] }));
    EXPECT_EQ(difference(*grouped.compositor.frame(), *flat.compositor.frame()), 0);
}

TEST(CompositorGroup, clipsCutItsItemsAndTheirOwnToo)
{
    // A circle inside a rounded rectangle that cuts the circle's right half off.
    std::vector<RenderClip> clips { clipOf({ 10, 10, 40, 60 }, 8), clipOf({ 20, 15, 50, 50 }, 25, 0) };
    RenderItem item = boxItem(1, { 0, 0, 80, 80 }, white);
    item.clip = 1;
    const Composed frame(80, 80, listOf({ item }, clips));
    EXPECT_EQ(frame.red(45, 40), 255); // in both
    EXPECT_EQ(frame.red(60, 40), 0); // in the circle alone
    EXPECT_EQ(frame.red(15, 40), 0); // in the outer clip alone
    EXPECT_EQ(frame.red(22, 17), 0); // beyond the circle's edge
    for (int y = 18; y < 62; ++y) { // between the outer one's corners
        for (int x = 0; x < 80; ++x) {
            const double far = std::hypot(x + 0.5 - 45, y + 0.5 - 40);
            if (std::abs(far - 25) < 1)
                continue;
            ASSERT_EQ(frame.red(x, y), far < 25 && x < 50 ? 255 : 0) << x << " " << y;
        }
    }
}

TEST(CompositorGroup, aGroupIsClippedAsAWhole)
{
    std::vector<RenderItem> content { boxItem(1, { 0, 0, 60, 60 }, { 0, 0, 1, 1 }), boxItem(2, { 0, 0, 60, 60 }, white) };
    RenderItem group = groupItem(3, content);
    group.clip = 0;
    const Composed frame(60, 60, listOf({ group }, { clipOf({ 5, 5, 50, 50 }, 25) }));
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x)
            ASSERT_EQ(frame.red(x, y), frame.blue(x, y)) << "blue shines through the edge at " << x << " " << y;
    }
    EXPECT_EQ(frame.red(30, 30), 255);
    EXPECT_EQ(frame.red(7, 7), 0);
}

TEST(CompositorGroup, aTurnedClipCuts)
{
    RenderClip clip = clipOf({ -20, -20, 40, 40 }, 0);
    clip.transform = CGAffineTransform::rotation(0.7854).then(CGAffineTransform::translation(40, 40));
    RenderItem item = boxItem(1, { 0, 0, 80, 80 }, white);
    item.clip = 0;
    const Composed frame(80, 80, listOf({ item }, { clip }));
    EXPECT_EQ(frame.red(40, 15), 255);
    EXPECT_EQ(frame.red(25, 25), 0);
    EXPECT_EQ(frame.red(32, 32), 255);
}

TEST(CompositorGroup, aMasksAlphaMultipliesTheContent)
{
    const auto picture = noisePicture(40, 40, PixelFormat::argb, 3);
    const std::vector<RenderItem> content { itemOf(1, { 0, 0, 40, 40 }, RenderImage { picture, {} }) };
    const auto maskPicture = noisePicture(40, 40, PixelFormat::argb, 4);
    const Composed frame(
        40, 40, listOf({ groupItem(3, content, { itemOf(2, { 0, 0, 40, 40 }, RenderImage { maskPicture, {} }) }) }));
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 40; ++x) {
            const double alpha = (maskPicture->pixels()->row(y)[x] >> 24) / 255.0;
            ASSERT_NEAR(frame.red(x, y), (picture->pixels()->row(y)[x] >> 16 & 255) * alpha, 1.5);
        }
    }
}

TEST(CompositorGroup, aFadeEqualsTheMaskItStandsFor)
{
    // A gradient alone is fused into the rows; beside another item it is a mask like any other.
    const auto picture = noisePicture(60, 80, PixelFormat::argb, 8);
    struct Case {
        const char* why;
        CGPoint start, end;
        CGRect rect { 0, 10, 60, 60 };
        double radius = 0;
    };
    for (const Case& c : { Case { "down", { 0.5, 0 }, { 0.5, 1 } }, { "up", { 0.5, 1 }, { 0.5, 0 } },
             { "along", { 0, 0 }, { 1, 0 } }, { "edges inside of pixels", { 0.5, 0 }, { 0.5, 1 }, { 2.3, 10.6, 50.2, 58.1 } },
             { "round", { 0, 0 }, { 1, 0 }, { 0, 10, 60, 60 }, 12 } }) {
        SCOPED_TRACE(c.why);
        auto fade = itemOf(
            2, c.rect, RenderGradient { { { 0, 0, 0, 0.2 }, { 0, 0, 0, 1 }, { 0, 0, 0, 1 } }, { 0, 0.5, 1 }, c.start, c.end });
        fade.cornerRadius = c.radius;
        const auto frameOf = [&](std::vector<RenderItem> mask) {
            const std::vector<RenderItem> content { boxItem(4, { 0, 0, 60, 80 }, { 0.3, 0.6, 0.9, 0.7 }),
                itemOf(1, { 0, 0, 60, 80 }, RenderImage { picture, {} }) };
            return Composed(
                60, 80, listOf({ boxItem(5, { 0, 0, 60, 80 }, { 1, 0.5, 0, 1 }), groupItem(3, content, std::move(mask)) }));
        };
        const Composed fused = frameOf({ fade });
        const Composed plain = frameOf({ fade, boxItem(9, { 0, 10, 60, 60 }, { 0, 0, 0, 0 }) });
        EXPECT_LE(difference(*fused.compositor.frame(), *plain.compositor.frame()), 2);
        EXPECT_EQ(fused.at(30, 5), 0xff8000u); // outside the mask there is nothing
    }
}

TEST(CompositorShadow, hasAGaussiansProfile)
{
    for (const double sigma : { 1.0, 4.0, 15.0, 40.0 }) {
        SCOPED_TRACE(sigma);
        const int reach = int(3 * sigma) + 1;
        const CGRect rect { 150, 150, 100, 60 };
        const Composed frame(400, 360, listOf({ shadowItem(1, rect, white, sigma, reach) }));
        for (int y = 120; y < 240; y += 3) {
            for (int x = 100; x < 300; ++x) {
                const double px = x + 0.5, py = y + 0.5;
                const double wanted
                    = (upTo(px - 150, sigma) - upTo(px - 250, sigma)) * (upTo(py - 150, sigma) - upTo(py - 210, sigma));
                ASSERT_NEAR(frame.red(x, y), wanted * 255, 2) << x << " " << y;
            }
        }
    }
}

TEST(CompositorShadow, ofARoundShapeIsRound)
{
    RenderItem shadow = shadowItem(1, { 40, 40, 60, 60 }, white, 6, 20);
    shadow.cornerRadius = 30;
    const Composed frame(140, 140, listOf({ shadow }));
    // The exact blur of a disc, summed over the disc's points.
    for (int x = 70; x < 115; x += 4) {
        double sum = 0;
        for (int v = -30; v < 30; ++v) {
            const double half = std::sqrt(900 - (v + 0.5) * (v + 0.5));
            const double weight = upTo(v + 1, 6) - upTo(v, 6); // along y, seen from the middle
            sum += weight * (upTo(x + 0.5 - 70 + half, 6) - upTo(x + 0.5 - 70 - half, 6));
        }
        EXPECT_NEAR(frame.red(x, 69), sum * 255, 3) << x;
        EXPECT_NEAR(frame.red(69, x), sum * 255, 3) << x;
    }
}

TEST(CompositorShadow, liesAtItsOffsetAndGrowsWithTheScale)
{
    RenderItem item = itemOf(1, { 20, 20, 20, 10 }, RenderShadow { { 0, 0, 0, 1 }, 2, { 3, 5 }, nullptr });
    item.transform = CGAffineTransform::scale(2, 2);
    item.bounds = { 0, 0, 120, 100 };
    const Composed frame(120, 100, listOf({ boxItem(9, { 0, 0, 120, 100 }, white), item }));
    for (int x = 20; x < 110; ++x) { // 46 to 86 in pixels, sigma 4, at half the height
        const double across = upTo(x + 0.5 - 46, 4) - upTo(x + 0.5 - 86, 4), down = upTo(9.5, 4) - upTo(-10.5, 4);
        ASSERT_NEAR(frame.red(x, 59), 255 * (1 - across * down), 2) << x;
    }
}

TEST(CompositorShadow, aPathIsBlurredToo)
{
    // A rectangle as a path throws the shadow of the rectangle.
    const CGRect rect { 40, 40, 60, 40 };
    RenderItem byPath = shadowItem(1, { 0, 0, 1, 1 }, white, 5, 0);
    std::get<RenderShadow>(byPath.content).path = CGPath::rect(rect);
    byPath.bounds = { 0, 0, 140, 120 };
    const Composed path(140, 120, listOf({ byPath })), plain(140, 120, listOf({ shadowItem(1, rect, white, 5, 20) }));
    EXPECT_LE(difference(*path.compositor.frame(), *plain.compositor.frame()), 6); // boxes against the exact gaussian
}

TEST(CompositorShadow, ofAGroupFollowsItsPixels)
{
    RenderItem group = groupItem(3, { boxItem(1, { 40, 40, 20, 20 }, red), boxItem(2, { 80, 40, 20, 20 }, red) });
    std::get<RenderGroup>(group.content).shadow = RenderShadow { { 0, 0, 0, 0.5 }, 2, { 0, 20 }, nullptr };
    group.bounds = { 0, 0, 140, 120 };
    const Composed frame(140, 120, listOf({ boxItem(9, { 0, 0, 140, 120 }, white), group }));
    EXPECT_EQ(frame.at(50, 50), 0xff0000u);
    EXPECT_NEAR(frame.green(50, 70), 128, 3); // under the first box
    EXPECT_EQ(frame.at(70, 70), 0xffffffu); // not between them
    EXPECT_NEAR(frame.green(60, 70), 191, 20); // half at the edge
}

TEST(CompositorBackdrop, keepsAnEvenColourAndTheMean)
{
    const Composed even(120, 120,
        listOf(
            { boxItem(1, { 0, 0, 120, 120 }, { 0.2, 0.6, 0.4, 1 }), itemOf(2, { 20, 20, 80, 80 }, RenderBackdrop { 12, 1 }) }));
    EXPECT_LE(difference(even.at(60, 60), 0x339966), 1);
    EXPECT_LE(difference(even.at(22, 97), 0x339966), 1);
    // Black and white stripes become their mean.
    std::vector<RenderItem> items;
    for (int i = 0; i < 30; ++i)
        items.push_back(boxItem(std::uint64_t(i + 1), { i * 8.0, 0, 4, 240 }, white));
    items.push_back(itemOf(99, { 0, 0, 240, 240 }, RenderBackdrop { 12, 1 }));
    const Composed stripes(240, 240, listOf(items));
    for (int x = 60; x < 180; ++x)
        ASSERT_NEAR(stripes.red(x, 120), 128, 3);
}

TEST(CompositorBackdrop, blursAnEdgeLikeAGaussian)
{
    for (const double sigma : { 3.0, 6.0, 15.0, 30.0 }) {
        SCOPED_TRACE(sigma);
        const Composed frame(400, 100,
            listOf({ boxItem(1, { 200, 0, 200, 100 }, white), itemOf(2, { 0, 0, 400, 100 }, RenderBackdrop { sigma, 1 }) }));
        for (int x = 100; x < 300; ++x)
            ASSERT_NEAR(frame.red(x, 50), 255 * upTo(x + 0.5 - 200, sigma), 6) << x;
    }
}

TEST(CompositorBackdrop, touchesNothingOutsideItsShape)
{
    const auto picture = itemOf(1, { 0, 0, 120, 120 }, RenderImage { noisePicture(120, 120, PixelFormat::xrgb, 2), {} });
    RenderItem blur = itemOf(2, { 30, 30, 60, 60 }, RenderBackdrop { 8, 1 });
    blur.cornerRadius = 30;
    const auto above = boxItem(3, { 55, 55, 10, 10 }, green);
    const Composed with(120, 120, listOf({ picture, blur, above })), without(120, 120, listOf({ picture, above }));
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 120; ++x) {
            const double far = std::hypot(x + 0.5 - 60, y + 0.5 - 60);
            if (far > 31) {
                ASSERT_EQ(with.at(x, y), without.at(x, y)) << x << " " << y;
            }
        }
    }
    EXPECT_EQ(with.at(60, 60), 0x00ff00u);
    EXPECT_NEAR(with.green(52, 60), 128, 40); // noise evened out; the box above is not part of it
}

TEST(CompositorBackdrop, letsNothingBesideItBleedIn)
{
    for (const double place : { 40.0, 41.0, 43.0 }) {
        const CGRect pill { place, place, 61, 35 };
        const Composed frame(160, 120,
            listOf(
                { boxItem(1, { 0, 0, 160, 120 }, white), boxItem(2, pill, green), itemOf(3, pill, RenderBackdrop { 12, 1 }) }));
        for (int y = int(place); y < int(place) + 35; ++y)
            for (int x = int(place); x < int(place) + 61; ++x)
                ASSERT_LE(difference(frame.at(x, y), 0x00ff00), 1) << x << " " << y;
        EXPECT_EQ(frame.at(int(place) - 1, int(place) - 1), 0xffffffu);
    }
}

TEST(CompositorBackdrop, saturationSpreadsOrDrainsColour)
{
    const auto frameOf = [](double saturation) {
        return Composed(60, 60,
            listOf({ boxItem(1, { 0, 0, 60, 60 }, { 0.5, 0.4, 0.4, 1 }),
                itemOf(2, { 0, 0, 60, 60 }, RenderBackdrop { 10, saturation }) }));
    };
    const Composed gray = frameOf(0), vivid = frameOf(2);
    EXPECT_EQ(gray.red(30, 30), gray.green(30, 30));
    EXPECT_EQ(gray.red(30, 30), gray.blue(30, 30));
    EXPECT_GT(vivid.red(30, 30) - vivid.green(30, 30), 45);
}

TEST(CompositorBackdrop, seesThroughTheGroupItFadesWith)
{
    // A blur that fades in with its group blurs what lies behind the group.
    RenderItem group = groupItem(5, { itemOf(2, { 20, 20, 60, 60 }, RenderBackdrop { 8, 1 }) });
    group.opacity = 0.5;
    const Composed frame(100, 100, listOf({ boxItem(1, { 0, 0, 100, 100 }, { 0.2, 0.6, 0.4, 1 }), group }));
    EXPECT_LE(difference(frame.at(50, 50), 0x339966), 2);
}

} // namespace platform::testing
