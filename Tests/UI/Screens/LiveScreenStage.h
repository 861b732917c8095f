#pragma once

#include "Platform/UIKit/UICollectionView.h"
#include "Platform/UIKit/UITableView.h"
#include "Platform/UIKit/UITextView.h"
#include "Service/MVVideoStreamService.h"
#include "Tests/UI/Screens/RouterStage.h"
#include "UI/Utils/MVSystemNotificationHandler.h"

namespace mv {

// A show that writes down every call in order and answers none of them until the test does.
class LiveShow final : public MVBroadcast {
public:
    std::vector<std::string> calls;
    std::vector<SuccessCompletion> successes; // of the calls so far
    std::vector<MessagesCompletion> pages;
    std::vector<MessageCompletion> comments; // that were sent
    std::vector<std::shared_ptr<MVProduct>> products;
    std::shared_ptr<MVVideoStreamConfig> stream; // as last played
    std::function<void(const std::string&)> onCall; // within the call

    std::vector<std::string> takeCalls() { return std::exchange(calls, {}); }
    void playVideoStream(const std::shared_ptr<MVVideoStreamConfig>& config) override
    {
        stream = config;
        note("playVideoStream");
    }
    void stopVideoStream() override { note("stopVideoStream"); }
    std::vector<std::shared_ptr<MVProduct>> getProducts() override
    {
        note("getProducts");
        return products;
    }

protected:
    void performStartWatching(SuccessCompletion completion) override { note("startWatching", std::move(completion)); }
    void performStopWatching(SuccessCompletion completion) override { note("stopWatching", std::move(completion)); }
    void performStartWatchingConversation(SuccessCompletion completion) override
    {
        note("startWatchingBroadcastConversation", std::move(completion));
    }
    void performStopWatchingConversation(SuccessCompletion completion) override
    {
        note("stopWatchingBroadcastConversation", std::move(completion));
    }
    void performLoadChatMessages(const MVGetMessagesQueryBuilder& query, MessagesCompletion completion) override
    {
        pages.push_back(std::move(completion));
        note("loadChatMessages " + std::to_string(query.limit.value_or(-1)) + " " + std::to_string(query.skip.value_or(-1)));
    }
    void performSendMessage(const std::string& message, MessageCompletion completion) override
    {
        comments.push_back(std::move(completion));
        note("sendMessage " + message);
    }
    void performAddReaction(const std::string& reaction, SuccessCompletion completion) override
    {
        note("addReaction " + reaction, std::move(completion));
    }

private:
    void note(const std::string& call, SuccessCompletion completion = {})
    {
        calls.push_back(call);
        if (completion)
            successes.push_back(std::move(completion));
        if (onCall)
            onCall(call);
    }
};

// A router on the live show "show", in which the conversation "talk" goes on.
class LiveScreenStage : public RouterStage {
protected:
    using Lines = std::vector<std::string>;
    using Screen = MVMivoraScreenViewController;
    using Role = MVCurrentUserType;

    LiveScreenStage()
    {
        renewShow();
        service->onCreateGuest = [this](const std::string& name) { show->calls.push_back("createGuestUser " + name); };
    }
    ~LiveScreenStage() override
    {
        service->guests.clear();
        screen = nullptr;
        show = nullptr;
        host.setDirection(UIUserInterfaceLayoutDirection::leftToRight);
    }

    void renewShow()
    {
        show = make<LiveShow>();
        show->id = "show";
        show->conversationId = "talk";
        show->status = MVBroadcastStatus::live;
    }
    void addProducts()
    {
        const auto page = URL::parse("https://shop.example/p");
        for (const char* id : { "a", "b", "c" })
            show->products.push_back(std::make_shared<MVProduct>(MVProduct { id, "Product " + std::string(id), {}, page, {} }));
    }
    // Its router in the stack.
    std::shared_ptr<Router> open()
    {
        const auto router = pushRouter();
        screen = child<Screen>(*router);
        service->answer(show);
        host.advance(0.5);
        return router;
    }
    // Without a router, for what a router would hide.
    void openAlone()
    {
        screen = make<Screen>();
        navigation->pushViewController(screen, false);
        screen->setBroadcast(show);
        host.advance(0.5);
    }
    void openWithChat(const std::vector<std::string>& newestFirst)
    {
        addProducts();
        open();
        answerPage(newestFirst);
        show->takeCalls();
    }

    // What "m7" says is "line 7", in the seventh second.
    static std::shared_ptr<MVMessage> message(const std::string& id)
    {
        MVMessage record;
        record.id = id;
        record.body = "line " + id.substr(1);
        record.owner = MVUser { "u", "Ana" };
        record.createdAt = Date { 1000 + std::stod(id.substr(1)) };
        record.conversationId = "talk";
        record.isDeleted = false;
        return std::make_shared<MVMessage>(record);
    }
    static MVBroadcast::MessageList messages(const std::vector<std::string>& ids)
    {
        MVBroadcast::MessageList list;
        for (const auto& id : ids)
            list.push_back(message(id));
        return list;
    }
    void answerPage(const std::vector<std::string>& newestFirst)
    {
        const auto answer = show->pages.back();
        answer(messages(newestFirst), std::nullopt);
        host.advance(0.5);
    }
    void send(const std::shared_ptr<const MVMessage>& message)
    {
        const MVBroadcastNewMessageData update { message };
        service->publish("message", [update](MivoraDelegate& d) { d.didRecievedNewMessageInBroadcast(update); });
        host.advance(0.5);
    }
    void erase(const std::optional<MVBroadcast::MessageList>& messages)
    {
        const MVBroadcastMessagesDeletedData update { messages };
        service->publish("deleted", [update](MivoraDelegate& d) { d.didMessageDeletedFromBroadcast(update); });
        host.advance(0.5);
    }
    void countViewers(std::optional<std::string> broadcastId, std::optional<int> count)
    {
        const MVWatchersUpdateData update { std::move(broadcastId), count };
        service->publish("viewers", [update](MivoraDelegate& d) { d.didWatchersCountUpdated(update); });
    }
    using VideoEvent = void (MVVideoStreamServiceDelegate::*)(const std::string&, std::uint32_t);
    static void video(VideoEvent event, const std::string& channel)
    {
        MVVideoStreamService::instance()->publish("video", [=](auto& delegate) { (delegate.*event)(channel, 77); });
    }
    void failVideo(const std::string& text)
    {
        const MVError error { text };
        MVVideoStreamService::instance()->publish("error", [=](auto& d) { d.didErrorOccuredInVideoService(error); });
        host.advance(0.5);
    }
    void complete()
    {
        MVBroadcastCompletedUpdate update;
        update.broadcastId = "show";
        service->complete(update);
    }
    void start()
    {
        MVBroadcastLiveUpdate update;
        update.broadcastId = "show";
        service->start(update);
        host.advance(0.5);
    }
    void press(const std::string& name)
    {
        host.tap(middle(*part(name)));
        host.advance(0.5);
    }

    std::shared_ptr<UIView> part(const std::string& name) const
    {
        auto found = find(screen->view(), name);
        EXPECT_TRUE(found) << name;
        return found;
    }
    CGRect place(const std::string& name) const { return onScreen(*part(name)); }
    std::string viewers() const { return find<UILabel>(part("watchersCountView"), "label")->text(); }
    bool isWaiting() const { return !part("noStreamLabel")->isHidden() && part("videoContainerView")->isHidden(); }
    // Newest first, as far as it can be seen.
    Lines chat() const
    {
        Lines lines;
        const auto table = find<UITableView>(screen->view(), "chatTableView");
        for (const int row : table->indicesForVisibleRows())
            lines.push_back(find<UITextView>(table->cellForRow(row), "messageTextView")->text());
        return lines;
    }
    bool isChatShown() const { return part("chatTableContainerView")->alpha() == 1 && part("gradientView")->alpha() == 1; }
    bool isChatHidden() const { return part("chatTableContainerView")->alpha() == 0 && part("gradientView")->alpha() == 0; }
    bool isStripShown() const
    {
        return !part("productCollectionView")->isHidden() && part("productCollectionView")->alpha() == 1;
    }
    // Which of the toggles are there.
    std::string toggles() const
    {
        return std::string(part("chatToggleButton")->isHidden() ? "" : "chat ")
            + (part("productsToggleButton")->isHidden() ? "" : "products");
    }
    // The last letters of the cards' names in their order, a star after the featured ones.
    std::string cards()
    {
        std::string all;
        const auto strip = find<UICollectionView>(screen->view(), "productCollectionView");
        for (int i = 0; i < strip->numberOfItems(); ++i) {
            strip->setContentOffset({ i * strip->bounds().width * 0.8 - 5, 0 });
            host.advance(0);
            const auto card = strip->cellForItem(i);
            all += find<UILabel>(card, "productNameLabel")->text().back();
            if (find(card, "containerView")->layer()->borderColor() == UIColor::white().cgColor())
                all += '*';
        }
        strip->setContentOffset({ -5, 0 });
        host.advance(0);
        return all;
    }
    // Who listens to the service, to the video and to the system.
    std::vector<std::size_t> registrations() const
    {
        MVSystemNotificationHandler::instance().removeDelegate(""); // which forgets who is gone
        return { service->delegateCount(), MVVideoStreamService::instance()->delegateCount(),
            MVSystemNotificationHandler::instance().delegateCount() };
    }

    std::shared_ptr<LiveShow> show;
    std::shared_ptr<Screen> screen;
    const Lines startCalls { "startWatching", "startWatchingBroadcastConversation", "loadChatMessages 50 0", "getProducts",
        "playVideoStream" };
    const Lines stopCalls { "stopWatching", "stopWatchingBroadcastConversation", "stopVideoStream" };
};

} // namespace mv
