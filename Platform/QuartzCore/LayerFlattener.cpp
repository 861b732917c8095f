#include "Platform/QuartzCore/LayerFlattener.h"

#include "Platform/QuartzCore/AnimationTimeline.h"
#include "Platform/QuartzCore/LayerLook.h"
#include "Platform/QuartzCore/LayerPresentation.h"
#include "Platform/QuartzCore/RenderListPool.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

CGRect asRect(const PixelRect& r) { return { double(r.x), double(r.y), double(r.width), double(r.height) }; }

// A mean length of the transform, for what has no direction.
double scaleOf(const CGAffineTransform& t) { return std::sqrt(std::abs(t.determinant())); }

PixelRect unionOf(const std::vector<RenderItem>& items)
{
    PixelRect all;
    for (const RenderItem& item : items)
        all = all.unionWith(item.bounds);
    return all;
}

// Whether opacity over the whole looks otherwise than opacity over each. Blur behind never goes into a group, where there is
// nothing behind.
bool mustComposeTogether(const std::vector<RenderItem>& items)
{
    constexpr std::size_t worthComparing = 12;
    if (std::ranges::any_of(items, [](const RenderItem& item) { return std::holds_alternative<RenderBackdrop>(item.content); }))
        return false;
    if (items.size() > worthComparing)
        return true;
    for (std::size_t i = 1; i < items.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (items[i].bounds.intersects(items[j].bounds))
                return true;
        }
    }
    return false;
}

// Whether a round clip leaves all these pixels as they are. Its straight sides are in the upright clip already.
bool leavesWhole(const RenderClip& clip, const PixelRect& pixels)
{
    if (!clip.transform.isUpright())
        return false;
    const CGRect box = clip.transform.apply(clip.rect);
    if (!PixelRect::around(box).contains(pixels))
        return false;
    const double rx = clip.cornerRadius * std::abs(clip.transform.a), ry = clip.cornerRadius * std::abs(clip.transform.d);
    const CGRect area = asRect(pixels);
    // A mirrored clip rounds the mirrored corners; all four count then.
    const bool mirrored = clip.transform.a < 0 || clip.transform.d < 0;
    const auto touches = [&](unsigned corner, double x, double y) {
        return (mirrored || (clip.corners & corner)) && area.intersects({ x, y, rx, ry });
    };
    return !touches(minXMinY, box.x, box.y) && !touches(maxXMinY, box.maxX() - rx, box.y)
        && !touches(minXMaxY, box.x, box.maxY() - ry) && !touches(maxXMaxY, box.maxX() - rx, box.maxY() - ry);
}

// The innermost clip that cuts these pixels.
int neededClip(const RenderList& list, int clip, const PixelRect& pixels)
{
    while (clip >= 0 && leavesWhole(list.clips[std::size_t(clip)], pixels))
        clip = list.clips[std::size_t(clip)].parent;
    return clip;
}

} // namespace

LayerFlattener::LayerFlattener(double moment, double pixelsPerPoint, PixelRect screenPixels, bool willBePainted)
    : time(moment)
    , scale(pixelsPerPoint)
    , screen(screenPixels)
    , isPainted(willBePainted)
{
}

std::shared_ptr<const RenderList> LayerFlattener::flatten(const std::vector<std::shared_ptr<CALayer>>& roots)
{
    auto list = RenderListPool::take(CGAffineTransform::scale(scale, scale));
    for (const auto& root : roots) {
        if (root)
            addLayer(*root, { *list, list->toPixels, screen, -1 });
    }
    return list;
}

void LayerFlattener::addLayer(CALayer& layer, const Place& outside)
{
    if (layer.hidden_)
        return;
    ++visited;
    std::optional<LayerPresentation> moment;
    if (layer.hasAnimations())
        moment.emplace(layer.animations_->presentation(layer, time));
    const LayerLook look { layer, moment ? moment->layer : layer.values_, moment ? &*moment : nullptr };
    const Place place { outside.list, look.values.toSuperlayer().then(outside.toPixels), outside.clip, outside.clipIndex };
    const double opacity = std::clamp(look.values.opacity, 0.0, 1.0);
    if (moment && !sawRunning)
        sawRunning = isUnderWay(look, place, opacity);
    if (opacity <= 0 || place.toPixels.determinant() == 0)
        return;
    const PixelRect box = PixelRect::around(place.toPixels.apply(look.values.bounds));
    if (layer.masksToBounds_ && box.intersection(place.clip).isEmpty())
        return;
    const bool shadowOfPixels = look.castsShadow() && !look.values.shadowPath && !look.isOpaqueBox() && !layer.mask_;
    if (opacity < 1 || layer.mask_ || shadowOfPixels)
        addGrouped(look, place, opacity, shadowOfPixels);
    else
        addContent(look, place);
}

void LayerFlattener::addGrouped(const LayerLook& look, const Place& place, double opacity, bool shadowOfPixels)
{
    const LayerValues& values = look.values;
    RenderGroup group;
    CGRect shadowArea; // of one pixel at the origin
    PixelRect casters = place.clip; // what lies outside of the clip may throw its shadow into it
    if (shadowOfPixels) {
        group.shadow = RenderShadow { values.shadowColor, values.shadowRadius, values.shadowOffset, nullptr };
        group.shadow->color.alpha *= std::min(values.shadowOpacity, 1.0);
        const CGAffineTransform& t = place.toPixels;
        const CGSize offset = values.shadowOffset;
        const CGPoint shift { t.a * offset.width + t.c * offset.height, t.b * offset.width + t.d * offset.height };
        shadowArea = LayerLook::grown({ shift.x, shift.y, 0, 0 }, LayerLook::gaussianReach * values.shadowRadius * scaleOf(t));
        const auto around = PixelRect::around({ place.clip.x - shadowArea.maxX(), place.clip.y - shadowArea.maxY(),
            place.clip.width + shadowArea.width, place.clip.height + shadowArea.height });
        casters = place.clip.unionWith(around);
    }
    auto content = RenderListPool::take(place.list.toPixels);
    addContent(look, { *content, place.toPixels, casters, -1 });
    PixelRect bounds = unionOf(content->items);
    if (look.layer.mask_) {
        auto mask = RenderListPool::take(place.list.toPixels);
        addLayer(*look.layer.mask_, { *mask, place.toPixels, place.clip, -1 });
        bounds = bounds.intersection(unionOf(mask->items));
        group.mask = std::move(mask);
    }
    if (shadowOfPixels && !bounds.isEmpty()) {
        const auto thrown = PixelRect::around({ bounds.x + shadowArea.x, bounds.y + shadowArea.y, bounds.width + shadowArea.width,
            bounds.height + shadowArea.height });
        bounds = bounds.unionWith(thrown).intersection(place.clip);
    }
    if (bounds.isEmpty())
        return;
    if (!group.mask && !group.shadow && !mustComposeTogether(content->items))
        return spill(*content, place, opacity);
    group.content = std::move(content);
    RenderItem& item = place.list.items.emplace_back();
    item.key = look.layer.id() * rolesPerLayer + groupRole;
    item.transform = place.toPixels;
    item.rect = values.bounds;
    item.bounds = bounds;
    item.clip = neededClip(place.list, place.clipIndex, bounds);
    item.opacity = opacity;
    item.content = std::move(group);
}

void LayerFlattener::addSublayers(const LayerLook& look, const Place& inside)
{
    const auto& sublayers = look.layer.sublayers_;
    const Place below { inside.list, look.values.sublayersToBounds().then(inside.toPixels), inside.clip, inside.clipIndex };
    const auto zOf = [this](const CALayer& layer) {
        const bool moves = layer.hasAnimations() && layer.animations_->animates(LayerProperty::zPosition);
        return moves ? layer.animations_->presentation(layer, time).layer.zPosition : layer.values_.zPosition;
    };
    bool inOrder = true;
    double highest = zOf(*sublayers.front());
    for (const auto& layer : sublayers) {
        const double z = zOf(*layer);
        inOrder = inOrder && z >= highest;
        highest = z;
    }
    if (inOrder) {
        for (const auto& layer : sublayers)
            addLayer(*layer, below);
        return;
    }
    std::vector<std::pair<double, CALayer*>> sorted;
    for (const auto& layer : sublayers)
        sorted.emplace_back(zOf(*layer), layer.get());
    std::ranges::stable_sort(sorted, {}, &std::pair<double, CALayer*>::first);
    for (const auto& [z, layer] : sorted)
        addLayer(*layer, below);
}

// Null when none of the touched rectangle (points) can be seen.
RenderItem* LayerFlattener::addItem(
    const LayerLook& look, const Place& place, Role role, const CGRect& rect, const CGRect& touched)
{
    const CGAffineTransform toPixels = snapped(place.toPixels, rect.origin());
    const PixelRect bounds = PixelRect::around(toPixels.apply(touched)).intersection(place.clip);
    if (bounds.isEmpty())
        return nullptr;
    RenderItem& item = place.list.items.emplace_back();
    item.key = look.layer.id() * rolesPerLayer + role;
    item.transform = toPixels;
    item.rect = rect;
    item.cornerRadius = look.cornerRadius();
    item.corners = look.layer.maskedCorners_;
    item.bounds = bounds;
    item.clip = neededClip(place.list, place.clipIndex, bounds);
    return &item;
}

LayerFlattener::Place LayerFlattener::clippedToBounds(const LayerLook& look, const Place& place) const
{
    const CGRect& bounds = look.values.bounds;
    const CGAffineTransform toPixels = snapped(place.toPixels, bounds.origin());
    Place inside = place;
    inside.clip = place.clip.intersection(PixelRect::around(toPixels.apply(bounds)));
    const double radius = look.layer.maskedCorners_ ? look.cornerRadius() : 0;
    if (radius > 0 || !toPixels.isUpright()) {
        place.list.clips.push_back({ toPixels, bounds, radius, look.layer.maskedCorners_, place.clipIndex });
        inside.clipIndex = int(place.list.clips.size()) - 1;
    }
    return inside;
}

// Moves the items of a list that need not be composed on their own into the list around it.
void LayerFlattener::spill(RenderList& inner, const Place& place, double opacity) const
{
    const int firstClip = int(place.list.clips.size());
    for (RenderClip clip : inner.clips) {
        clip.parent = clip.parent < 0 ? place.clipIndex : clip.parent + firstClip;
        place.list.clips.push_back(clip);
    }
    for (RenderItem& item : inner.items) {
        item.opacity *= opacity;
        item.clip = item.clip < 0 ? neededClip(place.list, place.clipIndex, item.bounds) : item.clip + firstClip;
        place.list.items.push_back(std::move(item));
    }
}

// At the screen's own scale, what lands within a 64th of a pixel on whole pixels is put there, so that texts and pictures of
// fractional points (10.3333 points at 3 pixels each) keep their sharp pixels. Anything else keeps its fraction.
CGAffineTransform LayerFlattener::snapped(CGAffineTransform t, CGPoint origin) const
{
    constexpr double hair = 1.0 / 64; // pixels
    const double rounding = 1e-9 * scale; // what turning by half circles and back leaves
    const auto isNear = [rounding](double value, double wanted) { return std::abs(value - wanted) <= rounding; };
    if (!isNear(t.b, 0) || !isNear(t.c, 0) || !isNear(std::abs(t.a), scale) || !isNear(std::abs(t.d), scale))
        return t;
    t = { std::copysign(scale, t.a), 0, 0, std::copysign(scale, t.d), t.tx, t.ty };
    const CGPoint corner = t.apply(origin);
    const double dx = std::round(corner.x) - corner.x, dy = std::round(corner.y) - corner.y;
    if (std::abs(dx) <= hair)
        t.tx += dx;
    if (std::abs(dy) <= hair)
        t.ty += dy;
    return t;
}

// Whether an animation of this layer makes another frame due. One that can bring the layer into sight counts out of sight too.
bool LayerFlattener::isUnderWay(const LayerLook& look, const Place& place, double opacity) const
{
    using Reach = RunningAnimation::Reach;
    std::optional<Reach> reach;
    for (const auto& animation : look.layer.animations_->list) {
        if (animation->isUnderWay(time))
            reach = std::max(reach.value_or(Reach::still), animation->reach);
    }
    if (!reach || *reach == Reach::anywhere)
        return reach.has_value();
    if (opacity <= 0)
        return false;
    CGRect area = look.ownArea();
    if (*reach == Reach::turning) {
        const CGPoint a = look.values.anchor();
        const double radius = std::hypot(std::max(std::abs(area.minX() - a.x), std::abs(area.maxX() - a.x)),
            std::max(std::abs(area.minY() - a.y), std::abs(area.maxY() - a.y)));
        area = LayerLook::grown({ a.x, a.y, 0, 0 }, radius);
    }
    return !PixelRect::around(place.toPixels.apply(area)).intersection(place.clip).isEmpty();
}

} // namespace platform
