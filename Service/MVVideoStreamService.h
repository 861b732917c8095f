#pragma once

#include "Service/MVServiceDelivery.h"
#include "Service/MivoraDelegate.h"

namespace mv {

// The live video side of the broadcast service. A host installs its own, or publishes through the one that is there. Main thread,
// but for publish.
class MVVideoStreamService {
public:
    virtual ~MVVideoStreamService() = default;

    static std::shared_ptr<MVVideoStreamService> instance(); // never null
    static void install(std::shared_ptr<MVVideoStreamService> service); // null: a plain one

    // Delegates are held weakly and called in the order of registration until their registration is removed.
    void addDelegates(const std::shared_ptr<MVVideoStreamServiceDelegate>& delegate, const std::string& identifier);
    void removeDelegate(const std::string& identifier);
    std::size_t delegateCount() const { return delegates->count(); }

    // For the service: tells every delegate.
    void publish(const char* name, std::function<void(MVVideoStreamServiceDelegate&)> event);

private:
    std::shared_ptr<MVDelegateRegistry<MVVideoStreamServiceDelegate>> delegates
        = std::make_shared<MVDelegateRegistry<MVVideoStreamServiceDelegate>>();
};

} // namespace mv
