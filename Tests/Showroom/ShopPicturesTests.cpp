#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/ViewTree.h"
#include "Showroom/Service/Scenario.h"
#include "Showroom/ShowroomApp.h"
#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsViewController.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace showroom {
namespace {

using namespace platform;

// The addresses of the pictures in a tree, in its order.
void collectPictures(const JSONValue& node, std::vector<std::string>& addresses)
{
    const auto image = node["image"].text();
    if (image && image->starts_with("http"))
        addresses.push_back(*image);
    if (const auto* children = node["children"].array()) {
        for (const auto& child : *children)
            collectPictures(child, addresses);
    }
}

// What the list shows after a while with those shows.
std::vector<std::string> picturesOfTheList(const std::function<void(Scenario&)>& change, HeadlessHost& host)
{
    ShowroomApp app(host.device().state());
    app.installService(change);
    app.show(make<mv::MVBroadcastsViewController>());
    host.advance(3);
    std::vector<std::string> addresses;
    collectPictures(viewTree(host.device())["root"], addresses);
    return addresses;
}

TEST(ShopPictures, comeFromTheShopsOwnServerIntoTheList)
{
    const LogCapture console;
    HeadlessHost host;
    std::string banner;
    const auto shown
        = picturesOfTheList([&](Scenario& scenario) { banner = scenario.broadcasts.front().banner.value_or(""); }, host);
    EXPECT_TRUE(banner.starts_with("http://127.0.0.1:")) << banner;
    EXPECT_NE(std::find(shown.begin(), shown.end(), banner), shown.end());
    EXPECT_GE(shown.size(), 2u);
    EXPECT_EQ(console.lines(), std::vector<std::string> {});
}

TEST(ShopPictures, oneThatIsMissingLeavesOneLineAndTheOthers)
{
    const LogCapture console;
    HeadlessHost host;
    std::string lost;
    const auto shown = picturesOfTheList(
        [&](Scenario& scenario) {
            for (auto& show : scenario.broadcasts) {
                if (show.status == mv::MVBroadcastStatus::live && lost.empty())
                    lost = *show.banner += ".none";
            }
        },
        host);
    EXPECT_GE(shown.size(), 1u);
    ASSERT_EQ(console.lines().size(), 1u);
    EXPECT_EQ(console.lines()[0], "image \"" + lost + "\" not shown: the server answered 404 Not Found");
}

} // namespace
} // namespace showroom
