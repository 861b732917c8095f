#pragma once

#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {
class UIButton;
class UIImage;
class UILabel;
class UIStackView;
}

namespace showroom {

using namespace platform;

// The small parts of the gallery, made with the kit's words.

// Adds a view that constraints will place.
std::shared_ptr<UIView> addConstrained(UIView& parent, const std::shared_ptr<UIView>& child);
// Constraints that lay the child along all edges of the parent, so many points inside.
void pinEdges(const UIView& child, const UIView& parent, CGFloat inset = 0);

std::shared_ptr<UIStackView> makeStack(
    NSLayoutConstraintAxis axis, CGFloat spacing, std::vector<std::shared_ptr<UIView>> views = {});
// The shop's picture of that name; null when it is not there.
std::shared_ptr<const UIImage> shopPicture(const std::string& name);
// The gallery's words in the viewer's language.
std::string galleryText(const std::string& key);

// A filled or an outlined button, 44 points high.
std::shared_ptr<UIButton> makeFilledButton(const std::string& title);
std::shared_ptr<UIButton> makeOutlinedButton(const std::string& title);
// An icon and a text on a dark pill.
std::shared_ptr<UIView> makePill(const std::string& icon, const std::shared_ptr<UILabel>& label, const UIColor& background);
// A letter in a circle of its own colour; the caller rounds it when its size is known.
std::shared_ptr<UIView> makeLetter(const std::string& letter, CGFloat side);
// A strip of a border along each side, in the colours of four letters.
std::shared_ptr<UIView> makeBorderedBox(CGFloat side);
// A card's background, without border and shadow colours: these follow the appearance.
std::shared_ptr<UIView> makeCard(CGFloat cornerRadius);
void renewCardColors(UIView& card);
std::shared_ptr<UIView> makeProductCard(const std::string& picture, const std::string& title, double price);

} // namespace showroom
