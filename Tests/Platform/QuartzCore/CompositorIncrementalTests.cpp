#include "Tests/Platform/QuartzCore/CompositorTestSupport.h"

#include <gtest/gtest.h>

#include <random>

// Whatever changes, a frame that was painted in patches equals one that was painted from nothing, to the last bit.

namespace platform::testing {

namespace {

constexpr int width = 180, height = 140;

// A list that changes at random, item by item, as an app's layers do.
class RandomScene {
public:
    explicit RandomScene(unsigned seed)
        : random(seed)
    {
        for (int i = 0; i < 3; ++i) {
            pictures.push_back(noisePicture(24 + 9 * i, 30, PixelFormat::argb, seed + unsigned(i)));
            pictures.push_back(noisePicture(30, 24 + 9 * i, PixelFormat::xrgb, seed + 10 + unsigned(i)));
        }
        paths.push_back(CGPath::roundedRect({ 0, 0, 40, 30 }, 10));
        auto curve = std::make_shared<CGPath>();
        curve->moveTo({ 2, 2 });
        curve->curveTo({ 50, 0 }, { -10, 30 }, { 40, 28 });
        paths.push_back(curve);
        clips.push_back({ CGAffineTransform::translation(0.25, 0), { 20, 10, 130, 110 }, 25, 15, -1 });
        clips.push_back({ CGAffineTransform::rotation(0.2), { 40, 10, 100, 90 }, 12, 15, 0 });
        for (int i = 0; i < 6; ++i)
            items.push_back(anyItem(0));
    }

    std::shared_ptr<const RenderList> list() const
    {
        auto copy = listOf(items, clips);
        copy->toPixels = CGAffineTransform::scale(2, 2);
        return copy;
    }

    void change()
    {
        switch (below(items.empty() ? 1 : 9)) {
        case 0:
            if (items.size() < 14) {
                items.insert(items.begin() + below(int(items.size()) + 1), anyItem(0));
                break;
            }
            [[fallthrough]];
        case 1:
            items.erase(items.begin() + below(int(items.size())));
            break;
        case 2:
            std::swap(any(), any());
            break;
        case 3: { // one item goes through all the others
            RenderItem moved = any();
            std::erase_if(items, [&](const RenderItem& i) { return i.key == moved.key; });
            items.insert(items.begin() + below(int(items.size()) + 1), moved);
            break;
        }
        case 4:
            any().opacity = opacity();
            break;
        case 5:
            any().clip = below(3) - 1;
            break;
        case 6: // the same item looks different
        {
            RenderItem& old = any();
            const std::uint64_t key = old.key;
            old = anyItem(0);
            old.key = key;
            break;
        }
        default:
            changeOne(any());
        }
    }

private:
    int below(int limit) { return int(random() % unsigned(limit)); }
    double part() { return double(random() % 1024) / 1024; }
    double opacity() { return below(2) ? 1 : part(); }
    RenderItem& any() { return items[std::size_t(below(int(items.size())))]; }
    CGColor color() { return { part(), part(), part(), below(2) ? 1 : part() }; }

    CGAffineTransform place()
    {
        const double x = below(width), y = below(height);
        switch (below(6)) {
        case 0:
            return CGAffineTransform { 2, 0, 0, 2, x + part(), y + part() };
        case 1:
            return CGAffineTransform { 2, 0, 0, -2, x, y };
        case 2:
            return CGAffineTransform { -2 * part() - 0.1, 0, 0, part() + 0.2, x, y };
        case 3:
            return CGAffineTransform::scale(1.5, 1)
                .then(CGAffineTransform::rotation(part() * 6))
                .then(CGAffineTransform::translation(x, y));
        default:
            return CGAffineTransform { 2, 0, 0, 2, x, y };
        }
    }

    void settle(RenderItem& item, int reach)
    {
        const CGRect device = item.transform.apply(item.rect).insetBy(-reach, -reach);
        item.bounds = PixelRect::around(device).intersection({ 0, 0, width, height });
        if (item.bounds.isEmpty())
            item.bounds = { 0, 0, 1, 1 };
    }

    int reachOf(const RenderItem& item) const
    {
        return std::holds_alternative<RenderShadow>(item.content) ? 14
            : std::holds_alternative<RenderShape>(item.content)   ? 6
                                                                  : 1;
    }

    void changeOne(RenderItem& item)
    {
        if (auto* group = std::get_if<RenderGroup>(&item.content)) {
            if (group->mask && below(3) == 0) {
                auto mask = std::make_shared<RenderList>(*group->mask);
                mask->items.front().opacity = opacity();
                mask->items.front().cornerRadius = below(20);
                group->mask = mask;
                return;
            }
            auto content = std::make_shared<RenderList>(*group->content);
            RenderItem& inner = content->items[std::size_t(below(int(content->items.size())))];
            if (below(2))
                inner.opacity = opacity();
            else
                changeOne(inner);
            if (below(4) == 0)
                content->items.push_back(anyItem(2));
            group->content = content;
            return;
        }
        if (auto* box = std::get_if<RenderBox>(&item.content); box && below(2)) {
            box->fill = color();
            return;
        }
        item.transform = place();
        settle(item, reachOf(item));
    }

    RenderItem anyItem(int depth)
    {
        RenderItem item;
        item.key = nextKey++;
        item.transform = place();
        item.rect = { 0, 0, 8.0 + below(50), 8.0 + below(40) };
        item.cornerRadius = below(2) ? 0 : below(14);
        item.corners = below(2) ? 15 : static_cast<unsigned char>(below(16));
        item.opacity = opacity();
        item.clip = depth == 0 && below(4) == 0 ? below(2) : -1;
        switch (below(depth < 2 ? 10 : 7)) {
        case 0:
        case 1:
            item.content = RenderBox { color(), color(), below(3) ? 0 : part() * 5 };
            break;
        case 2:
        case 3:
            item.content = RenderImage { pictures[std::size_t(below(int(pictures.size())))],
                below(3) ? std::nullopt : std::optional(color()) };
            break;
        case 4:
            item.content = RenderGradient { { color(), color(), color() }, { 0, 0.25 + part() / 2, 1 }, { 0, 0 },
                { double(below(2)), below(2) ? 1.0 : part() } };
            break;
        case 5:
            item.content = RenderShape { paths[std::size_t(below(2))], color(), color(), 2, part() / 2, 1 };
            break;
        case 6:
            item.content = RenderShadow { color(), part() * 2, { 2, 1 }, below(3) ? nullptr : paths[std::size_t(below(2))] };
            break;
        case 7:
            item.content = RenderBackdrop { part() * 6, 0.5 + part() };
            item.transform = { 2, 0, 0, 2, double(below(width / 2)), double(below(height / 2)) };
            break;
        default:
            return anyGroup(depth);
        }
        settle(item, reachOf(item));
        return item;
    }

    RenderItem anyGroup(int depth)
    {
        std::vector<RenderItem> content, mask;
        for (int i = 0; i < 1 + below(4); ++i)
            content.push_back(anyItem(depth + 1));
        const int maskKind = below(4);
        if (maskKind == 0) {
            mask.push_back(
                itemOf(nextKey++, { 0, 10, width, 90 }, RenderGradient { { color(), white }, { 0, 0.4 }, { 0, 0 }, { 0, 1 } }));
        } else if (maskKind == 1) {
            mask.push_back(boxItem(nextKey++, { 15, 12, 120, 90 }, white));
            mask.back().cornerRadius = 30;
        }
        RenderItem item = groupItem(nextKey++, std::move(content), std::move(mask));
        item.bounds = item.bounds.unionWith({ 0, 0, 1, 1 });
        item.opacity = opacity();
        if (below(4) == 0) {
            std::get<RenderGroup>(item.content).shadow = RenderShadow { color(), part() * 4, { 3, 2 }, nullptr };
            item.bounds = PixelRect { 0, 0, width, height };
        }
        return item;
    }

    std::mt19937 random;
    std::vector<std::shared_ptr<const CGImage>> pictures;
    std::vector<std::shared_ptr<const CGPath>> paths;
    std::vector<RenderItem> items;
    std::vector<RenderClip> clips;
    std::uint64_t nextKey = 1;
};

} // namespace

TEST(CompositorIncremental, patchesGiveThePictureOfTheWhole)
{
    for (unsigned seed = 1; seed <= 12; ++seed) {
        RandomScene scene(seed);
        Compositor patched;
        patched.setSize(width, height);
        patched.composite(scene.list());
        for (int step = 0; step < 60; ++step) {
            for (int i = 0; i <= step % 3; ++i)
                scene.change();
            const auto list = scene.list();
            const FrameChange change = patched.composite(list);
            const Composed fresh(width, height, list);
            ASSERT_EQ(difference(*patched.frame(), *fresh.compositor.frame()), 0) << "seed " << seed << ", step " << step;
            for (std::size_t i = 0; i < change.damage.size(); ++i) {
                for (std::size_t k = 0; k < i; ++k)
                    ASSERT_FALSE(change.damage[i].intersects(change.damage[k])) << "seed " << seed << ", step " << step;
            }
        }
    }
}

TEST(CompositorIncremental, aDroppedCacheChangesNoPixel)
{
    RandomScene scene(99);
    Compositor keeping, dropping;
    for (Compositor* compositor : { &keeping, &dropping })
        compositor->setSize(width, height);
    for (int step = 0; step < 60; ++step) {
        scene.change();
        const auto list = scene.list();
        keeping.composite(list);
        dropping.dropCaches();
        dropping.composite(list);
        ASSERT_EQ(difference(*keeping.frame(), *dropping.frame()), 0) << "step " << step;
    }
}

TEST(CompositorIncremental, aFrameAtAnotherSizeIsPaintedWhole)
{
    RandomScene scene(7);
    Compositor compositor;
    compositor.setSize(60, 50);
    compositor.composite(scene.list());
    compositor.setSize(width, height);
    const auto change = compositor.composite(scene.list());
    ASSERT_EQ(change.damage.size(), 1u);
    EXPECT_EQ(change.damage[0], (PixelRect { 0, 0, width, height }));
    EXPECT_EQ(difference(*compositor.frame(), *Composed(width, height, scene.list()).compositor.frame()), 0);
}

} // namespace platform::testing
