#pragma once

#include "Platform/UIKit/UIImage.h"
#include "Platform/UIKit/UIView.h"

#include <memory>

namespace platform {

class UIImageView;

// Brings an image view its pictures. The view holds it, and lets go of it when it ends.
class UIImageViewSource {
public:
    virtual ~UIImageViewSource() = default;
    // The pixels that the view needs may be others: its size, scale or content mode has changed. Also called during layout.
    virtual void imageViewDidChange(UIImageView& view) = 0;
};

// Shows an image in its bounds as the content mode says; a template image in the tint colour. Touches pass through it. Its
// intrinsic size is the image's.
class UIImageView : public UIView {
public:
    explicit UIImageView(const CGRect& frame);
    explicit UIImageView(std::shared_ptr<const UIImage> image = nullptr); // as large as the image

    const std::shared_ptr<const UIImage>& image() const { return image_; } // null for none
    void setImage(std::shared_ptr<const UIImage> image);
    UIImageViewSource* source() const { return source_.get(); } // null for none
    void setSource(std::unique_ptr<UIImageViewSource> source) { source_ = std::move(source); }

    // UIView
    void setContentMode(UIViewContentMode mode) override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(const CGSize& size) const override;

protected:
    void layoutSubviews() override;
    void tintColorDidChange() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;
    void boundsDidChange(const CGRect& previous) override;

private:
    void tellSource();
    void showImage();
    void showTint();

    std::shared_ptr<const UIImage> image_;
    std::unique_ptr<UIImageViewSource> source_;
};

} // namespace platform
