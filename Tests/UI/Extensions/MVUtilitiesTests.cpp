#include "UI/Utils/MVUtilities.h"

#include "Platform/Foundation/Bundle.h"
#include "Platform/Foundation/Locale.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UIApplication.h"
#include "Tests/Support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace mv {
namespace {

TEST(MVLocalized, readsTheHostsTableAndFallsBackToTheKey)
{
    const test::TemporaryFolder folder;
    std::filesystem::create_directories(folder / "en.lproj");
    std::ofstream(folder / "en.lproj/MVLocalizable.strings") << "\"mvJoin\" = \"Come in\";\n";
    const auto before = Bundle::mainBundle().bundlePath();
    Bundle::setMainBundle(folder.path());
    EXPECT_EQ(MVLocalized("mvJoin"), "Come in");
    EXPECT_EQ(MVLocalized("mvShare"), "mvShare");
    Bundle::setMainBundle(folder / "nothing here");
    EXPECT_EQ(MVLocalized("mvJoin"), "mvJoin");
    Bundle::setMainBundle(before);
}

TEST(getFormattedCurrencyString, readsAsTheLocaleWritesIt)
{
    Locale::setCurrent(Locale { "en_US" });
    EXPECT_EQ(getFormattedCurrencyString(1200, "JPY"), "¥1,200");
    Locale::setCurrent(Locale { "de_DE" });
    EXPECT_EQ(getFormattedCurrencyString(1234.5), "1.234,50\u00a0€");
    EXPECT_FALSE(getFormattedCurrencyString(std::numeric_limits<double>::quiet_NaN()));
    Locale::setCurrent(std::nullopt);
}

TEST(getImage, findsTheKitsImagesAndNothingElse)
{
    EXPECT_TRUE(getImage("shareIcon"));
    const LogCapture console;
    EXPECT_FALSE(getImage("no such image"));
    EXPECT_FALSE(getImage(""));
    EXPECT_TRUE(console.lines().empty());
}

TEST(checkAndGetDeviceInitialOrientation, isTheDevicesOnlyWhereAllFourAreSupported)
{
    auto& application = UIApplication::shared();
    auto& device = UIDevice::current();
    const auto initial = [&](UIInterfaceOrientationMask supported, UIDeviceOrientation held) {
        application.setSupportedInterfaceOrientations(supported);
        device.setOrientation(held);
        return checkAndGetDeviceInitialOrientation();
    };
    using Device = UIDeviceOrientation;
    using Mask = UIInterfaceOrientationMask;
    for (const auto held :
        { Device::unknown, Device::landscapeLeft, Device::portraitUpsideDown, Device::faceUp, Device::faceDown }) {
        EXPECT_EQ(initial(Mask::all, held), held);
        for (const auto some : { Mask::portrait, Mask::allButUpsideDown, Mask::landscape })
            EXPECT_EQ(initial(some, held), Device::portrait);
    }
    initial(Mask::all, Device::unknown);
}

} // namespace
} // namespace mv
