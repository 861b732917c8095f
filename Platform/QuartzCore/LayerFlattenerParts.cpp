#include "Platform/QuartzCore/LayerFlattener.h"

#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/QuartzCore/LayerLook.h"
#include "Platform/QuartzCore/LayerPresentation.h"

#include <algorithm>

// What one layer itself shows, part by part from back to front.

namespace platform {

namespace {

bool isSeen(const std::optional<CGColor>& color) { return color && !color->isClear(); }

// The corner radius of a path that is nothing but that rectangle, whose shadow is exact and shared by all sizes.
std::optional<double> boxRadius(const CGPath& path, const CGRect& rect)
{
    const auto& elements = path.elements();
    if (elements.empty() || elements.front().verb != CGPath::Verb::move)
        return {};
    const double radius = elements.front().points[2].x - rect.x;
    return path == *CGPath::roundedRect(rect, radius) ? std::optional(radius) : std::nullopt;
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

void LayerFlattener::addContent(const LayerLook& look, const Place& place)
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
        addScrolled(look, inside);
    if (borderIsOnTop)
        addBorder(look, place);
}

// Notes which items are the layer's insides, so that the compositor can move their pixels when its bounds origin changes.
void LayerFlattener::addScrolled(const LayerLook& look, const Place& inside)
{
    if (!look.layer.masksToBounds_ || inside.clipIndex >= 0)
        return addSublayers(look, inside);
    const std::size_t first = inside.list.items.size(), index = inside.list.scrolls.size();
    const CGPoint origin = look.values.sublayersToBounds().then(inside.toPixels).apply(CGPoint {});
    inside.list.scrolls.push_back({ look.layer.id(), inside.clip, origin, first, first });
    addSublayers(look, inside);
    inside.list.scrolls[index].end = inside.list.items.size();
    if (inside.list.items.size() == first)
        inside.list.scrolls.resize(index);
}

void LayerFlattener::addShadow(const LayerLook& look, const Place& place)
{
    const LayerValues& values = look.values;
    const CGRect caster = values.shadowPath ? values.shadowPath->boundingBox() : values.bounds;
    const CGRect thrown = LayerLook::grown(
        caster.offsetBy(values.shadowOffset.width, values.shadowOffset.height), LayerLook::gaussianReach * values.shadowRadius);
    RenderItem* item = caster.isEmpty() ? nullptr : addItem(look, place, shadowRole, caster, thrown);
    if (!item)
        return;
    RenderShadow shadow { values.shadowColor, values.shadowRadius, values.shadowOffset, values.shadowPath };
    shadow.color.alpha *= std::min(values.shadowOpacity, 1.0);
    if (values.shadowPath)
        item->cornerRadius = 0;
    if (const auto radius = values.shadowPath ? boxRadius(*values.shadowPath, caster) : std::nullopt) {
        shadow.path = nullptr;
        item->cornerRadius = *radius;
        item->corners = allCorners;
    }
    item->content = std::move(shadow);
}

void LayerFlattener::addBox(const LayerLook& look, const Place& place, bool withBorder)
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

void LayerFlattener::addBorder(const LayerLook& look, const Place& place)
{
    if (RenderItem* item = addItem(look, place, borderRole, look.values.bounds, look.values.bounds))
        item->content = RenderBox { std::nullopt, look.values.borderColor, look.values.borderWidth };
}

void LayerFlattener::addGradient(const LayerLook& look, const Place& place)
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

void LayerFlattener::addPictures(const LayerLook& look, const Place& place, const Place& inside)
{
    CALayer& layer = look.layer;
    const LayerValues& values = look.values;
    if (layer.drawsContent_) {
        const bool isInSight = !PixelRect::around(place.toPixels.apply(values.bounds)).intersection(inside.clip).isEmpty();
        if (isInSight && isPainted && (layer.needsDisplay_ || layer.backingScale != scale))
            layer.displayIfNeeded(scale); // came into sight after the display pass
        if (layer.backing) {
            // At its own size pixel by pixel; while an animation changes the size, as the gravity says.
            const CGRect& bounds = values.bounds;
            const CGRect rect = bounds.size() == layer.values_.bounds.size()
                ? CGRect { bounds.x, bounds.y, layer.backing->width() / scale, layer.backing->height() / scale }
                : look.contentsRect(*layer.backing, scale, scale);
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
            addPicture(look, place, inside, old, look.contentsRect(*old, layer.contentsScale_, scale), covered ? 1 : 1 - newShare,
                oldContentsRole);
    }
    if (values.contents)
        addPicture(look, place, inside, values.contents, look.contentsRect(*values.contents, layer.contentsScale_, scale),
            newShare, contentsRole);
}

// A corner radius cuts the picture only where the layer clips; one that fills the bounds then takes the radius instead of the
// clip.
void LayerFlattener::addPicture(const LayerLook& look, const Place& place, const Place& inside,
    const std::shared_ptr<const CGImage>& image, const CGRect& rect, double opacity, Role role)
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

void LayerFlattener::addShape(const LayerLook& look, const Place& place)
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

} // namespace platform
