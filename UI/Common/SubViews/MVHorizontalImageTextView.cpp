#include "UI/Common/SubViews/MVHorizontalImageTextView.h"

#include "Platform/UIKit/UIDevice.h"
#include "UI/Common/SubViews/Pinning.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {

namespace {

UIBlurEffect::Style blurStyle()
{
    return UIDevice::current().systemMajorVersion() >= 13 ? UIBlurEffect::Style::systemMaterialDark : UIBlurEffect::Style::dark;
}

} // namespace

MVHorizontalImageTextView::MVHorizontalImageTextView(const CGRect& frame)
    : UIControl(frame)
    , backBlurView(make<UIVisualEffectView>(UIBlurEffect { blurStyle() }))
    , containerView(make<UIView>())
    , iconView(make<UIImageView>())
    , label(make<UILabel>())
{
    backBlurView->setAccessibilityIdentifier("backBlurView");
    containerView->setAccessibilityIdentifier("containerView");
    iconView->setAccessibilityIdentifier("iconView");
    label->setAccessibilityIdentifier("label");
    backBlurView->setHidden(true);
    containerView->setBackgroundColor(UIColor::clear());
    iconView->setBackgroundColor(UIColor::clear());
    iconView->setClipsToBounds(true);
    label->setBackgroundColor(UIColor::clear());
    label->setTextColor(UIColor::black());
    label->setFont(UIFont::systemFont(16, UIFontWeight::medium));
    label->setNumberOfLines(2);
    label->setTextAlignment(NSTextAlignment::left);
    label->setText("");
    // A touch anywhere on the pill is the control's.
    backBlurView->setUserInteractionEnabled(false);
    containerView->setUserInteractionEnabled(false);

    addSubview(backBlurView);
    addSubview(containerView);
    containerView->addSubview(iconView);
    containerView->addSubview(label);
    iconView->setTranslatesAutoresizingMaskIntoConstraints(false);
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    pinEdges(*containerView, *this);
    pinEdges(*backBlurView, *containerView);
    updateViewsConstraints();
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setImagePosition(std::optional<ImagePosition> position)
{
    imagePostion_ = position;
    updateViewsConstraints();
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setImagePadding(const UIEdgeInsets& padding)
{
    imagePadding_ = padding;
    updateViewsConstraints();
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setLabelPadding(const UIEdgeInsets& padding)
{
    labelPadding_ = padding;
    updateViewsConstraints();
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setImageTintColor(const UIColor& color)
{
    imageTintColor_ = color;
    iconView->setTintColor(color);
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setLabelColor(const UIColor& color)
{
    labelColor_ = color;
    label->setTextColor(color);
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setLabelFont(const UIFont& font)
{
    labelFont_ = font;
    label->setFont(font);
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::setLabelAndImage(
    const std::optional<std::string>& text, const std::optional<std::string>& imageName)
{
    label->setText(text);
    iconView->setImage(getImage(imageName.value_or("")));
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::assignLabelAndImage(
    const std::optional<std::string>& text, const std::optional<std::string>& imageName)
{
    return setLabelAndImage(text, imageName);
}

MVHorizontalImageTextView& MVHorizontalImageTextView::updateLabelText(const std::string& text)
{
    label->setText(text);
    layoutIfNeeded();
    return *this;
}

MVHorizontalImageTextView& MVHorizontalImageTextView::showBlur(const UIColor& color)
{
    containerView->setBackgroundColor(color);
    backBlurView->setHidden(false);
    return *this;
}

void MVHorizontalImageTextView::updateViewsConstraints()
{
    deactivateViewsConstraints();
    imageTopConstraint = iconView->topAnchor().equalTo(containerView->topAnchor(), imagePadding_.top);
    imageBottomConstraint = iconView->bottomAnchor().equalTo(containerView->bottomAnchor(), -imagePadding_.bottom);
    labelTopConstraint = label->topAnchor().equalTo(containerView->topAnchor(), labelPadding_.top);
    labelBottomConstraint = label->bottomAnchor().equalTo(containerView->bottomAnchor(), -labelPadding_.bottom);
    if (imagePostion_ == ImagePosition::left)
        layOutImageLeft();
    else
        layOutImageRight();
    for (const auto& constraint : { imageTopConstraint, imageBottomConstraint, imageLeadingConstraint, imageTrailingConstraint,
             labelTopConstraint, labelBottomConstraint, labelLeadingConstraint, labelTrailingConstraint })
        if (constraint)
            constraint->setActive(true);
}

void MVHorizontalImageTextView::deactivateViewsConstraints()
{
    for (auto* constraint : { &imageTopConstraint, &imageBottomConstraint, &imageLeadingConstraint, &imageTrailingConstraint,
             &labelTopConstraint, &labelBottomConstraint, &labelLeadingConstraint, &labelTrailingConstraint })
        if (const auto former = std::exchange(*constraint, nullptr))
            former->setActive(false);
}

void MVHorizontalImageTextView::layOutImageLeft()
{
    if (!imageAspectConstraint) {
        imageAspectConstraint = iconView->widthAnchor().equalTo(iconView->heightAnchor());
        imageAspectConstraint->setActive(true);
    }
    imageLeadingConstraint = iconView->leadingAnchor().equalTo(containerView->leadingAnchor(), imagePadding_.left);
    labelLeadingConstraint = label->leadingAnchor().equalTo(iconView->trailingAnchor(), labelPadding_.left);
    labelTrailingConstraint = label->trailingAnchor().equalTo(containerView->trailingAnchor(), -labelPadding_.right);
}

void MVHorizontalImageTextView::layOutImageRight()
{
    labelLeadingConstraint = label->leadingAnchor().equalTo(containerView->leadingAnchor(), labelPadding_.left);
    imageLeadingConstraint = iconView->leadingAnchor().equalTo(label->trailingAnchor(), imagePadding_.left);
    imageTrailingConstraint = iconView->trailingAnchor().equalTo(containerView->trailingAnchor(), -imagePadding_.right);
}

} // namespace mv
