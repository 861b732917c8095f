#pragma once

#include "Platform/UIKit/UIControl.h"
#include "Platform/UIKit/UIFont.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIVisualEffectView.h"
#include "Service/MVPlatform.h"
#include "UI/Extensions/MVColor.h"

namespace mv {

// A pill: a square icon and a text of one or two lines side by side, on a dark blur when asked for. As large as its content and
// the paddings (points). Its setters return the view itself.
class MVHorizontalImageTextView : public UIControl {
public:
    enum class ImagePosition { right, left };

    explicit MVHorizontalImageTextView(const CGRect& frame = {});

    std::optional<ImagePosition> imagePostion() const { return imagePostion_; }
    MVHorizontalImageTextView& setImagePosition(std::optional<ImagePosition> position); // absent counts as right
    const UIEdgeInsets& imagePadding() const { return imagePadding_; }
    MVHorizontalImageTextView& setImagePadding(const UIEdgeInsets& padding);
    const UIEdgeInsets& labelPadding() const { return labelPadding_; }
    MVHorizontalImageTextView& setLabelPadding(const UIEdgeInsets& padding);

    // Until they are set the icon keeps its own colours, and the text is black in the system's medium weight.
    const UIColor& imageTintColor() const { return imageTintColor_; }
    MVHorizontalImageTextView& setImageTintColor(const UIColor& color);
    const UIColor& labelColor() const { return labelColor_; }
    MVHorizontalImageTextView& setLabelColor(const UIColor& color);
    const UIFont& labelFont() const { return labelFont_; }
    MVHorizontalImageTextView& setLabelFont(const UIFont& font);

    // The icon is the kit's image of that name. Absent clears the text, or the icon.
    MVHorizontalImageTextView& setLabelAndImage(
        const std::optional<std::string>& label, const std::optional<std::string>& imageName);
    MVHorizontalImageTextView& assignLabelAndImage(
        const std::optional<std::string>& label, const std::optional<std::string>& imageName);
    MVHorizontalImageTextView& updateLabelText(const std::string& text); // and lays out at once
    MVHorizontalImageTextView& showBlur(const UIColor& color); // under a container of that colour

private:
    void updateViewsConstraints();
    void deactivateViewsConstraints();
    void layOutImageLeft();
    void layOutImageRight();

    std::optional<ImagePosition> imagePostion_ = ImagePosition::left;
    UIEdgeInsets imagePadding_;
    UIEdgeInsets labelPadding_;
    UIColor imageTintColor_ = MVColor::accentColor();
    UIColor labelColor_ = UIColor::black();
    UIFont labelFont_ = UIFont::systemFont(16);
    std::shared_ptr<NSLayoutConstraint> imageLeadingConstraint, imageTrailingConstraint, imageTopConstraint,
        imageBottomConstraint;
    std::shared_ptr<NSLayoutConstraint> labelLeadingConstraint, labelTrailingConstraint, labelTopConstraint,
        labelBottomConstraint;
    std::shared_ptr<NSLayoutConstraint> imageAspectConstraint; // from the first left layout on, in either position
    std::shared_ptr<UIVisualEffectView> backBlurView;
    std::shared_ptr<UIView> containerView;
    std::shared_ptr<UIImageView> iconView;
    std::shared_ptr<UILabel> label;
};

} // namespace mv
