#pragma once

#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastBaseTableCell.h"

namespace mv {

// The card of a page that is taller than wide: the banner on top, the texts below.
class MVBroadcastPortraitModeTableCell final : public MVBroadcastBaseTableCell {
public:
    static constexpr const char* identifier = "MV_Broadcast_List_Portait_Mode_Cell";

    explicit MVBroadcastPortraitModeTableCell(std::string reuseIdentifier = identifier);

private:
    void setUpViewsConstraints();
};

} // namespace mv
