#include "Service/MVServiceDelivery.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NSLog.h"

#include <mutex>
#include <set>

namespace mv {

namespace {

bool isFirstReport(const std::string& report)
{
    static std::mutex mutex;
    static std::set<std::string> reported;
    const std::lock_guard lock(mutex);
    return reported.insert(report).second;
}

void reportOnce(const std::string& report)
{
    if (isFirstReport(report))
        NSLog(report);
}

} // namespace

void deliverOnMainThread(const char* name, std::function<void()> call)
{
    if (MainQueue::isMainThread())
        return call();
    reportOnce(std::string("broadcast service: ") + name + " answered off the main thread; moved to the main queue");
    MainQueue::shared().async(std::move(call));
}

void reportSecondAnswer(const char* name)
{
    reportOnce(std::string("broadcast service: ") + name + " answered twice; only the first answer counts");
}

MVApiError noServiceError()
{
    return { .errorCode = "no_service", .errorMessage = "No broadcast service is installed.", .statusCode = {} };
}

} // namespace mv
