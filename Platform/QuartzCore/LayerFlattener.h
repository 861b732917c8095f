#pragma once

#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/RenderList.h"
#include "Platform/QuartzCore/RunningAnimation.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

struct LayerLook;

// Turns layer trees, as they look at one moment, into a render list. Only what can be seen is walked: nothing below a hidden or
// clear layer, nor below one that clips and lies out of sight.
class LayerFlattener {
public:
    // Seconds on the current clock; pixels a point; the screen's pixels. Marked layers in sight are displayed, unless the list
    // will not be painted.
    LayerFlattener(double time, double scale, PixelRect screen, bool isPainted);

    std::shared_ptr<const RenderList> flatten(const std::vector<std::shared_ptr<CALayer>>& roots);
    bool sawRunningAnimation() const { return sawRunning; }
    std::size_t visitedLayerCount() const { return visited; }

private:
    // Where a layer's things go.
    struct Place {
        RenderList& list;
        CGAffineTransform toPixels; // unsnapped
        PixelRect clip; // upright
        int clipIndex; // -1 for none
    };
    // The last digit of an item's key, which stands for a layer and one of its parts.
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
    static constexpr std::uint64_t rolesPerLayer = 16;

    void addLayer(CALayer& layer, const Place& outside);
    void addGrouped(const LayerLook& look, const Place& place, double opacity, bool shadowOfPixels);
    void addContent(const LayerLook& look, const Place& place);
    void addShadow(const LayerLook& look, const Place& place);
    void addBox(const LayerLook& look, const Place& place, bool withBorder);
    void addBorder(const LayerLook& look, const Place& place);
    void addGradient(const LayerLook& look, const Place& place);
    void addPictures(const LayerLook& look, const Place& place, const Place& inside);
    void addPicture(const LayerLook& look, const Place& place, const Place& inside, const std::shared_ptr<const CGImage>& image,
        const CGRect& rect, double opacity, Role role);
    void addShape(const LayerLook& look, const Place& place);
    void addScrolled(const LayerLook& look, const Place& inside);
    void addSublayers(const LayerLook& look, const Place& inside);

    RenderItem* addItem(const LayerLook& look, const Place& place, Role role, const CGRect& rect, const CGRect& touched);
    Place clippedToBounds(const LayerLook& look, const Place& place) const;
    void spill(RenderList& inner, const Place& place, double opacity) const;
    CGAffineTransform snapped(CGAffineTransform toPixels, CGPoint origin) const;
    bool isUnderWay(const LayerLook& look, const Place& place, double opacity) const;

    const double time;
    const double scale;
    const PixelRect screen;
    const bool isPainted;
    std::size_t visited = 0;
    bool sawRunning = false;
};

} // namespace platform
