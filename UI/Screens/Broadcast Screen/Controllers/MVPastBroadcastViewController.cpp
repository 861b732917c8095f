#include "UI/Screens/Broadcast Screen/Controllers/MVPastBroadcastViewController.h"

namespace mv {

MVPastBroadcastViewController::MVPastBroadcastViewController()
    : MVUnbuiltScreenViewController("The recording's screen is not built yet.")
{
}

// It listens to nobody yet.
void MVPastBroadcastViewController::removeObservers() { }

} // namespace mv
