#pragma once

#include "Platform/UIKit/UIImage.h"
#include "Platform/UIKit/UIView.h"

#include <memory>

namespace platform {

// Shows an image in its bounds as the content mode says; a template image in the tint colour. Touches pass through it. Its
// intrinsic size is the image's.
class UIImageView : public UIView {
public:
    explicit UIImageView(const CGRect& frame);
    explicit UIImageView(std::shared_ptr<const UIImage> image = nullptr); // as large as the image

    const std::shared_ptr<const UIImage>& image() const { return image_; } // null for none
    void setImage(std::shared_ptr<const UIImage> image);

    // UIView
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;

protected:
    void layoutSubviews() override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void showImage();
    void showTint();

    std::shared_ptr<const UIImage> image_;
};

} // namespace platform
