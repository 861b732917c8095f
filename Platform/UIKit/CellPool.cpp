#include "Platform/UIKit/CellPool.h"

#include "Platform/Foundation/NSLog.h"

namespace platform {

namespace {

constexpr std::size_t mostWaiting = 4; // cells of one kind

} // namespace

std::shared_ptr<ReusableCell> CellPool::dequeue(const std::string& identifier)
{
    if (preferred && preferred->reuseIdentifier() == identifier)
        return std::exchange(preferred, nullptr);
    auto& cells = waiting[identifier];
    if (!cells.empty()) {
        auto cell = cells.back();
        cells.pop_back();
        cell->prepareForReuse();
        return cell;
    }
    const auto factory = factories.find(identifier);
    if (factory == factories.end()) {
        NSLog("no cell for \"" + identifier + "\": nothing is registered under that identifier");
        return nullptr;
    }
    return factory->second();
}

void CellPool::recycle(const std::shared_ptr<ReusableCell>& cell)
{
    auto& cells = waiting[cell->reuseIdentifier()];
    if (cell->reuseIdentifier().empty() || cells.size() >= mostWaiting) {
        cell->removeFromSuperview();
        return;
    }
    cell->setHidden(true);
    cells.push_back(cell);
}

void CellPool::keep(const std::string& identity, const std::string& content, const std::shared_ptr<ReusableCell>& cell)
{
    if (cell)
        kept.emplace(identity, Kept { content, cell });
}

std::shared_ptr<ReusableCell> CellPool::cellFor(const std::string& identity, const std::string& content, const Factory& fill)
{
    if (const auto found = kept.find(identity); found != kept.end()) {
        const Kept before = found->second;
        kept.erase(found);
        if (!content.empty() && content == before.content)
            return before.cell;
        preferred = before.cell;
    }
    std::shared_ptr<ReusableCell> cell;
    UIView::performWithoutAnimation([&] { cell = fill(); });
    if (const auto unused = std::exchange(preferred, nullptr)) // another kind of cell is wanted now
        recycle(unused);
    return cell;
}

void CellPool::recycleKept()
{
    for (auto& [identity, before] : std::exchange(kept, {}))
        recycle(before.cell);
}

} // namespace platform
