#include "UI/Utils/MVUtilities.h"

#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Folders.h"
#include "Platform/Foundation/NumberFormatter.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIPopoverPresentationController.h"
#include "Platform/UIKit/UIView.h"

namespace mv {

namespace {

std::unique_ptr<Bundle>& bundle()
{
    static auto kit = std::make_unique<Bundle>(Folders::executable() + "/MivoraUIKit.bundle");
    return kit;
}

} // namespace

const Bundle& kitBundle() { return *bundle(); }

void setKitBundlePath(const std::string& path) { bundle() = std::make_unique<Bundle>(path); }

std::shared_ptr<const UIImage> getImage(const std::string& imageName) { return UIImage::named(imageName, kitBundle()); }

std::string MVLocalized(const std::string& key) { return Bundle::mainBundle().localizedString(key, "", "MVLocalizable"); }

std::optional<std::string> getFormattedCurrencyString(double value, const std::optional<std::string>& currencyCode)
{
    NumberFormatter formatter;
    formatter.setUsesGroupingSeparator(true);
    formatter.setLocale(Locale::current());
    formatter.setCurrencyCode(currencyCode);
    return formatter.currencyString(value);
}

void showIpadActionSheet(const std::shared_ptr<UIView>& sourceView, UIPopoverPresentationController& popoverController)
{
    const CGPoint middle = sourceView->bounds().center();
    popoverController.setSourceView(sourceView);
    popoverController.setSourceRect(CGRect { middle.x, middle.y, 0, 0 });
    popoverController.setPermittedArrowDirections(UIPopoverArrowDirection::none);
}

UIDeviceOrientation checkAndGetDeviceInitialOrientation()
{
    const auto supported = UIApplication::shared().supportedInterfaceOrientations(UIApplication::shared().keyWindow().get());
    if (supported == UIInterfaceOrientationMask::all)
        return UIDevice::current().orientation();
    return UIDeviceOrientation::portrait;
}

} // namespace mv
