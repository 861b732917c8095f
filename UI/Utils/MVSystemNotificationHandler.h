#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/UIOrientation.h"
#include "Service/MVPlatform.h"
#include "Service/MVServiceDelivery.h"

#include <memory>
#include <string>
#include <vector>

namespace mv {

// What a screen or a view hears of the system. Called on the main thread. Override what you need.
class MVSystemNotificationHandlerDelegate {
public:
    virtual ~MVSystemNotificationHandlerDelegate() = default;
    virtual void didDeviceOrientationChanged(UIDeviceOrientation /*newOrientation*/) { }
    // Points that the keyboard reaches above the screen's bottom, 0 when it leaves; seconds that its move takes.
    virtual void didKeyboardFrameChanged(CGFloat /*newHeight*/, double /*animationDuration*/) { }
    virtual void didAppBecomesInactive() { }
    virtual void didAppBecomesActive() { }
};

// Listens to the system once for the whole kit: device orientation, keyboard, background and foreground. Main thread.
class MVSystemNotificationHandler final : public NSObject {
public:
    static MVSystemNotificationHandler& instance(); // made at the first use, never destroyed

    MVSystemNotificationHandler(); // for make; instance is the one to use

    // Held weakly, until removed; a second delegate under the same identifier takes the first one's place.
    void addDelegate(const std::string& identifier, const std::shared_ptr<MVSystemNotificationHandlerDelegate>& delegate);
    void removeDelegate(const std::string& identifier);
    std::size_t delegateCount() const { return delegates.count(); }

private:
    void deviceOrientationDidChange() const;
    void keyboardWillChangeFrame(const Notification& notification) const;

    MVDelegateRegistry<MVSystemNotificationHandlerDelegate> delegates;
    std::vector<NotificationToken> observers;
};

} // namespace mv
