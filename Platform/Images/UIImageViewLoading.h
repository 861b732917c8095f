#pragma once

#include "Platform/Foundation/URL.h"
#include "Platform/UIKit/UIActivityIndicatorView.h"
#include "Platform/UIKit/UIImageView.h"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

// What turns in the middle of an image view while its picture is loaded.
struct SDWebImageActivityIndicator {
    UIActivityIndicatorViewStyle style = UIActivityIndicatorViewStyle::medium;

    static SDWebImageActivityIndicator mediumIndicator() { return { UIActivityIndicatorViewStyle::medium }; }
    static SDWebImageActivityIndicator grayIndicator() { return { UIActivityIndicatorViewStyle::gray }; }
    bool operator==(const SDWebImageActivityIndicator&) const = default;
};

// How a picture that had to be loaded comes into sight. One from memory is there at once.
struct SDWebImageTransition {
    double duration = 0; // seconds

    // Over the view's background, which stays as it is.
    static SDWebImageTransition fadeTransitionWithDuration(double seconds) { return { seconds }; }
};

// How an image view shows pictures from http, https and file addresses: unpacked to the very pixels that it needs as soon as it
// has a size, and again when it gets another one, with the former picture in place meanwhile. Loads go on while nobody sees the
// view, and end with it. Main thread.

// For loads from here on; absent: none.
void sd_setImageIndicator(UIImageView& view, std::optional<SDWebImageActivityIndicator> indicator);
void sd_setImageTransition(UIImageView& view, std::optional<SDWebImageTransition> transition);

// The image, null when it could not be had.
using SDExternalCompletionBlock = std::function<void(const std::shared_ptr<const UIImage>& image)>;

// Shows the picture of that address in place of whatever is there; the image's name is the address. The address that is already
// shown or under way is not loaded again. One that cannot be loaded leaves the view empty, with one console line. Absent: loads
// nothing and leaves the view empty. The completion comes once, at once where nothing has to be loaded; never for a load that
// another one replaces.
void sd_setImage(UIImageView& view, const std::optional<URL>& address, SDExternalCompletionBlock completion = {});
// Keeps what is shown.
void sd_cancelCurrentImageLoad(UIImageView& view);

} // namespace platform
