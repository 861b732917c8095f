#pragma once

#include "Platform/UIKit/NSLayoutConstraint.h"
#include "Platform/UIKit/UIViewController.h"

#include <memory>
#include <vector>

namespace mv {
class ReactionAnimationView;
}

namespace platform {
class UIButton;
class UIImageView;
class UILabel;
class UIStackView;
}

namespace showroom {

using namespace platform;

// The kit's pieces on one page: fonts, palette, buttons, borders, circles, gradient and flying reactions, laid out by stack views
// inside constraints. Upright in one column, sideways in two; what finds no room on a small screen is left out.
class GalleryViewController final : public UIViewController {
public:
    // Sends up a reaction now and then, each kind in its turn.
    void startReactions();

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;
    void viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator) override;
    void viewDidLayoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

private:
    void setUpViews();
    void setUpViewsConstraints();
    void arrange(CGSize size);
    void sendReaction();
    void didPressJoinButton();

    std::shared_ptr<UIView> makeHeader();
    std::shared_ptr<UIView> makeHero();
    std::shared_ptr<UIView> makeTypeCard();
    std::shared_ptr<UIView> makeButtons();
    std::shared_ptr<UIView> makeLetters();
    std::shared_ptr<UIView> makeProducts();

    std::shared_ptr<UIStackView> firstColumn;
    std::shared_ptr<UIStackView> secondColumn;
    std::shared_ptr<UIView> heroView;
    std::shared_ptr<UIView> lettersRow;
    std::shared_ptr<UIView> productsRow;
    std::shared_ptr<UILabel> watchersLabel;
    std::shared_ptr<UIButton> joinButton;
    std::shared_ptr<mv::ReactionAnimationView> reactionView;
    std::vector<std::shared_ptr<UIView>> cards; // with border and shadow
    std::vector<std::shared_ptr<UIView>> circles;

    NSLayoutConstraints commonConstraints, portraitModeConstraints, landscapeModeConstraints;
    int watchers = 1204;
    std::size_t nextReaction = 0;
    bool reactionsStarted = false;
};

} // namespace showroom
