#pragma once

#include "Platform/UIKit/UIColor.h"
#include "Service/MVPlatform.h"

#include <optional>
#include <string_view>

namespace mv {

// A fixed, opaque colour from "#rgb", "#rrggbb" or the same without "#". Anything else gives white with alpha 0.
UIColor colorWithHex(std::string_view hex);

// The fixed colour of an upper-case Latin letter, judged by the character's first Unicode scalar; the system's blue for any other
// character, an empty text and absence.
UIColor colorFromCharacter(std::optional<std::string_view> character);

// The colour with its brightness multiplied, and everything else kept; more than full brightness counts as full.
UIColor lighter(const UIColor& color, double factor = 1.35);
UIColor darker(const UIColor& color, double factor = 0.94);

} // namespace mv
