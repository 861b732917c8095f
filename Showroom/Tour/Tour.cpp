#include "Showroom/Tour/Tour.h"

#include "Platform/Foundation/NSLog.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/TourGuide.h"

#include <filesystem>

namespace showroom {

namespace {

constexpr double settleLength = 1.2; // seconds until a page or a turned device stands still

void changeDevice(TourGuide& guide, bool rightToLeft)
{
    guide.rotate(UIDeviceOrientation::landscapeLeft);
    guide.wait(settleLength);
    guide.takePicture("landscape");
    guide.rotate(UIDeviceOrientation::portrait);
    guide.wait(settleLength);
    guide.setAppearance(UIUserInterfaceStyle::dark);
    guide.wait(settleLength);
    guide.takePicture("dark");
    guide.setAppearance(UIUserInterfaceStyle::light);
    const auto other = rightToLeft ? UIUserInterfaceLayoutDirection::leftToRight : UIUserInterfaceLayoutDirection::rightToLeft;
    guide.setDirection(other);
    guide.wait(settleLength);
    guide.takePicture("other-direction");
    guide.setDirection(rightToLeft ? UIUserInterfaceLayoutDirection::rightToLeft : UIUserInterfaceLayoutDirection::leftToRight);
    guide.wait(settleLength);
}

} // namespace

bool playTour(ShowroomApp& app, HeadlessHost& host, const std::string& folder, bool withFilm)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        NSLog("tour not played: folder \"" + folder + "\" cannot be made: " + error.message());
        return false;
    }
    app.openShop();
    TourGuide guide(host, folder, withFilm, app.service());
    guide.wait(1);
    guide.takePicture("home");
    guide.tap("liveShowsButton");
    guide.wait(2.5);
    guide.takePicture("gallery");
    guide.tap("joinButton");
    guide.wait(settleLength);
    guide.takePicture("pressed");
    changeDevice(guide, host.device().state().direction == UIUserInterfaceLayoutDirection::rightToLeft);
    return guide.finish();
}

} // namespace showroom
