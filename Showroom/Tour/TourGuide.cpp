#include "Showroom/Tour/TourGuide.h"

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/Foundation/NSLog.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/Tour/ScreenReader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace showroom {

namespace {

constexpr double touchInterval = 1.0 / 60; // seconds between the places of a finger
constexpr double tapLength = 0.08; // seconds

JSONArray place(CGPoint point) { return { std::round(point.x * 10) / 10, std::round(point.y * 10) / 10 }; }

constexpr double markRadius = 18; // points
constexpr double markStrength = 0.35; // 0 to 1

// A copy of the frame with a gray disc where the finger touches, so that whoever watches the film sees what moves the screen.
std::shared_ptr<const Bitmap> withMark(const Bitmap& frame, CGPoint point, double scale)
{
    auto copy = Bitmap::make(frame.width(), frame.height(), frame.format());
    if (!copy)
        return nullptr;
    for (int y = 0; y < frame.height(); ++y)
        std::copy_n(frame.row(y), frame.width(), copy->row(y));
    const double x = point.x * scale, y = point.y * scale, radius = markRadius * scale;
    const int left = std::max(int(x - radius), 0), right = std::min(int(x + radius) + 1, frame.width());
    const int top = std::max(int(y - radius), 0), bottom = std::min(int(y + radius) + 1, frame.height());
    for (int row = top; row < bottom; ++row) {
        for (int column = left; column < right; ++column) {
            const double inside = std::clamp(radius - std::hypot(column + 0.5 - x, row + 0.5 - y), 0.0, 1.0) * markStrength;
            auto& pixel = copy->row(row)[column];
            std::uint32_t blended = 0;
            for (int shift = 0; shift < 24; shift += 8)
                blended |= std::uint32_t((pixel >> shift & 255) * (1 - inside) + 128 * inside) << shift;
            pixel = blended;
        }
    }
    return copy;
}

} // namespace

TourGuide::TourGuide(HeadlessHost& newHost, std::string newFolder, bool withFilm, const CannedService* newService)
    : host(newHost)
    , folder(std::move(newFolder))
    , service(newService)
    , events(folder + "/events.jsonl", std::ios::binary)
{
    if (withFilm) {
        film = ScreenRecorder::open(folder + "/tour.mp4", host);
        faultless = film != nullptr;
    }
}

void TourGuide::wait(double seconds)
{
    pass(seconds);
    logCalls();
}

bool TourGuide::tap(std::string_view nameOrText)
{
    pass(0); // what the viewer sees is what is hit
    const auto frame = findOnScreen(host.device(), nameOrText);
    if (!frame) {
        faultless = false;
        log("missing", { { "view", nameOrText } });
        NSLog("tour: there is no \"" + std::string(nameOrText) + "\" on the screen to tap");
        return false;
    }
    const CGPoint point { frame->x + frame->width / 2, frame->y + frame->height / 2 };
    log("tap", { { "view", nameOrText }, { "point", place(point) } });
    host.touchDown(point);
    finger = point;
    pass(tapLength);
    host.touchUp(point);
    finger.reset();
    wait(0);
    return true;
}

void TourGuide::drag(CGPoint from, CGPoint to, double seconds)
{
    const auto size = host.device().size();
    const bool mirrored = host.device().state().direction == UIUserInterfaceLayoutDirection::rightToLeft;
    const auto onScreen = [&](double part) {
        const CGPoint point { from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part };
        return CGPoint { (mirrored ? 1 - point.x : point.x) * size.width, point.y * size.height };
    };
    log("drag", { { "from", place(onScreen(0)) }, { "to", place(onScreen(1)) }, { "seconds", seconds } });
    host.touchDown(onScreen(0));
    finger = onScreen(0);
    const int steps = std::max(int(std::lround(seconds / touchInterval)), 1);
    for (int step = 1; step <= steps; ++step) {
        pass(seconds / steps);
        finger = onScreen(double(step) / steps);
        host.touchMove(*finger);
    }
    host.touchUp(onScreen(1));
    finger.reset();
    wait(0);
}

void TourGuide::rotate(UIDeviceOrientation orientation)
{
    host.rotate(orientation);
    log("rotate", { { "landscape", host.device().isLandscape() } });
}

void TourGuide::setAppearance(UIUserInterfaceStyle appearance)
{
    log("appearance", { { "dark", appearance == UIUserInterfaceStyle::dark } });
    host.setAppearance(appearance);
}

void TourGuide::setDirection(UIUserInterfaceLayoutDirection direction)
{
    log("direction", { { "rightToLeft", direction == UIUserInterfaceLayoutDirection::rightToLeft } });
    host.setDirection(direction);
}

void TourGuide::takePicture(const std::string& name)
{
    pass(0);
    char number[16];
    std::snprintf(number, sizeof number, "%02d-", ++pictures);
    const auto file = number + name + ".png";
    faultless = host.writePicture(folder + "/" + file) && faultless;
    log("picture", { { "file", file } });
}

void TourGuide::note(const std::string& what) { log("note", { { "text", what } }); }

bool TourGuide::finish()
{
    if (film && !film->finish())
        faultless = false;
    log("end", { { "pictures", pictures }, { "filmFrames", film ? film->frameCount() : 0 } });
    events.close();
    return faultless && !events.fail();
}

void TourGuide::log(const char* event, JSONObject detail)
{
    JSONObject line { { "at", std::round(host.now() * 1000) / 1000 }, { "event", event } };
    for (const auto& [key, value] : detail)
        line.append(key, value);
    events << JSONValue(std::move(line)).print(JSONStyle::compact) << '\n';
}

void TourGuide::logCalls()
{
    if (!service)
        return;
    for (const auto& calls = service->callLog(); loggedCalls < calls.size(); ++loggedCalls)
        log("call", { { "service", calls[loggedCalls] } });
}

// Lets time go on from one frame of the film to the next.
void TourGuide::pass(double seconds)
{
    const double end = host.now() + seconds;
    while (film) {
        const double next = double(filmed + 1) / ScreenRecorder::framesPerSecond;
        if (next > end + 1e-9)
            break;
        host.advance(std::max(next - host.now(), 0.0));
        const auto marked = finger ? withMark(host.pixels(), *finger, host.device().model().scale) : nullptr;
        film->add(marked ? *marked : host.pixels());
        ++filmed;
    }
    host.advance(std::max(end - host.now(), 0.0));
}

} // namespace showroom
