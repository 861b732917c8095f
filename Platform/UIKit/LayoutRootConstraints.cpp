// How what a constraint says becomes an equation of the solver.
#include "Platform/UIKit/LayoutRoot.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/ConstraintKeeper.h"
#include "Platform/UIKit/UIView.h"

#include <utility>

namespace platform {

namespace {

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

void LayoutRoot::directionChanged()
{
    for (auto& [constraint, record] : records) {
        if (!followsDirection(constraint->firstAttribute()) && !followsDirection(constraint->secondAttribute()))
            continue;
        record->stale = true;
        enqueue(*constraint);
    }
}

void LayoutRoot::edgesChanged(const UILayoutItem& item)
{
    const bool isView = item.layoutView() == &item;
    for (const NSLayoutConstraint* constraint : item.constraintsNaming())
        if (!isView || followsBaseline(constraint->firstAttribute()) || followsBaseline(constraint->secondAttribute()))
            constantChanged(*constraint);
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
    // The edges of what scrolls, as its content sees them, are the content's, which begins at 0.
    const UILayoutItem* content = !isSize && view == &item && view == ancestor ? view->contentLayoutItem() : nullptr;
    if (content) {
        if (fraction != 0)
            reading.add(entry(*content, used).variables[2 + axis], factor * fraction);
        return;
    }

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

} // namespace platform
