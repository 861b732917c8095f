#pragma once

#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Host/HostDevice.h"
#include "Platform/UIKit/UIOrientation.h"

namespace platform {

// How the simulated device is held and set up.
struct DeviceState {
    UIDeviceOrientation orientation = UIDeviceOrientation::portrait;
    UIUserInterfaceStyle appearance = UIUserInterfaceStyle::light;
    UIUserInterfaceLayoutDirection direction = UIUserInterfaceLayoutDirection::leftToRight;
    CGFloat keyboardHeight = 0; // points that the on-screen keyboard covers at the bottom
    bool hardwareKeyboard = false; // is connected: then the one on the screen stays away
};

// Makes the toolkit see a device: screen, traits, orientation. Both kinds of host stand on it. Main thread.
class SimulatedDevice {
public:
    explicit SimulatedDevice(HostDevice model, const DeviceState& state = {});
    ~SimulatedDevice();
    SimulatedDevice(const SimulatedDevice&) = delete;
    SimulatedDevice& operator=(const SimulatedDevice&) = delete;

    const HostDevice& model() const { return model_; }
    const DeviceState& state() const { return state_; }
    // How the interface stands: the last of the device's orientations that the application supports.
    UIInterfaceOrientation interfaceOrientation() const { return interface; }
    bool isLandscape() const;
    CGSize size() const; // points, as the interface stands
    UIEdgeInsets safeArea() const;
    int pixelWidth() const;
    int pixelHeight() const;

    // Turns the device; the interface follows within so many seconds (the platform's rotation takes 0.25) where the application
    // supports that orientation.
    void rotate(UIDeviceOrientation orientation, double duration = 0.25);
    void setAppearance(UIUserInterfaceStyle appearance);
    void setDirection(UIUserInterfaceLayoutDirection direction);
    void setModel(HostDevice model);
    // While one is connected the on-screen keyboard stays away; one that is up leaves.
    void setHardwareKeyboard(bool connected, double duration = 0.25);
    // On a tablet: the on-screen keyboard is a small panel that the viewer moves about; it covers nothing at the bottom.
    void setFloatingKeyboard(bool floats, double duration = 0.25);
    // Says that some other keyboard than the platform's own comes, goes (0) or changes its height in points, within so many
    // seconds. Nothing is drawn. What the platform's own says next holds again.
    void setKeyboardHeight(CGFloat height, double duration = 0.25);

private:
    void applyGeometry(double duration) const;
    void applyTraits() const;
    void followDevice();

    HostDevice model_;
    DeviceState state_;
    UIInterfaceOrientation interface = UIInterfaceOrientation::portrait;
    NotificationToken keyboardToken;
};

} // namespace platform
