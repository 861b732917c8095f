#pragma once

#include "UI/Screens/Broadcast Screen/Controllers/MVUnbuiltScreenViewController.h"

namespace mv {

// The live variant of the broadcast screen.
class MVMivoraScreenViewController final : public MVUnbuiltScreenViewController {
public:
    MVMivoraScreenViewController();

    // The router's word that the show is over, or that the viewer has left: ends the session once, and does nothing more after.
    void resetOnEventComplete();
};

} // namespace mv
