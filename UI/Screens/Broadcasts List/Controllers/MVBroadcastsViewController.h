#pragma once

#include "Platform/Foundation/UUID.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIStackView.h"
#include "Service/Mivora.h"
#include "UI/Common/SubViews/MVButtonsTabView.h"
#include "UI/Common/SubViews/MVMaterialLoader.h"
#include "UI/Common/SubViews/MVUIViewControllerHeader.h"
#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsContainerViewController.h"

#include <array>
#include <memory>
#include <optional>
#include <string>

namespace mv {

// The list of shows: a page each of live, upcoming and past ones under three tabs. Loads them one after the other when it is
// first shown and when the viewer asks, and moves a show along as it starts and ends. Main thread.
class MVBroadcastsViewController final : public UIViewController, public MivoraDelegate {
public:
    MVBroadcastsViewController();
    ~MVBroadcastsViewController() override;

    std::shared_ptr<MVUIViewControllerHeader> headerView = make<MVUIViewControllerHeader>(); // may be replaced before it loads

    // MivoraDelegate
    void didBroadcastStarted(const MVBroadcastLiveUpdate& update) override;
    void didBroadcastCompleted(const MVBroadcastCompletedUpdate& update) override;

    // UIViewController
    void viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator) override;

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;

private:
    using BroadcastList = Mivora::BroadcastList;
    using Pages = std::array<std::shared_ptr<MVBroadcastsContainerViewController>, 3>;

    void configureSubViewsProperties();
    void nameViews();
    void setUpViews();
    void setUpViewsConstraints();
    void addChildControllers();

    void loadMivorasList();
    void loadUpcomingBroadcastsList();
    void loadPastBroadcastsList();
    void subscribeMivoras();
    void subScribeUpcomingBroadcasts();
    void unsubscribeBroadcast(const std::shared_ptr<MVBroadcast>& broadcast);

    void didPressRefreshButton();
    void didPressBackButton();
    void didSelectTab(int index);
    Pages pages() const; // in their order
    int pageInView() const; // by the offset
    CGPoint offsetOfPage(int index) const;

    std::shared_ptr<MVBroadcastsContainerViewController> mivorasViewController = make<MVBroadcastsContainerViewController>();
    std::shared_ptr<MVBroadcastsContainerViewController> upcomingBroadcastsViewController
        = make<MVBroadcastsContainerViewController>();
    std::shared_ptr<MVBroadcastsContainerViewController> pastBroadcastsViewController
        = make<MVBroadcastsContainerViewController>();
    std::shared_ptr<MVMaterialLoader> loaderView = make<MVMaterialLoader>();
    std::shared_ptr<MVButtonsTabView> buttonsTabView = make<MVButtonsTabView>();
    std::shared_ptr<UIScrollView> containerScrollView = make<UIScrollView>();
    std::shared_ptr<UIStackView> containerStackView = make<UIStackView>();
    std::shared_ptr<UIButton> refreshButton = make<UIButton>();
    std::shared_ptr<UIButton> backButton = make<UIButton>();

    std::string uniqueIdentifier = makeUUID(); // of the registration with the service
    BroadcastList mivoras; // the live ones
    BroadcastList upcomingBroadcasts;
    BroadcastList pastBroadcasts;
    int selectedPage = 0;
    std::optional<CGPoint> selectedOffset; // of that page, in the pager's last size and direction
};

} // namespace mv
