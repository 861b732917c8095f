#pragma once

#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastBaseTableCell.h"

namespace mv {

// The card of a page that is wider than tall: a square picture, the texts beside it, as high as a part of the screen.
class MVBroadcastLandscapeModeTableCell final : public MVBroadcastBaseTableCell {
public:
    static constexpr const char* identifier = "MV_Broadcast_List_Landscape_Mode_Cell";

    explicit MVBroadcastLandscapeModeTableCell(std::string reuseIdentifier = identifier);

private:
    void setUpViewsConstraints();

    // MVBroadcastBaseTableCell
    void followScreen() override;

    std::shared_ptr<NSLayoutConstraint> heightConstraint;
};

} // namespace mv
