#include "Platform/Host/ScreenRecorder.h"

#include "Platform/CoreGraphics/Resampling.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr double sameTime = 1e-6; // of a frame: sums of frame lengths miss the time they are meant to meet by less
constexpr double markRadius = 18; // points
constexpr double markStrength = 0.35; // 0 to 1

// A gray disc where the finger touches, so that whoever watches the film sees what moves the screen.
void mark(Bitmap& picture, CGPoint point, double scale)
{
    const double x = point.x * scale, y = point.y * scale, radius = markRadius * scale;
    const int left = std::max(int(x - radius), 0), right = std::min(int(x + radius) + 1, picture.width());
    const int top = std::max(int(y - radius), 0), bottom = std::min(int(y + radius) + 1, picture.height());
    for (int row = top; row < bottom; ++row) {
        for (int column = left; column < right; ++column) {
            const double inside = std::clamp(radius - std::hypot(column + 0.5 - x, row + 0.5 - y), 0.0, 1.0) * markStrength;
            auto& pixel = picture.row(row)[column];
            std::uint32_t blended = 0;
            for (int shift = 0; shift < 24; shift += 8)
                blended |= std::uint32_t((pixel >> shift & 255) * (1 - inside) + 128 * inside) << shift;
            pixel = blended;
        }
    }
}

// Half as many pixels a side, and an even number of them, as the film's format wants it.
int halved(int pixels) { return (pixels / 2 + 1) / 2 * 2; }

void complain(const std::string& path, const std::string& problem) { NSLog("film \"" + path + "\" not made: " + problem); }

} // namespace

std::unique_ptr<ScreenRecorder> ScreenRecorder::open(const std::string& path, const HeadlessHost& host)
{
    auto* module = loadModule<RecorderModule>("recorder");
    if (!module)
        return nullptr;
    std::string problem;
    const auto& device = host.device();
    auto encoder = module->open(path, halved(device.pixelWidth()), halved(device.pixelHeight()), framesPerSecond, problem);
    if (!encoder) {
        complain(path, problem);
        return nullptr;
    }
    return std::unique_ptr<ScreenRecorder>(new ScreenRecorder(std::move(encoder), path, host));
}

ScreenRecorder::ScreenRecorder(std::unique_ptr<FilmEncoder> newEncoder, std::string newPath, const HeadlessHost& host)
    : encoder(std::move(newEncoder))
    , path(std::move(newPath))
    , pixelsPerPoint(host.device().model().scale / 2)
    , mayWait(host.time() == HostTime::manual)
{
}

ScreenRecorder::~ScreenRecorder() { finish(); }

bool ScreenRecorder::add(const Bitmap& frame, double time, std::optional<CGPoint> touch)
{
    const auto number = std::int64_t(std::floor(time * framesPerSecond + sameTime));
    if (!encoder || number < nextFrame)
        return false;
    const auto picture = pixels::halved(frame);
    if (picture && touch)
        mark(*picture, *touch, pixelsPerPoint);
    const bool isAdded
        = picture && encoder->add(number, picture->row(0), picture->stride(), picture->width(), picture->height(), mayWait);
    if (isAdded)
        nextFrame = number + 1;
    else
        ++leftOut;
    return isAdded;
}

bool ScreenRecorder::finish()
{
    const auto ending = std::move(encoder);
    std::string problem;
    if (!ending || ending->finish(problem))
        return true;
    complain(path, problem);
    return false;
}

} // namespace platform
