#include "Platform/UIKit/UIImageView.h"

namespace platform {

UIImageView::UIImageView(const CGRect& frame)
    : UIView(frame)
{
    UIView::setUserInteractionEnabled(false);
}

UIImageView::UIImageView(std::shared_ptr<const UIImage> image)
    : UIImageView(image ? CGRect { 0, 0, image->size().width, image->size().height } : CGRect {})
{
    setImage(std::move(image));
}

void UIImageView::setImage(std::shared_ptr<const UIImage> image)
{
    if (image_ == image)
        return;
    const CGSize formerSize = image_ ? image_->size() : CGSize { noIntrinsicMetric, noIntrinsicMetric };
    image_ = std::move(image);
    showImage();
    if (intrinsicContentSize() != formerSize)
        invalidateIntrinsicContentSize();
}

CGSize UIImageView::intrinsicContentSize() const { return image_ ? image_->size() : UIView::intrinsicContentSize(); }

CGSize UIImageView::sizeThatFits(const CGSize& /*size*/) const { return image_ ? image_->size() : CGSize {}; }

void UIImageView::setContentMode(UIViewContentMode mode)
{
    UIView::setContentMode(mode);
    tellSource();
}

void UIImageView::layoutSubviews()
{
    UIView::layoutSubviews();
    showImage(); // the direction may be another one
}

void UIImageView::tintColorDidChange() { showTint(); }

void UIImageView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    showImage();
    if (traitCollection().displayScale != previous.displayScale)
        tellSource();
}

void UIImageView::boundsDidChange(const CGRect& previous)
{
    UIView::boundsDidChange(previous);
    if (bounds().size() != previous.size())
        tellSource();
}

void UIImageView::tellSource()
{
    const auto self = weak(this).lock(); // whom it brings a picture may drop the view
    if (source_)
        source_->imageViewDidChange(*this);
}

void UIImageView::showImage()
{
    CALayer& target = *layer();
    const bool mirrors = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    target.setContents(image_ ? image_->cgImage(mirrors) : nullptr);
    if (image_)
        target.setContentsScale(image_->scale());
    showTint();
}

void UIImageView::showTint()
{
    const bool tinted = image_ && image_->isTemplate();
    layer()->setContentsTint(tinted ? std::optional(tintColor().cgColor(traitCollection())) : std::nullopt);
}

} // namespace platform
