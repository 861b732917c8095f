#pragma once

#include "Platform/Foundation/Bundle.h"

#include <string>

namespace showroom {

// What a viewer types on a tour or in a scene, in the shop's language.
inline std::string tourText(const std::string& key) { return platform::Bundle::mainBundle().localizedString(key, "", "Tour"); }

} // namespace showroom
