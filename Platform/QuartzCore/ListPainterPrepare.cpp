#include "Platform/QuartzCore/ListPainterParts.h"
#include "Platform/QuartzCore/PathPictures.h"

#include "Platform/CoreGraphics/CoverageBlur.h"
#include "Platform/CoreGraphics/PixelLoops.h"
#include "Platform/QuartzCore/PixelCache.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

constexpr double smallestSigma = 0.3; // pixels; a sharper shadow is drawn unblurred
constexpr double largestSigma = 250; // pixels; a softer one is not told from it, and its bitmap would be as large as the screen

template <typename Visit> void forEachClip(const RenderList& list, int clip, const Visit& visit)
{
    // Chains are short; the count guards against a chain that bites its tail.
    for (std::size_t steps = 0; clip >= 0 && std::size_t(clip) < list.clips.size() && steps < list.clips.size(); ++steps) {
        visit(list.clips[std::size_t(clip)]);
        clip = list.clips[std::size_t(clip)].parent;
    }
}

bool fillsOpaquely(const RenderItem& item)
{
    if (item.opacity < 1)
        return false;
    if (const auto* box = std::get_if<RenderBox>(&item.content))
        return box->fill && box->fill->isOpaque();
    if (const auto* image = std::get_if<RenderImage>(&item.content))
        return image->image && image->image->isOpaque() && (!image->tint || image->tint->isOpaque());
    if (const auto* gradient = std::get_if<RenderGradient>(&item.content)) {
        return !gradient->colors.empty() && !gradient->locations.empty()
            && std::all_of(gradient->colors.begin(), gradient->colors.end(), [](const CGColor& c) { return c.isOpaque(); });
    }
    return std::holds_alternative<RenderBackdrop>(item.content);
}

PixelRect grownBy(const PixelRect& r, int by) { return { r.x - by, r.y - by, r.width + 2 * by, r.height + 2 * by }; }

double scaleOf(const CGAffineTransform& t) { return std::sqrt(std::abs(t.determinant())); }

double sigmaOf(double radius, double scale) { return std::clamp(radius * scale, 0.0, largestSigma); }

} // namespace

ListPainter::Prepared& ListPainter::preparedFor(const RenderList& list, std::size_t index)
{
    if (&list != preparedLast.first) {
        auto& prepared = preparedLists[&list];
        prepared.resize(list.items.size());
        preparedLast = { &list, prepared.data() };
    }
    return preparedLast.second[index];
}

PixelRect ListPainter::opaquePart(const RenderList& list, std::size_t index)
{
    const RenderItem& item = list.items[index];
    if (!fillsOpaquely(item))
        return {};
    Prepared& prepared = preparedFor(list, index);
    if (prepared.knowsOpaquePart)
        return prepared.opaquePart;
    prepared.knowsOpaquePart = true;
    const auto inside = [](const auto& shape) {
        const auto upright = UprightRect::make(shape.transform, shape.rect, shape.cornerRadius, shape.corners);
        return upright ? upright->inside() : PixelRect {};
    };
    PixelRect part = inside(item).intersection(item.bounds);
    forEachClip(list, item.clip, [&](const RenderClip& clip) { part = part.intersection(inside(clip)); });
    prepared.opaquePart = part;
    return part;
}

void ListPainter::prepare(Prepared& prepared, std::size_t index, const Level& level)
{
    const RenderItem& item = level.list.items[index];
    prepared.opacity = unsigned(std::lround(std::clamp(item.opacity, 0.0, 1.0) * 255));
    forEachClip(level.list, item.clip, [&](const RenderClip& clip) {
        prepared.clips.push_back(Coverage::roundedRect(clip.transform, clip.rect, clip.cornerRadius, clip.corners, cache));
    });
    const auto add = [&](std::unique_ptr<PixelSource> source, std::vector<Coverage> shape) {
        if (source)
            prepared.layers.push_back({ std::move(source), std::move(shape), {} });
    };
    const auto outline = [&] {
        return std::vector<Coverage> { Coverage::roundedRect(item.transform, item.rect, item.cornerRadius, item.corners, cache) };
    };
    if (const auto* box = std::get_if<RenderBox>(&item.content)) {
        if (box->fill && !box->fill->isClear())
            add(solidSource(pixels::premultiplied(*box->fill)), outline());
        if (box->border && !box->border->isClear() && box->borderWidth > 0)
            add(solidSource(pixels::premultiplied(*box->border)),
                { Coverage::ring(item.transform, item.rect, item.cornerRadius, item.corners, box->borderWidth, cache) });
    } else if (const auto* image = std::get_if<RenderImage>(&item.content)) {
        add(imageSource(item, *image, root.toPixels, cache), outline());
    } else if (const auto* gradient = std::get_if<RenderGradient>(&item.content)) {
        add(gradientSource(item, *gradient, cache), outline());
    } else if (const auto* shape = std::get_if<RenderShape>(&item.content)) {
        if (auto picture = shapePicture(item, *shape, cache))
            add(bitmapSource(std::move(picture), item.bounds.x, item.bounds.y), {});
    } else if (const auto* shadow = std::get_if<RenderShadow>(&item.content)) {
        prepareShadow(prepared, item, *shadow);
    } else if (std::holds_alternative<RenderBackdrop>(item.content)) {
        prepareBackdrop(prepared, index, level);
    } else {
        prepareGroup(prepared, index, level);
    }
    for (Layer& layer : prepared.layers) {
        layer.cuts = layer.shape;
        layer.cuts.insert(layer.cuts.end(), prepared.clips.begin(), prepared.clips.end());
    }
}

void ListPainter::prepareShadow(Prepared& prepared, const RenderItem& item, const RenderShadow& shadow)
{
    if (shadow.color.isClear() || item.rect.isEmpty() || item.transform.determinant() == 0)
        return;
    const CGRect rect = item.rect.offsetBy(shadow.offset.width, shadow.offset.height);
    const double sigma = sigmaOf(shadow.radius, scaleOf(item.transform));
    const auto upright = UprightRect::make(item.transform, rect, item.cornerRadius, item.corners);
    std::vector<Coverage> shape;
    if (!shadow.path && sigma < smallestSigma) {
        shape.push_back(Coverage::roundedRect(item.transform, rect, item.cornerRadius, item.corners, cache));
    } else if (!shadow.path && upright) {
        const double sigmaX = sigmaOf(shadow.radius, std::abs(item.transform.a));
        const double sigmaY = sigmaOf(shadow.radius, std::abs(item.transform.d));
        if (auto blurred = Coverage::shadow(*upright, sigmaX, sigmaY, cache))
            shape.push_back(std::move(*blurred));
    }
    if (shape.empty()) {
        const auto path = shadow.path ? shadow.path : CGPath::roundedRect(item.rect, item.corners ? item.cornerRadius : 0);
        const auto moved = CGAffineTransform::translation(shadow.offset.width, shadow.offset.height).then(item.transform);
        const PlacedCoverage blurred = blurredPath(*path, moved, sigma, item.bounds, cache);
        if (!blurred.alpha)
            return;
        shape.push_back(Coverage::bitmap(blurred.alpha, blurred.x, blurred.y));
    }
    prepared.layers.push_back({ solidSource(pixels::premultiplied(shadow.color)), std::move(shape), {} });
}

void ListPainter::prepareBackdrop(Prepared& prepared, std::size_t index, const Level& level)
{
    const RenderItem& item = level.list.items[index];
    const BackdropBlur blur(item, std::get<RenderBackdrop>(item.content), screen);
    const Level below { level.list, index, level.outer, level.path };
    PixelKey key(PixelKey::backdrop);
    key.add(pathBelow(level.path, item.key));
    auto picture = cache.findOrMake(key, [&] {
        return blur.make(
            [&](Bitmap& target, const PixelRect& area) { paintBelow(Surface(target, area.x, area.y), area, below); });
    });
    if (!picture)
        return;
    Layer layer { scaledSource(std::move(picture), blur.device()), {}, {} };
    layer.shape.push_back(Coverage::roundedRect(item.transform, item.rect, item.cornerRadius, item.corners, cache));
    prepared.layers.push_back(std::move(layer));
}

void ListPainter::prepareGroup(Prepared& prepared, std::size_t index, const Level& level)
{
    const RenderItem& item = level.list.items[index];
    const auto& group = std::get<RenderGroup>(item.content);
    prepared.hasPictureMask = group.mask != nullptr;
    if (group.mask && !group.shadow && group.mask->items.size() == 1) {
        const RenderItem& fading = group.mask->items.front();
        const auto* gradient = std::get_if<RenderGradient>(&fading.content);
        auto fade = gradient && fading.opacity >= 1 && fading.clip < 0 ? gradientFade(fading, *gradient, cache) : nullptr;
        if (fade) {
            prepared.clips.push_back(Coverage::fade(std::move(fade), fading.bounds));
            prepared.clips.push_back(
                Coverage::roundedRect(fading.transform, fading.rect, fading.cornerRadius, fading.corners, cache));
            prepared.hasPictureMask = false;
        }
    }
    if (group.shadow && !group.shadow->color.isClear() && group.content)
        prepareGroupShadow(prepared, index, level);
}

void ListPainter::prepareGroupShadow(Prepared& prepared, std::size_t index, const Level& level)
{
    const RenderItem& item = level.list.items[index];
    const auto& group = std::get<RenderGroup>(item.content);
    const CGAffineTransform& t = item.transform;
    const CGSize offset = group.shadow->offset;
    const int dx = int(std::lround(offset.width * t.a + offset.height * t.c));
    const int dy = int(std::lround(offset.width * t.b + offset.height * t.d));
    const double sigma = sigmaOf(group.shadow->radius, scaleOf(t));
    const int reach = int(std::ceil(3 * sigma)) + 1;
    PixelRect content;
    for (const RenderItem& inner : group.content->items)
        content = content.unionWith(inner.bounds);
    const PixelRect area
        = grownBy(content, reach)
              .intersection(grownBy({ item.bounds.x - dx, item.bounds.y - dy, item.bounds.width, item.bounds.height }, reach));
    if (area.isEmpty())
        return;
    PixelKey key(PixelKey::groupShadow);
    key.add(pathBelow(level.path, item.key));
    const auto alpha = cache.findOrMake(key, [&] {
        auto composed = composedAlpha(area, index, level);
        if (composed)
            pixels::blurCoverage(*composed, sigma);
        return composed;
    });
    if (!alpha)
        return;
    Layer layer { solidSource(pixels::premultiplied(group.shadow->color)), {}, {} };
    layer.shape.push_back(Coverage::bitmap(alpha, area.x + dx, area.y + dy));
    prepared.layers.push_back(std::move(layer));
}

std::shared_ptr<Bitmap> ListPainter::composedAlpha(const PixelRect& area, std::size_t index, const Level& level)
{
    constexpr int stripRows = 64;
    auto alpha = Bitmap::make(area.width, area.height, PixelFormat::alpha);
    const bool isMasked = std::get<RenderGroup>(level.list.items[index].content).mask != nullptr;
    for (int y = 0; alpha && y < area.height; y += stripRows) {
        const PixelRect part { area.x, area.y + y, area.width, std::min(stripRows, area.height - y) };
        auto strip = Bitmap::make(part.width, part.height, PixelFormat::argb, true);
        if (!strip)
            return nullptr;
        paintContent(Surface(*strip, part.x, part.y), part, index, level, isMasked);
        for (int i = 0; i < part.height; ++i)
            rows::alphaOf(alpha->alphaRow(y + i), strip->row(i), part.width);
    }
    return alpha;
}

} // namespace platform
