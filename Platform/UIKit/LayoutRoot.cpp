#include "Platform/UIKit/LayoutRoot.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// A size gives up every wish before it becomes negative, and says nothing when required constraints make it so.
constexpr float leastSizePriority = 999.5F;
constexpr double nearlyEqual = 1e-9; // points

std::size_t axisOf(NSLayoutAttribute attribute)
{
    switch (attribute) {
    case NSLayoutAttribute::top:
    case NSLayoutAttribute::bottom:
    case NSLayoutAttribute::height:
    case NSLayoutAttribute::centerY:
    case NSLayoutAttribute::firstBaseline:
    case NSLayoutAttribute::lastBaseline:
        return 1;
    default:
        return 0;
    }
}

bool followsDirection(NSLayoutAttribute attribute)
{
    return attribute == NSLayoutAttribute::leading || attribute == NSLayoutAttribute::trailing;
}

bool followsBaseline(NSLayoutAttribute attribute)
{
    return attribute == NSLayoutAttribute::firstBaseline || attribute == NSLayoutAttribute::lastBaseline;
}

// The fraction of the size that lies before this edge.
double fractionOf(NSLayoutAttribute attribute, bool rightToLeft)
{
    switch (attribute) {
    case NSLayoutAttribute::centerX:
    case NSLayoutAttribute::centerY:
        return 0.5;
    case NSLayoutAttribute::right:
    case NSLayoutAttribute::bottom:
    case NSLayoutAttribute::lastBaseline:
        return 1;
    case NSLayoutAttribute::leading:
        return rightToLeft ? 1 : 0;
    case NSLayoutAttribute::trailing:
        return rightToLeft ? 0 : 1;
    default:
        return 0;
    }
}

const UILayoutGuide* safeAreaGuide(const UILayoutItem& item)
{
    const auto* guide = dynamic_cast<const UILayoutGuide*>(&item);
    return guide && guide->role() == UILayoutGuide::Role::safeArea ? guide : nullptr;
}

double first(const UIEdgeInsets& insets, std::size_t axis) { return axis == 0 ? insets.left : insets.top; }

double last(const UIEdgeInsets& insets, std::size_t axis) { return axis == 0 ? insets.right : insets.bottom; }

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

} // namespace

void LayoutRoot::Reading::add(LayoutVariableId variable, double coefficient)
{
    if (coefficient == 0)
        return;
    for (LayoutTerm& term : terms) {
        if (term.variable != variable)
            continue;
        term.coefficient += coefficient;
        if (term.coefficient == 0)
            terms.erase(terms.begin() + (&term - terms.data()));
        return;
    }
    terms.push_back({ variable, coefficient });
}

LayoutRoot::LayoutRoot(UIView& rootView, Use purpose)
    : root(rootView)
    , use(purpose)
{
    solver.onConflict = [this](const LayoutConflict& conflict) { report(conflict); };
    entry(root, nullptr).uses = 1; // never swept
    rootSizeChanged();
    enqueueSubtree(root);
}

LayoutRoot::~LayoutRoot() = default;

void LayoutRoot::enqueue(const NSLayoutConstraint& constraint)
{
    auto& record = records[&constraint];
    if (!record) {
        record = std::make_unique<Record>();
        record->owner.constraint = &constraint;
    }
    if (std::exchange(record->queued, true))
        return;
    queue.push_back(&constraint);
    noteChange();
}

void LayoutRoot::remove(const NSLayoutConstraint& constraint)
{
    const auto found = records.find(&constraint);
    if (found == records.end())
        return;
    uninstall(*found->second);
    records.erase(found);
    noteChange();
}

void LayoutRoot::constantChanged(const NSLayoutConstraint& constraint)
{
    const auto found = records.find(&constraint);
    if (found == records.end() || found->second->id == LayoutConstraintId::none || found->second->stale)
        return;
    read(constraint, nullptr);
    if (!solver.setConstant(found->second->id, reading.constant))
        NSLog("constraint \"" + constraint.description() + "\" keeps its former constant: the number is out of range");
    noteChange();
}

void LayoutRoot::priorityChanged(const NSLayoutConstraint& constraint)
{
    const auto found = records.find(&constraint);
    if (found == records.end() || found->second->id == LayoutConstraintId::none)
        return;
    solver.setPriority(found->second->id, constraint.priority());
    noteChange();
}

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

void LayoutRoot::forget(const UILayoutItem& item)
{
    if (Entry* found = find(&item))
        erase(*found);
}

void LayoutRoot::directionChanged()
{
    for (auto& [constraint, record] : records) {
        if (!followsDirection(constraint->firstAttribute()) && !followsDirection(constraint->secondAttribute()))
            continue;
        record->stale = true;
        enqueue(*constraint);
    }
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

void LayoutRoot::edgesChanged(const UILayoutItem& item)
{
    const bool isView = item.layoutView() == &item;
    for (const NSLayoutConstraint* constraint : item.constraintsNaming())
        if (!isView || followsBaseline(constraint->firstAttribute()) || followsBaseline(constraint->secondAttribute()))
            constantChanged(*constraint);
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

bool LayoutRoot::takesPart(const NSLayoutConstraint& constraint) const
{
    for (const UILayoutItem* item : { constraint.firstItem(), constraint.secondItem() })
        for (const UIView* view = item ? item->layoutView() : nullptr; view; view = view == &root ? nullptr : view->superview_)
            if (view->excludedFromLayout)
                return false;
    return true;
}

void LayoutRoot::judge(const NSLayoutConstraint& constraint, Record& record)
{
    const bool takes = takesPart(constraint);
    if (record.id != LayoutConstraintId::none && (!takes || record.stale))
        uninstall(record);
    record.stale = false;
    if (takes && record.id == LayoutConstraintId::none)
        install(constraint, record);
}

void LayoutRoot::install(const NSLayoutConstraint& constraint, Record& record)
{
    read(constraint, &record.used);
    foldSums(record);
    LayoutEquation equation;
    for (const LayoutTerm& term : reading.terms)
        equation.terms.add(term);
    equation.relation = reading.relation;
    equation.constant = reading.constant;
    equation.priority = constraint.priority();
    equation.owner = &record.owner;
    record.id = solver.addConstraint(equation);
    if (record.id != LayoutConstraintId::none)
        return;
    const char* reason = solver.refusal(equation);
    NSLog("constraint \"" + constraint.description() + "\" ignored: " + (reason ? reason : "the solver refused it"));
    uninstall(record);
}

void LayoutRoot::uninstall(Record& record)
{
    if (record.id != LayoutConstraintId::none)
        solver.removeConstraint(record.id);
    record.id = LayoutConstraintId::none;
    // A sum may name the sum before it.
    for (const LayoutConstraintId id : record.sumConstraints)
        solver.removeConstraint(id);
    for (const LayoutVariableId variable : record.sums)
        solver.removeVariable(variable);
    record.sumConstraints.clear();
    record.sums.clear();
    for (Entry* used : record.used)
        release(*used);
    record.used.clear();
}

// Views that lie deep in different branches: three terms at a time become one variable, until an equation can hold the rest.
void LayoutRoot::foldSums(Record& record)
{
    auto& terms = reading.terms;
    while (terms.size() > LayoutTerms::capacity) {
        LayoutEquation sum;
        const LayoutVariableId variable = solver.addVariable();
        sum.terms.add({ variable, -1 });
        for (int i = 0; i < 3; ++i) {
            sum.terms.add(terms.back());
            terms.pop_back();
        }
        sum.owner = &record.owner;
        record.sums.push_back(variable);
        record.sumConstraints.push_back(solver.addConstraint(sum));
        terms.insert(terms.begin(), { variable, 1 });
    }
}

void LayoutRoot::read(const NSLayoutConstraint& constraint, Entries* used)
{
    const UILayoutItem& one = *constraint.firstItem();
    const UILayoutItem* other = constraint.secondItem();
    const UIView* ancestor = ConstraintKeeper::commonAncestor(constraint);
    const bool mirrored
        = one.layoutView()->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    // Distances between leading or trailing edges run the other way when the interface is mirrored.
    const bool turned = mirrored && followsDirection(constraint.firstAttribute());

    reading.terms.clear();
    reading.constant = 0;
    readEnd(one, constraint.firstAttribute(), mirrored, ancestor, 1, used);
    if (other)
        readEnd(*other, constraint.secondAttribute(), mirrored, ancestor, -constraint.multiplier(), used);
    reading.constant = (turned ? -constraint.constant() : constraint.constant()) - reading.constant;

    const int sign = static_cast<int>(constraint.relation()) * (turned ? -1 : 1);
    reading.relation = sign < 0 ? LayoutRelation::lessOrEqual : sign > 0 ? LayoutRelation::greaterOrEqual : LayoutRelation::equal;
}

void LayoutRoot::readEnd(
    const UILayoutItem& item, NSLayoutAttribute attribute, bool rightToLeft, const UIView* ancestor, double factor, Entries* used)
{
    const std::size_t axis = axisOf(attribute);
    UIView* view = item.layoutView();
    const UILayoutGuide* safeArea = safeAreaGuide(item);
    const bool isSize = attribute == NSLayoutAttribute::width || attribute == NSLayoutAttribute::height;
    const double fraction = isSize ? 1 : fractionOf(attribute, rightToLeft);

    if (safeArea) {
        const UIEdgeInsets& insets = view->safeAreaInsets();
        const double taken = first(insets, axis) + last(insets, axis);
        reading.add(entry(*view, used).variables[2 + axis], factor * fraction);
        reading.constant += factor * ((isSize ? 0 : first(insets, axis)) - fraction * taken);
    } else if (fraction != 0) {
        reading.add(entry(item, used).variables[2 + axis], factor * fraction);
    }
    if (attribute == NSLayoutAttribute::firstBaseline && view == &item)
        reading.constant += factor * view->firstBaselineOffset();
    if (attribute == NSLayoutAttribute::lastBaseline && view == &item)
        reading.constant -= factor * view->lastBaselineOffset();
    if (isSize)
        return;
    // From inside the ancestor its own edges are where its coordinates begin and end.
    if (view != &item && !safeArea)
        reading.add(entry(item, used).variables[axis], factor);
    for (; view != ancestor; view = view->superview_)
        reading.add(entry(*view, used).variables[axis], factor);
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
        if (!moved || !moved->view)
            continue;
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

double LayoutRoot::scale() const { return std::max(1.0, root.traitCollection().displayScale); }

} // namespace platform
