#include "UI/Utils/MVSystemNotificationHandler.h"

#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UIScreen.h"

namespace mv {

namespace {

constexpr double defaultKeyboardDuration = 0.33; // seconds, for a keyboard that does not say

} // namespace

MVSystemNotificationHandler& MVSystemNotificationHandler::instance()
{
    static const auto& handler
        = *new std::shared_ptr<MVSystemNotificationHandler>(make<MVSystemNotificationHandler>()); // never destroyed
    return *handler;
}

MVSystemNotificationHandler::MVSystemNotificationHandler()
{
    using Delegate = MVSystemNotificationHandlerDelegate;
    const auto observe = [this](const char* name, NotificationCenter::Callback callback) {
        observers.push_back(NotificationCenter::defaultCenter().addObserver(name, std::move(callback)));
    };
    observe(UIDevice::orientationDidChangeNotification, [this](const Notification&) { deviceOrientationDidChange(); });
    observe(UIKeyboard::willChangeFrameNotification,
        [this](const Notification& notification) { keyboardWillChangeFrame(notification); });
    observe(UIApplication::didEnterBackgroundNotification,
        [this](const Notification&) { delegates.forEach(&Delegate::didAppBecomesInactive); });
    observe(UIApplication::didBecomeActiveNotification,
        [this](const Notification&) { delegates.forEach(&Delegate::didAppBecomesActive); });
}

void MVSystemNotificationHandler::addDelegate(
    const std::string& identifier, const std::shared_ptr<MVSystemNotificationHandlerDelegate>& delegate)
{
    delegates.add(delegate, identifier);
}

void MVSystemNotificationHandler::removeDelegate(const std::string& identifier) { delegates.remove(identifier); }

// An application that stands upright only is told portrait however the device lies.
void MVSystemNotificationHandler::deviceOrientationDidChange() const
{
    const auto& application = UIApplication::shared();
    auto orientation = UIDevice::current().orientation();
    const auto supported = application.supportedInterfaceOrientations(application.keyWindow().get());
    if (supported == UIInterfaceOrientationMask::portrait)
        orientation = UIDeviceOrientation::portrait;
    else if (orientation == UIDeviceOrientation::faceDown || orientation == UIDeviceOrientation::faceUp)
        return;
    delegates.forEach([orientation](auto& delegate) { delegate.didDeviceOrientationChanged(orientation); });
}

void MVSystemNotificationHandler::keyboardWillChangeFrame(const Notification& notification) const
{
    const auto* endFrame = notification.value<CGRect>(UIKeyboard::frameEndUserInfoKey);
    const auto* seconds = notification.value<double>(UIKeyboard::animationDurationUserInfoKey);
    const double newHeight = UIScreen::main().bounds().height - (endFrame ? endFrame->y : 0);
    const double duration = seconds ? *seconds : defaultKeyboardDuration;
    delegates.forEach([&](auto& delegate) { delegate.didKeyboardFrameChanged(newHeight, duration); });
}

} // namespace mv
