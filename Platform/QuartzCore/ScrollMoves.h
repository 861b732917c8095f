#pragma once

#include "Platform/QuartzCore/RenderList.h"

#include <vector>

namespace platform {

// A stretch of a list's items.
struct ItemRange {
    std::size_t first = 0, end = 0;
    bool holds(std::size_t item) const { return item >= first && item < end; }
};

// What lies inside a clip went so many whole pixels from one list to the next.
struct ScrollMove {
    PixelRect clip;
    int dx = 0, dy = 0;
    ItemRange before, now; // the items inside, in either list
    // Where of the clip's pixels those of a rectangle have gone; empty when they left it.
    PixelRect moved(const PixelRect& r) const { return r.intersection(clip).offsetBy(dx, dy).intersection(clip); }
};

// What scrolled, outer ones only. Ranges do not overlap, clips may.
std::vector<ScrollMove> scrollMoves(const RenderList& before, const RenderList& now);

// What must be painted in a clip whose pixels moved, besides the items that moved: the strip that came into sight, and what does
// not move beneath and in front, where it is now and where its pixels went. What an opaque colour under the moving items covers
// does not count. `places` are the indices in the list before of the items now, -1 for a new one.
std::vector<PixelRect> standingStill(
    const RenderList& before, const RenderList& now, const std::vector<int>& places, const ScrollMove& move);

} // namespace platform
