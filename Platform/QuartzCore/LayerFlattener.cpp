#include "Platform/QuartzCore/LayerFlattener.h"

#include "Platform/QuartzCore/AnimationTimeline.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/QuartzCore/LayerPresentation.h"
#include "Platform/QuartzCore/RenderListPool.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// The last digit of an item's key.
enum Role : unsigned {
    shadowRole,
    backdropRole,
    boxRole,
    gradientRole,
    backingRole,
    oldContentsRole,
    contentsRole,
    shapeRole,
    borderRole,
    groupRole,
};
constexpr std::uint64_t rolesPerLayer = 16;

constexpr double gaussianReach = 3; // sigmas; what lies further out is under a 255th
constexpr double miterLimit = 10; // the platform's and the drawing library's

bool isSeen(const std::optional<CGColor>& color) { return color && !color->isClear(); }

CGRect grown(const CGRect& rect, double by) { return rect.insetBy(-by, -by); }

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

std::vector<double> locationsFor(const GradientValues& gradient)
{
    if (!gradient.locations.empty())
        return gradient.locations;
    std::vector<double> even(gradient.colors.size());
    for (std::size_t i = 0; i < even.size(); ++i)
        even[i] = double(i) / double(std::max<std::size_t>(even.size(), 2) - 1);
    return even;
}

} // namespace

struct LayerFlattener::Look {
    CALayer& layer;
    const LayerValues& values;
    const LayerPresentation* moment; // null: the model shows

    const GradientValues& gradient() const
    {
        return moment ? moment->gradient : static_cast<const CAGradientLayer&>(layer).gradientValues();
    }
    const ShapeValues& shape() const { return moment ? moment->shape : static_cast<const CAShapeLayer&>(layer).shapeValues(); }
    double cornerRadius() const
    {
        return std::clamp(values.cornerRadius, 0.0, std::max(std::min(values.bounds.width, values.bounds.height) / 2, 0.0));
    }
    bool castsShadow() const { return values.shadowOpacity > 0 && !values.shadowColor.isClear() && !layer.masksToBounds(); }
    // Whether the layer's own rectangle hides what is behind it, so that its shadow is the rectangle's.
    bool isOpaqueBox() const
    {
        if (values.backgroundColor && values.backgroundColor->isOpaque())
            return true;
        if (layer.kind() != CALayer::Kind::gradient)
            return false;
        const auto& colors = gradient().colors;
        return !colors.empty() && std::ranges::all_of(colors, &CGColor::isOpaque);
    }
    // The area of its own things but for the shadow, in points.
    CGRect ownArea() const
    {
        if (layer.kind() != CALayer::Kind::shape || !shape().path)
            return values.bounds;
        return values.bounds.unionWith(shapeArea());
    }
    CGRect shapeArea() const
    {
        const auto join = static_cast<const CAShapeLayer&>(layer).lineJoin();
        const double half = isSeen(shape().strokeColor) ? std::max(shape().lineWidth, 0.0) / 2 : 0;
        return grown(shape().path->boundingBox(), half * (join == CGLineJoin::miter ? miterLimit : 1.5)); // 1.5: square caps
    }
};

LayerFlattener::LayerFlattener(double moment, double pixelsPerPoint, PixelRect screenPixels)
    : time(moment)
    , scale(pixelsPerPoint)
    , screen(screenPixels)
{
}

std::shared_ptr<const RenderList> LayerFlattener::flatten(const std::vector<std::shared_ptr<CALayer>>& roots)
{
    auto list = RenderListPool::take();
    list->toPixels = CGAffineTransform::scale(scale, scale);
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
    const Look look { layer, moment ? moment->layer : layer.values_, moment ? &*moment : nullptr };
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

void LayerFlattener::addGrouped(const Look& look, const Place& place, double opacity, bool shadowOfPixels)
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
        shadowArea = grown({ shift.x, shift.y, 0, 0 }, gaussianReach * values.shadowRadius * scaleOf(t));
        const auto around = PixelRect::around({ place.clip.x - shadowArea.maxX(), place.clip.y - shadowArea.maxY(),
            place.clip.width + shadowArea.width, place.clip.height + shadowArea.height });
        casters = place.clip.unionWith(around);
    }
    const auto content = RenderListPool::take();
    content->toPixels = place.list.toPixels;
    addContent(look, { *content, place.toPixels, casters, -1 });
    PixelRect bounds = unionOf(content->items);
    if (look.layer.mask_) {
        const auto mask = RenderListPool::take();
        mask->toPixels = place.list.toPixels;
        addLayer(*look.layer.mask_, { *mask, place.toPixels, place.clip, -1 });
        bounds = bounds.intersection(unionOf(mask->items));
        group.mask = mask;
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
    group.content = content;
    RenderItem& item = place.list.items.emplace_back();
    item.key = look.layer.id() * rolesPerLayer + groupRole;
    item.transform = place.toPixels;
    item.rect = values.bounds;
    item.bounds = bounds;
    item.clip = neededClip(place.list, place.clipIndex, bounds);
    item.opacity = opacity;
    item.content = std::move(group);
}

void LayerFlattener::addContent(const Look& look, const Place& place)
{
    const LayerValues& values = look.values;
    CALayer& layer = look.layer;
    const bool hasBorder = values.borderWidth > 0 && isSeen(values.borderColor);
    const bool borderIsOnTop = hasBorder
        && (!layer.sublayers_.empty() || values.contents || layer.drawsContent_ || layer.kind() != CALayer::Kind::plain);
    if (look.castsShadow() && (values.shadowPath || look.isOpaqueBox()))
        addShadow(look, place);
    if (values.backdropBlurRadius > 0) {
        if (RenderItem* item = addItem(look, place, backdropRole, values.bounds, values.bounds))
            item->content = RenderBackdrop { values.backdropBlurRadius, values.backdropSaturation };
    }
    addBox(look, place, hasBorder && !borderIsOnTop);
    if (layer.kind() == CALayer::Kind::gradient)
        addGradient(look, place);
    const Place inside = layer.masksToBounds_ ? clippedToBounds(look, place) : place;
    addPictures(look, place, inside);
    if (layer.kind() == CALayer::Kind::shape)
        addShape(look, inside);
    if (!layer.sublayers_.empty() && !inside.clip.isEmpty())
        addSublayers(look, inside);
    if (borderIsOnTop)
        addBorder(look, place);
}

void LayerFlattener::addShadow(const Look& look, const Place& place)
{
    const LayerValues& values = look.values;
    const CGRect caster = values.shadowPath ? values.shadowPath->boundingBox() : values.bounds;
    const CGRect thrown
        = grown(caster.offsetBy(values.shadowOffset.width, values.shadowOffset.height), gaussianReach * values.shadowRadius);
    RenderItem* item = addItem(look, place, shadowRole, caster, thrown);
    if (!item)
        return;
    RenderShadow shadow { values.shadowColor, values.shadowRadius, values.shadowOffset, values.shadowPath };
    shadow.color.alpha *= std::min(values.shadowOpacity, 1.0);
    if (values.shadowPath)
        item->cornerRadius = 0;
    item->content = std::move(shadow);
}

void LayerFlattener::addBox(const Look& look, const Place& place, bool withBorder)
{
    const LayerValues& values = look.values;
    if (!isSeen(values.backgroundColor) && !withBorder)
        return;
    RenderItem* item = addItem(look, place, boxRole, values.bounds, values.bounds);
    if (!item)
        return;
    auto& box = std::get<RenderBox>(item->content);
    if (isSeen(values.backgroundColor))
        box.fill = values.backgroundColor;
    if (withBorder) {
        box.border = values.borderColor;
        box.borderWidth = values.borderWidth;
    }
}

void LayerFlattener::addBorder(const Look& look, const Place& place)
{
    if (RenderItem* item = addItem(look, place, borderRole, look.values.bounds, look.values.bounds))
        item->content = RenderBox { std::nullopt, look.values.borderColor, look.values.borderWidth };
}

void LayerFlattener::addGradient(const Look& look, const Place& place)
{
    const GradientValues& values = look.gradient();
    if (std::ranges::all_of(values.colors, &CGColor::isClear))
        return;
    RenderItem* item = addItem(look, place, gradientRole, look.values.bounds, look.values.bounds);
    if (!item)
        return;
    RenderGradient gradient { values.colors, locationsFor(values), values.startPoint, values.endPoint };
    const std::size_t count = std::min(gradient.colors.size(), gradient.locations.size());
    gradient.colors.resize(count);
    gradient.locations.resize(count);
    item->content = std::move(gradient);
}

void LayerFlattener::addPictures(const Look& look, const Place& place, const Place& inside)
{
    CALayer& layer = look.layer;
    const LayerValues& values = look.values;
    if (layer.drawsContent_) {
        const bool isInSight = !PixelRect::around(place.toPixels.apply(values.bounds)).intersection(inside.clip).isEmpty();
        if (isInSight && (layer.needsDisplay_ || layer.backingScale != scale))
            layer.displayIfNeeded(scale); // came into sight after the display pass
        if (layer.backing) {
            // At its own size pixel by pixel; while an animation changes the size, as the gravity says.
            const CGRect& bounds = values.bounds;
            const CGRect rect = bounds.size() == layer.values_.bounds.size()
                ? CGRect { bounds.x, bounds.y, layer.backing->width() / scale, layer.backing->height() / scale }
                : contentsRect(look, *layer.backing, scale);
            addPicture(look, place, inside, layer.backing, rect, 1, backingRole);
        }
    }
    if (!values.contents && !(look.moment && look.moment->oldContents))
        return;
    double newShare = 1;
    if (look.moment && look.moment->contentsMix < 1) {
        const auto& old = look.moment->oldContents;
        newShare = look.moment->contentsMix;
        // Under an opaque picture the old one stays whole, else the background would shine through both; a clear one fades out.
        const bool covered = values.contents && values.contents->isOpaque() && old && old->isOpaque();
        if (old)
            addPicture(look, place, inside, old, contentsRect(look, *old, layer.contentsScale_), covered ? 1 : 1 - newShare,
                oldContentsRole);
    }
    if (values.contents)
        addPicture(look, place, inside, values.contents, contentsRect(look, *values.contents, layer.contentsScale_), newShare,
            contentsRole);
}

// A corner radius cuts the picture only where the layer clips; one that fills the bounds then takes the radius instead of the
// clip.
void LayerFlattener::addPicture(const Look& look, const Place& place, const Place& inside,
    const std::shared_ptr<const CGImage>& image, const CGRect& rect, double opacity, unsigned role)
{
    if (opacity <= 0)
        return;
    const bool fills = look.layer.masksToBounds_ && rect == look.values.bounds;
    RenderItem* item = addItem(look, fills ? place : inside, role, rect, rect);
    if (!item)
        return;
    if (!fills)
        item->cornerRadius = 0;
    item->opacity = opacity;
    item->content = RenderImage { image, role == backingRole ? std::nullopt : look.values.contentsTint };
}

void LayerFlattener::addShape(const Look& look, const Place& place)
{
    const ShapeValues& values = look.shape();
    const auto& layer = static_cast<const CAShapeLayer&>(look.layer);
    const bool strokes = isSeen(values.strokeColor) && values.lineWidth > 0 && values.strokeEnd > values.strokeStart;
    if (!values.path || (!strokes && !isSeen(values.fillColor)))
        return;
    const CGRect area = look.shapeArea();
    RenderItem* item = addItem(look, place, shapeRole, area, area);
    if (!item)
        return;
    item->cornerRadius = 0;
    RenderShape shape { values.path, std::nullopt, std::nullopt, values.lineWidth, std::max(values.strokeStart, 0.0),
        std::min(values.strokeEnd, 1.0), layer.lineCap(), layer.lineJoin() };
    if (isSeen(values.fillColor))
        shape.fill = values.fillColor;
    if (strokes)
        shape.stroke = values.strokeColor;
    item->content = std::move(shape);
}

void LayerFlattener::addSublayers(const Look& look, const Place& inside)
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
    const Look& look, const Place& place, unsigned role, const CGRect& rect, const CGRect& touched)
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

LayerFlattener::Place LayerFlattener::clippedToBounds(const Look& look, const Place& place) const
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

CGRect LayerFlattener::contentsRect(const Look& look, const CGImage& image, double pixelsPerPoint) const
{
    using Gravity = CALayerContentsGravity;
    const CGRect& box = look.values.bounds;
    const Gravity gravity = look.layer.contentsGravity_;
    CGSize size { image.width() / pixelsPerPoint, image.height() / pixelsPerPoint };
    if (gravity == Gravity::resize || size.isEmpty())
        return box;
    if (gravity == Gravity::resizeAspect || gravity == Gravity::resizeAspectFill) {
        const double across = box.width / size.width, down = box.height / size.height;
        const double factor = gravity == Gravity::resizeAspect ? std::min(across, down) : std::max(across, down);
        size = { size.width * factor, size.height * factor };
    }
    // 0 at the left or top, 1 at the right or bottom.
    double across = 0.5, down = 0.5;
    if (gravity == Gravity::left || gravity == Gravity::topLeft || gravity == Gravity::bottomLeft)
        across = 0;
    else if (gravity == Gravity::right || gravity == Gravity::topRight || gravity == Gravity::bottomRight)
        across = 1;
    if (gravity == Gravity::top || gravity == Gravity::topLeft || gravity == Gravity::topRight)
        down = 0;
    else if (gravity == Gravity::bottom || gravity == Gravity::bottomLeft || gravity == Gravity::bottomRight)
        down = 1;
    CGRect rect { box.x + (box.width - size.width) * across, box.y + (box.height - size.height) * down, size.width, size.height };
    if (gravity != Gravity::resizeAspect && gravity != Gravity::resizeAspectFill) { // unscaled: keep its pixels whole
        rect.x = box.x + std::round((rect.x - box.x) * scale) / scale;
        rect.y = box.y + std::round((rect.y - box.y) * scale) / scale;
    }
    return rect;
}

// Whether an animation of this layer makes another frame due. One that can bring the layer into sight counts out of sight too.
bool LayerFlattener::isUnderWay(const Look& look, const Place& place, double opacity) const
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
        area = grown({ a.x, a.y, 0, 0 }, radius);
    }
    return !PixelRect::around(place.toPixels.apply(area)).intersection(place.clip).isEmpty();
}

} // namespace platform
