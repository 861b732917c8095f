#pragma once

#include <string>

namespace platform {

class NSObject;

// The object's C++ type without its namespaces: "UILabel".
std::string className(const NSObject& object);

} // namespace platform
