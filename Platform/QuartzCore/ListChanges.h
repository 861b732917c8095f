#pragma once

#include "Platform/QuartzCore/RenderList.h"

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
    const std::vector<PixelRect>& changed() const { return changed_; } // may overlap

private:
    void compareLists(const RenderList* before, const RenderList& now, std::uint64_t path);
    void compareItem(
        const RenderList* before, const RenderItem* old, const RenderList& now, const RenderItem& item, std::uint64_t path);
    void compareGroup(const RenderItem* old, const RenderItem& item, std::uint64_t path);
    void addReordered(const RenderList& before, const RenderList& now, const std::vector<int>& places);
    bool touches(const PixelRect& r) const;

    PixelRect screen;
    PixelCache& cache;
    std::vector<PixelRect> changed_; // in painting order but for what went away or changed places, which comes first
};

} // namespace platform
