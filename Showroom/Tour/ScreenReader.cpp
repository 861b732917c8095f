#include "Showroom/Tour/ScreenReader.h"

#include "Platform/Host/SimulatedDevice.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIWindow.h"

#include <memory>
#include <string>

namespace showroom {

using namespace platform;

namespace {

bool shows(const UIView& view, std::string_view wanted)
{
    if (view.accessibilityIdentifier() == wanted)
        return true;
    if (const auto* button = dynamic_cast<const UIButton*>(&view))
        return button->currentTitle() == wanted;
    const auto* label = dynamic_cast<const UILabel*>(&view);
    return label && label->text() == wanted;
}

// Whether a finger there would reach the view, or what it lies in or around: not what covers it, nor something else where it is
// clipped away.
bool isReached(const UIView& view, CGPoint point)
{
    const auto windows = UIApplication::shared().windows();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        const auto hit = (*window)->hitTest({ point.x - (*window)->frame().x, point.y - (*window)->frame().y }, nullptr);
        if (hit)
            return hit->isDescendant(view) || view.isDescendant(*hit);
    }
    return false;
}

// The uppermost one, as a reader goes.
void search(const UIView& view, std::string_view wanted, const CGRect& screen, std::optional<CGRect>& found)
{
    if (view.isHidden() || view.alpha() == 0)
        return;
    const auto consider = [&](const CGRect& rect) {
        const CGPoint origin = view.window()->frame().origin();
        const CGRect frame = view.convertTo(rect, nullptr).offsetBy(origin.x, origin.y);
        if (screen.contains(frame.center()) && (!found || frame.y < found->y) && isReached(view, frame.center()))
            found = frame;
    };
    if (shows(view, wanted))
        consider(view.bounds());
    for (const auto& element : view.accessibilityElements())
        if (element.identifier == wanted || element.label == wanted)
            consider(element.frame);
    for (const auto& child : view.subviews())
        search(*child, wanted, screen, found);
}

} // namespace

std::optional<CGRect> findOnScreen(const SimulatedDevice& device, std::string_view nameOrText)
{
    const auto size = device.size();
    const CGRect screen = device.safeArea().inset({ 0, 0, size.width, size.height });
    const auto windows = UIApplication::shared().windows();
    std::optional<CGRect> found;
    for (const auto& window : windows)
        search(*window, nameOrText, screen, found);
    return found;
}

} // namespace showroom
