#include "Platform/QuartzCore/RenderListPool.h"

#include <vector>

namespace platform {

namespace {

constexpr std::size_t kept = 24; // two frames of a screen with a dozen groups

std::vector<std::unique_ptr<RenderList>>& freeLists()
{
    static auto& lists = *new std::vector<std::unique_ptr<RenderList>>; // never destroyed: static objects may hold a list
    return lists;
}

} // namespace

// Lets go of pictures at once; only the vectors' memory stays.
void RenderListPool::GiveBack::operator()(RenderList* list) const
{
    std::unique_ptr<RenderList> owned(list);
    owned->items.clear();
    owned->clips.clear();
    owned->scrolls.clear();
    if (freeLists().size() < kept)
        freeLists().push_back(std::move(owned));
}

RenderListPool::Owned RenderListPool::take(const CGAffineTransform& toPixels)
{
    auto& lists = freeLists();
    Owned list(lists.empty() ? new RenderList : lists.back().release());
    if (!lists.empty())
        lists.pop_back();
    list->toPixels = toPixels;
    return list;
}

} // namespace platform
