#pragma once

#include "Platform/CoreGraphics/Text/TextLayoutImpl.h"

namespace platform {

// Fills the layout: breaks the paragraph into lines, truncates the last, orders each line's runs for the eye, and aligns.
// See TextLayout::make for the parameters.
void buildLines(TextLayout::Impl& layout, const TextParagraph& paragraph, double width, double scale, double maximumHeight);

} // namespace platform
