#include "Platform/UIKit/ConstraintKeeper.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// Active constraints whose items have no common ancestor yet.
NSLayoutConstraints& waiting()
{
    static NSLayoutConstraints list;
    return list;
}

int depth(const UIView* view)
{
    int result = 0;
    for (; view; view = view->superview())
        ++result;
    return result;
}

// A constraint must not reach into a tree that has an engine of its own.
bool crossesLayoutRoot(const UILayoutItem* item, const UIView* ancestor)
{
    const UIView* view = item ? item->layoutView() : nullptr;
    if (view && view == item)
        view = view == ancestor ? nullptr : view->superview();
    for (; view && view != ancestor; view = view->superview())
        if (view->isLayoutRoot())
            return true;
    return false;
}

} // namespace

void ConstraintKeeper::activate(const std::shared_ptr<NSLayoutConstraint>& constraint)
{
    if (!constraint || constraint->active || !constraint->items[0])
        return;
    constraint->active = true;
    if (!tryPlace(constraint))
        keep(constraint, nullptr);
}

void ConstraintKeeper::deactivate(NSLayoutConstraint& constraint)
{
    if (!constraint.active)
        return;
    LayoutRoot* root = rootOf(constraint);
    const auto alive = release(constraint);
    constraint.active = false;
    if (root)
        root->remove(constraint);
}

void ConstraintKeeper::registerItems(NSLayoutConstraint& constraint)
{
    for (int i = 0; i < 2; ++i) {
        UILayoutItem* item = constraint.items[i];
        if (!item || (i == 1 && item == constraint.items[0]))
            continue;
        constraint.namedIndex[i] = item->naming.size();
        item->naming.push_back(&constraint);
    }
}

void ConstraintKeeper::forgetItems(NSLayoutConstraint& constraint)
{
    for (int i = 0; i < 2; ++i) {
        const std::size_t index = constraint.namedIndex[i];
        if (index == NSLayoutConstraint::nowhere)
            continue;
        auto& naming = constraint.items[i]->naming;
        NSLayoutConstraint* last = naming.back();
        last->namedIndex[last->items[0] == constraint.items[i] ? 0 : 1] = index;
        naming[index] = last;
        naming.pop_back();
        constraint.namedIndex[i] = NSLayoutConstraint::nowhere; // also when it was itself the last
    }
    constraint.items[0] = constraint.items[1] = nullptr;
}

void ConstraintKeeper::deactivateNaming(UILayoutItem& item)
{
    const auto naming = item.naming;
    for (NSLayoutConstraint* constraint : naming)
        if (const auto alive = weak(constraint).lock())
            deactivate(*alive);
}

void ConstraintKeeper::itemEnds(UILayoutItem& item)
{
    while (!item.naming.empty()) {
        NSLayoutConstraint& constraint = *item.naming.back();
        const auto alive = weak(&constraint).lock();
        deactivate(constraint);
        forgetItems(constraint);
    }
}

void ConstraintKeeper::subtreeLeft(UIView& subtree) { leaveTree(subtree, subtree); }

void ConstraintKeeper::leaveTree(UIView& part, const UIView& subtree)
{
    const auto leave = [&](const UILayoutItem& item) {
        std::vector<std::shared_ptr<NSLayoutConstraint>> crossing;
        for (NSLayoutConstraint* constraint : item.naming)
            if (constraint->holder && !constraint->holder->isDescendant(subtree))
                crossing.push_back(weak(constraint).lock());
        for (const auto& constraint : crossing)
            deactivate(*constraint); // which may end one that nobody else keeps
    };
    leave(part);
    for (const auto& guide : part.layoutGuides)
        leave(*guide);
    if (part.safeAreaGuide)
        leave(*part.safeAreaGuide);
    for (const auto& child : part.subviews_)
        leaveTree(*child, subtree);
}

void ConstraintKeeper::holderEnds(UIView& holder)
{
    while (!holder.heldConstraints.empty())
        deactivate(*holder.heldConstraints.back());
}

void ConstraintKeeper::judgeWaiting(const UIView& root)
{
    if (waiting().empty())
        return;
    const NSLayoutConstraints list = waiting();
    for (const auto& constraint : list) {
        const bool concerned = std::ranges::any_of(constraint->items, [&](const UILayoutItem* item) {
            const UIView* view = item ? item->layoutView() : nullptr;
            return view && &view->layoutRootView() == &root;
        });
        if (!concerned || !constraint->active || constraint->holder)
            continue;
        release(*constraint);
        if (tryPlace(constraint))
            continue;
        const bool related = commonAncestor(*constraint);
        keep(constraint, nullptr);
        deactivate(*constraint);
        NSLog("constraint \"" + constraint->description()
            + "\" ignored: " + (related ? "it reaches into a layout root" : "its items have no common ancestor"));
    }
}

LayoutRoot* ConstraintKeeper::rootOf(const NSLayoutConstraint& constraint)
{
    return constraint.holder ? constraint.holder->layoutRoot() : nullptr;
}

UIView* ConstraintKeeper::commonAncestor(const NSLayoutConstraint& constraint)
{
    UIView* a = constraint.items[0] ? constraint.items[0]->layoutView() : nullptr;
    UIView* b = constraint.items[1] ? constraint.items[1]->layoutView() : a;
    int depthA = depth(a), depthB = depth(b);
    for (; depthA > depthB; --depthA)
        a = a->superview();
    for (; depthB > depthA; --depthB)
        b = b->superview();
    while (a != b) {
        a = a->superview();
        b = b->superview();
    }
    return a;
}

NSLayoutConstraints& ConstraintKeeper::listOf(const NSLayoutConstraint& constraint)
{
    return constraint.holder ? constraint.holder->heldConstraints : waiting();
}

void ConstraintKeeper::keep(const std::shared_ptr<NSLayoutConstraint>& constraint, UIView* holder)
{
    constraint->holder = holder;
    auto& list = listOf(*constraint);
    constraint->heldIndex = list.size();
    list.push_back(constraint);
}

std::shared_ptr<NSLayoutConstraint> ConstraintKeeper::release(NSLayoutConstraint& constraint)
{
    auto& list = listOf(constraint);
    const std::size_t index = constraint.heldIndex;
    std::shared_ptr<NSLayoutConstraint> released = std::move(list[index]);
    if (index + 1 < list.size()) {
        list[index] = std::move(list.back());
        list[index]->heldIndex = index;
    }
    list.pop_back();
    constraint.heldIndex = NSLayoutConstraint::nowhere;
    constraint.holder = nullptr;
    return released;
}

bool ConstraintKeeper::tryPlace(const std::shared_ptr<NSLayoutConstraint>& constraint)
{
    UIView* holder = commonAncestor(*constraint);
    if (!holder || crossesLayoutRoot(constraint->items[0], holder) || crossesLayoutRoot(constraint->items[1], holder))
        return false;
    keep(constraint, holder);
    if (LayoutRoot* root = holder->layoutRoot())
        root->enqueue(*constraint);
    else
        holder->layoutRootView().layoutRootChanged();
    return true;
}

} // namespace platform
