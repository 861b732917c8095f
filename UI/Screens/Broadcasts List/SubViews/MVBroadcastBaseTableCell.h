#pragma once

#include "Platform/Images/UIImageViewLoading.h"
#include "Platform/QuartzCore/CAShapeLayer.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIStackView.h"
#include "Platform/UIKit/UITableViewCell.h"
#include "Service/MVBroadcast.h"

namespace mv {

// What turns on a card while its banner loads: the medium one, on platforms before version 13 the gray one.
SDWebImageActivityIndicator mvIndicator();

// A show of the list as a card: banner, title, description, date and a button titled by the show's status, over a soft shadow.
// Subclasses give it its geometry (points).
class MVBroadcastBaseTableCell : public UITableViewCell {
public:
    using BroadcastAction = std::function<void(const std::shared_ptr<MVBroadcast>& broadcast)>;

    BroadcastAction onPressActionButton; // set by the page
    BroadcastAction onPressShareButton;

    // Fills the card. Absent texts are empty; without a start time the present moment stands in.
    void setBroadcast(const std::shared_ptr<MVBroadcast>& broadcast);

protected:
    explicit MVBroadcastBaseTableCell(std::string reuseIdentifier);

    // In place of the geometry that was there; the date row's two constraints are added by it.
    void replaceConstraints(NSLayoutConstraints constraints);
    NSLayoutConstraints dateTimeConstraints(); // that the geometries share
    virtual void followScreen() { } // as it is filled: what of the geometry depends on the screen

    // UIView
    void layoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

    const std::shared_ptr<UIView> containerView;
    const std::shared_ptr<UIImageView> broadcastImageView;
    const std::shared_ptr<UILabel> broadcastNameLabel;
    const std::shared_ptr<UILabel> descriptionLabel;
    const std::shared_ptr<UIStackView> dateTimeStackView;
    const std::shared_ptr<UIButton> dateTimeView; // shows, does nothing
    const std::shared_ptr<UIStackView> buttonsStackView;
    const std::shared_ptr<UIButton> shareButton; // not placed in the row
    const std::shared_ptr<UIButton> actionButton;
    const std::shared_ptr<UIView> backShadowView;
    const std::shared_ptr<CAShapeLayer> shadowLayer;

private:
    void applyStyling();
    void setUpViews();
    void didPressActionButton();
    void didPressShareButton();
    void setCellLayoutForLiveMode();
    void setCellLayoutsForOtherModes();
    void applyShadow();
    void applyLayerColors();

    std::shared_ptr<MVBroadcast> broadcast;
    NSLayoutConstraints allConstraints;
    std::shared_ptr<NSLayoutConstraint> dateTimeViewTopAnchor; // from the description
    std::shared_ptr<NSLayoutConstraint> dateTimeViewHeightAnchor;
    CGSize shadowSize; // that the shadow's path was made for
};

} // namespace mv
