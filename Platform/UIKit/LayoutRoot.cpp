#include "Platform/UIKit/LayoutRoot.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr double nearlyEqual = 1e-9; // points

template <typename Function>
void forEachItem(UIView& view, const std::vector<std::shared_ptr<UILayoutGuide>>& guides,
    const std::shared_ptr<UILayoutGuide>& safeArea, const Function& function)
{
    function(static_cast<UILayoutItem&>(view));
    for (const auto& guide : guides)
        function(static_cast<UILayoutItem&>(*guide));
    if (safeArea)
        function(static_cast<UILayoutItem&>(*safeArea));
}

int openPasses = 0;

// Roots with conflicts to tell of.
std::vector<LayoutRoot*>& disputed()
{
    static std::vector<LayoutRoot*> roots;
    return roots;
}

} // namespace

LayoutRoot::Pass::Pass() { ++openPasses; }

LayoutRoot::Pass::~Pass()
{
    if (--openPasses > 0)
        return;
    for (LayoutRoot* each : std::exchange(disputed(), {}))
        each->reportLasting();
}

LayoutRoot::LayoutRoot(UIView& rootView, Use purpose)
    : root(rootView)
    , use(purpose)
{
    solver.onConflict = [this](const LayoutConflict& conflict) {
        if (openPasses == 0)
            return report(conflict);
        if (conflicts.empty())
            disputed().push_back(this);
        conflicts.push_back(conflict);
    };
    entry(root, nullptr).uses = 1; // never swept
    rootSizeChanged();
    enqueueSubtree(root);
}

LayoutRoot::~LayoutRoot() { std::erase(disputed(), this); }

void LayoutRoot::enqueueSubtree(UIView& view)
{
    for (const auto& constraint : view.heldConstraints)
        enqueue(*constraint);
    if (view.needsUpdateConstraints)
        updateConstraintsOf(view);
    for (const auto& child : view.subviews_)
        if (!child->layoutRootFlag)
            enqueueSubtree(*child);
}

void LayoutRoot::subtreeChanged(UIView& view)
{
    forEachItem(view, view.layoutGuides, view.safeAreaGuide, [this](const UILayoutItem& item) {
        for (NSLayoutConstraint* constraint : item.constraintsNaming())
            if (records.contains(constraint))
                enqueue(*constraint);
    });
    for (const auto& child : view.subviews_)
        if (!child->layoutRootFlag)
            subtreeChanged(*child);
}

void LayoutRoot::forgetSubtree(UIView& view)
{
    for (const auto& constraint : view.heldConstraints)
        remove(*constraint);
    for (const auto& child : view.subviews_)
        if (!child->layoutRootFlag)
            forgetSubtree(*child);
        else
            forget(*child);
    forEachItem(view, view.layoutGuides, view.safeAreaGuide, [this](const UILayoutItem& item) { forget(item); });
}

void LayoutRoot::rootSizeChanged()
{
    const CGSize size = root.bounds().size();
    rootSize = { size.width, size.height };
    rootPriority = { LayoutPriority::required, LayoutPriority::required };
    makeDirty(*find(&root));
}

void LayoutRoot::updateConstraintsOf(UIView& view)
{
    updates.push_back(weak(&view));
    noteChange();
}

bool LayoutRoot::needsSolve() const { return !queue.empty() || !dirtyItems.empty() || !updates.empty() || solver.needsSolve(); }

void LayoutRoot::solve()
{
    if (solving)
        return;
    solving = true;
    runUpdates();
    ConstraintKeeper::judgeWaiting(root);
    for (std::size_t i = 0; i < queue.size(); ++i) {
        const auto found = records.find(queue[i]);
        if (found == records.end() || !std::exchange(found->second->queued, false))
            continue;
        judge(*found->first, *found->second);
    }
    queue.clear();
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < dirtyItems.size(); ++i)
            if (Entry* dirty = find(dirtyItems[i]); dirty && dirty->dirty)
                refresh(*dirty);
        dirtyItems.clear();
        sweep();
        if (!solver.needsSolve())
            break;
        solver.solve();
        markChanged();
        // Heights that depend on widths move y, which may feed x once more; a third time would be a circle.
        if (!measureHeights())
            break;
    }
    if (solver.needsSolve()) {
        solver.solve();
        markChanged();
    }
    solving = false;
}

std::optional<CGRect> LayoutRoot::frame(const UILayoutItem& item)
{
    Entry* found = find(&item);
    if (!found)
        return {};
    const UIView* around = found->view ? found->view->superview() : item.layoutView();
    const Entry* surrounding = around ? find(around) : nullptr;
    const CGPoint inherited = surrounding ? surrounding->residue : CGPoint {};
    // A hair more than a half still counts as a half, so that the solver's last digit decides nothing.
    const auto toPixel = [pixels = scale()](double value) { return std::floor(value * pixels + 0.5 + 1e-6) / pixels; };
    const auto value = [&](std::size_t index) { return solver.value(found->variables[index]); };
    const double left = inherited.x + value(0), top = inherited.y + value(1);
    const double x = toPixel(left), y = toPixel(top);
    found->residue = { left - x, top - y };
    return CGRect { x, y, std::max(0.0, toPixel(left + value(2)) - x), std::max(0.0, toPixel(top + value(3)) - y) };
}

CGSize LayoutRoot::fittingSize(CGSize target, UILayoutPriority horizontal, UILayoutPriority vertical)
{
    if (solving)
        return root.bounds().size();
    rootSize = { target.width, target.height };
    rootPriority = { horizontal, vertical };
    makeDirty(*find(&root));
    solve();
    const Entry& own = *find(&root);
    const auto up = [pixels = scale()](double value) { return std::max(0.0, std::ceil(value * pixels - 1e-6) / pixels); };
    const CGSize result { up(solver.value(own.variables[2])), up(solver.value(own.variables[3])) };
    rootSizeChanged();
    return result;
}

bool LayoutRoot::isRoot(const UILayoutItem& item) const { return &item == static_cast<const UILayoutItem*>(&root); }

void LayoutRoot::noteChange()
{
    if (use == Use::placing && !solving)
        root.layoutRootChanged();
}

void LayoutRoot::runUpdates()
{
    for (int round = 0; round < 10 && !updates.empty(); ++round)
        for (const auto& reference : std::exchange(updates, {}))
            if (const auto view = reference.lock(); view && std::exchange(view->needsUpdateConstraints, false))
                view->updateConstraints();
}

// Asks those whose width moved for the height that goes with it; true when one differs.
bool LayoutRoot::measureHeights()
{
    bool differs = false;
    for (const UILayoutItem* item : std::exchange(widthsMoved, {})) {
        Entry* found = find(item);
        if (!found || !std::exchange(found->moved, false))
            continue;
        const double pixels = scale();
        const double width = std::floor(std::max(0.0, solver.value(found->variables[2])) * pixels + 1e-6) / pixels;
        if (width == found->measuredWidth)
            continue;
        const auto height = found->view->intrinsicHeight(width);
        if (!height)
            continue;
        found->measuredWidth = width;
        differs = differs || std::abs(found->content[2].constant - *height) >= nearlyEqual;
        if (isRoot(*item) || !found->view->translatesAutoresizingMask)
            setContent(*found, 1, *height);
    }
    return differs;
}

void LayoutRoot::markChanged()
{
    for (const LayoutVariableId variable : solver.changedVariables()) {
        const auto index = static_cast<std::size_t>(variable);
        Entry* moved = index < byVariable.size() ? byVariable[index] : nullptr; // null for a sum
        if (!moved)
            continue;
        if (!moved->view) {
            // The content of a scroll view has another size, which that view takes over in its layout.
            UIView* around = moved->owner.item->layoutView();
            if (use == Use::placing && around && around->contentLayoutItem() == moved->owner.item)
                around->setNeedsLayout();
            continue;
        }
        if (moved->variables[2] == variable && !std::exchange(moved->moved, true))
            widthsMoved.push_back(moved->owner.item);
        if (use == Use::placing && !moved->view->translatesAutoresizingMask && moved->view->superview_)
            moved->view->superview_->setNeedsLayout();
    }
}

void LayoutRoot::report(const LayoutConflict& conflict)
{
    const auto text = [this](LayoutConstraintId id) -> std::string {
        const auto* owner = static_cast<const Owner*>(solver.owner(id));
        if (owner && owner->constraint)
            return "\"" + owner->constraint->description() + "\"";
        return owner && owner->item ? "the frame of " + owner->item->layoutName() : "another";
    };
    const auto* dropped = static_cast<const Owner*>(solver.owner(conflict.dropped));
    if (dropped && dropped->constraint) {
        const auto found = records.find(dropped->constraint);
        if (found != records.end() && std::exchange(found->second->reported, true))
            return;
    }
    std::string line = "constraints cannot hold together, " + text(conflict.dropped) + " is given up; against it";
    const char* separator = ": ";
    for (const LayoutConstraintId id : conflict.constraints) {
        if (id == conflict.dropped)
            continue;
        line += separator + text(id);
        separator = ", ";
    }
    NSLog(line);
}

void LayoutRoot::reportLasting()
{
    for (const LayoutConflict& conflict : std::exchange(conflicts, {}))
        if (solver.isDropped(conflict.dropped))
            report(conflict);
}

double LayoutRoot::scale() const { return std::max(1.0, root.traitCollection().displayScale); }

} // namespace platform
