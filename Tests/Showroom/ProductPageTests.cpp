#include "Main/MivoraUINotification.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"

#include <gtest/gtest.h>

namespace showroom {
namespace {

using namespace platform;

TEST(ProductPage, opensAtTheKitsWordAndFitsEveryDevice)
{
    for (const auto& model : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
        SCOPED_TRACE(model.name);
        const LogCapture console;
        HeadlessHost host(model);
        ShowroomApp app(host.device().state());
        app.openHome();
        host.advance(0.5);
        const auto tap = [&](const char* name) {
            const auto place = findOnScreen(host.device(), name);
            ASSERT_TRUE(place) << name;
            host.tap({ place->midX(), place->midY() });
            host.advance(1);
        };
        mv::postProductTapped(
            mv::MVProduct { .id = "nobody has it", .title = {}, .thumbnailUrl = {}, .productUrl = {}, .isFeatured = {} });
        host.advance(1);
        EXPECT_FALSE(findOnScreen(host.device(), "productPage"));

        mv::postProductTapped(*app.service()->findProduct("teapot-raspberry"));
        host.advance(1);
        EXPECT_TRUE(findOnScreen(host.device(), "Glazed Teapot, Raspberry, 0.9 l"));
        host.rotate(UIDeviceOrientation::landscapeLeft);
        host.advance(1);
        EXPECT_TRUE(findOnScreen(host.device(), "Glazed Teapot, Raspberry, 0.9 l"));
        tap("Add to Bag");
        EXPECT_TRUE(findOnScreen(host.device(), "In Your Bag"));
        host.rotate(UIDeviceOrientation::portrait);
        host.advance(1);
        tap("productBackButton");
        EXPECT_TRUE(findOnScreen(host.device(), "liveShowsButton"));
        EXPECT_EQ(console.lines(), std::vector<std::string> {});
    }
}

} // namespace
} // namespace showroom
