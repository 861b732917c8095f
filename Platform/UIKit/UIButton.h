#pragma once

#include "Platform/UIKit/UIControl.h"
#include "Platform/UIKit/UIImage.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class UIImageView;
class UILabel;

// An image and a title side by side, the image first, with what they are in each state. A state for which nothing is set takes
// what is set for normal. Its intrinsic size is that of image and title within the content insets.
class UIButton : public UIControl {
public:
    explicit UIButton(const CGRect& frame = {});

    // Absent takes the state's own entry away; an empty title is a title.
    void setTitle(std::optional<std::string> title, UIControlState state = UIControlState::normal);
    const std::string& title(UIControlState state) const; // with the fallback; empty for none
    const std::string& currentTitle() const { return title(state()); }
    void setTitleColor(std::optional<UIColor> color, UIControlState state = UIControlState::normal);
    UIColor titleColor(UIControlState state) const; // white where none is set
    UIColor currentTitleColor() const { return titleColor(state()); }
    void setImage(std::shared_ptr<const UIImage> image, UIControlState state = UIControlState::normal);
    const std::shared_ptr<const UIImage>& image(UIControlState state) const; // null for none
    const std::shared_ptr<const UIImage>& currentImage() const { return image(state()); }

    // The button's own views: set their font, content mode and the like, not their text, image or frame.
    const std::shared_ptr<UILabel>& titleLabel() const { return titleLabel_; }
    const std::shared_ptr<UIImageView>& imageView() const { return imageView_; }

    // Points; left and right change places in a right-to-left interface. The content's insets are part of the intrinsic size;
    // those of the image and the title move and squeeze them within it.
    const UIEdgeInsets& contentEdgeInsets() const { return contentInsets; }
    void setContentEdgeInsets(const UIEdgeInsets& insets);
    const UIEdgeInsets& imageEdgeInsets() const { return imageInsets; }
    void setImageEdgeInsets(const UIEdgeInsets& insets);
    const UIEdgeInsets& titleEdgeInsets() const { return titleInsets; }
    void setTitleEdgeInsets(const UIEdgeInsets& insets);
    // A pressed or disabled button without an image for that state shows its image at half strength.
    bool adjustsImageWhenHighlighted() const { return adjustsWhenHighlighted; }
    void setAdjustsImageWhenHighlighted(bool adjusts);

    // UIView
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;

protected:
    void layoutSubviews() override;
    void stateDidChange() override;
    void subviewContentSizeDidChange(UIView& subview) override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    CGFloat firstBaselineOffset() const override;
    CGFloat lastBaselineOffset() const override;

private:
    template <typename Value> using PerState = std::map<UIControlState, Value>;
    struct ContentFrames {
        CGRect image, title;
    };

    void showContent();
    bool isRightToLeft() const;
    CGFloat horizontalShare() const;
    CGFloat verticalShare() const;
    ContentFrames contentFrames() const; // as in a left-to-right interface
    CGRect onPixels(const CGRect& frame) const;

    PerState<std::string> titles;
    PerState<UIColor> titleColors;
    PerState<std::shared_ptr<const UIImage>> images;
    UIEdgeInsets contentInsets, imageInsets, titleInsets;
    bool adjustsWhenHighlighted = true;
    std::shared_ptr<UIImageView> imageView_;
    std::shared_ptr<UILabel> titleLabel_;
};

} // namespace platform
