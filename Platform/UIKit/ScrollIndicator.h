#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <memory>

namespace platform {

class CALayer;
class UIView;

// The thin bar that says where one is in a content and how long that is. Comes with the first movement and fades soon after the
// last. A layer in front of the content, so that it is no subview.
class ScrollIndicator final {
public:
    explicit ScrollIndicator(bool vertical)
        : vertical(vertical)
    {
    }
    ~ScrollIndicator();

    struct Range {
        double low = 0, high = 0; // the offsets at the ends
        double offset = 0; // now; may lie beyond them
    };
    // Shows it at its place. `track` is the room that the bar moves in, in the view's coordinates.
    void show(UIView& view, const CGRect& track, const Range& range);
    void hideSoon(); // unless it is shown again before
    void hide();

private:
    CGRect barFrame(const CGRect& track, const Range& range) const;

    std::shared_ptr<CALayer> layer; // null until it is first shown
    bool vertical;
};

} // namespace platform
