#pragma once

#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/Text/TextLayout.h"

#include <memory>
#include <string_view>

namespace platform {

// A laid-out text as a picture that is rendered, at the pixels of the screen, when it is first shown: it costs no pixels before
// that, and the compositor's cache may drop them afterwards. Equal layouts share one picture. Main thread.
struct TextDrawing {
    std::shared_ptr<const CGImage> picture;
    CGRect rect; // points, relative to the layout's origin; a little larger than the layout, for what hangs over its edges
};

enum class TextColoring : unsigned char {
    ownColors, // the paragraph's colours
    coverage, // one byte a pixel: whoever shows it tints it
};

// `paragraph` is what the layout was made from; the rectangle is rounded outwards to whole pixels of that scale (pixels a point).
TextDrawing textDrawing(
    const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, TextColoring coloring, CGFloat scale);

// Where a layout's lines lie, as aligned: from the leftmost start to the rightmost end, rounded outwards to whole pixels.
CGRect linesRect(const TextLayout& layout, CGFloat scale);

// False when a character may come as a picture with colours of its own, an emoji for instance.
bool isPlainlyColored(std::string_view text);

} // namespace platform
