#include "Platform/QuartzCore/RenderListPool.h"

#include "Platform/QuartzCore/RenderList.h"

#include <vector>

namespace platform {

namespace {

constexpr std::size_t kept = 24; // two frames of a screen with a dozen groups

std::vector<std::unique_ptr<RenderList>>& freeLists()
{
    static auto& lists = *new std::vector<std::unique_ptr<RenderList>>; // never destroyed: static objects may hold a list
    return lists;
}

// Lets go of pictures at once; only the vectors' memory stays.
void giveBack(RenderList* list)
{
    std::unique_ptr<RenderList> owned(list);
    owned->items.clear();
    owned->clips.clear();
    if (freeLists().size() < kept)
        freeLists().push_back(std::move(owned));
}

} // namespace

std::shared_ptr<RenderList> RenderListPool::take()
{
    auto& lists = freeLists();
    if (lists.empty())
        return { new RenderList, giveBack };
    RenderList* list = lists.back().release();
    lists.pop_back();
    return { list, giveBack };
}

} // namespace platform
