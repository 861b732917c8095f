#pragma once

#include "UI/Screens/Broadcast Screen/Controllers/MVUnbuiltScreenViewController.h"

namespace mv {

// The preview of a show that has not begun.
class MVBroadcastPreviewScreenController final : public MVUnbuiltScreenViewController {
public:
    MVBroadcastPreviewScreenController();
};

} // namespace mv
