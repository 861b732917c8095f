#include "Platform/UIKit/UIButton.h"

#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {
constexpr CGFloat dimmed = 0.5; // alpha of the image of a pressed or disabled button

template <typename Values> const typename Values::mapped_type* valueFor(const Values& values, UIControlState state)
{
    auto entry = values.find(state);
    if (entry == values.end())
        entry = values.find(UIControlState::normal);
    return entry == values.end() ? nullptr : &entry->second;
}
}

UIButton::UIButton(const CGRect& frame)
    : UIControl(frame)
    , imageView_(make<UIImageView>())
    , titleLabel_(make<UILabel>())
{
    imageView_->setAccessibilityIdentifier("imageView");
    imageView_->setHidden(true);
    titleLabel_->setAccessibilityIdentifier("titleLabel");
    titleLabel_->setHidden(true);
    titleLabel_->setFont(UIFont::systemFont(UIFont::buttonFontSize));
    titleLabel_->setLineBreakMode(NSLineBreakMode::byTruncatingMiddle);
    titleLabel_->setTextColor(UIColor::white());
    addSubview(imageView_);
    addSubview(titleLabel_);
}

void UIButton::setTitle(std::optional<std::string> title, UIControlState state)
{
    if (title)
        titles.insert_or_assign(state, std::move(*title));
    else
        titles.erase(state);
    showContent();
}

const std::string& UIButton::title(UIControlState state) const
{
    static const std::string none;
    const std::string* title = valueFor(titles, state);
    return title ? *title : none;
}

void UIButton::setTitleColor(std::optional<UIColor> color, UIControlState state)
{
    if (color)
        titleColors.insert_or_assign(state, *color);
    else
        titleColors.erase(state);
    showContent();
}

UIColor UIButton::titleColor(UIControlState state) const
{
    const UIColor* color = valueFor(titleColors, state);
    return color ? *color : UIColor::white();
}

void UIButton::setImage(std::shared_ptr<const UIImage> image, UIControlState state)
{
    if (image)
        images.insert_or_assign(state, std::move(image));
    else
        images.erase(state);
    showContent();
}

const std::shared_ptr<const UIImage>& UIButton::image(UIControlState state) const
{
    static const std::shared_ptr<const UIImage> none;
    const auto* image = valueFor(images, state);
    return image ? *image : none;
}

void UIButton::setContentEdgeInsets(const UIEdgeInsets& insets)
{
    if (contentInsets == insets)
        return;
    contentInsets = insets;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void UIButton::setImageEdgeInsets(const UIEdgeInsets& insets)
{
    if (imageInsets == insets)
        return;
    imageInsets = insets;
    setNeedsLayout();
}

void UIButton::setTitleEdgeInsets(const UIEdgeInsets& insets)
{
    if (titleInsets == insets)
        return;
    titleInsets = insets;
    setNeedsLayout();
}

void UIButton::setAdjustsImageWhenHighlighted(bool adjusts)
{
    adjustsWhenHighlighted = adjusts;
    showContent();
}

CGSize UIButton::intrinsicContentSize() const
{
    const CGSize image = imageView_->sizeThatFits({});
    const CGSize title = titleLabel_->sizeThatFits({});
    return { contentInsets.horizontal() + image.width + title.width,
        contentInsets.vertical() + std::max(image.height, title.height) };
}

CGSize UIButton::sizeThatFits(const CGSize& /*size*/) const { return intrinsicContentSize(); }

void UIButton::layoutSubviews()
{
    UIControl::layoutSubviews();
    ContentFrames frames = contentFrames();
    if (isRightToLeft()) {
        frames.image.x = bounds().x + bounds().maxX() - frames.image.maxX();
        frames.title.x = bounds().x + bounds().maxX() - frames.title.maxX();
    }
    imageView_->setFrame(onPixels(frames.image));
    titleLabel_->setFrame(onPixels(frames.title));
}

void UIButton::stateDidChange()
{
    UIControl::stateDidChange();
    showContent();
    setNeedsLayout();
}

void UIButton::subviewContentSizeDidChange(UIView& subview)
{
    UIControl::subviewContentSizeDidChange(subview);
    if (&subview != imageView_.get() && &subview != titleLabel_.get())
        return;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void UIButton::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIControl::traitCollectionDidChange(previous);
    setNeedsLayout();
}

CGFloat UIButton::firstBaselineOffset() const { return contentInsets.top + titleLabel_->firstBaselineOffset(); }

CGFloat UIButton::lastBaselineOffset() const { return contentInsets.bottom + titleLabel_->lastBaselineOffset(); }

void UIButton::showContent()
{
    const UIControlState present = state();
    titleLabel_->setText(title(present));
    titleLabel_->setTextColor(titleColor(present));
    titleLabel_->setHidden(title(present).empty());

    const auto& shown = image(present);
    imageView_->setImage(shown);
    imageView_->setHidden(!shown);
    const bool hasOwnImage = present == UIControlState::normal || images.contains(present);
    const bool isDimmed = contains(present, UIControlState::highlighted) || contains(present, UIControlState::disabled);
    imageView_->setAlpha(isDimmed && adjustsWhenHighlighted && !hasOwnImage ? dimmed : 1);
}

bool UIButton::isRightToLeft() const
{
    return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
}

// Where the content begins in the room that it leaves free: 0 at the left, 1 at the right, as in a left-to-right interface.
CGFloat UIButton::horizontalShare() const
{
    switch (contentHorizontalAlignment()) {
    case UIControlContentHorizontalAlignment::center:
        return 0.5;
    case UIControlContentHorizontalAlignment::leading:
        return 0;
    case UIControlContentHorizontalAlignment::trailing:
        return 1;
    case UIControlContentHorizontalAlignment::left:
        return isRightToLeft() ? 1 : 0;
    case UIControlContentHorizontalAlignment::right:
        return isRightToLeft() ? 0 : 1;
    }
    return 0.5;
}

CGFloat UIButton::verticalShare() const
{
    switch (contentVerticalAlignment()) {
    case UIControlContentVerticalAlignment::top:
        return 0;
    case UIControlContentVerticalAlignment::bottom:
        return 1;
    case UIControlContentVerticalAlignment::center:
        break;
    }
    return 0.5;
}

// Image and title are placed one by one, each as if it alone had insets: so an inset on one side moves it by half of that when
// the content is centred. What finds no room is squeezed, each side for itself.
UIButton::ContentFrames UIButton::contentFrames() const
{
    const CGRect content = contentInsets.inset(bounds());
    const CGRect imageRoom = imageInsets.inset(content), titleRoom = titleInsets.inset(content);
    const CGSize naturalImage = imageView_->sizeThatFits({});
    const CGSize image { std::clamp(naturalImage.width, 0.0, std::max(imageRoom.width, 0.0)),
        std::clamp(naturalImage.height, 0.0, std::max(imageRoom.height, 0.0)) };
    const CGFloat widthForTitle = std::max(titleRoom.width - image.width, 0.0);
    const CGSize naturalTitle = titleLabel_->sizeThatFits({ widthForTitle, 0 });
    const CGSize title { std::min(naturalTitle.width, widthForTitle),
        std::clamp(naturalTitle.height, 0.0, std::max(titleRoom.height, 0.0)) };

    const CGFloat titleBesideImage = std::min(naturalTitle.width, std::max(content.width - image.width, 0.0));
    const CGFloat across = horizontalShare(), down = verticalShare();
    return {
        { imageRoom.x + across * (imageRoom.width - image.width - titleBesideImage),
            imageRoom.y + down * (imageRoom.height - image.height), image.width, image.height },
        { titleRoom.x + across * (titleRoom.width - image.width - title.width) + image.width,
            titleRoom.y + down * (titleRoom.height - title.height), title.width, title.height },
    };
}

CGRect UIButton::onPixels(const CGRect& frame) const
{
    const CGFloat scale = traitCollection().displayScale;
    return { std::round(frame.x * scale) / scale, std::round(frame.y * scale) / scale, frame.width, frame.height };
}

} // namespace platform
