#pragma once

#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/CoreGraphics/Text/TextLayout.h"

#include <memory>
#include <string_view>
#include <vector>

namespace platform {

// A laid-out text as an image that is rendered, at the pixels of the screen, when it is first shown: it costs no pixels before
// that, and the compositor's cache may drop them afterwards. Equal layouts share one picture. Main thread.
struct TextPicture {
    std::shared_ptr<const CGImage> image; // null for a text of nothing but blanks
    CGRect rect; // points, relative to the layout's origin; a little larger than the lines, for what hangs over their edges
};

// `paragraph` is what the layout was made from; the rectangle is rounded outwards to whole pixels of that scale (pixels a point).
TextPicture textPicture(const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, CGFloat scale);

// The same from the top in pieces of less than a screen, so that what is far away costs no pixels: one for most texts.
std::vector<TextPicture> textPictures(
    const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, CGFloat scale);

// Only what lies between two distances from the layout's left, points: a part of a line that is wider than what is seen of it.
TextPicture textPicturePart(
    const std::shared_ptr<const TextLayout>& layout, const TextParagraph& paragraph, CGFloat scale, CGFloat from, CGFloat to);

// Where a layout's lines lie, as aligned: from the leftmost start to the rightmost end, rounded outwards to whole pixels.
CGRect linesRect(const TextLayout& layout, CGFloat scale);

// False when a character may come with colours of its own, as emoji do.
bool isPlainlyColored(std::string_view text);

} // namespace platform
