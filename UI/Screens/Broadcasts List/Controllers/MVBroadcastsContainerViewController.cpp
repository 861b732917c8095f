#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsContainerViewController.h"

#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UIScreen.h"
#include "Service/Mivora.h"
#include "UI/Common/SubViews/Pinning.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastScreenViewController.h"
#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastLandscapeModeTableCell.h"
#include "UI/Screens/Broadcasts List/SubViews/MVBroadcastPortraitModeTableCell.h"

#include <sstream>

namespace mv {

namespace {

using ScreenType = MVBroadcastsContainerViewController::ScreenType;

std::string emptyMessage(ScreenType type)
{
    switch (type) {
    case ScreenType::upcoming:
        return "There are currently no Upcoming Shows. Please check back later.";
    case ScreenType::past:
        return "There are currently no Recorded Shows.";
    default:
        return "There are currently no Live Shows. Please check back later.";
    }
}

} // namespace

// Beside its neighbours in a pager it keeps the safe area that it has when it is in view, so that nothing in it moves as it
// comes and goes.
class MVBroadcastsContainerViewController::PageView final : public UIView {
protected:
    UIEdgeInsets safeAreaInsetsForSubviews() const override
    {
        for (const UIView* around = superview(); around; around = around->superview())
            if (dynamic_cast<const UIScrollView*>(around))
                return around->safeAreaInsets();
        return safeAreaInsets();
    }
};

MVBroadcastsContainerViewController::MVBroadcastsContainerViewController()
{
    broadcastsTableView->setHidden(true);
    noBroadcastsView->setHidden(true);
}

void MVBroadcastsContainerViewController::setBroadcasts(std::vector<std::shared_ptr<MVBroadcast>> newBroadcasts)
{
    broadcasts = std::move(newBroadcasts);
    broadcastsTableView->reloadData();
    noBroadcastsView->setHidden(!broadcasts.empty());
    broadcastsTableView->setHidden(broadcasts.empty());
}

void MVBroadcastsContainerViewController::loadView() { setView(make<PageView>()); }

void MVBroadcastsContainerViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    configureSubviewsProperties();
    setUpViews();
    setUpViewsConstraints();
}

// Rows that still show the same cost nothing here.
void MVBroadcastsContainerViewController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    const CGRect page = view()->frame();
    isPortraitMode = page.width <= page.height;
    broadcastsTableView->reloadData();
}

int MVBroadcastsContainerViewController::numberOfRows(UITableView& /*tableView*/) { return int(broadcasts.size()); }

std::shared_ptr<UITableViewCell> MVBroadcastsContainerViewController::cellForRow(UITableView& tableView, int row)
{
    const auto* design
        = isPortraitMode ? MVBroadcastPortraitModeTableCell::identifier : MVBroadcastLandscapeModeTableCell::identifier;
    const auto cell = std::static_pointer_cast<MVBroadcastBaseTableCell>(tableView.dequeueReusableCell(design));
    cell->setBroadcast(broadcasts[std::size_t(row)]);
    cell->onPressActionButton = [weakSelf = weak(this)](const std::shared_ptr<MVBroadcast>& broadcast) {
        if (const auto self = weakSelf.lock())
            self->openBroadcastScreen(*broadcast);
    };
    return cell;
}

// A show stays the same row when the service sends it anew; one without an identifier is known by its object.
std::string MVBroadcastsContainerViewController::identityForRow(UITableView& /*tableView*/, int row)
{
    const auto& broadcast = broadcasts[std::size_t(row)];
    if (broadcast->id)
        return *broadcast->id;
    std::ostringstream address;
    address << broadcast.get();
    return address.str();
}

// The object is part of it, since the card reports its presses with the one that it was given; the screen's height, since wide
// cards have a part of it.
std::string MVBroadcastsContainerViewController::contentForRow(UITableView& /*tableView*/, int row)
{
    const MVBroadcast& broadcast = *broadcasts[std::size_t(row)];
    constexpr char separator = '\n';
    std::ostringstream content;
    content << &broadcast << separator << isPortraitMode << separator << UIScreen::main().bounds().height << separator
            << (broadcast.status ? int(*broadcast.status) : -1) << separator;
    if (broadcast.startTime)
        content << std::hexfloat << broadcast.startTime->secondsSince1970;
    content << separator << (broadcast.bannerImageUrl ? broadcast.bannerImageUrl->absoluteString() : "") << separator
            << broadcast.title.value_or("") << separator << broadcast.description.value_or("");
    return content.str();
}

void MVBroadcastsContainerViewController::configureSubviewsProperties()
{
    broadcastsTableView | mv::setBackgroundColor(UIColor::clear());
    broadcastsTableView->setAccessibilityIdentifier("broadcastsTableView");
    broadcastsTableView->setEstimatedRowHeight(250);
    broadcastsTableView->registerCell<MVBroadcastPortraitModeTableCell>(MVBroadcastPortraitModeTableCell::identifier);
    broadcastsTableView->registerCell<MVBroadcastLandscapeModeTableCell>(MVBroadcastLandscapeModeTableCell::identifier);
    broadcastsTableView->setDataSource(std::shared_ptr<UITableViewDataSource>(weak(this).lock(), this));
    noBroadcastsView | mv::setBackgroundColor(UIColor::clear());
    noBroadcastsView->setAccessibilityIdentifier("noBroadcastsView");
    noBroadcastsView->updateMessage(emptyMessage(screenType));
}

void MVBroadcastsContainerViewController::setUpViews()
{
    view()->addSubview(broadcastsTableView);
    view()->addSubview(noBroadcastsView);
}

void MVBroadcastsContainerViewController::setUpViewsConstraints()
{
    pinEdges(*broadcastsTableView, *view());
    pinEdges(*noBroadcastsView, *view());
}

// Only live shows may be closed to those who have not logged in.
void MVBroadcastsContainerViewController::openBroadcastScreen(const MVBroadcast& broadcast)
{
    const auto role = Mivora::getCurrentUserRole();
    const bool isLoggedIn = role != MVCurrentUserType::anonymous && role != MVCurrentUserType::guest;
    if (!isLoggedIn && broadcast.status == MVBroadcastStatus::live && !broadcast.isAnonymousAllowedToWatch)
        return askToLogIn();
    const auto screen = make<MVBroadcastScreenViewController>();
    screen->broadcastId = broadcast.id.value_or("");
    if (auto* navigation = navigationController())
        navigation->pushViewController(screen, true);
}

void MVBroadcastsContainerViewController::askToLogIn()
{
    const auto alert = make<UIAlertController>("Error", "Please Login First");
    alert->addAction({ "Ok", UIAlertActionStyle::normal, {} });
    present(alert, true);
}

} // namespace mv
