#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastScreenViewController.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UIView.h"
#include "Service/Mivora.h"
#include "UI/Common/SubViews/Pinning.h"
#include "UI/Extensions/MVViewControllers.h"

namespace mv {

MVBroadcastScreenViewController::MVBroadcastScreenViewController() = default;

MVBroadcastScreenViewController::~MVBroadcastScreenViewController() { leave(); }

void MVBroadcastScreenViewController::didBroadcastStarted(const MVBroadcastLiveUpdate& update)
{
    if (!broadcast || update.broadcastId != broadcast->id)
        return;
    const auto keep = weak(this).lock();
    hasFollowedEvents = true;
    const bool isWatching = broadcast->status == MVBroadcastStatus::live && !liveContainerViewController->view()->isHidden();
    broadcast->status = MVBroadcastStatus::live;
    broadcast->actualStartTime = update.broadcastActualStartTime;
    broadcast->title = update.broadcastTitle;
    const auto host = std::make_shared<MVHost>();
    host->rtcUserId = update.liveUserWebRtcId;
    host->userId = update.liveUserId;
    host->user = MVUser { update.liveUserId, update.liveUserDisplayName };
    broadcast->hosts = { host };

    const bool mayWatch = Mivora::getCurrentUserRole() == MVCurrentUserType::user || broadcast->isAnonymousAllowedToWatch;
    if (!mayWatch)
        return presentAlert("Error", "Please Login to watch the Live Broadcast");
    nextAlert = nullptr;
    dismissPresented();
    if (isWatching) // the service said it twice
        return;
    showOnly(liveContainerViewController.get());
    mv::remove(*previewContainerViewController);
    liveContainerViewController->setBroadcast(broadcast);
}

void MVBroadcastScreenViewController::didBroadcastCompleted(const MVBroadcastCompletedUpdate& update)
{
    if (!broadcast || update.broadcastId != broadcast->id)
        return;
    const auto keep = weak(this).lock();
    hasFollowedEvents = true;
    liveContainerViewController->resetOnEventComplete();
    presentAlert("Broadcast Ended", "This broadcast has been ended by host. Thanks for watching.");
    broadcast->status = MVBroadcastStatus::completed;
    broadcast->actualEndTime = update.broadcastActualEndTime;
    broadcast->duration = update.totalDuration;
    broadcast->title = update.broadcastTitle;
    showOnly(pastBroadcastViewController.get());
    mv::remove(*previewContainerViewController);
}

void MVBroadcastScreenViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    isApplicationTimeDisabled = UIApplication::shared().isIdleTimerDisabled();
    addChildControllers();
    Mivora::instance()->addDelegate(
        std::shared_ptr<MivoraDelegate>(weak(this).lock(), static_cast<MivoraDelegate*>(this)), uniqueIdentifer);
    isRegistered = true;
    loadBroadcast();
    UIApplication::shared().setIdleTimerDisabled(true);
    setCloseActions();
}

void MVBroadcastScreenViewController::viewWillDisappear(bool animated)
{
    UIViewController::viewWillDisappear(animated);
    if (isLeaving())
        leave();
}

void MVBroadcastScreenViewController::addChildControllers()
{
    const std::shared_ptr<UIViewController> children[] { previewContainerViewController, pastBroadcastViewController,
        liveContainerViewController };
    for (const auto& child : children)
        mv::add(*this, child);
    for (const auto& child : children) {
        child->view()->setHidden(true);
        pinEdges(*child->view(), *view());
    }
}

void MVBroadcastScreenViewController::setCloseActions()
{
    const auto closeAction = [weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->close();
    };
    liveContainerViewController->onPressCloseButton = closeAction;
    pastBroadcastViewController->onPressCloseButton = closeAction;
    previewContainerViewController->onPressCloseButton = closeAction;
}

void MVBroadcastScreenViewController::loadBroadcast()
{
    Mivora::getBroadcast(
        broadcastId, [weakSelf = weak(this)](const std::shared_ptr<MVBroadcast>& loaded, const std::optional<MVApiError>& error) {
            const auto self = weakSelf.lock();
            if (!self || !self->isRegistered) // nobody would end what is begun after it has left
                return;
            if (error) {
                NSLog(error->errorCode.value_or(""));
                NSLog(error->statusCode ? std::to_string(*error->statusCode) : "");
                NSLog(error->errorMessage.value_or(""));
                return;
            }
            self->broadcast = loaded;
            if (!loaded)
                return;
            loaded->subscribeEvents();
            if (!self->hasFollowedEvents)
                self->showBroadcast();
        });
}

void MVBroadcastScreenViewController::showBroadcast()
{
    const auto show = [this](auto& child) {
        child.setBroadcast(broadcast);
        showOnly(&child);
    };
    if (broadcast->status == MVBroadcastStatus::upcoming)
        show(*previewContainerViewController);
    else if (broadcast->status == MVBroadcastStatus::live)
        show(*liveContainerViewController);
    else if (broadcast->status == MVBroadcastStatus::completed)
        show(*pastBroadcastViewController);
}

void MVBroadcastScreenViewController::showOnly(const UIViewController* shown)
{
    for (const std::shared_ptr<UIViewController>& child : { std::shared_ptr<UIViewController>(previewContainerViewController),
             std::shared_ptr<UIViewController>(pastBroadcastViewController),
             std::shared_ptr<UIViewController>(liveContainerViewController) })
        child->view()->setHidden(child.get() != shown);
}

void MVBroadcastScreenViewController::dismissPresented(std::function<void()> completion)
{
    if (presentedViewController())
        dismiss(true, std::move(completion));
    else if (completion)
        completion();
}

// What this screen presents leaves first, so that the alert finds the way free; of several that wait for that the last one comes.
// The only way on from it is out of this screen.
void MVBroadcastScreenViewController::presentAlert(const std::string& title, const std::string& message)
{
    nextAlert = make<UIAlertController>(title, message);
    nextAlert->addAction({ "Ok", UIAlertActionStyle::normal, [weakSelf = weak(this)] {
                              if (const auto self = weakSelf.lock())
                                  self->close();
                          } });
    dismissPresented([weakSelf = weak(this)] {
        if (const auto self = weakSelf.lock())
            self->presentNextAlert();
    });
}

void MVBroadcastScreenViewController::presentNextAlert()
{
    if (const auto alert = std::exchange(nextAlert, nullptr))
        present(alert, true);
}

// The way it was shown, with what has been pushed above it.
void MVBroadcastScreenViewController::close()
{
    if (isLeaving())
        return;
    if (mv::isModal(*this)) {
        dismiss(true);
        return;
    }
    auto* navigation = navigationController();
    if (!navigation)
        return;
    while (!isIn(*navigation->topViewController()))
        navigation->popViewController(false);
    navigation->popViewController(true);
}

bool MVBroadcastScreenViewController::isIn(const UIViewController& container) const
{
    const UIViewController* controller = this;
    while (controller && controller != &container)
        controller = controller->parent();
    return controller;
}

// Out of its parent, or dismissed, or in something that is: not when another screen merely covers it.
bool MVBroadcastScreenViewController::isLeaving() const
{
    for (const UIViewController* controller = this; controller; controller = controller->parent())
        if (controller->isMovingFromParent() || controller->isBeingDismissed())
            return true;
    return false;
}

void MVBroadcastScreenViewController::leave()
{
    if (!std::exchange(isRegistered, false))
        return;
    nextAlert = nullptr;
    Mivora::instance()->removeDelegate(uniqueIdentifer); // first: ending the session may bring an event about
    liveContainerViewController->resetOnEventComplete();
    pastBroadcastViewController->removeObservers();
    UIApplication::shared().setIdleTimerDisabled(isApplicationTimeDisabled);
}

} // namespace mv
