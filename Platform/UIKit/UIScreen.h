#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/UIGeometry.h"
#include "Platform/UIKit/UITraitCollection.h"

#include <memory>

namespace platform {

// The screen in its present orientation. The host describes it; windows fill it.
class UIScreen final : public NSObject {
public:
    static UIScreen& main();

    CGRect bounds() const { return { 0, 0, size.width, size.height }; } // points
    CGFloat scale() const; // pixels a point, the traits' display scale
    const UIEdgeInsets& safeAreaInsets() const { return safeArea; }
    const UITraitCollection& traitCollection() const { return *traits; }
    const std::shared_ptr<const UITraitCollection>& sharedTraits() const { return traits; }

    // Host side. A new size or safe area resizes the windows at once; with a duration (seconds) the change is animated, as a
    // turn of the device is.
    void setGeometry(CGSize size, const UIEdgeInsets& safeArea, double duration = 0);
    // Appearance, direction, scale, kind of device: every view in a window is told what changed.
    void setTraitCollection(const UITraitCollection& traits);

private:
    UIScreen();

    CGSize size { 393, 852 };
    UIEdgeInsets safeArea;
    std::shared_ptr<const UITraitCollection> traits;
};

} // namespace platform
