#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/Data.h"

#include <memory>
#include <string>

namespace platform {

class Bundle;

// Whether an image keeps its colours or lends its shape to the tint colour of the view that shows it. Automatic: template when
// the bundle's images.txt says so, else the image's own colours.
enum class UIImageRenderingMode : unsigned char { automatic, alwaysOriginal, alwaysTemplate };

// A picture with its scale and its way of being drawn. Immutable and shared: copies with another mode or scale show the same
// pixels. An SVG stays a drawing and is rendered at the size in which it is shown. Main thread.
class UIImage final {
public:
    // An image of nothing: size 0, draws nothing.
    UIImage() = default;
    // Scale: pixels a point; a drawing's natural unit is one point at scale 1. The name is the resource's, or the address that it
    // was loaded from.
    explicit UIImage(std::shared_ptr<const CGImage> picture, CGFloat scale = 1, std::string name = {});

    // The bundle's NAME.svg, NAME.png or NAME.jpg (or the very file, when the name has an extension). NAME@3x.png and NAME@2x.png
    // stand for finer pixels. Null when there is none, without a console line; null after one line when it cannot be read. Equal
    // names in equal bundles give the same object as long as somebody holds it.
    static std::shared_ptr<const UIImage> named(const std::string& name, const Bundle& bundle);
    // PNG, JPEG or SVG by content. Null after a console line for anything else.
    static std::shared_ptr<const UIImage> fromData(const Data& data, CGFloat scale = 1, const std::string& name = {});

    CGSize size() const; // points
    CGFloat scale() const { return scale_; }
    const std::string& name() const { return name_; }
    UIImageRenderingMode renderingMode() const { return renderingMode_; }
    bool isTemplate() const; // drawn in the tint colour
    std::shared_ptr<const UIImage> withRenderingMode(UIImageRenderingMode mode) const;

    // A copy that is mirrored when it is shown in a right-to-left interface.
    std::shared_ptr<const UIImage> imageFlippedForRightToLeftLayoutDirection() const;
    bool flipsForRightToLeftLayoutDirection() const { return flips; }

    // What to show, null for the image of nothing.
    const std::shared_ptr<const CGImage>& cgImage() const { return picture; }
    const std::shared_ptr<const CGImage>& cgImage(bool rightToLeft) const; // mirrored when it flips

private:
    std::shared_ptr<const CGImage> picture;
    mutable std::shared_ptr<const CGImage> mirrored; // made when it is first asked for
    CGFloat scale_ = 1;
    std::string name_;
    UIImageRenderingMode renderingMode_ = UIImageRenderingMode::automatic;
    bool bundleSaysTemplate = false;
    bool flips = false;
};

} // namespace platform
