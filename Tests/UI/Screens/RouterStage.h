#pragma once

#include "Platform/UIKit/UIAlertController.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UINavigationController.h"
#include "Service/Mivora.h"
#include "Tests/UI/Stage.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastScreenViewController.h"

#include <utility>

namespace mv {

// A show whose service answers every call with success.
class ScriptedBroadcast final : public MVBroadcast {
public:
    int subscriptions = 0;
    std::function<void()> onSubscribe;

    void subscribeEvents() override
    {
        ++subscriptions;
        if (onSubscribe)
            onSubscribe();
    }

protected:
    void performStartWatching(SuccessCompletion completion) override { completion(true, std::nullopt); }
    void performStopWatching(SuccessCompletion completion) override { completion(true, std::nullopt); }
    void performStartWatchingConversation(SuccessCompletion completion) override { completion(true, std::nullopt); }
    void performStopWatchingConversation(SuccessCompletion completion) override { completion(true, std::nullopt); }
    void performLoadChatMessages(const MVGetMessagesQueryBuilder&, MessagesCompletion completion) override
    {
        completion(MessageList {}, std::nullopt);
    }
};

// A service that answers for a broadcast when the test says so.
class ScriptedService final : public Mivora {
public:
    MVCurrentUserType role = MVCurrentUserType::user;
    std::vector<std::string> asked; // identifiers
    std::vector<BroadcastCompletion> completions; // of what was asked
    std::vector<UserCompletion> guests; // of the guest users that were to be created
    std::function<void(const std::string& displayName)> onCreateGuest; // within that call

    void answer(const std::shared_ptr<MVBroadcast>& broadcast) const { completions.back()(broadcast, std::nullopt); }
    void fail(const MVApiError& error) const { completions.back()(nullptr, error); }
    void start(const MVBroadcastLiveUpdate& update)
    {
        publish("started", [update](MivoraDelegate& d) { d.didBroadcastStarted(update); });
    }
    void complete(const MVBroadcastCompletedUpdate& update)
    {
        publish("completed", [update](MivoraDelegate& d) { d.didBroadcastCompleted(update); });
    }

protected:
    void performGetBroadcast(const std::string& identifier, BroadcastCompletion completion) override
    {
        asked.push_back(identifier);
        completions.push_back(std::move(completion));
    }
    void performCreateGuestUser(const std::string& displayName, UserCompletion completion) override
    {
        guests.push_back(std::move(completion));
        if (onCreateGuest)
            onCreateGuest(displayName);
    }
    MVCurrentUserType currentUserRole() override { return role; }
};

// A shop's stack of controllers in a window, on which broadcast screens are opened and closed.
class RouterStage : public Stage {
protected:
    using Router = MVBroadcastScreenViewController;

    RouterStage()
    {
        Mivora::install(service);
        host.device().setModel(HostDevice::window({ 390, 844 }, 1)); // few pixels, as there are many slides
        UIApplication::shared().setIdleTimerDisabled(false);
        navigation->setNavigationBarHidden(true, false);
        window->setRootViewController(navigation);
        host.advance(0);
    }
    ~RouterStage() override
    {
        service->completions.clear();
        window = nullptr;
        host.advance(0);
        Mivora::install(nullptr);
        UIApplication::shared().setIdleTimerDisabled(false);
    }

    static std::shared_ptr<Router> makeRouter(const std::string& broadcastId = "show")
    {
        auto router = make<Router>();
        router->broadcastId = broadcastId;
        return router;
    }
    std::shared_ptr<Router> pushRouter()
    {
        auto router = makeRouter();
        navigation->pushViewController(router, true);
        host.advance(1);
        return router;
    }
    std::shared_ptr<Router> presentRouter()
    {
        auto router = makeRouter();
        shop->present(router, true);
        host.advance(1);
        return router;
    }
    static std::shared_ptr<ScriptedBroadcast> makeBroadcast(
        std::optional<MVBroadcastStatus> status, std::optional<std::string> id = "show")
    {
        auto broadcast = make<ScriptedBroadcast>();
        broadcast->id = std::move(id);
        broadcast->title = "Autumn coats";
        broadcast->status = status;
        return broadcast;
    }
    std::shared_ptr<ScriptedBroadcast> answer(std::optional<MVBroadcastStatus> status)
    {
        auto broadcast = makeBroadcast(status);
        service->answer(broadcast);
        host.advance(0.1);
        return broadcast;
    }

    template <typename Child> static std::shared_ptr<Child> child(const Router& router)
    {
        for (const auto& controller : router.children())
            if (auto found = std::dynamic_pointer_cast<Child>(controller))
                return found;
        return nullptr;
    }
    // Names of the variants that can be seen, lowest first.
    static std::string shown(const Router& router)
    {
        std::string names;
        for (const auto& controller : router.children()) {
            if (controller->view()->isHidden()
                || controller->view()->superview() != router.children().front()->view()->superview())
                continue;
            names += names.empty() ? "" : " ";
            names += dynamic_cast<MVMivoraScreenViewController*>(controller.get()) ? "live"
                : dynamic_cast<MVPastBroadcastViewController*>(controller.get())   ? "past"
                                                                                   : "preview";
        }
        return names;
    }

    std::shared_ptr<UIAlertController> alert() const
    {
        return std::dynamic_pointer_cast<UIAlertController>(window->topmostController());
    }
    // Title, message and actions of the alert that stands; empty without one.
    std::vector<std::string> alertTexts() const
    {
        const auto standing = alert();
        if (!standing)
            return {};
        std::vector<std::string> texts { standing->title(), standing->message() };
        for (const auto& action : standing->actions())
            texts.push_back(action.title);
        return texts;
    }
    void tapOk()
    {
        ASSERT_TRUE(alert());
        host.tap(middle(*find(alert()->view(), "actionButton")));
        host.advance(1);
    }
    // From the leading edge of the screen to so many points inside, held there before it is let go.
    void swipeBack(double distance)
    {
        const bool mirrored = host.device().state().direction == UIUserInterfaceLayoutDirection::rightToLeft;
        const double width = window->bounds().width;
        const auto at = [&](double inside) { return CGPoint { mirrored ? width - inside : inside, 500 }; };
        host.touchDown(at(2));
        for (int step = 1; step <= 10; ++step) {
            host.advance(1.0 / 60);
            host.touchMove(at(2 + distance * step / 10));
        }
        host.advance(0.3);
        host.touchMove(at(2 + distance));
        host.touchUp(at(2 + distance));
        host.advance(1);
    }
    // Whether the display stays on, and whether the service knows a listener.
    bool isAwake() const { return host.isIdleTimerDisabled(); }
    bool isListening() const { return service->delegateCount() > 0; }
    testing::AssertionResult hasLeft() const
    {
        if (!isAwake() && !isListening())
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << (isAwake() ? "awake " : "") << (isListening() ? "listening" : "");
    }
    testing::AssertionResult isThere() const
    {
        if (isAwake() && isListening())
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << (isAwake() ? "" : "asleep ") << (isListening() ? "" : "deaf");
    }
    std::vector<std::string> takeLines()
    {
        auto lines = console.lines();
        console.clear();
        return lines;
    }

    const std::shared_ptr<ScriptedService> service = std::make_shared<ScriptedService>();
    const std::shared_ptr<UIViewController> shop = make<UIViewController>();
    const std::shared_ptr<UINavigationController> navigation = make<UINavigationController>(shop);
};

} // namespace mv
