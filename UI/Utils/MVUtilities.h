#pragma once

#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UIImage.h"
#include "Service/MVPlatform.h"

#include <memory>
#include <optional>
#include <string>

namespace platform {
class Bundle;
class UIPopoverPresentationController;
class UIView;
}

namespace mv {

// The kit's own resources: its fonts and images. MivoraUIKit.bundle beside the executable, unless the host has put it elsewhere.
const Bundle& kitBundle();
// Before the first font or image of the kit is asked for.
void setKitBundlePath(const std::string& path);

// The kit's image of that name; null when there is none.
std::shared_ptr<const UIImage> getImage(const std::string& imageName);

// The host's text for the key, from the table "MVLocalizable" of its main bundle; the key itself when it has none.
std::string MVLocalized(const std::string& key);

// The value as an amount of money in the current locale; without a code in that locale's currency. Absent when there is no such
// amount or currency.
std::optional<std::string> getFormattedCurrencyString(double value, const std::optional<std::string>& currencyCode = {});

// Has a popover stand over the middle of the view, without an arrow.
void showIpadActionSheet(const std::shared_ptr<UIView>& sourceView, UIPopoverPresentationController& popoverController);

// What a screen lays itself out for when it is first shown: the device's own orientation (which may be face up, face down or
// unknown) where the host supports all four, else portrait.
UIDeviceOrientation checkAndGetDeviceInitialOrientation();

} // namespace mv
