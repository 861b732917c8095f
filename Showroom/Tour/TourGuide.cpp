#include "Showroom/Tour/TourGuide.h"

#include "Platform/CoreGraphics/Bitmap.h"
#include "Platform/CoreGraphics/CGImage.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Text.h"
#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"
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

constexpr double keyInterval = 0.08; // seconds from one key to the next
constexpr double patience = 5; // seconds that a viewer waits for something to tap
constexpr double lookInterval = 0.1; // seconds between two looks for what a viewer waits for

std::shared_ptr<const Bitmap> copyOf(const Bitmap& frame)
{
    auto copy = Bitmap::make(frame.width(), frame.height(), frame.format());
    if (copy)
        std::copy_n(frame.data(), frame.byteCount(), copy->data());
    return copy;
}

} // namespace

TourGuide::TourGuide(HeadlessHost& newHost, std::string newFolder, bool withFilm, CannedService* newService)
    : host(newHost)
    , folder(std::move(newFolder))
    , start(newHost.now())
    , service(newService)
    , events(folder + "/events.jsonl", std::ios::binary)
{
    if (withFilm) {
        recorder = ScreenRecorder::open(folder + "/tour.mp4", host);
        faultless = recorder != nullptr;
    }
    if (!service)
        return;
    for (const auto& call : service->callLog())
        logCall(call);
    service->onCall = [this](const std::string& call) { logCall(call); };
}

TourGuide::~TourGuide()
{
    if (service)
        service->onCall = nullptr;
}

// Lets time go on from one frame of the film to the next.
void TourGuide::wait(double seconds)
{
    const double end = host.now() + seconds;
    while (recorder) {
        constexpr double rate = ScreenRecorder::framesPerSecond;
        const double next = start + (std::floor(time() * rate + 1e-6) + 1) / rate;
        if (next > end + 1e-9)
            break;
        host.advance(next - host.now());
        film();
    }
    host.advance(std::max(end - host.now(), 0.0));
}

bool TourGuide::waitFor(std::string_view nameOrText, double seconds)
{
    const double end = host.now() + seconds;
    while (!findOnScreen(host.device(), nameOrText)) {
        if (host.now() >= end)
            return false;
        wait(lookInterval);
    }
    return true;
}

bool TourGuide::tap(std::string_view nameOrText)
{
    wait(0); // what the viewer sees is what is hit
    waitFor(nameOrText, patience);
    const auto frame = findOnScreen(host.device(), nameOrText);
    if (!frame) {
        faultless = false;
        log("missing", { { "view", nameOrText } });
        NSLog("tour: there is no \"" + std::string(nameOrText) + "\" on the screen to tap");
        return false;
    }
    const CGPoint point { frame->x + frame->width / 2, frame->y + frame->height / 2 };
    log("tap", { { "view", nameOrText }, { "point", place(point) } });
    press(point);
    wait(0);
    return true;
}

bool TourGuide::type(const std::string& text)
{
    log("type", { { "text", text } });
    const auto& keyboard = ScreenKeyboard::shared();
    for (const auto character : Characters(text)) {
        for (bool isTyped = false; !isTyped;) {
            wait(keyInterval); // in which what the last key has changed is shown
            const auto step = keyboard.stepTowards(character);
            if (!step) {
                faultless = false;
                log("missing", { { "key", character } });
                NSLog("tour: there is no key on the screen for \"" + std::string(character) + "\"");
                return false;
            }
            press(step->key.center());
            isTyped = step->types;
        }
    }
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
        wait(seconds / steps);
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
    wait(0);
    char number[16];
    std::snprintf(number, sizeof number, "%02d-", ++pictures);
    const auto file = number + name + ".png";
    written.push_back(std::async(std::launch::async, [frame = copyOf(host.pixels()), path = folder + "/" + file] {
        return frame && writePNG(*frame, path); // takes too long for the frames that go on meanwhile
    }));
    log("picture", { { "file", file } });
}

void TourGuide::note(const std::string& what) { log("note", { { "text", what } }); }

bool TourGuide::finish()
{
    for (auto& picture : written)
        faultless = picture.get() && faultless;
    JSONObject detail { { "pictures", pictures }, { "frames", host.frameCount() }, { "dropped", host.droppedFrameCount() } };
    if (recorder) {
        recorder->add(host.pixels(), time());
        faultless = recorder->finish() && faultless;
        detail.append("filmFrames", recorder->frameCount());
        detail.append("filmLeftOut", recorder->leftOutCount());
    }
    log("end", std::move(detail));
    events.close();
    return faultless && !events.fail();
}

void TourGuide::press(CGPoint point)
{
    host.touchDown(point);
    finger = point;
    wait(tapLength);
    host.touchUp(point);
    finger.reset();
}

void TourGuide::log(const char* event, JSONObject detail)
{
    JSONObject line { { "at", std::round(time() * 1000) / 1000 }, { "event", event } };
    for (const auto& [key, value] : detail)
        line.append(key, value);
    events << JSONValue(std::move(line)).print(JSONStyle::compact) << '\n';
}

void TourGuide::logCall(const std::string& call) { log("call", { { "service", call } }); }

void TourGuide::film()
{
    if (host.frameCount() == filmedFrame && finger == filmedFinger)
        return;
    if (!recorder->add(host.pixels(), time(), finger))
        return; // tried again at the film's next frame
    filmedFrame = host.frameCount();
    filmedFinger = finger;
}

} // namespace showroom
