#pragma once

#include "Platform/Foundation/JSON.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/Host/ScreenRecorder.h"

#include <fstream>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace showroom {

class CannedService;

using namespace platform;

// Uses a shop that nobody sees as a viewer would, and keeps what happens in a folder: pictures, numbered in their order, a log of
// events in JSON, one a line, and on request a film. Main thread.
class TourGuide {
public:
    // The folder exists. The service, which outlives this, tells in the log what it is asked; null: it does not.
    TourGuide(HeadlessHost& host, std::string folder, bool withFilm, CannedService* service);
    ~TourGuide();
    TourGuide(const TourGuide&) = delete;
    TourGuide& operator=(const TourGuide&) = delete;

    void wait(double seconds);
    // Waits until something of that name or text can be touched, at most so many seconds.
    bool waitFor(std::string_view nameOrText, double seconds);
    // False, after a line in the log, when there is nothing of that name or text on the screen.
    bool tap(std::string_view nameOrText);
    // Key by key on the on-screen keyboard. False, after a line in the log, at the first character that no key on it types.
    bool type(const std::string& text);
    // A finger that goes from one part of the screen to another (0 to 1 from its leading top) within so many seconds.
    void drag(CGPoint from, CGPoint to, double seconds);
    void rotate(UIDeviceOrientation orientation);
    void setAppearance(UIUserInterfaceStyle appearance);
    void setDirection(UIUserInterfaceLayoutDirection direction);
    // Writes what is on the screen as NUMBER-NAME.png, which is there after finish.
    void takePicture(const std::string& name);
    // A remark in the log.
    void note(const std::string& what);

    // False when something that was to be tapped was not there or a file could not be written.
    bool finish();
    int pictureCount() const { return pictures; }

private:
    void log(const char* event, JSONObject detail);
    void logCall(const std::string& call);
    void press(CGPoint point);
    double time() const { return host.now() - start; }
    void film();

    HeadlessHost& host;
    const std::string folder;
    const double start; // on the host's clock
    CannedService* service;
    std::ofstream events;
    std::unique_ptr<ScreenRecorder> recorder; // null without a film
    std::optional<CGPoint> finger; // where it touches
    std::vector<std::future<bool>> written; // pictures
    int filmedFrame = -1; // the host's that was filmed last
    std::optional<CGPoint> filmedFinger;
    int pictures = 0;
    bool faultless = true;
};

} // namespace showroom
