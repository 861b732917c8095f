#pragma once

#include <memory>

namespace platform {

struct RenderList;

// Keeps the vectors of lists that nobody holds any more, so that a commit allocates nothing once their size has settled.
class RenderListPool {
public:
    static std::shared_ptr<RenderList> take(); // empty
};

} // namespace platform
