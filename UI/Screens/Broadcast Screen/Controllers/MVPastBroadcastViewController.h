#pragma once

#include "UI/Screens/Broadcast Screen/Controllers/MVUnbuiltScreenViewController.h"

namespace mv {

// The past variant of the broadcast screen.
class MVPastBroadcastViewController final : public MVUnbuiltScreenViewController {
public:
    MVPastBroadcastViewController();

    // The router's word that the viewer leaves: ends every registration of this screen.
    void removeObservers();
};

} // namespace mv
