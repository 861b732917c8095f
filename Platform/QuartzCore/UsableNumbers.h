#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"

#include <initializer_list>

namespace platform {

// Whether a layer can take these numbers: false, after one console line that names the property, when one is infinite or none.
bool areUsable(const char* property, std::initializer_list<CGFloat> numbers);

} // namespace platform
