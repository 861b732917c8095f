#include "Platform/QuartzCore/UsableNumbers.h"

#include "Platform/Foundation/NSLog.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace platform {

bool areUsable(const char* property, std::initializer_list<CGFloat> numbers)
{
    if (std::ranges::all_of(numbers, [](CGFloat number) { return std::isfinite(number); }))
        return true;
    NSLog(std::string("layer keeps its ") + property + ": the new one is infinite or not a number");
    return false;
}

} // namespace platform
