#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastPreviewScreenController.h"

namespace mv {

MVBroadcastPreviewScreenController::MVBroadcastPreviewScreenController()
    : MVUnbuiltScreenViewController("The preview screen is not built yet.")
{
}

} // namespace mv
