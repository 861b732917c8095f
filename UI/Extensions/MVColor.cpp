#include "UI/Extensions/MVColor.h"

#include "Platform/UIKit/UIDevice.h"
#include "UI/Extensions/MVColorExtensions.h"

namespace mv {

namespace {

bool hasDynamicColors() { return UIDevice::current().systemMajorVersion() >= 13; }

// Only the dark appearance has the second colour; an unspecified one counts as light.
UIColor lightOrDark(const char* light, const char* dark)
{
    return UIColor::dynamic([light = colorWithHex(light), dark = colorWithHex(dark)](
                                const UITraitCollection& traits) { return traits.isDark() ? dark : light; });
}

} // namespace

UIColor MVDefaultColors::backgroundColor()
{
    return hasDynamicColors() ? lightOrDark("#fafafa", "#000000") : colorWithHex("#fafafa");
}

UIColor MVDefaultColors::cardBackgroundColor()
{
    return hasDynamicColors() ? lightOrDark("#ffffff", "#0c0c0e") : colorWithHex("#ffffff");
}

UIColor MVDefaultColors::shadowColor() { return hasDynamicColors() ? UIColor::systemGray4() : colorWithHex("#fafafa"); }

UIColor MVDefaultColors::primaryTextColor() { return hasDynamicColors() ? UIColor::label() : colorWithHex("#000000"); }

UIColor MVDefaultColors::secondaryTextColor() { return hasDynamicColors() ? UIColor::secondaryLabel() : colorWithHex("#8D8D93"); }

UIColor MVDefaultColors::seperatorColor()
{
    return hasDynamicColors() ? UIColor::separator() : colorWithHex("#3c3c43").withAlphaComponent(0.29);
}

UIColor MVDefaultColors::systemGray5() { return hasDynamicColors() ? UIColor::systemGray5() : colorWithHex("#E5E5EA"); }

} // namespace mv
