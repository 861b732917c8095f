#include "Main/MivoraUI.h"
#include "Main/MivoraUINotification.h"
#include "Tests/UI/Screens/LiveScreenStage.h"

namespace mv {
namespace {

class LiveScreenChatTest : public LiveScreenStage { };

TEST_F(LiveScreenChatTest, showsTheFirstPageNewestFirst)
{
    addProducts();
    open();
    EXPECT_EQ(part("chatTableContainerView")->alpha(), 0) << "before it has come";
    EXPECT_EQ(toggles(), "products");
    const auto deleted = message("m4"), elsewhere = message("m5");
    deleted->isDeleted = true;
    elsewhere->conversationId = "other";
    show->pages.back()({ { elsewhere, deleted, nullptr, message("m3"), message("m2"), message("m1") } }, std::nullopt);
    host.advance(0.5);
    EXPECT_EQ(chat(), (Lines { "Ana: line 3", "Ana: line 2", "Ana: line 1" }));
    EXPECT_TRUE(isChatShown());
    EXPECT_EQ(toggles(), "chat products");
    EXPECT_EQ(takeLines(), Lines {}) << "and asks for no older ones";
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden()) << "it was on";
}

TEST_F(LiveScreenChatTest, showsAnEmptyChatWithoutAButtonWhenThePageFails)
{
    addProducts();
    open();
    show->pages.back()(std::nullopt, MVApiError { "E1", "refused", 500 });
    host.advance(0.5);
    EXPECT_EQ(chat(), Lines {});
    EXPECT_TRUE(isChatShown());
    EXPECT_EQ(toggles(), "products");
    EXPECT_EQ(takeLines(), Lines {});
    send(message("m1"));
    EXPECT_EQ(chat(), Lines { "Ana: line 1" });
    EXPECT_EQ(toggles(), "chat products");
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden()) << "it was on all along";
}

TEST_F(LiveScreenChatTest, mayBeAnsweredWithinTheCall)
{
    show->onCall = [this](const std::string& call) {
        if (call.starts_with("load"))
            show->pages.back()(messages({ "m1" }), std::nullopt);
    };
    open();
    EXPECT_EQ(show->calls, startCalls);
    EXPECT_EQ(chat(), Lines { "Ana: line 1" });
    EXPECT_TRUE(isChatShown());
    EXPECT_EQ(toggles(), "chat ");
}

TEST_F(LiveScreenChatTest, takesTheFirstPageInThePlaceOfWhatCameBefore)
{
    open();
    send(message("m2"));
    EXPECT_EQ(toggles(), "chat ");
    answerPage({ "m2", "m1" });
    EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" })) << "once";
    send(message("m2"));
    EXPECT_EQ(chat().size(), 2u);
    send(message("m3"));
    EXPECT_EQ(chat().size(), 3u);
    screen->setBroadcast(show);
    answerPage({ "m5" });
    EXPECT_EQ(chat(), Lines { "Ana: line 5" });
    send(message("m3"));
    EXPECT_EQ(chat().size(), 2u) << "no memory of the former page";
}

TEST_F(LiveScreenChatTest, hearsTheAnswerOfItsOwnBroadcastOnly)
{
    open();
    const auto late = show->pages.back();
    const auto former = show;
    renewShow();
    screen->setBroadcast(show);
    answerPage({ "m2" });
    late(messages({ "m1" }), std::nullopt);
    EXPECT_EQ(chat(), Lines { "Ana: line 2" });
}

TEST_F(LiveScreenChatTest, addsNewMessagesOfItsConversation)
{
    openWithChat({ "m1" });
    send(message("m2"));
    send(message("m2"));
    send(message("m1"));
    EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" })) << "the newest first, each once";
    for (const auto& spoil : std::vector<std::function<void(MVMessage&)>> { [](auto& m) { m.isDeleted = true; },
             [](auto& m) { m.isDeleted = std::nullopt; }, [](auto& m) { m.conversationId = "other"; },
             [](auto& m) { m.conversationId = std::nullopt; }, [](auto& m) { m.id = std::nullopt; },
             [](auto& m) { m.body = std::nullopt; } }) {
        const auto refused = message("m9");
        spoil(*refused);
        send(refused);
        EXPECT_EQ(chat().size(), 2u);
    }
    send(nullptr);
    EXPECT_EQ(chat().size(), 2u);
    EXPECT_EQ(show->calls, Lines {});
}

TEST_F(LiveScreenChatTest, staysHiddenWhenTheViewerHasHiddenIt)
{
    openWithChat({ "m1" });
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden());
    send(message("m2"));
    erase(messages({ "m1" }));
    EXPECT_TRUE(isChatHidden());
    EXPECT_EQ(toggles(), "chat products");
    press("chatToggleButton");
    EXPECT_TRUE(isChatShown());
    EXPECT_EQ(chat(), Lines { "Ana: line 2" });
    press("productsToggleButton");
    EXPECT_FALSE(isStripShown());
    EXPECT_TRUE(isChatShown());
    press("productsToggleButton");
    EXPECT_TRUE(isStripShown());
}

TEST_F(LiveScreenChatTest, takesDeletedMessagesAway)
{
    openWithChat({ "m4", "m3", "m3", "m2", "m1" });
    ASSERT_EQ(chat().size(), 5u);
    const auto nameless = message("m1");
    nameless->id = std::nullopt;
    auto elsewhere = message("m1");
    elsewhere->conversationId = "other";
    for (const auto& spared : std::vector<std::optional<MVBroadcast::MessageList>> { std::nullopt, MVBroadcast::MessageList {},
             MVBroadcast::MessageList { nullptr, message("m1") }, messages({ "m99" }), MVBroadcast::MessageList { nameless },
             MVBroadcast::MessageList { elsewhere, message("m2") } }) {
        erase(spared);
        EXPECT_EQ(chat().size(), 5u);
    }
    erase(MVBroadcast::MessageList { nameless, nullptr, message("m3"), elsewhere });
    EXPECT_EQ(chat(), (Lines { "Ana: line 4", "Ana: line 2" })) << "every one of an id; the first one's conversation counts";
    send(message("m3"));
    EXPECT_EQ(chat().size(), 3u) << "may come anew";
    erase(messages({ "m4", "m3", "m2", "m2" }));
    EXPECT_EQ(chat(), Lines {});
    EXPECT_EQ(toggles(), "products");
    EXPECT_EQ(part("chatTableContainerView")->alpha(), 1) << "though empty";
}

TEST_F(LiveScreenChatTest, takesTwoAbsentIdentifiersForTheSame)
{
    show->id = show->conversationId = std::nullopt;
    openAlone();
    const auto loose = message("m1");
    loose->conversationId = std::nullopt;
    send(loose);
    EXPECT_EQ(chat(), Lines { "Ana: line 1" });
    erase({ { loose } });
    EXPECT_EQ(chat(), Lines {});
    countViewers("show", 3);
    EXPECT_EQ(viewers(), "0");
    countViewers(std::nullopt, 4);
    EXPECT_EQ(viewers(), "4");
    screen->resetOnEventComplete();
}

class LiveScreenUpdateTest : public LiveScreenStage {
protected:
    using Counts = std::map<std::string, int>;
    void react(const std::optional<std::string>& id, const std::optional<std::string>& type, std::optional<Counts> counts)
    {
        const MVReactionData update { id, type, std::move(counts) };
        service->publish("reaction", [update](MivoraDelegate& d) { d.didNewReactionAddedToBroadcast(update); });
    }
    std::size_t flying() const { return part("reactionAnimationView")->subviews().size(); }
    void feature(std::optional<std::string> id, std::optional<MVProductsFeaturedUpdateType> type,
        std::optional<std::vector<std::string>> products)
    {
        const MVProductsFeaturedUnfeaturedData update { std::move(id), type, std::move(products) };
        service->publish("featured", [update](MivoraDelegate& d) { d.didBroadcastProductFeaturedUnfeatured(update); });
        host.advance(0.5);
    }
    static constexpr auto featured = MVProductsFeaturedUpdateType::featured;
};

TEST_F(LiveScreenUpdateTest, countsTheViewersOfItsBroadcast)
{
    open();
    EXPECT_EQ(viewers(), "0") << "while nobody says";
    countViewers("show", 12);
    EXPECT_EQ(viewers(), "12");
    countViewers("other", 13);
    countViewers(std::nullopt, 14);
    EXPECT_EQ(viewers(), "12");
    countViewers("show", std::nullopt);
    EXPECT_EQ(viewers(), "0");
}

TEST_F(LiveScreenUpdateTest, letsEveryReactionFlyOnce)
{
    open();
    for (const auto& [type, image] : MivoraUI::reactions()) {
        const auto before = flying();
        react("show", type, Counts { { type, 1 } });
        EXPECT_EQ(flying(), before + 1) << type;
        EXPECT_EQ(show->reactionsCountInfo, (Counts { { type, 1 } }));
    }
    const auto all = flying();
    react("show", "heart", {});
    EXPECT_EQ(flying(), all + 1) << "one more of the same";
    EXPECT_FALSE(show->reactionsCountInfo);
    for (const std::optional<std::string>& unknown : { std::optional<std::string>("sneeze"), std::optional<std::string>() }) {
        react("show", unknown, Counts { { "sneeze", 2 } });
        EXPECT_EQ(flying(), all + 1);
        EXPECT_EQ(show->reactionsCountInfo, (Counts { { "sneeze", 2 } })) << "counted, though it has no picture";
    }
    react("other", "heart", Counts {});
    react(std::nullopt, "heart", Counts {});
    EXPECT_EQ(flying(), all + 1);
    EXPECT_EQ(show->reactionsCountInfo, (Counts { { "sneeze", 2 } }));
    host.advance(10);
    EXPECT_EQ(flying(), 0u);
}

TEST_F(LiveScreenUpdateTest, featuresExactlyWhatIsNamed)
{
    addProducts();
    show->products[1]->isFeatured = true;
    open();
    EXPECT_EQ(cards(), "b*ac") << "as the products say at first";
    feature("show", featured, { { "c", "unknown", "a" } });
    EXPECT_EQ(cards(), "a*c*b") << "the whole set";
    feature("other", featured, { { "b" } });
    feature(std::nullopt, featured, { { "b" } });
    EXPECT_EQ(cards(), "a*c*b");
    feature("show", featured, { { "c" } });
    EXPECT_EQ(cards(), "c*ab");
    feature("show", featured, { { "unknown" } });
    EXPECT_EQ(cards(), "abc");
    for (const std::optional<MVProductsFeaturedUpdateType>& type :
        { std::optional(MVProductsFeaturedUpdateType::unfeatured), std::optional<MVProductsFeaturedUpdateType>() }) {
        feature("show", featured, { { "b" } });
        EXPECT_EQ(cards(), "b*ac");
        feature("show", type, { { "b" } });
        EXPECT_EQ(cards(), "abc") << "none";
    }
    feature("show", featured, { { "b" } });
    feature("show", featured, std::nullopt);
    EXPECT_EQ(cards(), "abc");
    EXPECT_EQ(show->products[1]->isFeatured, true) << "the service's record is its own";
}

TEST_F(LiveScreenUpdateTest, featuresTheFirstProductOfAnIdentifier)
{
    addProducts();
    show->products[2]->id = "b";
    show->products[0]->id = std::nullopt;
    show->products.insert(show->products.begin(), nullptr);
    open();
    feature("show", featured, { { "b", "b" } });
    EXPECT_EQ(cards(), "b*ac");
}

TEST_F(LiveScreenUpdateTest, keepsTheStripAsTheViewerHasIt)
{
    openWithChat({ "m1" });
    press("productsToggleButton");
    feature("show", featured, { { "b" } });
    EXPECT_FALSE(isStripShown());
    press("productsToggleButton");
    EXPECT_TRUE(isStripShown());
    EXPECT_EQ(cards(), "b*ac");
    navigation->popViewController(false);
    renewShow();
    open();
    EXPECT_EQ(toggles(), "") << "neither chat nor products";
    feature("show", featured, { { "b" } });
    EXPECT_EQ(toggles(), "");
}

TEST_F(LiveScreenUpdateTest, tellsTheHostOfATappedProduct)
{
    Lines taps;
    const auto token = NotificationCenter::defaultCenter().addObserver(
        rawValue(MivoraUINotification::mv_product_tapped), [&](const Notification& notification) {
            const auto *id = notification.value<std::string>("productId"), *url = notification.value<std::string>("productUrl");
            taps.push_back((id ? *id : "?") + " " + (url ? *url : "?"));
        });
    openWithChat({ "m1" });
    feature("show", featured, { { "c" } });
    press("productCollectionView");
    EXPECT_EQ(taps, Lines { "c https://shop.example/p" });
    host.tap({ middle(*screen->view()).x, 300 });
    host.tap(middle(*part("chatTableView")));
    EXPECT_EQ(taps.size(), 1u) << "neither video nor chat";
    EXPECT_EQ(show->calls, Lines {});
}

} // namespace
} // namespace mv
