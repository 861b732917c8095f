#pragma once

#include "Platform/UIKit/Keyboard/KeyboardKey.h"
#include "Platform/UIKit/Keyboard/KeyboardMetrics.h"

#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The characters of a page from its top, a text for each key: three rows.
using KeyboardRows = std::vector<std::vector<std::string>>;
KeyboardRows keyboardRows(const KeyboardPlane& plane, KeyboardForm form);

std::string returnKeyTitle(UIReturnKeyType type, KeyboardScript script);
std::string spaceKeyTitle(KeyboardScript script);
std::string pageKeyTitle(KeyboardPage page, KeyboardScript script);
// The two that a tablet has beside its letters: comma and full stop.
std::vector<std::string> besideLetters(KeyboardScript script);
// Emoji at hand, the commonest first.
const std::vector<std::string>& keyboardEmoji();

} // namespace platform
