#pragma once

#include "Platform/QuartzCore/ScrollMoves.h"

namespace platform {

// Whether an item shows the same pixels in two lists, but for what a group holds.
bool looksAlike(const RenderList& before, const RenderItem& old, const RenderList& now, const RenderItem& item);
// Whether it shows, with all that a group holds, the same pixels after a move as far as the clip shows them. Whatever a whole
// move of the pixels could round otherwise (turned things, gradients, parts of shapes) does not.
bool looksAlikeMoved(
    const RenderList& before, const RenderItem& old, const RenderList& now, const RenderItem& item, const ScrollMove& move);

bool holdsBackdrop(const RenderList& list);

} // namespace platform
