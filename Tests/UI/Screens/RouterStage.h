#pragma once

#include "Platform/UIKit/UIButton.h"
#include "Tests/UI/Screens/ShopStage.h"
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
class ScriptedService final : public EventfulService {
public:
    std::vector<std::string> asked; // identifiers
    std::vector<BroadcastCompletion> completions; // of what was asked
    std::vector<UserCompletion> guests; // of the guest users that were to be created
    std::function<void(const std::string& displayName)> onCreateGuest; // within that call

    void answer(const std::shared_ptr<MVBroadcast>& broadcast) const { completions.back()(broadcast, std::nullopt); }
    void fail(const MVApiError& error) const { completions.back()(nullptr, error); }

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
};

// A shop's stack of controllers, on which broadcast screens are opened and closed.
class RouterStage : public ShopStage {
protected:
    using Router = MVBroadcastScreenViewController;

    RouterStage()
    {
        Mivora::install(service);
        host.device().setModel(HostDevice::window({ 390, 844 }, 1)); // few pixels, as there are many slides
        UIApplication::shared().setIdleTimerDisabled(false);
        navigation->setNavigationBarHidden(true, false);
        host.advance(0);
    }
    ~RouterStage() override
    {
        service->completions.clear();
        window = nullptr;
        host.advance(0);
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

    // Shown, with a broadcast of that status, which is the last one answered.
    std::shared_ptr<Router> open(std::optional<MVBroadcastStatus> status, bool modally = false)
    {
        auto router = modally ? presentRouter() : pushRouter();
        broadcast = answer(status);
        return router;
    }
    static void close(const Router& router) { child<MVMivoraScreenViewController>(router)->onPressCloseButton(); }

    static MVBroadcastLiveUpdate startOf(const std::optional<std::string>& id)
    {
        return { id, "Winter coats", Date { 1000 }, Status::live, "u1", "Ana", 77 };
    }
    static MVBroadcastCompletedUpdate endOf(const std::optional<std::string>& id)
    {
        return { id, "Coats, over", Date { 4600 }, 3600, Status::completed };
    }
    void start() { service->start(startOf("show")); }
    void complete() { service->complete(endOf("show")); }
    std::shared_ptr<UIViewController> presentOn(UIViewController& presenter)
    {
        auto editor = make<UIViewController>();
        presenter.present(editor, true);
        host.advance(1);
        return editor;
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
    const Lines loginAlert { "Error", "Please Login to watch the Live Broadcast", "Ok" };
    const Lines endAlert { "Broadcast Ended", "This broadcast has been ended by host. Thanks for watching.", "Ok" };
    const std::shared_ptr<ScriptedService> service = std::make_shared<ScriptedService>();
    std::shared_ptr<ScriptedBroadcast> broadcast;
};

} // namespace mv
