#include "Showroom/Tour/ScreenReader.h"

#include "Platform/Host/SimulatedDevice.h"
#include "Platform/Host/ViewTree.h"

namespace showroom {

using namespace platform;

namespace {

CGRect frameOf(const JSONValue& node)
{
    const auto& frame = node["frame"];
    const auto side = [&](std::size_t index) { return frame[index].number().value_or(0); };
    return { side(0), side(1), side(2), side(3) };
}

bool isOn(const CGRect& area, CGPoint point)
{
    return point.x >= area.x && point.x < area.x + area.width && point.y >= area.y && point.y < area.y + area.height;
}

// The tree lists views back to front, so a later find is above an earlier one.
void search(const JSONValue& node, std::string_view wanted, const CGRect& screen, std::optional<CGRect>& found)
{
    if (node["visible"].boolean() == false)
        return;
    const auto frame = frameOf(node);
    const CGPoint middle { frame.x + frame.width / 2, frame.y + frame.height / 2 };
    if ((node["name"].text() == wanted || node["text"].text() == wanted) && isOn(screen, middle))
        found = frame;
    if (const auto* children = node["children"].array()) {
        for (const auto& child : *children)
            search(child, wanted, screen, found);
    }
}

} // namespace

std::optional<CGRect> findOnScreen(const SimulatedDevice& device, std::string_view nameOrText)
{
    const auto size = device.size();
    std::optional<CGRect> found;
    search(viewTree(device)["root"], nameOrText, device.safeArea().inset({ 0, 0, size.width, size.height }), found);
    return found;
}

} // namespace showroom
