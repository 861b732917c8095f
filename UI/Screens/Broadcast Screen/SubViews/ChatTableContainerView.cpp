#include "UI/Screens/Broadcast Screen/SubViews/ChatTableContainerView.h"

namespace mv {

ChatTableContainerView::ChatTableContainerView(const CGRect& frame)
    : UIView(frame)
    , fadingGradientLayer(make<CAGradientLayer>())
    , fadingView(make<UIView>(CGRect {}, fadingGradientLayer))
{
    const auto seen = UIColor::white().cgColor(), unseen = UIColor::white(1, 0).cgColor();
    fadingGradientLayer->setColors({ unseen, seen, seen, unseen });
    fadingGradientLayer->setLocations({ 0, 0.25, 0.99, 1 });
    layer()->setMask(fadingGradientLayer);
}

void ChatTableContainerView::layoutSubviews()
{
    UIView::layoutSubviews();
    fadingView->setFrame(bounds());
}

} // namespace mv
