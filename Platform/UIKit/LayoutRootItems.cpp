// The variables of views and guides, and the equations that come from the items themselves: frames, least sizes, contents.
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

// A size gives up every wish before it becomes negative, and says nothing when required constraints make it so.
constexpr float leastSizePriority = 999.5F;
constexpr double nearlyEqual = 1e-9; // points

} // namespace

void LayoutRoot::forget(const UILayoutItem& item)
{
    if (Entry* found = find(&item))
        erase(*found);
}

void LayoutRoot::itemChanged(const UILayoutItem& item)
{
    if (Entry* found = find(&item))
        makeDirty(*found);
}

void LayoutRoot::frameChanged(const UIView& view)
{
    Entry* found = find(&view);
    if (!found || found->dirty || isRoot(view))
        return;
    // Most changes only follow from the superview's size, and the equations know them already.
    const std::array<Slot, 4> before = found->place;
    refreshPlace(*found);
    const bool same = std::equal(before.begin(), before.end(), found->place.begin(),
        [](const Slot& a, const Slot& b) { return a.id == b.id && std::abs(a.constant - b.constant) < nearlyEqual; });
    if (!same)
        noteChange();
}

LayoutRoot::Entry& LayoutRoot::entry(const UILayoutItem& item, Entries* used)
{
    Entry* found = find(&item);
    if (!found)
        found = &create(item);
    if (used) {
        ++found->uses;
        used->push_back(found);
    }
    return *found;
}

LayoutRoot::Entry* LayoutRoot::find(const UILayoutItem* item) const
{
    const auto found = entries.find(item);
    return found == entries.end() ? nullptr : found->second.get();
}

LayoutRoot::Entry& LayoutRoot::create(const UILayoutItem& item)
{
    auto& made = entries[&item];
    made = std::make_unique<Entry>();
    made->owner.item = &item;
    UIView* view = item.layoutView();
    made->view = view == &item ? view : nullptr;
    for (LayoutVariableId& variable : made->variables) {
        variable = solver.addVariable();
        const auto index = static_cast<std::size_t>(variable);
        if (byVariable.size() <= index)
            byVariable.resize(index + 1);
        byVariable[index] = made.get();
    }
    makeDirty(*made);
    if (!made->view)
        return *made;
    // Its frame is held before any constraint names it: of two that cannot both hold, the later one goes.
    if (isRoot(item) || view->translatesAutoresizingMask)
        refreshPlace(*made);
    else if (use == Use::placing && view->superview_)
        view->superview_->setNeedsLayout();
    return *made;
}

void LayoutRoot::makeDirty(Entry& changed)
{
    if (std::exchange(changed.dirty, true))
        return;
    dirtyItems.push_back(changed.owner.item);
    noteChange();
}

void LayoutRoot::refresh(Entry& changed)
{
    changed.dirty = false;
    refreshPlace(changed);
    refreshContent(changed);
    if (changed.view && !std::exchange(changed.moved, true))
        widthsMoved.push_back(changed.owner.item);
}

void LayoutRoot::refreshPlace(Entry& changed)
{
    const UIView* view = changed.view;
    const bool held = view && !isRoot(*view) && view->translatesAutoresizingMask && view->superview_;
    Entry* before = std::exchange(changed.around, nullptr);
    const CGRect frame = held ? view->untransformedFrame() : CGRect {};
    for (std::size_t axis = 0; axis < 2; ++axis) {
        LayoutEquation place, size;
        place.terms.add({ changed.variables[axis], 1 });
        size.terms.add({ changed.variables[2 + axis], 1 });
        if (view && isRoot(*view)) {
            size.constant = rootSize[axis];
            size.priority = rootPriority[axis];
            set(changed.place[2 + axis], changed, size);
            continue;
        }
        if (!held) {
            size.relation = LayoutRelation::greaterOrEqual;
            size.priority = leastSizePriority;
            clear(changed.place[axis]);
            set(changed.place[2 + axis], changed, size);
            continue;
        }
        // Its share of what the superview gains, as the autoresizing mask deals it out.
        const double around = axis == 0 ? view->superview_->bounds().width : view->superview_->bounds().height;
        place.constant = axis == 0 ? frame.x : frame.y;
        size.constant = axis == 0 ? frame.width : frame.height;
        const UIView::AutoresizingShare share
            = view->autoresizingShare(static_cast<NSLayoutConstraintAxis>(axis), place.constant, size.constant, around);
        if ((share.origin != 0 || share.size != 0) && !changed.around) {
            changed.around = &entry(*view->superview_, nullptr);
            ++changed.around->uses;
        }
        if (share.origin != 0) {
            place.terms.add({ changed.around->variables[2 + axis], -share.origin });
            place.constant -= share.origin * around;
        }
        if (share.size != 0) {
            size.terms.add({ changed.around->variables[2 + axis], -share.size });
            size.constant -= share.size * around;
        }
        set(changed.place[axis], changed, place, share.origin);
        set(changed.place[2 + axis], changed, size, share.size);
    }
    if (before)
        release(*before);
}

void LayoutRoot::refreshContent(Entry& changed)
{
    UIView* view = changed.view;
    if (!view)
        return;
    const bool free = isRoot(*view) || !view->translatesAutoresizingMask;
    CGSize size { UIView::noIntrinsicMetric, UIView::noIntrinsicMetric };
    if (free) {
        size = view->intrinsicContentSize();
        if (changed.measuredWidth >= 0)
            size.height = view->intrinsicHeight(changed.measuredWidth).value_or(size.height);
    }
    setContent(changed, 0, size.width);
    setContent(changed, 1, size.height);
}

void LayoutRoot::setContent(Entry& changed, std::size_t axis, double size)
{
    Slot& hugs = changed.content[2 * axis];
    Slot& resists = changed.content[2 * axis + 1];
    if (!(size >= 0) || !std::isfinite(size)) {
        clear(hugs);
        clear(resists);
        return;
    }
    LayoutEquation equation;
    equation.terms.add({ changed.variables[2 + axis], 1 });
    equation.constant = size;
    equation.relation = LayoutRelation::lessOrEqual;
    equation.priority = changed.view->hugging[axis];
    set(hugs, changed, equation);
    equation.relation = LayoutRelation::greaterOrEqual;
    equation.priority = changed.view->compression[axis];
    set(resists, changed, equation);
}

void LayoutRoot::set(Slot& slot, Entry& of, const LayoutEquation& equation, double coefficient)
{
    if (slot.id != LayoutConstraintId::none && (slot.coefficient != coefficient || slot.relation != equation.relation))
        clear(slot);
    if (slot.id == LayoutConstraintId::none) {
        LayoutEquation owned = equation;
        owned.owner = &of.owner;
        slot.id = solver.addConstraint(owned);
    } else {
        if (std::abs(slot.constant - equation.constant) >= nearlyEqual)
            solver.setConstant(slot.id, equation.constant);
        if (slot.priority != equation.priority)
            solver.setPriority(slot.id, equation.priority);
    }
    slot.relation = equation.relation;
    slot.coefficient = coefficient;
    slot.constant = equation.constant;
    slot.priority = equation.priority;
}

void LayoutRoot::clear(Slot& slot)
{
    if (slot.id != LayoutConstraintId::none)
        solver.removeConstraint(slot.id);
    slot = {};
}

void LayoutRoot::release(Entry& used)
{
    if (--used.uses == 0)
        unused.push_back(used.owner.item);
}

void LayoutRoot::erase(Entry& gone)
{
    if (gone.uses > 0)
        for (auto& [item, other] : entries)
            if (other->around == &gone)
                other->around = nullptr, makeDirty(*other);
    for (Slot& slot : gone.place)
        clear(slot);
    for (Slot& slot : gone.content)
        clear(slot);
    for (const LayoutVariableId variable : gone.variables) {
        byVariable[static_cast<std::size_t>(variable)] = nullptr;
        solver.removeVariable(variable);
    }
    if (gone.around)
        release(*gone.around);
    entries.erase(gone.owner.item);
}

void LayoutRoot::sweep()
{
    while (!unused.empty()) {
        const UILayoutItem* item = unused.back();
        unused.pop_back();
        if (Entry* found = find(item); found && found->uses == 0)
            erase(*found);
    }
}

} // namespace platform
