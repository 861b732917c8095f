#include "Tests/Platform/UIKit/Layout/RandomLayouts.h"

namespace layouttests {

using platform::LayoutRelation;

RandomLayouts::RandomLayouts(LayoutShape shape, unsigned seed, std::size_t extraVariables)
    : shape(shape)
    , random(seed)
    , variables(2 + below(6) + extraVariables)
{
    if (shape == LayoutShape::views)
        variables += variables % 2;
}

std::size_t RandomLayouts::below(std::size_t limit) { return random() % limit; }
bool RandomLayouts::chance(double probability) { return static_cast<double>(below(1000)) < probability * 1000; }

double RandomLayouts::makeConstant()
{
    if (shape == LayoutShape::corners) // few different ones, so that many constraints meet in a point
        return static_cast<double>(below(3)) * 10;
    return static_cast<double>(below(161)) / 2 - 20;
}

float RandomLayouts::makePriority()
{
    if (chance(shape == LayoutShape::conflicts ? 0.7 : shape == LayoutShape::corners ? 0.2 : 0.4))
        return platform::requiredLayoutPriority;
    constexpr float priorities[] = { 999, 750, 249.75F, 249.5F };
    return priorities[below(4)];
}

double RandomLayouts::makeCoefficient()
{
    constexpr double coefficients[] = { 1, 1, 1, 1, -1, -1, -1, 2, 0.5, -2, -0.5, 3 };
    return coefficients[below(12)];
}

ExactConstraint RandomLayouts::makeConstraint()
{
    if (shape == LayoutShape::views && chance(0.9))
        return makeViewConstraint();
    ExactConstraint constraint;
    const std::size_t count = 1 + below(shape == LayoutShape::chains ? 2 : 3);
    for (std::size_t i = 0; i < count; ++i)
        constraint.terms.push_back(
            { below(variables), shape == LayoutShape::corners ? (chance(0.5) ? 1 : -1) : makeCoefficient() });
    if (shape == LayoutShape::chains && count == 2)
        constraint.terms = { { constraint.terms[0].first, 1 }, { constraint.terms[1].first, -1 } };
    constexpr LayoutRelation relations[]
        = { LayoutRelation::equal, LayoutRelation::equal, LayoutRelation::lessOrEqual, LayoutRelation::greaterOrEqual };
    constraint.relation = relations[below(4)];
    constraint.constant = makeConstant();
    constraint.priority = makePriority();
    return constraint;
}

// Variables 2n and 2n + 1 are the origin and the size of a view.
ExactConstraint RandomLayouts::makeViewConstraint()
{
    const std::size_t a = below(variables / 2) * 2;
    const std::size_t b = below(variables / 2) * 2;
    ExactConstraint constraint;
    constraint.priority = makePriority();
    constraint.constant = makeConstant();
    switch (below(6)) {
    case 0: // leading edges
        constraint.terms = { { a, 1 }, { b, -1 } };
        break;
    case 1: // trailing edges
        constraint.terms = { { a, 1 }, { a + 1, 1 }, { b, -1 }, { b + 1, -1 } };
        break;
    case 2: // one behind the other
        constraint.terms = { { a, 1 }, { b, -1 }, { b + 1, -1 } };
        break;
    case 3: // centres
        constraint.terms = { { a, 1 }, { a + 1, 0.5 }, { b, -1 }, { b + 1, -0.5 } };
        break;
    case 4: // sizes in proportion
        constraint.terms = { { a + 1, 1 }, { b + 1, chance(0.5) ? -1 : -0.5 } };
        break;
    default: // a size
        constraint.terms = { { a + 1, 1 } };
        constraint.relation = chance(0.5) ? LayoutRelation::equal
            : chance(0.5)                 ? LayoutRelation::lessOrEqual
                                          : LayoutRelation::greaterOrEqual;
        return constraint;
    }
    if (chance(0.3))
        constraint.relation = chance(0.5) ? LayoutRelation::lessOrEqual : LayoutRelation::greaterOrEqual;
    return constraint;
}

} // namespace layouttests
