#pragma once

#include "Platform/UIKit/UITableView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Service/MVBroadcast.h"
#include "UI/Screens/Broadcasts List/SubViews/MVNoBroadcastView.h"

#include <memory>
#include <vector>

namespace mv {

// One page of the list: the shows of one status as cards, upright or wide as the page is, or a message where there are none.
// Opens the show whose button is pressed. Main thread.
class MVBroadcastsContainerViewController final : public UIViewController, private UITableViewDataSource {
public:
    enum class ScreenType { live, upcoming, past };

    MVBroadcastsContainerViewController();

    ScreenType screenType = ScreenType::live; // gives the message; set before the view loads

    // In place of the former ones. Before the first call the page is blank.
    void setBroadcasts(std::vector<std::shared_ptr<MVBroadcast>> newBroadcasts);

protected:
    // UIViewController
    void loadView() override;
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;

private:
    class PageView;

    // UITableViewDataSource
    int numberOfRows(UITableView& tableView) override;
    std::shared_ptr<UITableViewCell> cellForRow(UITableView& tableView, int row) override;
    std::string identityForRow(UITableView& tableView, int row) override;
    std::string contentForRow(UITableView& tableView, int row) override;

    void configureSubviewsProperties();
    void setUpViews();
    void setUpViewsConstraints();
    void openBroadcastScreen(const MVBroadcast& broadcast);
    void askToLogIn();

    std::vector<std::shared_ptr<MVBroadcast>> broadcasts;
    bool isPortraitMode = true; // which design the cards have
    std::shared_ptr<UITableView> broadcastsTableView = make<UITableView>();
    std::shared_ptr<MVNoBroadcastView> noBroadcastsView = make<MVNoBroadcastView>();
};

} // namespace mv
