#pragma once

#include "Platform/QuartzCore/ScrollMoves.h"

#include <vector>

namespace platform {

class PixelCache;

// Finds what differs between two lists and forgets the kept pictures of composed pixels (blurred backdrops, shadows of groups)
// that no longer fit.
class ListChanges {
public:
    ListChanges(const PixelRect& screen, PixelCache& cache);
    // Null before: everything is new.
    void compare(const RenderList* before, const RenderList& now);
    // Places whose pixels are to be moved first; they do not overlap.
    const std::vector<ScrollMove>& moves() const { return moves_; }
    const std::vector<PixelRect>& changed() const { return changed_; } // after the moves; may overlap

private:
    void compareLists(const RenderList* before, const RenderList& now, std::uint64_t path);
    void compareItem(
        const RenderList* before, const RenderItem* old, const RenderList& now, const RenderItem& item, std::uint64_t path);
    void compareGroup(const RenderItem* old, const RenderItem& item, std::uint64_t path);
    void compareMoved(const RenderList* before, const RenderItem* old, const RenderList& now, const RenderItem& item,
        const ScrollMove* move, const ScrollMove* oldMove);
    void findMoves(const RenderList& before, const RenderList& now, const std::vector<int>& places);
    void addBefore(const RenderItem& old, const ScrollMove* move);
    const ScrollMove* moveOf(std::size_t item, ItemRange ScrollMove::*range) const; // null for an item outside all
    void addReordered(const RenderList& before, const RenderList& now, const std::vector<int>& places);
    bool touches(const PixelRect& r) const;

    PixelRect screen;
    PixelCache& cache;
    std::vector<ScrollMove> moves_;
    std::vector<PixelRect> moved_; // the clips of the moves so far in painting order
    std::vector<PixelRect> changed_; // in painting order but for what went away or changed places, which comes first
};

} // namespace platform
