#include "Service/MVVideoStreamService.h"

namespace mv {

namespace {

std::shared_ptr<MVVideoStreamService>& installed()
{
    static auto service = std::make_shared<MVVideoStreamService>();
    return service;
}

} // namespace

std::shared_ptr<MVVideoStreamService> MVVideoStreamService::instance() { return installed(); }

void MVVideoStreamService::install(std::shared_ptr<MVVideoStreamService> service)
{
    installed() = service ? std::move(service) : std::make_shared<MVVideoStreamService>();
}

void MVVideoStreamService::addDelegates(
    const std::shared_ptr<MVVideoStreamServiceDelegate>& delegate, const std::string& identifier)
{
    delegates->add(delegate, identifier);
}

void MVVideoStreamService::removeDelegate(const std::string& identifier) { delegates->remove(identifier); }

void MVVideoStreamService::publish(const char* name, std::function<void(MVVideoStreamServiceDelegate&)> event)
{
    deliverOnMainThread(name, [registry = delegates, event = std::move(event)] { registry->forEach(event); });
}

} // namespace mv
