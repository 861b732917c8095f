#pragma once

#include "Platform/CoreGraphics/Text/TextLayout.h"
#include "Platform/QuartzCore/CALayer.h"

#include <memory>
#include <optional>

namespace platform {

// A line of text that is only to be read, in a layer: aligned in its rectangle, centred vertically, cut with an ellipsis where it
// finds no room. Points in the parent's coordinates. Main thread.
class RestingLine {
public:
    explicit RestingLine(CALayer& parent);
    ~RestingLine() { layer->removeFromSuperlayer(); }
    RestingLine(const RestingLine&) = delete;
    RestingLine& operator=(const RestingLine&) = delete;

    // The paragraph is said to stand left, centred or right. With a tint its colours do not matter.
    void show(TextParagraph paragraph, std::optional<CGColor> tint, const CGRect& rect, CGFloat scale /* pixels a point */);
    void hide() { layer->setContents(nullptr); }

private:
    const std::shared_ptr<CALayer> layer = make<CALayer>();
};

} // namespace platform
