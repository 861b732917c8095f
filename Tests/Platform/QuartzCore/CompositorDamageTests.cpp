#include "Tests/Platform/QuartzCore/CompositorTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace platform::testing {

namespace {

constexpr int width = 300, height = 200;

// A screen with a picture, a card and two labels on it.
struct Screen {
    std::shared_ptr<const CGImage> firstLabel = noisePicture(60, 20, PixelFormat::argb, 1);
    std::shared_ptr<const CGImage> secondLabel = noisePicture(80, 20, PixelFormat::argb, 2);
    std::vector<RenderItem> items {
        itemOf(1, { 0, 0, width, height }, RenderImage { noisePicture(width, height, PixelFormat::xrgb, 3), {} }),
        boxItem(2, { 20, 20, 200, 100 }, white),
        itemOf(3, { 30, 30, 60, 20 }, RenderImage { firstLabel, {} }),
        itemOf(4, { 30, 60, 80, 20 }, RenderImage { secondLabel, {} }),
    };
};

std::vector<PixelRect> damageOf(const std::vector<RenderItem>& before, const std::vector<RenderItem>& after)
{
    Compositor compositor;
    compositor.setSize(width, height);
    compositor.composite(listOf(before));
    return compositor.composite(listOf(after)).damage;
}

long areaOf(const std::vector<PixelRect>& rects)
{
    return std::accumulate(rects.begin(), rects.end(), 0L, [](long sum, const PixelRect& r) { return sum + r.area(); });
}

bool covers(const std::vector<PixelRect>& rects, const PixelRect& wanted)
{
    return std::accumulate(rects.begin(), rects.end(), 0L, [&](long sum, const PixelRect& r) {
        return sum + r.intersection(wanted).area();
    }) == wanted.area();
}

} // namespace

TEST(CompositorDamage, aLabelThatChangesRepaintsItsRectangleOnly)
{
    Screen screen;
    const auto before = screen.items;
    screen.items[2].content = RenderImage { noisePicture(60, 20, PixelFormat::argb, 9), {} };
    EXPECT_EQ(damageOf(before, screen.items), (std::vector<PixelRect> { { 30, 30, 60, 20 } }));
}

TEST(CompositorDamage, nothingChangedIsNothingToDo)
{
    const Screen screen;
    Compositor compositor;
    compositor.setSize(width, height);
    const auto list = listOf(screen.items);
    EXPECT_FALSE(compositor.composite(list).isEmpty());
    EXPECT_TRUE(compositor.composite(list).isEmpty());
    EXPECT_TRUE(compositor.composite(listOf(screen.items)).isEmpty()); // another list that says the same
    compositor.invalidate();
    EXPECT_EQ(compositor.composite(list).damage, (std::vector<PixelRect> { { 0, 0, width, height } }));
}

TEST(CompositorDamage, whatMovesLeavesAndEnters)
{
    Screen screen;
    const auto before = screen.items;
    screen.items[3].rect.x = 200;
    screen.items[3].bounds.x = 200;
    const auto damage = damageOf(before, screen.items);
    EXPECT_TRUE(covers(damage, { 30, 60, 80, 20 }));
    EXPECT_TRUE(covers(damage, { 200, 60, 80, 20 }));
    EXPECT_EQ(areaOf(damage), 2 * 80 * 20);
}

TEST(CompositorDamage, whatComesAndGoesDamagesItsPlace)
{
    Screen screen;
    const auto before = screen.items;
    screen.items.erase(screen.items.begin() + 2);
    EXPECT_EQ(damageOf(before, screen.items), (std::vector<PixelRect> { { 30, 30, 60, 20 } }));
    EXPECT_EQ(damageOf(screen.items, before), (std::vector<PixelRect> { { 30, 30, 60, 20 } }));
}

TEST(CompositorDamage, changedOrderDamagesWhatOverlaps)
{
    std::vector<RenderItem> items { boxItem(1, { 10, 10, 50, 50 }, red), boxItem(2, { 40, 30, 50, 50 }, green),
        boxItem(3, { 200, 100, 50, 50 }, blue) };
    const auto before = items;
    std::swap(items[0], items[1]);
    EXPECT_EQ(damageOf(before, items), (std::vector<PixelRect> { { 40, 30, 20, 30 } }));
    items = { before[2], before[0], before[1] }; // the third overlaps none
    EXPECT_TRUE(damageOf(before, items).empty());
}

TEST(CompositorDamage, aChangeInsideAGroupStaysInside)
{
    Screen screen;
    const auto group = [](const CGColor& color) {
        RenderItem item = groupItem(10, { boxItem(1, { 100, 100, 50, 50 }, red), boxItem(2, { 110, 110, 10, 10 }, color) });
        item.opacity = 0.7;
        return item;
    };
    auto before = screen.items, after = screen.items;
    before.push_back(group(green));
    after.push_back(group(blue));
    EXPECT_EQ(damageOf(before, after), (std::vector<PixelRect> { { 110, 110, 10, 10 } }));
    after.back().opacity = 0.6;
    EXPECT_EQ(damageOf(before, after), (std::vector<PixelRect> { { 100, 100, 50, 50 } }));
}

TEST(CompositorDamage, aMovedClipDamagesWhatItCuts)
{
    Screen screen;
    screen.items[1].clip = 0;
    RenderClip clip;
    clip.rect = { 20, 20, 100, 100 };
    clip.cornerRadius = 10;
    Compositor compositor;
    compositor.setSize(width, height);
    compositor.composite(listOf(screen.items, { clip }));
    clip.cornerRadius = 12;
    EXPECT_EQ(compositor.composite(listOf(screen.items, { clip })).damage, (std::vector<PixelRect> { { 20, 20, 200, 100 } }));
}

TEST(CompositorDamage, aBlurIsRepaintedWholeWhenSomethingChangesBelowIt)
{
    Screen screen;
    const PixelRect bar { 0, 120, width, 80 };
    screen.items.push_back(itemOf(20, { 0, 120, width, 80 }, RenderBackdrop { 4, 1 }));
    screen.items.push_back(boxItem(21, { 10, 150, 40, 20 }, red));
    const auto before = screen.items;

    auto below = before; // its last row of pixels
    below[1] = boxItem(2, { 20, 20, 200, 101 }, green);
    EXPECT_TRUE(covers(damageOf(before, below), bar));

    auto beside = before; // it looks no further than its own edge
    beside[1] = boxItem(2, { 20, 20, 200, 100 }, green);
    for (const PixelRect& damage : damageOf(before, beside))
        EXPECT_FALSE(damage.intersects(bar));

    auto far = before; // a label 70 pixels away
    far[2].opacity = 0.5;
    EXPECT_EQ(damageOf(before, far), (std::vector<PixelRect> { { 30, 30, 60, 20 } }));

    auto above = before;
    std::get<RenderBox>(above.back().content).fill = blue;
    EXPECT_EQ(damageOf(before, above), (std::vector<PixelRect> { { 10, 150, 40, 20 } }));
}

TEST(CompositorDamage, aFlockOfIconsIsCheapAndTight)
{
    const auto icon = noisePicture(12, 12, PixelFormat::argb, 4);
    const auto flock = [&](double shift) {
        std::vector<RenderItem> items { boxItem(1, { 0, 0, width, height }, { 0.2, 0.3, 0.4, 1 }) };
        for (int i = 0; i < 100; ++i)
            items.push_back(transformed(itemOf(std::uint64_t(i + 2), { 0, 0, 12, 12 }, RenderImage { icon, {} }),
                CGAffineTransform::translation((i * 37) % 280 + shift, (i * 23) % 180 + shift)));
        return items;
    };
    const auto before = flock(0), after = flock(1.5);
    const auto damage = damageOf(before, after);
    EXPECT_LT(damage.size(), 150u);
    for (std::size_t i = 0; i < damage.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k)
            ASSERT_FALSE(damage[i].intersects(damage[k]));
    }
    for (const auto& items : { before, after }) {
        for (std::size_t i = 1; i < items.size(); ++i)
            ASSERT_TRUE(covers(damage, items[i].bounds.intersection({ 0, 0, width, height })));
    }
    EXPECT_LT(areaOf(damage), long(width) * height);
}

TEST(CompositorMemory, cachesStayWithinTheirLimitAndCanBeDropped)
{
    Compositor compositor;
    compositor.setSize(1000, 800);
    // Each picture, scaled by the layout, is worth 2.4 MB in the cache.
    for (int i = 0; i < 20; ++i) {
        auto list = listOf({ itemOf(std::uint64_t(i + 1), { 0, 0, 1000, 600 },
            RenderImage { noisePicture(50, 40, PixelFormat::argb, unsigned(i)), {} }) });
        compositor.composite(list);
        ASSERT_LE(compositor.cachedBytes(), 24u << 20);
    }
    EXPECT_GT(compositor.cachedBytes(), 12u << 20); // it is used, too
    compositor.dropCaches();
    EXPECT_EQ(compositor.cachedBytes(), 0u);
}

TEST(CompositorMemory, framesAllocateNoPixelsAfterTheFirst)
{
    Compositor compositor;
    compositor.setSize(width, height);
    const auto icon = noisePicture(40, 40, PixelFormat::argb, 4);
    const auto frame = [&](int step) {
        std::vector<RenderItem> items = Screen().items;
        items.push_back(itemOf(20, { 0, 120, width, 80 }, RenderBackdrop { 10, 1.5 }));
        for (int i = 0; i < 20; ++i)
            items.push_back(transformed(itemOf(std::uint64_t(i + 30), { 0, 0, 40, 40 }, RenderImage { icon, {} }),
                CGAffineTransform { 0.8, 0, 0, 0.8, 10.0 * i + step * 0.37, 60 + step * 1.13 }));
        RenderItem group = groupItem(80, { boxItem(1, { 100, 20, 90, 90 }, red) });
        group.opacity = 0.3 + step * 0.01;
        items.push_back(group);
        compositor.composite(listOf(items));
    };
    // Other bitmaps come and go with the list itself, so what counts is what the pool holds in all.
    for (int step = 0; step < 10; ++step)
        frame(step);
    const auto before = PixelPool::bytesInUse() + PixelPool::bytesKept();
    for (int step = 10; step < 40; ++step)
        frame(step);
    EXPECT_LE(PixelPool::bytesInUse() + PixelPool::bytesKept(), before);
}

} // namespace platform::testing
