#pragma once

namespace platform {

// A fixed drawing colour: components from 0 to 1 in sRGB, not premultiplied.
struct CGColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;
    bool operator==(const CGColor&) const = default;
    bool isOpaque() const { return alpha >= 1; }
    bool isClear() const { return alpha <= 0; }
};

} // namespace platform
