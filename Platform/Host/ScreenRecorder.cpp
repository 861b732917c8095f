#include "Platform/Host/ScreenRecorder.h"

#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"

#include <utility>

namespace platform {

namespace {

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
    return std::unique_ptr<ScreenRecorder>(new ScreenRecorder(std::move(encoder), path));
}

ScreenRecorder::ScreenRecorder(std::unique_ptr<FilmEncoder> newEncoder, std::string newPath)
    : encoder(std::move(newEncoder))
    , path(std::move(newPath))
{
}

ScreenRecorder::~ScreenRecorder() { finish(); }

void ScreenRecorder::add(const Bitmap& frame)
{
    if (encoder && encoder->add(frame.row(0), frame.stride(), frame.width(), frame.height()))
        ++frames;
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
