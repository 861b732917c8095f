#pragma once

#include "Platform/Foundation/UUID.h"
#include "Service/MivoraDelegate.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastPreviewScreenController.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVMivoraScreenViewController.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVPastBroadcastViewController.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {
class UIAlertController;
}

namespace mv {

// The screen of one broadcast: loads it and shows the variant that matches its status, live, preview or past. Keeps the device
// awake while it is there and follows the broadcast's start and end. Main thread.
class MVBroadcastScreenViewController final : public UIViewController, public MivoraDelegate {
public:
    MVBroadcastScreenViewController();
    ~MVBroadcastScreenViewController() override;

    std::string broadcastId; // set by the creator before the screen is shown

    // MivoraDelegate
    void didBroadcastStarted(const MVBroadcastLiveUpdate& update) override;
    void didBroadcastCompleted(const MVBroadcastCompletedUpdate& update) override;

protected:
    // UIViewController
    void viewDidLoad() override;
    void viewWillDisappear(bool animated) override;

private:
    void addChildControllers();
    void setCloseActions();
    void loadBroadcast();
    void showBroadcast();
    void showOnly(const UIViewController* shown);
    void dismissPresented(std::function<void()> completion = {});
    void presentAlert(const std::string& title, const std::string& message);
    void presentNextAlert();
    void close();
    bool isIn(const UIViewController& container) const; // or is it
    bool isLeaving() const;
    void leave();

    std::shared_ptr<MVMivoraScreenViewController> liveContainerViewController = make<MVMivoraScreenViewController>();
    std::shared_ptr<MVBroadcastPreviewScreenController> previewContainerViewController
        = make<MVBroadcastPreviewScreenController>();
    std::shared_ptr<MVPastBroadcastViewController> pastBroadcastViewController = make<MVPastBroadcastViewController>();
    std::shared_ptr<MVBroadcast> broadcast; // null until loaded
    std::string uniqueIdentifer = makeUUID(); // of the registration with the service
    bool isApplicationTimeDisabled = false; // the idle timer's setting that was found
    bool isRegistered = false;
    bool hasFollowedEvents = false; // so that what is shown is not the loaded status any more
    std::shared_ptr<UIAlertController> nextAlert; // while it waits for what is presented to leave; null for none
};

} // namespace mv
