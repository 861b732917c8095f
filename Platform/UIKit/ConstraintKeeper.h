#pragma once

#include "Platform/UIKit/NSLayoutConstraint.h"

#include <memory>

namespace platform {

class UILayoutItem;
class UIView;

// Who keeps which active constraint: the nearest common ancestor of its items, or, while there is none, the waiting list. Both
// ends are found in constant time from the constraint. Internal to the views.
class ConstraintKeeper {
public:
    static void activate(const std::shared_ptr<NSLayoutConstraint>& constraint);
    static void deactivate(NSLayoutConstraint& constraint);

    // A constraint begins and ends to name its items.
    static void registerItems(NSLayoutConstraint& constraint);
    static void forgetItems(NSLayoutConstraint& constraint);
    static void deactivateNaming(UILayoutItem& item);
    // The item is about to end: what names it becomes inactive and forgets it.
    static void itemEnds(UILayoutItem& item);
    // The subtree was taken out: constraints that reach out of it become inactive.
    static void subtreeLeft(UIView& subtree);
    // The view is about to end: what it keeps becomes inactive.
    static void holderEnds(UIView& holder);

    // At the layout of a tree: hands its constraints that waited for a common ancestor to it; those that still have none leave
    // one console line and become inactive.
    static void judgeWaiting(const UIView& root);

    // The engine that it takes part in; null for none.
    static LayoutRoot* rootOf(const NSLayoutConstraint& constraint);
    // Null when there is none.
    static UIView* commonAncestor(const NSLayoutConstraint& constraint);

private:
    static NSLayoutConstraints& listOf(const NSLayoutConstraint& constraint);
    static void keep(const std::shared_ptr<NSLayoutConstraint>& constraint, UIView* holder);
    static std::shared_ptr<NSLayoutConstraint> release(NSLayoutConstraint& constraint);
    static bool tryPlace(const std::shared_ptr<NSLayoutConstraint>& constraint);
    static void leaveTree(UIView& part, const UIView& subtree);
};

} // namespace platform
