#pragma once

#include "Platform/QuartzCore/RenderList.h"

#include <functional>
#include <memory>

namespace platform {

// The blur of what lies behind an item: reduced to a quarter of the size (less for a small radius), blurred there by three boxes
// in each direction, which is close to a gaussian, and scaled up again while it is drawn. It looks at no pixel outside the item's
// bounds: what lies beside it does not bleed in, and the outermost pixels count for those beyond them.
class BackdropBlur {
public:
    BackdropBlur(const RenderItem& item, const RenderBackdrop& backdrop, const PixelRect& screen);

    // `paintBelow` fills a bitmap with what lies behind that rectangle. Null without memory.
    using PaintBelow = std::function<void(Bitmap& target, const PixelRect& area)>;
    std::shared_ptr<const Bitmap> make(const PaintBelow& paintBelow) const;
    CGRect device() const; // where the small picture lies, device pixels

private:
    void reduce(const PaintBelow& paintBelow, Bitmap& sums) const;

    double saturation;
    int factor = 1; // pixels a cell
    int boxes[3] = { 0, 0, 0 }; // radii, cells
    PixelRect source; // the pixels that it is made of
    int width = 0, height = 0; // cells
};

} // namespace platform
