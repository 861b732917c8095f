#include "Platform/UIKit/Layout/LayoutEquation.h"

namespace platform {

LayoutTerms::LayoutTerms(std::initializer_list<LayoutTerm> list)
{
    for (const LayoutTerm& term : list)
        add(term);
}

void LayoutTerms::add(LayoutTerm term)
{
    unsigned index = 0;
    while (index < count && terms[index].variable != term.variable)
        ++index;
    if (index == capacity) {
        overfull = true;
        return;
    }
    if (index == count)
        terms[count++] = term;
    else
        terms[index].coefficient += term.coefficient;
    if (terms[index].coefficient == 0)
        terms[index] = terms[--count];
}

} // namespace platform
