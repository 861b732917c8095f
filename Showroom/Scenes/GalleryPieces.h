#pragma once

#include "Platform/UIKit/UIView.h"

#include <memory>
#include <string>

namespace platform {
class UIButton;
class UILabel;
}

namespace showroom {

using namespace platform;

// The small parts of the gallery, made with the kit's words.

// The gallery's words in the viewer's language.
std::string galleryText(const std::string& key);
// An outlined button, 44 points high.
std::shared_ptr<UIButton> makeOutlinedButton(const std::string& title);
// An icon and a text on a dark pill.
std::shared_ptr<UIView> makePill(const std::string& icon, const std::shared_ptr<UILabel>& label, const UIColor& background);
// A letter in a circle of its own colour; the caller rounds it when its size is known.
std::shared_ptr<UIView> makeLetter(const std::string& letter, CGFloat side);
// A strip of a border along each side, in the colours of four letters.
std::shared_ptr<UIView> makeBorderedBox(CGFloat side);
std::shared_ptr<UIView> makeProductCard(const std::string& picture, const std::string& title, double price);

} // namespace showroom
