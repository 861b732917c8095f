#include "Showroom/Log/ShopLog.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/JSON.h"
#include "Showroom/Service/CannedService.h"

namespace showroom {

using namespace platform;

namespace {

constexpr double listening = 1; // seconds

JSONObject entry(const char* event)
{
    JSONObject object;
    object.append("at", Clock::current().now());
    object.append("event", event);
    return object;
}

} // namespace

ShopLog::ShopLog(const std::string& path, CannedService& logged)
    : service(logged)
    , file(path, std::ios::trunc)
{
    for (const auto& call : service.callLog())
        writeCall(call);
    service.onCall = [this](const std::string& call) { writeCall(call); };
    timer = NSTimer::scheduledTimer(listening, Repeats::yes, [this](NSTimer&) { listen(); });
}

ShopLog::~ShopLog()
{
    timer->invalidate();
    service.onCall = nullptr;
}

void ShopLog::writeCall(const std::string& call)
{
    auto object = entry("call");
    object.append("service", call);
    file << JSONValue(std::move(object)).print(JSONStyle::compact) << std::endl;
}

void ShopLog::listen()
{
    const double peak = service.takeAudioPeak();
    if (peak <= 0)
        return;
    auto object = entry("sound");
    object.append("peak", peak);
    file << JSONValue(std::move(object)).print(JSONStyle::compact) << std::endl;
}

} // namespace showroom
