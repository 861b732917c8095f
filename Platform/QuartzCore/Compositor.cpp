#include "Platform/QuartzCore/Compositor.h"

#include "Platform/QuartzCore/DamageRegion.h"
#include "Platform/QuartzCore/ListChanges.h"
#include "Platform/QuartzCore/ListPainter.h"
#include "Platform/QuartzCore/PixelCache.h"

#include <cstring>

namespace platform {

namespace {

// In the order in which no row is overwritten before it was read.
void movePixels(Bitmap& frame, const PixelMove& move)
{
    const PixelRect& from = move.from;
    for (int i = 0; i < from.height; ++i) {
        const int y = move.dy > 0 ? from.maxY() - 1 - i : from.y + i;
        std::memmove(frame.row(y + move.dy) + from.x + move.dx, frame.row(y) + from.x, std::size_t(from.width) * 4);
    }
}

} // namespace

struct Compositor::Impl {
    std::shared_ptr<Bitmap> frame;
    std::shared_ptr<const Bitmap> shownFrame;
    std::shared_ptr<const RenderList> shown; // the list the frame was painted from; null: paint everything
    PixelCache cache;
};

Compositor::Compositor()
    : impl(std::make_unique<Impl>())
{
}

Compositor::~Compositor() = default;

void Compositor::setSize(int width, int height)
{
    if (impl->frame && impl->frame->width() == width && impl->frame->height() == height)
        return;
    impl->shownFrame = nullptr;
    impl->frame = nullptr; // first back to the pool, as the new one may be of its size class
    impl->frame = Bitmap::make(width, height, PixelFormat::xrgb);
    impl->shownFrame = impl->frame;
    invalidate();
}

void Compositor::invalidate() { impl->shown = nullptr; }

FrameChange Compositor::composite(const std::shared_ptr<const RenderList>& list)
{
    if (!impl->frame || !list || list == impl->shown)
        return {};
    const PixelRect screen = impl->frame->bounds();
    ListChanges changes(screen, impl->cache);
    changes.compare(impl->shown.get(), *list);
    FrameChange change;
    change.damage = impl->shown ? disjointDamage(changes.changed(), screen) : std::vector<PixelRect> { screen };
    for (const ScrollMove& move : changes.moves()) {
        change.moves.push_back({ move.moved(move.clip).offsetBy(-move.dx, -move.dy), move.dx, move.dy });
        movePixels(*impl->frame, change.moves.back());
    }
    ListPainter painter(*list, screen, impl->cache);
    const Surface surface(*impl->frame, 0, 0);
    for (const PixelRect& damaged : change.damage)
        painter.paint(surface, damaged);
    impl->cache.endFrame();
    impl->shown = list;
    return change;
}

const std::shared_ptr<const Bitmap>& Compositor::frame() const { return impl->shownFrame; }

void Compositor::dropCaches() { impl->cache.clear(); }

std::size_t Compositor::cachedBytes() const { return impl->cache.bytes(); }

} // namespace platform
