// Which view a touch belongs to, the recognisers that watch over it, and the end of writing in it.
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIGestureRecognizer.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>

namespace platform {

namespace {

// Below that a view cannot be seen, and takes no touches.
constexpr double leastAlpha = 0.01;

} // namespace

std::shared_ptr<UIView> UIView::hitTest(CGPoint point, const UIEvent* event)
{
    if (isHidden() || alpha() < leastAlpha || !userInteractionEnabled || !pointInside(point, event))
        return nullptr;
    const auto children = subviews_;
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        const CGAffineTransform outwards = (*child)->layer_->transformToSuperlayer();
        if (outwards.determinant() == 0)
            continue; // shrunk to nothing
        if (auto hit = (*child)->hitTest(outwards.inverted().apply(point), event))
            return hit;
    }
    return weak(this).lock();
}

bool UIView::pointInside(CGPoint point, const UIEvent* /*event*/) const { return bounds().contains(point); }

void UIView::setGestureRecognizers(const std::vector<std::shared_ptr<UIGestureRecognizer>>& recognizers)
{
    const auto present = gestureRecognizers_;
    for (const auto& recognizer : present)
        if (std::ranges::find(recognizers, recognizer) == recognizers.end())
            removeGestureRecognizer(*recognizer);
    for (const auto& recognizer : recognizers)
        addGestureRecognizer(recognizer);
}

void UIView::addGestureRecognizer(const std::shared_ptr<UIGestureRecognizer>& recognizer)
{
    if (!recognizer || recognizer->view_ == this)
        return;
    const auto added = recognizer;
    if (added->view_)
        added->view_->removeGestureRecognizer(*added);
    gestureRecognizers_.push_back(added);
    added->view_ = this;
}

void UIView::removeGestureRecognizer(const UIGestureRecognizer& recognizer)
{
    const auto found = std::ranges::find(gestureRecognizers_, &recognizer, &std::shared_ptr<UIGestureRecognizer>::get);
    if (found == gestureRecognizers_.end())
        return;
    const auto removed = *found;
    gestureRecognizers_.erase(found);
    removed->view_ = nullptr;
    removed->cancel();
}

bool UIView::endEditing(bool force)
{
    const auto responder = UIApplication::shared().firstResponder();
    const auto* view = dynamic_cast<const UIView*>(responder.get());
    if (!view || !view->isDescendant(*this))
        return true;
    if (!force)
        return responder->resignFirstResponder();
    responder->giveUpFirstResponder();
    return true;
}

} // namespace platform
