#pragma once

#include "Platform/QuartzCore/CALayer.h"
#include "Platform/QuartzCore/RenderList.h"
#include "Platform/QuartzCore/RunningAnimation.h"

#include <memory>
#include <optional>
#include <vector>

namespace platform {

struct LayerPresentation;

// Turns layer trees, as they look at one moment, into a render list. Only what can be seen is walked: nothing below a hidden or
// clear layer, nor below one that clips and lies out of sight.
class LayerFlattener {
public:
    // Seconds on the current clock; pixels a point; the screen's pixels.
    LayerFlattener(double time, double scale, PixelRect screen);

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
    struct Look; // one layer at this moment

    void addLayer(CALayer& layer, const Place& outside);
    void addGrouped(const Look& look, const Place& place, double opacity, bool shadowOfPixels);
    void addContent(const Look& look, const Place& place);
    void addShadow(const Look& look, const Place& place);
    void addBox(const Look& look, const Place& place, bool withBorder);
    void addBorder(const Look& look, const Place& place);
    void addGradient(const Look& look, const Place& place);
    void addPictures(const Look& look, const Place& place, const Place& inside);
    void addPicture(const Look& look, const Place& place, const Place& inside, const std::shared_ptr<const CGImage>& image,
        const CGRect& rect, double opacity, unsigned role);
    void addShape(const Look& look, const Place& place);
    void addSublayers(const Look& look, const Place& inside);

    RenderItem* addItem(const Look& look, const Place& place, unsigned role, const CGRect& rect, const CGRect& touched);
    Place clippedToBounds(const Look& look, const Place& place) const;
    void spill(RenderList& inner, const Place& place, double opacity) const;
    CGAffineTransform snapped(CGAffineTransform toPixels, CGPoint origin) const;
    CGRect contentsRect(const Look& look, const CGImage& image, double pixelsPerPoint) const;
    bool isUnderWay(const Look& look, const Place& place, double opacity) const;

    const double time;
    const double scale;
    const PixelRect screen;
    std::size_t visited = 0;
    bool sawRunning = false;
};

} // namespace platform
