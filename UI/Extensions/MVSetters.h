#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UITextField.h"
#include "UI/Extensions/MVSetter.h"

namespace mv {

// The words in which the kit configures views, each named after the one property it sets.

// Any view.

inline auto setBackgroundColor(std::optional<UIColor> color)
{
    return Setter { [=](UIView& view) { view.setBackgroundColor(color); } };
}
inline auto setTintColor(std::optional<UIColor> color)
{
    return Setter { [=](UIView& view) { view.setTintColor(color); } };
}
inline auto setLayerMaskToBound(bool masks)
{
    return Setter { [=](UIView& view) { view.layer()->setMasksToBounds(masks); } };
}
inline auto setLayerCornerRadius(CGFloat radius)
{
    return Setter { [=](UIView& view) { view.layer()->setCornerRadius(radius); } };
}
// The colour as it is in the present appearance: whoever sets a dynamic one sets it again when the appearance changes.
inline auto setBorderLayerColor(const UIColor& color)
{
    return Setter { [=](UIView& view) { view.layer()->setBorderColor(color.cgColor()); } };
}
inline auto setBorderLayerWidth(CGFloat width)
{
    return Setter { [=](UIView& view) { view.layer()->setBorderWidth(width); } };
}
inline auto setContentMode(UIViewContentMode mode)
{
    return Setter { [=](UIView& view) { view.setContentMode(mode); } };
}

// Labels, the titles of buttons, and text fields.

inline auto setFont(const UIFont& font)
{
    return Setter { OneOf {
        [=](UILabel& label) { label.setFont(font); },
        [=](UIButton& button) { button.titleLabel()->setFont(font); },
        [=](UITextField& field) { field.setFont(font); },
    } };
}
inline auto setTitleColor(const UIColor& color)
{
    return Setter { [=](UILabel& label) { label.setTextColor(color); } };
}
inline auto setTextAlignMent(NSTextAlignment alignment)
{
    return Setter { [=](UILabel& label) { label.setTextAlignment(alignment); } };
}
inline auto setNumberOfLine(int count)
{
    return Setter { [=](UILabel& label) { label.setNumberOfLines(count); } };
}
inline auto setText(std::optional<std::string> text) // absent clears it
{
    return Setter { [text = std::move(text)](UILabel& label) { label.setText(text); } };
}

// Text fields.

inline auto setTextColor(const UIColor& color)
{
    return Setter { [=](UITextField& field) { field.setTextColor(color); } };
}
inline auto setAttributedPlaceHolder(const NSAttributedString& placeholder)
{
    return Setter { [=](UITextField& field) { field.setAttributedPlaceholder(placeholder); } };
}
inline auto setBorderStyle(UITextBorderStyle style)
{
    return Setter { [=](UITextField& field) { field.setBorderStyle(style); } };
}

// Image views.

inline auto setImage(std::shared_ptr<const UIImage> image) // null shows none
{
    return Setter { [image = std::move(image)](UIImageView& view) { view.setImage(image); } };
}

// Buttons.

inline auto setImageEdgeInsets(const UIEdgeInsets& insets)
{
    return Setter { [=](UIButton& button) { button.setImageEdgeInsets(insets); } };
}
inline auto setContentEdgeInsets(const UIEdgeInsets& insets)
{
    return Setter { [=](UIButton& button) { button.setContentEdgeInsets(insets); } };
}
inline auto setTitleEdgeInsets(const UIEdgeInsets& insets)
{
    return Setter { [=](UIButton& button) { button.setTitleEdgeInsets(insets); } };
}
inline auto updateTitle(std::optional<std::string> title, UIControlState state = UIControlState::normal)
{
    return Setter { [title = std::move(title), state](UIButton& button) { button.setTitle(title, state); } };
}
inline auto updateImage(std::shared_ptr<const UIImage> image, UIControlState state = UIControlState::normal)
{
    return Setter { [image = std::move(image), state](UIButton& button) { button.setImage(image, state); } };
}
inline auto updateTitleColor(const UIColor& color, UIControlState state = UIControlState::normal)
{
    return Setter { [=](UIButton& button) { button.setTitleColor(color, state); } };
}

// Stack views.

inline auto setAxis(NSLayoutConstraintAxis axis)
{
    return Setter { [=](UIStackView& stack) { stack.setAxis(axis); } };
}
inline auto setDistributionMode(UIStackViewDistribution distribution)
{
    return Setter { [=](UIStackView& stack) { stack.setDistribution(distribution); } };
}
inline auto setAlignmentMode(UIStackViewAlignment alignment)
{
    return Setter { [=](UIStackView& stack) { stack.setAlignment(alignment); } };
}
inline auto setSpacing(CGFloat spacing)
{
    return Setter { [=](UIStackView& stack) { stack.setSpacing(spacing); } };
}

} // namespace mv
