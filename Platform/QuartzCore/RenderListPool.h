#pragma once

#include "Platform/QuartzCore/RenderList.h"

#include <memory>

namespace platform {

// Keeps the vectors of lists that nobody holds any more, so that a commit allocates next to nothing once their sizes have
// settled. Main thread.
class RenderListPool {
public:
    struct GiveBack {
        void operator()(RenderList* list) const;
    };
    using Owned = std::unique_ptr<RenderList, GiveBack>;

    static Owned take(const CGAffineTransform& toPixels); // an empty list
};

} // namespace platform
