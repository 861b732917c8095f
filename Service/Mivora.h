#pragma once

#include "Service/MVBroadcast.h"
#include "Service/MVServiceDelivery.h"
#include "Service/MivoraDelegate.h"

namespace mv {

// The broadcast service as the kit knows it. A host installs its own before it shows a screen; until then every operation answers
// that there is none. Main thread, but for publish.
class Mivora {
public:
    using BroadcastCompletion = std::function<void(std::shared_ptr<MVBroadcast> broadcast, std::optional<MVApiError> error)>;
    using BroadcastList = std::vector<std::shared_ptr<MVBroadcast>>;
    using BroadcastsCompletion = std::function<void(std::optional<BroadcastList> broadcasts, std::optional<MVApiError> error)>;
    using UserCompletion = std::function<void(std::optional<MVUser> user, std::optional<MVApiError> error)>;

    virtual ~Mivora() = default;

    static std::shared_ptr<Mivora> instance(); // never null
    static void install(std::shared_ptr<Mivora> service); // null: none any more

    // Each completion is called at most once, on the main thread.
    static void getBroadcast(const std::string& identifier, BroadcastCompletion completion);
    static void getBroadcasts(const MVBroadCastsListQueryBuilder& queryBuilder, BroadcastsCompletion completion);
    // After a success the viewer's chat messages are sent as that guest.
    static void createGuestUser(const std::string& displayName, UserCompletion completion);
    static MVCurrentUserType getCurrentUserRole();

    virtual std::string getStoreUrl() { return {}; } // a host name without scheme, for share links

    // Delegates are held weakly and called in the order of registration until their registration is removed.
    void addDelegate(const std::shared_ptr<MivoraDelegate>& delegate, const std::string& identifier);
    void removeDelegate(const std::string& identifier);
    std::size_t delegateCount() const { return delegates->count(); }

    // For the service: tells every delegate, for example `publish("message", [update](auto& d) { d.didRecieved...(update); })`.
    void publish(const char* name, std::function<void(MivoraDelegate&)> event);

protected:
    virtual void performGetBroadcast(const std::string& identifier, BroadcastCompletion completion);
    virtual void performGetBroadcasts(const MVBroadCastsListQueryBuilder& queryBuilder, BroadcastsCompletion completion);
    virtual void performCreateGuestUser(const std::string& displayName, UserCompletion completion);
    virtual MVCurrentUserType currentUserRole() { return MVCurrentUserType::anonymous; }

private:
    std::shared_ptr<MVDelegateRegistry<MivoraDelegate>> delegates = std::make_shared<MVDelegateRegistry<MivoraDelegate>>();
};

} // namespace mv
