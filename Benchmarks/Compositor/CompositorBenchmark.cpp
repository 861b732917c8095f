#include "Benchmarks/Compositor/CompositorBenchmark.h"

#include "Platform/CoreGraphics/CGContext.h"
#include "Platform/QuartzCore/Compositor.h"
#include "Platform/QuartzCore/RenderList.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ctime>
#include <functional>

namespace bench {

namespace {

using namespace platform;

constexpr int width = 1179, height = 2556; // pixels; a phone of 393x852 points
constexpr double scale = 3;

// Of this process, so that a busy machine does not count.
double processorMilliseconds()
{
    timespec now {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

template <typename Work> double medianMilliseconds(int runs, const Work& work)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const double start = processorMilliseconds();
        work(i);
        times.push_back(processorMilliseconds() - start);
    }
    std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
    return times[std::size_t(runs / 2)];
}

// A list in points, as a commit would make it.
class Scene {
public:
    Scene() { list->toPixels = CGAffineTransform::scale(scale, scale); }

    template <typename Content> RenderItem& add(const CGRect& rect, Content content, double reach = 0)
    {
        RenderItem item;
        item.key = list->items.size() + 1;
        item.transform = list->toPixels;
        item.rect = rect;
        item.bounds = PixelRect::around(item.transform.apply(rect.insetBy(-reach, -reach))).intersection({ 0, 0, width, height });
        item.content = std::move(content);
        list->items.push_back(std::move(item));
        return list->items.back();
    }
    RenderItem& fill(const CGRect& rect, const CGColor& color) { return add(rect, RenderBox { color, {}, 0 }); }
    RenderItem& picture(const CGRect& rect, std::shared_ptr<const CGImage> image)
    {
        return add(rect, RenderImage { std::move(image), {} });
    }

    std::shared_ptr<RenderList> list = std::make_shared<RenderList>();
};

constexpr CGRect screen { 0, 0, 393, 852 };
constexpr CGColor white { 1, 1, 1, 1 }, shade { 0, 0, 0, 0.4 };

std::shared_ptr<const CGImage> picture(int w, int h, PixelFormat format)
{
    auto bitmap = Bitmap::make(w, h, format);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const auto alpha = format == PixelFormat::xrgb ? 255u : unsigned(x * 7 + y * 3) % 256;
            const auto channel = [&](double wave) { return unsigned(alpha * (0.5 + 0.5 * std::sin(wave))); };
            bitmap->row(y)[x] = alpha << 24 | channel(x * 0.01) << 16 | channel(y * 0.013) << 8 | channel((x + y) * 0.007);
        }
    }
    return CGImage::fromBitmap(std::move(bitmap));
}

Scene opaqueLayers()
{
    // A picture under panels under tiles: nothing is painted twice.
    Scene scene;
    scene.picture(screen, picture(width, height, PixelFormat::xrgb));
    scene.fill({ 0, 100, 393, 600 }, { 0.95, 0.95, 0.97, 1 });
    const auto tile = picture(540, 360, PixelFormat::xrgb);
    for (int i = 0; i < 8; ++i)
        scene.picture({ 10.0 + (i % 2) * 190, 120.0 + (i / 2) * 140, 180, 120 }, tile);
    return scene;
}

Scene translucentLayers()
{
    Scene scene;
    scene.picture(screen, picture(width, height, PixelFormat::xrgb));
    scene.fill(screen, shade);
    return scene;
}

Scene translucentPicture()
{
    Scene scene;
    scene.picture(screen, picture(width, height, PixelFormat::xrgb));
    scene.picture(screen, picture(width, height, PixelFormat::argb)).opacity = 0.7;
    return scene;
}

Scene shadowedCards()
{
    Scene scene;
    scene.fill(screen, { 0.95, 0.95, 0.97, 1 });
    for (int i = 0; i < 20; ++i) {
        const CGRect card { 16.0 + (i % 2) * 186, 16.0 + (i / 2) * 84, 175, 72 };
        scene.add(card, RenderShadow { { 0, 0, 0, 0.18 }, 5, { 0, 2 }, nullptr }, 17).cornerRadius = 12;
        scene.fill(card, white).cornerRadius = 12;
        scene.add(card, RenderBox { {}, CGColor { 0, 0, 0, 0.12 }, 1 }).cornerRadius = 12;
    }
    return scene;
}

Scene maskedChat()
{
    Scene scene, chat, mask;
    const auto line = picture(900, 60, PixelFormat::argb);
    for (int i = 0; i < 14; ++i)
        chat.picture({ 20, 475.0 + 26 * i, 300, 20 }, line);
    const CGRect panel { 20, 469, 353, 383 };
    mask.add(panel, RenderGradient { { { 0, 0, 0, 0 }, { 0, 0, 0, 1 } }, { 0, 0.25 }, { 0.5, 0 }, { 0.5, 1 } });
    scene.picture(screen, picture(width, height, PixelFormat::xrgb));
    scene.add(panel, RenderGroup { chat.list, mask.list, {} });
    return scene;
}

Scene fadingGroup()
{
    Scene scene;
    scene.picture(screen, picture(width, height, PixelFormat::xrgb));
    scene.add(screen, RenderGroup { shadowedCards().list, nullptr, {} }).opacity = 0.5;
    return scene;
}

Scene blurred(const CGRect& rect)
{
    Scene scene;
    scene.picture(screen, picture(width, height, PixelFormat::xrgb));
    scene.add(rect, RenderBackdrop { 10, 1.8 });
    return scene;
}

Scene gradient(CGPoint end)
{
    Scene scene;
    scene.add({ 0, 0, 393, 852 * 0.7 },
        RenderGradient { { { 1, 0.2, 0.4, 1 }, { 0.5, 0.3, 0.9, 1 }, { 0.1, 0.4, 1, 1 } }, { 0, 0.4, 1 }, { 0, 0 }, end });
    return scene;
}

Scene scaledPicture(bool isAnimated)
{
    Scene scene;
    auto& item = scene.picture(screen, picture(1600, 3469, PixelFormat::xrgb));
    if (isAnimated) { // a hair larger than the layout has it, about the middle
        item.transform = CGAffineTransform { 3.02, 0, 0, 3.02, -3.93, -8.52 };
    }
    return scene;
}

Scene turnedPicture()
{
    Scene scene;
    auto& item = scene.picture({ 40, 200, 300, 400 }, picture(900, 1200, PixelFormat::xrgb));
    item.transform = CGAffineTransform::translation(-190, -400)
                         .then(CGAffineTransform::rotation(0.3))
                         .then(CGAffineTransform { 3, 0, 0, 3, 570, 1200 });
    item.bounds = { 0, 0, width, height };
    return scene;
}

} // namespace

double frameCopyMilliseconds()
{
    auto from = Bitmap::make(width, height, PixelFormat::xrgb, true), to = Bitmap::make(width, height, PixelFormat::xrgb, true);
    const double time = medianMilliseconds(101, [&](int i) {
        from->row(0)[0] = std::uint32_t(i);
        std::memcpy(to->data(), from->data(), from->byteCount());
    });
    from = to = nullptr;
    PixelPool::trim(0); // these two are no part of what is measured next
    return time;
}

std::vector<CompositionFigure> measureComposition()
{
    const struct {
        const char* name;
        std::function<Scene()> make;
    } scenes[] = {
        { "opaque layers", opaqueLayers },
        { "translucent colour", translucentLayers },
        { "translucent picture", translucentPicture },
        { "20 shadowed cards", shadowedCards },
        { "masked chat", maskedChat },
        { "group at half opacity", fadingGroup },
        { "blur behind everything", [] { return blurred(screen); } },
        { "blur behind a bar",
            [] {
                return blurred({ 0, 0, 393, 103 });
            } },
        { "vertical gradient, 70 %",
            [] {
                return gradient({ 0, 1 });
            } },
        { "slanted gradient, 70 %",
            [] {
                return gradient({ 1, 1 });
            } },
        { "scaled picture, resting", [] { return scaledPicture(false); } },
        { "scaled picture, moving", [] { return scaledPicture(true); } },
        { "turned picture", turnedPicture },
    };
    std::vector<CompositionFigure> figures;
    for (const auto& scene : scenes) {
        const auto list = scene.make().list;
        Compositor compositor;
        compositor.setSize(width, height);
        compositor.composite(list);
        const double copy = frameCopyMilliseconds();
        const double time = medianMilliseconds(41, [&](int) {
            compositor.invalidate();
            compositor.composite(list);
        });
        figures.push_back({ scene.name, time, time / copy });
    }
    return figures;
}

} // namespace bench
