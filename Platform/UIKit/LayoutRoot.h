#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/Layout/LayoutSolver.h"
#include "Platform/UIKit/NSLayoutConstraint.h"
#include "Platform/UIKit/UIGeometry.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace platform {

class UILayoutGuide;
class UILayoutItem;
class UIView;

// The constraints of one tree of views in one solver. Every view's position is a variable relative to its superview, so that
// what lies inside a view does not move with it. Only items that a constraint names get variables; a view placed by its frame
// is held there by equations that follow its autoresizing mask. Internal to the views.
class LayoutRoot {
public:
    enum class Use : unsigned char { placing, measuring }; // measuring leaves no trace in the views

    // Takes in all active constraints of the tree.
    explicit LayoutRoot(UIView& root, Use use = Use::placing);
    ~LayoutRoot();

    // Constraints come and go at once but are judged by solve: one that left again before it was never there.
    void enqueue(const NSLayoutConstraint& constraint); // new, or to be judged again
    void remove(const NSLayoutConstraint& constraint);
    void constantChanged(const NSLayoutConstraint& constraint);
    void priorityChanged(const NSLayoutConstraint& constraint);

    void enqueueSubtree(UIView& view); // the constraints that it and its descendants keep
    void subtreeChanged(UIView& view); // all that name it or what is below it: judge again
    void forgetSubtree(UIView& view); // which is leaving
    void forget(const UILayoutItem& item);
    void directionChanged();

    void itemChanged(const UILayoutItem& item); // its intrinsic size, its priorities, whether its frame counts
    void frameChanged(const UIView& view); // of a view that is placed by its frame
    void edgesChanged(const UILayoutItem& item); // its baseline or its safe area
    void rootSizeChanged();
    void updateConstraintsOf(UIView& view);

    bool needsSolve() const;
    void solve();

    // Open while views are being laid out. Conflicts are told when the outermost one closes, and only those that are left then:
    // on the way a safe area may follow a frame that has still to follow the screen.
    class Pass {
    public:
        Pass();
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
    };

    // In the superview's coordinates, edges on device pixels; nothing for an item that takes no part.
    std::optional<CGRect> frame(const UILayoutItem& item);
    // The root's size that meets the constraints and is as near to the target as the priorities ask for.
    CGSize fittingSize(CGSize target, UILayoutPriority horizontal, UILayoutPriority vertical);

private:
    // What a solver's constraint belongs to, for the console.
    struct Owner {
        const NSLayoutConstraint* constraint = nullptr;
        const UILayoutItem* item = nullptr;
    };
    // One equation of the engine's own, present or not.
    struct Slot {
        LayoutConstraintId id = LayoutConstraintId::none;
        LayoutRelation relation = LayoutRelation::equal;
        double coefficient = 0; // of the surrounding size
        double constant = 0;
        float priority = 0;
    };
    struct Entry {
        Owner owner;
        UIView* view = nullptr; // null for a guide
        std::array<LayoutVariableId, 4> variables; // x, y, width, height
        std::array<Slot, 4> place; // of each variable: its frame, or the least size
        std::array<Slot, 4> content; // hugs width, resists width, hugs height, resists height
        Entry* around = nullptr; // the superview's, whose size its frame follows
        int uses = 0;
        bool dirty = false;
        bool moved = false; // its width did, since heights were last measured
        double measuredWidth = -1; // points, at which the height was asked for
        CGPoint residue; // what rounding to pixels took away from the origin
    };
    struct Record {
        Owner owner;
        LayoutConstraintId id = LayoutConstraintId::none;
        std::vector<Entry*> used;
        std::vector<LayoutVariableId> sums; // stand for more terms than one equation can hold
        std::vector<LayoutConstraintId> sumConstraints;
        bool queued = false;
        bool stale = false; // its terms are to be read again
        bool reported = false;
    };
    // What a constraint says in the solver's terms, which may be too many for one equation.
    struct Reading {
        std::vector<LayoutTerm> terms;
        LayoutRelation relation = LayoutRelation::equal;
        double constant = 0;

        void add(LayoutVariableId variable, double coefficient);
    };
    using Entries = std::vector<Entry*>;

    bool isRoot(const UILayoutItem& item) const;
    void noteChange();
    bool takesPart(const NSLayoutConstraint& constraint) const;
    void judge(const NSLayoutConstraint& constraint, Record& record);
    void install(const NSLayoutConstraint& constraint, Record& record);
    void uninstall(Record& record);
    void foldSums(Record& record);
    // Fills `reading`; the entries that it needs are added to `used`, unless that is null because they are there.
    void read(const NSLayoutConstraint& constraint, Entries* used);
    void readEnd(const UILayoutItem& item, NSLayoutAttribute attribute, bool rightToLeft, const UIView* ancestor, double factor,
        Entries* used);

    Entry& entry(const UILayoutItem& item, Entries* used);
    Entry* find(const UILayoutItem* item) const;
    Entry& create(const UILayoutItem& item);
    void makeDirty(Entry& entry);
    void refresh(Entry& entry);
    void refreshPlace(Entry& entry);
    void refreshContent(Entry& entry);
    void setContent(Entry& entry, std::size_t axis, double size);
    void set(Slot& slot, Entry& entry, const LayoutEquation& equation, double coefficient = 0);
    void clear(Slot& slot);
    void release(Entry& entry);
    void erase(Entry& entry);
    void sweep();
    void runUpdates();
    bool measureHeights();
    void markChanged();
    void report(const LayoutConflict& conflict);
    void reportLasting();
    double scale() const;

    UIView& root;
    const Use use;
    LayoutSolver solver;
    std::unordered_map<const UILayoutItem*, std::unique_ptr<Entry>> entries;
    std::unordered_map<const NSLayoutConstraint*, std::unique_ptr<Record>> records;
    std::vector<Entry*> byVariable;
    std::vector<const NSLayoutConstraint*> queue; // those whose record is marked; others may have ended
    std::vector<const UILayoutItem*> dirtyItems; // those whose entry is marked
    std::vector<const UILayoutItem*> unused; // perhaps
    std::vector<const UILayoutItem*> widthsMoved; // those whose entry is marked
    Reading reading; // kept for its memory
    std::vector<WeakRef<UIView>> updates;
    std::array<double, 2> rootSize {}; // what the root's size is held at
    std::array<float, 2> rootPriority { requiredLayoutPriority, requiredLayoutPriority };
    std::vector<LayoutConflict> conflicts; // that were not told yet
    bool solving = false;
};

} // namespace platform
