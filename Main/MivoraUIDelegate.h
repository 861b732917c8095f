#pragma once

#include "Service/MVPlatform.h"

namespace mv {

// For a host that wants to offer a login. The kit prompts inside its own screens and calls neither operation.
class MivoraUIDelegate {
public:
    virtual ~MivoraUIDelegate() = default;
    virtual void didRequestToLoginToChatInBroadcast() = 0;
    virtual void didRequestToLoginToWatchBraodcast() = 0;
};

} // namespace mv
