#include "Platform/Host/SimulatedDevice.h"

#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UIScreen.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

UIInterfaceOrientation interfaceFor(UIDeviceOrientation orientation)
{
    switch (orientation) {
    case UIDeviceOrientation::portrait:
        return UIInterfaceOrientation::portrait;
    case UIDeviceOrientation::portraitUpsideDown:
        return UIInterfaceOrientation::portraitUpsideDown;
    case UIDeviceOrientation::landscapeLeft:
        return UIInterfaceOrientation::landscapeRight;
    case UIDeviceOrientation::landscapeRight:
        return UIInterfaceOrientation::landscapeLeft;
    default:
        return UIInterfaceOrientation::unknown;
    }
}

} // namespace

SimulatedDevice::SimulatedDevice(HostDevice model, const DeviceState& state)
    : model_(std::move(model))
    , state_(state)
{
    followDevice();
    applyTraits();
    applyGeometry(0);
    UIDevice::current().setOrientation(state_.orientation);
    auto& keyboard = ScreenKeyboard::shared();
    keyboard.attach();
    keyboard.setHardwareKeyboard(state_.hardwareKeyboard, 0);
    keyboardToken = NotificationCenter::defaultCenter().addObserver(
        UIKeyboard::willChangeFrameNotification, [this](const Notification& told) {
            if (const auto* frame = told.value<CGRect>(UIKeyboard::frameEndUserInfoKey))
                state_.keyboardHeight = std::clamp(size().height - frame->y, 0.0, size().height);
        });
}

SimulatedDevice::~SimulatedDevice()
{
    ScreenKeyboard::shared().detach();
    UIApplication::shared().forgetKeyboard();
}

bool SimulatedDevice::isLandscape() const
{
    return interface == UIInterfaceOrientation::landscapeLeft || interface == UIInterfaceOrientation::landscapeRight;
}

CGSize SimulatedDevice::size() const
{
    const auto& portrait = model_.portraitSize;
    return isLandscape() ? CGSize { portrait.height, portrait.width } : portrait;
}

UIEdgeInsets SimulatedDevice::safeArea() const { return isLandscape() ? model_.landscapeSafeArea : model_.portraitSafeArea; }

int SimulatedDevice::pixelWidth() const { return int(std::lround(size().width * model_.scale)); }

int SimulatedDevice::pixelHeight() const { return int(std::lround(size().height * model_.scale)); }

void SimulatedDevice::rotate(UIDeviceOrientation orientation, double duration)
{
    state_.orientation = orientation;
    const auto before = interface;
    followDevice();
    if (interface != before) {
        applyGeometry(duration);
        ScreenKeyboard::shared().deviceChanged(duration);
    }
    UIDevice::current().setOrientation(orientation);
}

void SimulatedDevice::setAppearance(UIUserInterfaceStyle appearance)
{
    state_.appearance = appearance;
    applyTraits();
    ScreenKeyboard::shared().deviceChanged(0);
}

void SimulatedDevice::setDirection(UIUserInterfaceLayoutDirection direction)
{
    state_.direction = direction;
    applyTraits();
    ScreenKeyboard::shared().deviceChanged(0);
}

void SimulatedDevice::setModel(HostDevice model)
{
    model_ = std::move(model);
    applyTraits();
    applyGeometry(0);
    ScreenKeyboard::shared().deviceChanged(0);
}

void SimulatedDevice::setHardwareKeyboard(bool connected, double duration)
{
    state_.hardwareKeyboard = connected;
    ScreenKeyboard::shared().setHardwareKeyboard(connected, duration);
}

void SimulatedDevice::setFloatingKeyboard(bool floats, double duration)
{
    ScreenKeyboard::shared().setFloating(floats, duration);
}

void SimulatedDevice::setKeyboardHeight(CGFloat height, double duration)
{
    const CGFloat covered = std::clamp(height, 0.0, size().height);
    const CGRect frame { 0, size().height - covered, size().width, covered };
    NotificationCenter::defaultCenter().post(UIKeyboard::willChangeFrameNotification, nullptr,
        { { UIKeyboard::frameEndUserInfoKey, frame }, { UIKeyboard::animationDurationUserInfoKey, duration } });
}

void SimulatedDevice::applyGeometry(double duration) const { UIScreen::main().setGeometry(size(), safeArea(), duration); }

void SimulatedDevice::applyTraits() const
{
    UIScreen::main().setTraitCollection({ .userInterfaceStyle = state_.appearance,
        .userInterfaceIdiom = model_.idiom,
        .layoutDirection = state_.direction,
        .displayScale = model_.scale });
}

void SimulatedDevice::followDevice()
{
    const auto wanted = interfaceFor(state_.orientation);
    const auto& application = UIApplication::shared();
    const auto supported = application.supportedInterfaceOrientations(application.keyWindow().get());
    if (wanted != UIInterfaceOrientation::unknown && contains(supported, wanted))
        interface = wanted;
}

} // namespace platform
