#include "Platform/Foundation/Date.h"

#include "Platform/Foundation/Clock.h"

namespace platform {

Date Date::now() { return { Clock::current().wallTime() }; }

} // namespace platform
