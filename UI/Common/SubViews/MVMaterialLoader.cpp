#include "UI/Common/SubViews/MVMaterialLoader.h"

#include "Platform/UIKit/UIDevice.h"
#include "UI/Extensions/MVColor.h"

#include <algorithm>

namespace mv {

namespace {

UIBlurEffect::Style blurStyle()
{
    return UIDevice::current().systemMajorVersion() >= 13 ? UIBlurEffect::Style::systemThinMaterial
                                                          : UIBlurEffect::Style::regular;
}

} // namespace

MVMaterialLoader::MVMaterialLoader(const CGRect& frame)
    : UIView(frame)
    , loader(make<MVLoader>())
    , backBlurView(make<UIVisualEffectView>(UIBlurEffect { blurStyle() }))
{
    setBackgroundColor(UIColor::clear());
    loader->setColor(MVColor::accentColor());
    loader->setLineWidth(3);
    loader->setAccessibilityIdentifier("loader");
    backBlurView->setAccessibilityIdentifier("backBlurView");
    addSubview(backBlurView);
    addSubview(loader);
}

void MVMaterialLoader::layoutSubviews()
{
    UIView::layoutSubviews();
    bringSubviewToFront(*loader);
    backBlurView->setFrame(bounds());
    const double width = std::max(0.0, bounds().width - 20), height = std::max(0.0, bounds().height - 20);
    loader->setFrame({ 0, 0, width, height });
    loader->setCenter({ bounds().width / 2, bounds().height / 2 });
    if (loader->radius() != height / 2) {
        loader->setRadius(height / 2);
        loader->setNeedsLayout();
    }
    loader->startAnimating();
    backBlurView->setHidden(true);
}

void MVMaterialLoader::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    loader->setColor(MVColor::accentColor());
}

} // namespace mv
