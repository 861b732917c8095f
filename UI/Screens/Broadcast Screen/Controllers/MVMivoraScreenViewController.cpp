#include "UI/Screens/Broadcast Screen/Controllers/MVMivoraScreenViewController.h"

namespace mv {

MVMivoraScreenViewController::MVMivoraScreenViewController()
    : MVUnbuiltScreenViewController("The live screen is not built yet.")
{
}

// Nothing is watched yet, so there is no session to end.
void MVMivoraScreenViewController::resetOnEventComplete() { }

} // namespace mv
