#include "UI/Screens/Broadcasts List/Controllers/MVBroadcastsViewController.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UINavigationController.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVSetters.h"
#include "UI/Extensions/MVViewControllers.h"
#include "UI/Utils/MVUtilities.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace mv {

namespace {

using BroadcastList = Mivora::BroadcastList;
using ScreenType = MVBroadcastsContainerViewController::ScreenType;

constexpr int broadcastsPerPage = 30; // that are asked for

MVBroadCastsListQueryBuilder query(MVBroadcastStatus status, MVBroadCastListSortOrder sort)
{
    return { .limit = broadcastsPerPage, .skip = 0, .status = status, .sort = sort };
}

// One without an end is over.
bool endsLater(const MVBroadcast& broadcast)
{
    const Date end = broadcast.endTime.value_or(Date::now());
    return end > Date::now();
}

bool hasRecording(const MVBroadcast& broadcast) { return broadcast.recordingUrl.has_value(); }

BroadcastList kept(const std::optional<BroadcastList>& received, bool (*isKept)(const MVBroadcast&))
{
    BroadcastList list;
    for (const auto& broadcast : received.value_or(BroadcastList {})) {
        if (!broadcast)
            NSLog("broadcast service: a list of broadcasts has an empty entry; left out");
        else if (isKept(*broadcast))
            list.push_back(broadcast);
    }
    return list;
}

void log(const MVApiError& error)
{
    NSLog(error.errorCode.value_or(""));
    NSLog(error.errorMessage.value_or(""));
    NSLog(std::to_string(error.statusCode.value_or(500)));
}

BroadcastList::iterator find(BroadcastList& list, const std::optional<std::string>& id)
{
    return std::ranges::find_if(list, [&](const auto& broadcast) { return broadcast->id == id; });
}

// Null when there is none.
std::shared_ptr<MVBroadcast> take(BroadcastList& list, const std::optional<std::string>& id)
{
    const auto found = find(list, id);
    if (found == list.end())
        return nullptr;
    auto broadcast = *found;
    list.erase(found);
    return broadcast;
}

void putInFront(BroadcastList& list, const std::shared_ptr<MVBroadcast>& broadcast)
{
    if (find(list, broadcast->id) == list.end())
        list.insert(list.begin(), broadcast);
}

// A show may start or end while the list's shows are told.
void subscribeAll(const BroadcastList& list)
{
    const auto broadcasts = list;
    for (const auto& broadcast : broadcasts)
        broadcast->subscribeEvents();
}

} // namespace

MVBroadcastsViewController::MVBroadcastsViewController() = default;

MVBroadcastsViewController::~MVBroadcastsViewController() { Mivora::instance()->removeDelegate(uniqueIdentifier); }

void MVBroadcastsViewController::didBroadcastStarted(const MVBroadcastLiveUpdate& update)
{
    const auto broadcast = take(upcomingBroadcasts, update.broadcastId);
    if (!broadcast)
        return;
    broadcast->status = update.newStatus;
    broadcast->actualStartTime = update.broadcastActualStartTime;
    putInFront(mivoras, broadcast);
    upcomingBroadcastsViewController->setBroadcasts(upcomingBroadcasts);
    mivorasViewController->setBroadcasts(mivoras);
}

void MVBroadcastsViewController::didBroadcastCompleted(const MVBroadcastCompletedUpdate& update)
{
    const auto broadcast = take(mivoras, update.broadcastId);
    if (!broadcast)
        return;
    broadcast->status = update.newStatus;
    broadcast->actualEndTime = update.broadcastActualEndTime;
    broadcast->duration = update.totalDuration;
    if (broadcast->isRecordingAllowed.value_or(false))
        putInFront(pastBroadcasts, broadcast);
    mivorasViewController->setBroadcasts(mivoras);
    pastBroadcastsViewController->setBroadcasts(pastBroadcasts);
    unsubscribeBroadcast(broadcast);
}

void MVBroadcastsViewController::viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator)
{
    UIViewController::viewWillTransition(size, coordinator);
    selectedPage = pageInView();
    coordinator.animateAlongside([weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->containerScrollView->setContentOffset(self->offsetOfPage(self->selectedPage));
    });
}

void MVBroadcastsViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    view() | mv::setBackgroundColor(MVColor::backgroundColor());
    if (auto* navigation = navigationController())
        navigation->setNavigationBarHidden(true, false);
    headerView->setTitle(MVLocalized("mvBroadcasts"));
    configureSubViewsProperties();
    nameViews();
    setUpViews();
    setUpViewsConstraints();
    addChildControllers();
    loadMivorasList();
    Mivora::instance()->addDelegate(
        std::shared_ptr<MivoraDelegate>(weak(this).lock(), static_cast<MivoraDelegate*>(this)), uniqueIdentifier);
}

// Where a page lies changes with the pager's width, and with its direction: from the right the first page is at the far end.
void MVBroadcastsViewController::viewDidLayoutSubviews()
{
    UIViewController::viewDidLayoutSubviews();
    const CGPoint offset = offsetOfPage(selectedPage);
    if (std::exchange(selectedOffset, offset) != offset)
        containerScrollView->setContentOffset(offset);
}

void MVBroadcastsViewController::configureSubViewsProperties()
{
    headerView | mv::setBackgroundColor(UIColor::clear());
    loaderView | mv::setBackgroundColor(UIColor::clear());
    buttonsTabView | mv::setBackgroundColor(UIColor::clear());
    buttonsTabView->setButtons({ MVLocalized("mvLive"), MVLocalized("mvUpcoming"), MVLocalized("mvPast") });
    containerScrollView | mv::setBackgroundColor(UIColor::clear());
    containerScrollView->setScrollEnabled(false);
    containerScrollView->setShowsHorizontalScrollIndicator(false);
    containerStackView | mv::setAxis(NSLayoutConstraintAxis::horizontal) | mv::setDistributionMode(UIStackViewDistribution::fill)
        | mv::setAlignmentMode(UIStackViewAlignment::fill) | mv::setSpacing(0) | mv::setBackgroundColor(UIColor::clear());
    const auto backIcon = getImage("leftArrowBackIcon");
    const auto backArrow = backIcon ? backIcon->imageFlippedForRightToLeftLayoutDirection() : nullptr;
    for (const auto& [button, image] : { std::pair { refreshButton, getImage("refreshIcon") }, { backButton, backArrow } }) {
        button | mv::setBackgroundColor(UIColor::clear()) | mv::setTintColor(MVColor::accentColor()) | mv::updateImage(image)
            | mv::setImageEdgeInsets({ 5, 5, 5, 5 });
        button->imageView() | mv::setContentMode(UIViewContentMode::scaleAspectFit);
    }
}

void MVBroadcastsViewController::nameViews()
{
    headerView->setAccessibilityIdentifier("headerView");
    loaderView->setAccessibilityIdentifier("loaderView");
    buttonsTabView->setAccessibilityIdentifier("buttonsTabView");
    containerScrollView->setAccessibilityIdentifier("containerScrollView");
    containerStackView->setAccessibilityIdentifier("containerStackView");
    refreshButton->setAccessibilityIdentifier("refreshButton");
    backButton->setAccessibilityIdentifier("backButton");
}

void MVBroadcastsViewController::setUpViews()
{
    view()->addSubview(headerView);
    view()->addSubview(loaderView);
    view()->addSubview(buttonsTabView);
    view()->addSubview(containerScrollView);
    containerScrollView->addSubview(containerStackView);
    buttonsTabView->onSelectTab = [weakSelf = weak(this)](int index, const std::optional<std::string>& /*title*/) {
        if (const auto self = weakSelf.lock())
            self->didSelectTab(index);
    };
    refreshButton->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressRefreshButton();
    });
    backButton->addAction(UIControlEvent::touchUpInside, [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->didPressBackButton();
    });
}

void MVBroadcastsViewController::setUpViewsConstraints()
{
    for (const std::shared_ptr<UIView>& placed :
        { std::shared_ptr<UIView>(headerView), std::shared_ptr<UIView>(loaderView), std::shared_ptr<UIView>(buttonsTabView),
            std::shared_ptr<UIView>(containerScrollView), std::shared_ptr<UIView>(containerStackView),
            std::shared_ptr<UIView>(refreshButton), std::shared_ptr<UIView>(backButton) })
        placed->setTranslatesAutoresizingMaskIntoConstraints(false);
    const UIView& root = *view();
    activate({
        headerView->leadingAnchor().equalTo(root.leadingAnchor()),
        headerView->trailingAnchor().equalTo(root.trailingAnchor()),
        headerView->topAnchor().equalTo(view()->safeAreaLayoutGuide()->topAnchor()),
        headerView->heightAnchor().equalToConstant(45),
        loaderView->widthAnchor().equalToConstant(50),
        loaderView->heightAnchor().equalToConstant(50),
        loaderView->centerXAnchor().equalTo(root.centerXAnchor()),
        loaderView->centerYAnchor().equalTo(root.centerYAnchor()),
        buttonsTabView->leadingAnchor().equalTo(root.leadingAnchor()),
        buttonsTabView->trailingAnchor().equalTo(root.trailingAnchor()),
        buttonsTabView->topAnchor().equalTo(headerView->bottomAnchor()),
        buttonsTabView->heightAnchor().equalToConstant(50),
        containerScrollView->leadingAnchor().equalTo(root.leadingAnchor()),
        containerScrollView->trailingAnchor().equalTo(root.trailingAnchor()),
        containerScrollView->topAnchor().equalTo(buttonsTabView->bottomAnchor()),
        containerScrollView->bottomAnchor().equalTo(root.bottomAnchor()),
        containerStackView->leadingAnchor().equalTo(containerScrollView->leadingAnchor()),
        containerStackView->trailingAnchor().equalTo(containerScrollView->trailingAnchor()),
        containerStackView->topAnchor().equalTo(containerScrollView->topAnchor()),
        containerStackView->bottomAnchor().equalTo(containerScrollView->bottomAnchor()),
        containerStackView->heightAnchor().equalTo(containerScrollView->heightAnchor()),
        refreshButton->widthAnchor().equalToConstant(30),
        backButton->widthAnchor().equalToConstant(30),
    });
    headerView->setRightNavButtons({ refreshButton });
    headerView->setLeftNavButtons({ backButton });
}

void MVBroadcastsViewController::addChildControllers()
{
    struct Page {
        std::shared_ptr<MVBroadcastsContainerViewController> controller;
        ScreenType type;
        const char* name;
    };
    for (const auto& [page, type, name] : { Page { mivorasViewController, ScreenType::live, "mivorasViewController" },
             { upcomingBroadcastsViewController, ScreenType::upcoming, "upcomingBroadcastsViewController" },
             { pastBroadcastsViewController, ScreenType::past, "pastBroadcastsViewController" } }) {
        page->screenType = type;
        addChild(page);
        containerStackView->addArrangedSubview(page->view());
        page->view()->setAccessibilityIdentifier(name);
        page->didMoveToParent(this);
    }
    for (const auto& page : pages()) {
        page->view()->setTranslatesAutoresizingMaskIntoConstraints(false);
        page->view()->widthAnchor().equalTo(containerScrollView->widthAnchor())->setActive(true);
        page->view() | mv::setBackgroundColor(UIColor::clear());
    }
    containerScrollView->setHidden(true);
}

void MVBroadcastsViewController::loadMivorasList()
{
    containerScrollView->setHidden(true);
    loaderView->setHidden(false);
    Mivora::getBroadcasts(query(MVBroadcastStatus::live, MVBroadCastListSortOrder::DESC),
        [weakSelf = weak(this)](const std::optional<BroadcastList>& received, const std::optional<MVApiError>& error) {
            const auto self = weakSelf.lock();
            if (!self)
                return;
            if (error)
                return log(*error);
            self->mivoras = kept(received, endsLater);
            self->mivorasViewController->setBroadcasts(self->mivoras);
            self->loadUpcomingBroadcastsList();
            self->subscribeMivoras();
        });
}

void MVBroadcastsViewController::loadUpcomingBroadcastsList()
{
    Mivora::getBroadcasts(query(MVBroadcastStatus::upcoming, MVBroadCastListSortOrder::ASC),
        [weakSelf = weak(this)](const std::optional<BroadcastList>& received, const std::optional<MVApiError>& error) {
            const auto self = weakSelf.lock();
            if (!self)
                return;
            if (error)
                return log(*error);
            self->upcomingBroadcasts = kept(received, endsLater);
            self->upcomingBroadcastsViewController->setBroadcasts(self->upcomingBroadcasts);
            self->loadPastBroadcastsList();
            self->subScribeUpcomingBroadcasts();
        });
}

void MVBroadcastsViewController::loadPastBroadcastsList()
{
    Mivora::getBroadcasts(query(MVBroadcastStatus::completed, MVBroadCastListSortOrder::DESC),
        [weakSelf = weak(this)](const std::optional<BroadcastList>& received, const std::optional<MVApiError>& error) {
            const auto self = weakSelf.lock();
            if (!self)
                return;
            self->loaderView->setHidden(true);
            self->refreshButton->setEnabled(true);
            self->containerScrollView->setHidden(false);
            if (error)
                return log(*error);
            self->pastBroadcasts = kept(received, hasRecording);
            self->pastBroadcastsViewController->setBroadcasts(self->pastBroadcasts);
        });
}

void MVBroadcastsViewController::subscribeMivoras() { subscribeAll(mivoras); }

void MVBroadcastsViewController::subScribeUpcomingBroadcasts() { subscribeAll(upcomingBroadcasts); }

void MVBroadcastsViewController::unsubscribeBroadcast(const std::shared_ptr<MVBroadcast>& broadcast)
{
    if (broadcast)
        broadcast->unSubscribeEvents();
}

void MVBroadcastsViewController::didPressRefreshButton()
{
    refreshButton->setEnabled(false);
    loadMivorasList();
}

void MVBroadcastsViewController::didPressBackButton()
{
    if (mv::isModal(*this))
        dismiss(true);
    else if (auto* navigation = navigationController())
        navigation->popViewController(true);
}

void MVBroadcastsViewController::didSelectTab(int index)
{
    selectedPage = index;
    selectedOffset = offsetOfPage(index);
    containerScrollView->setContentOffset(*selectedOffset, true);
}

MVBroadcastsViewController::Pages MVBroadcastsViewController::pages() const
{
    return { mivorasViewController, upcomingBroadcastsViewController, pastBroadcastsViewController };
}

// The first one while the pager has no width.
int MVBroadcastsViewController::pageInView() const
{
    const double width = containerScrollView->bounds().width;
    const double way = std::abs(containerScrollView->contentOffset().x - offsetOfPage(0).x);
    return width > 0 ? int(way / width) : 0;
}

CGPoint MVBroadcastsViewController::offsetOfPage(int index) const
{
    const bool fromTheRight
        = containerScrollView->effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    const int place = fromTheRight ? int(pages().size()) - 1 - index : index;
    return { containerScrollView->frame().width * place, 0 };
}

} // namespace mv
