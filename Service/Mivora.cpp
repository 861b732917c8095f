#include "Service/Mivora.h"

namespace mv {

namespace {

std::shared_ptr<Mivora>& installed()
{
    static auto service = std::make_shared<Mivora>();
    return service;
}

} // namespace

std::shared_ptr<Mivora> Mivora::instance() { return installed(); }

void Mivora::install(std::shared_ptr<Mivora> service) { installed() = service ? std::move(service) : std::make_shared<Mivora>(); }

void Mivora::getBroadcast(const std::string& identifier, BroadcastCompletion completion)
{
    instance()->performGetBroadcast(identifier, deliveredOnce("getBroadcast", std::move(completion)));
}

void Mivora::getBroadcasts(const MVBroadCastsListQueryBuilder& queryBuilder, BroadcastsCompletion completion)
{
    instance()->performGetBroadcasts(queryBuilder, deliveredOnce("getBroadcasts", std::move(completion)));
}

void Mivora::createGuestUser(const std::string& displayName, UserCompletion completion)
{
    instance()->performCreateGuestUser(displayName, deliveredOnce("createGuestUser", std::move(completion)));
}

MVCurrentUserType Mivora::getCurrentUserRole() { return instance()->currentUserRole(); }

void Mivora::addDelegate(const std::shared_ptr<MivoraDelegate>& delegate, const std::string& identifier)
{
    delegates->add(delegate, identifier);
}

void Mivora::removeDelegate(const std::string& identifier) { delegates->remove(identifier); }

void Mivora::publish(const char* name, std::function<void(MivoraDelegate&)> event)
{
    deliverOnMainThread(name, [registry = delegates, event = std::move(event)] { registry->forEach(event); });
}

void Mivora::performGetBroadcast(const std::string&, BroadcastCompletion completion) { completion(nullptr, noServiceError()); }

void Mivora::performGetBroadcasts(const MVBroadCastsListQueryBuilder&, BroadcastsCompletion completion)
{
    completion(std::nullopt, noServiceError());
}

void Mivora::performCreateGuestUser(const std::string&, UserCompletion completion) { completion(std::nullopt, noServiceError()); }

} // namespace mv
