#pragma once

#include "Platform/UIKit/UIView.h"

#include <memory>
#include <string>
#include <vector>

namespace platform {
class UIButton;
class UIImage;
class UIStackView;
}

namespace showroom {

using namespace platform;

// The small parts of the shop's own pages, made with the kit's words.

// Adds a view that constraints will place.
std::shared_ptr<UIView> addConstrained(UIView& parent, const std::shared_ptr<UIView>& child);
// Constraints that lay the child along all edges of the parent, so many points inside.
void pinEdges(const UIView& child, const UIView& parent, CGFloat inset = 0);

std::shared_ptr<UIStackView> makeStack(
    NSLayoutConstraintAxis axis, CGFloat spacing, std::vector<std::shared_ptr<UIView>> views = {});
// The shop's picture of that name; null when it is not there.
std::shared_ptr<const UIImage> shopPicture(const std::string& name);

// A filled button, 44 points high.
std::shared_ptr<UIButton> makeFilledButton(const std::string& title);
// A card's background, without border and shadow colours: these follow the appearance.
std::shared_ptr<UIView> makeCard(CGFloat cornerRadius);
void renewCardColors(UIView& card);

} // namespace showroom
