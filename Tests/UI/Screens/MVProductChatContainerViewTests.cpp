#include "UI/Screens/Broadcast Screen/SubViews/MVProductChatContainerView.h"

#include "Main/MivoraUINotification.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UITextView.h"
#include "Tests/UI/Stage.h"

namespace mv {
namespace {

// A panel of 393 x 400 points over the lower part of a phone's green screen, as the live screen places it.
class ChatPanelTest : public Stage {
protected:
    ChatPanelTest()
    {
        window->setBackgroundColor(UIColor(0, 1, 0));
        addPanel();
        tapped = NotificationCenter::defaultCenter().addObserver(
            rawValue(MivoraUINotification::mv_product_tapped), [this](const Notification& n) {
                const auto* id = n.value<std::string>("productId");
                const auto* url = n.value<std::string>("productUrl");
                taps.push_back((id ? *id : "?") + "|" + (url ? *url : "?") + (n.object ? "|sender" : ""));
            });
    }

    void addPanel()
    {
        panel = make<MVProductChatContainerView>();
        panel->onRequestToLoadMoreMessage = [this] { ++requests; };
        panel->isLoadingMoreMessageAllowed = false; // as the live screen has it
        panel->setTranslatesAutoresizingMaskIntoConstraints(false);
        window->addSubview(panel);
        bottom = panel->bottomAnchor().equalTo(window->bottomAnchor(), -40);
        activate({ panel->leadingAnchor().equalTo(window->leadingAnchor()),
            panel->trailingAnchor().equalTo(window->trailingAnchor()), panel->heightAnchor().equalToConstant(400), bottom });
        host.advance(0);
    }

    static ChatMessage message(int number, const std::string& text = "")
    {
        ChatMessage line;
        line.id = "m" + std::to_string(number);
        line.owner = "Ana";
        line.commentText = text.empty() ? "line " + std::to_string(number) : text;
        line.createdAt = Date { 1000.0 + number };
        return line;
    }
    // Lines from `last` down to `first`, as the screen keeps them.
    static ChatMessageList lines(int first, int last)
    {
        std::vector<ChatMessage> all;
        for (int i = last; i >= first; --i)
            all.push_back(message(
                i, i % 3 == 0 ? "a longer line that takes more than the width of the panel, number " + std::to_string(i) : ""));
        return ChatMessageList(all);
    }
    void setChat(const ChatMessageList& chat, bool allLoaded = false, bool scrollToTop = false)
    {
        panel->setChatMessages(chat, allLoaded, scrollToTop);
        host.advance(0);
    }
    static std::shared_ptr<BroadcastProduct> product(const std::string& id, bool isFeatured = false)
    {
        auto record = std::make_shared<MVProduct>();
        record->id = id;
        record->title = "Product " + id;
        return std::make_shared<BroadcastProduct>(std::move(record), isFeatured);
    }
    void setProducts(std::vector<std::shared_ptr<BroadcastProduct>> products)
    {
        panel->assignProductsList(std::move(products));
        host.advance(0);
    }
    void showAll()
    {
        panel->showHideProducts(true);
        panel->showHideChatTable(true);
        host.advance(0.4);
    }

    std::shared_ptr<UITableView> table() { return find<UITableView>(panel, "chatTableView"); }
    std::shared_ptr<UICollectionView> strip() { return find<UICollectionView>(panel, "productCollectionView"); }
    std::shared_ptr<UIView> chat() { return find(panel, "chatTableContainerView"); }
    std::string text(int row)
    {
        const auto cell = table()->cellForRow(row);
        return cell ? find<UITextView>(cell, "messageTextView")->text() : "";
    }
    // Where the line of that number is on the screen; nothing when it is out of sight.
    std::optional<CGRect> place(int number)
    {
        for (const int row : table()->indicesForVisibleRows())
            if (text(row).ends_with(" " + std::to_string(number)))
                return onScreen(*table()->cellForRow(row));
        return {};
    }
    std::string titles()
    {
        std::string all;
        for (const int item : strip()->indicesForVisibleItems())
            all += find<UILabel>(strip()->cellForItem(item), "productNameLabel")->text() + ";";
        return all;
    }
    void scrollToOldest()
    {
        for (int i = 0; i < 6; ++i) { // the end moves away while lines of two rows come into sight
            table()->setContentOffset(table()->maximumContentOffset());
            host.advance(0);
        }
    }

    std::shared_ptr<MVProductChatContainerView> panel;
    std::shared_ptr<NSLayoutConstraint> bottom;
    NotificationToken tapped;
    std::vector<std::string> taps;
    int requests = 0;
};

TEST_F(ChatPanelTest, theNewestLineIsAtTheBottomWhateverTheOrder)
{
    const auto newest = message(3), middle = message(2), oldest = message(1);
    setChat(ChatMessageList({ middle, newest, oldest }));
    EXPECT_EQ(text(0), "Ana: line 3");
    EXPECT_EQ(text(1), "Ana: line 2");
    EXPECT_EQ(text(2), "Ana: line 1");
    EXPECT_NEAR(place(3)->maxY(), onScreen(*panel).maxY(), 1e-6);
    EXPECT_NEAR(place(2)->maxY(), place(3)->y, 1e-6);
    EXPECT_NEAR(place(1)->maxY(), place(2)->y, 1e-6);
    const auto view = find(table()->cellForRow(0), "messageTextView");
    EXPECT_EQ(onScreen(*view).x, 15);
    EXPECT_EQ(view->convertTo(CGPoint { 0, 0 }, nullptr).y, place(3)->y + 8) << "upright";
}

TEST_F(ChatPanelTest, whoReadsOlderLinesGoesOnReadingThem)
{
    setChat(lines(1, 300));
    showAll();
    host.drag({ 200, 500 }, { 200, 780 }, 0.2);
    host.advance(4);
    const int read = 300 - table()->indicesForVisibleRows()[2];
    ASSERT_LT(read, 296) << "scrolled back";
    const CGRect before = *place(read);
    setChat(lines(1, 301));
    EXPECT_TRUE(isNear(*place(read), before)) << "one line more";
    setChat(lines(1, 340));
    EXPECT_TRUE(isNear(*place(read), before)) << "forty lines more";
    auto fewer = lines(1, 340);
    for (const char* gone : { "m338", "m200", "m3" })
        fewer.erase(gone);
    fewer.erase("m" + std::to_string(read + 3));
    setChat(fewer);
    EXPECT_TRUE(isNear(*place(read), before)) << "lines are taken away";

    setChat(lines(1, 341), false, true);
    EXPECT_NEAR(place(341)->maxY(), onScreen(*panel).maxY(), 1e-6) << "its own line brings it to the newest";
    setChat(lines(1, 342));
    EXPECT_NEAR(place(342)->maxY(), onScreen(*panel).maxY(), 1e-6) << "where new ones show at once";
    setChat({}, false, true);
    EXPECT_EQ(table()->numberOfRows(), 0);
    setChat(lines(1, 2), false, true);
    EXPECT_NEAR(place(2)->maxY(), onScreen(*panel).maxY(), 1e-6);
}

TEST_F(ChatPanelTest, aChangedLineIsFilledAnewAndTheOthersAreNot)
{
    setChat(lines(1, 5));
    const auto kept = table()->cellForRow(0);
    auto changed = lines(1, 5);
    changed.erase("m4");
    ChatMessage anew = message(4, "said otherwise");
    changed.insertAtFront(anew);
    setChat(changed);
    EXPECT_EQ(text(1), "Ana: said otherwise");
    EXPECT_EQ(table()->cellForRow(0), kept);
    anew.id.reset();
    changed.erase("m4");
    changed.insertAtFront(anew);
    changed.insertAtFront(anew);
    setChat(changed);
    EXPECT_EQ(text(1), "Ana: said otherwise");
    EXPECT_EQ(text(2), "Ana: said otherwise") << "lines without an identifier are lines of their own";
}

TEST_F(ChatPanelTest, theOldestLineInSightAsksForOlderOnesOnce)
{
    panel->isLoadingMoreMessageAllowed = true;
    showAll();
    setChat(lines(1, 60));
    EXPECT_EQ(requests, 0) << "the oldest is not in sight";
    scrollToOldest();
    EXPECT_EQ(requests, 1);
    EXPECT_EQ(takeLines(), std::vector<std::string> { "Load More messages" });
    table()->scrollToRow(30, false);
    host.advance(0);
    scrollToOldest();
    EXPECT_EQ(requests, 1) << "one is under way";
    EXPECT_TRUE(takeLines().empty());

    table()->scrollToRow(0, false);
    setChat(lines(-49, 60));
    scrollToOldest();
    EXPECT_EQ(requests, 2) << "answered, and reached again";
    setChat(lines(-49, 60));
    EXPECT_EQ(requests, 3) << "the oldest is still in sight after an answer";
    setChat(lines(-49, 60), true);
    EXPECT_EQ(requests, 3) << "there are no older ones";
    panel->isLoadingMoreMessageAllowed = false;
    setChat(lines(-49, 60));
    EXPECT_EQ(requests, 3) << "not allowed";
    EXPECT_EQ(takeLines().size(), 2u);
}

TEST_F(ChatPanelTest, aSingleLineIsTheOldestOne)
{
    panel->isLoadingMoreMessageAllowed = true;
    setChat(lines(1, 1));
    EXPECT_EQ(requests, 1);
    panel->onRequestToLoadMoreMessage = nullptr;
    setChat(lines(1, 2));
    EXPECT_EQ(takeLines(), (std::vector<std::string> { "Load More messages", "Load More messages" }))
        << "said without a listener too";
    setChat({});
    EXPECT_EQ(requests, 1);

    // An answer within the call, and an owner that drops the panel.
    panel->onRequestToLoadMoreMessage = [this] {
        if (++requests < 4)
            panel->setChatMessages(lines(-requests, 2), requests == 3);
    };
    setChat(lines(1, 2));
    EXPECT_EQ(requests, 3);
    panel->onRequestToLoadMoreMessage = [this] {
        panel->removeFromSuperview();
        panel = nullptr;
    };
    setChat(lines(1, 2));
    EXPECT_FALSE(panel);
    EXPECT_EQ(takeLines().size(), 3u);
}

TEST_F(ChatPanelTest, featuredProductsComeFirst)
{
    std::vector products { product("a"), product("b", true), product("c"), product("d", true) };
    setProducts(products);
    const auto all = [&] {
        std::string order;
        for (int i = 0; i < 4; ++i) {
            strip()->setContentOffset({ i * strip()->bounds().width * 0.8, 0 });
            host.advance(0);
            order += find<UILabel>(strip()->cellForItem(i), "productNameLabel")->text().back();
        }
        return order;
    };
    EXPECT_EQ(all(), "bdac");
    products[1]->isFeatured = false; // the same objects, as the screen flips them
    products[2]->isFeatured = true;
    setProducts(products);
    EXPECT_EQ(all(), "cdab");
    strip()->setContentOffset({ -5, 0 });
    host.advance(0);
    EXPECT_EQ(find(strip()->cellForItem(0), "containerView")->layer()->borderColor(), UIColor::white().cgColor());
    setProducts({ nullptr, product("e") });
    EXPECT_EQ(titles(), "Product e;");
}

TEST_F(ChatPanelTest, aTapOnACardTellsTheHost)
{
    auto bare = std::make_shared<BroadcastProduct>(std::make_shared<MVProduct>(), false);
    auto full = product("7");
    full->product->productUrl = URL::parse("https://shop.example/p/7?x=1");
    setProducts({ full, bare });
    const double stripY = onScreen(*panel).maxY() - 50;
    host.tap({ 100, stripY });
    EXPECT_TRUE(taps.empty()) << "not while it is hidden";
    showAll();
    host.tap({ 100, stripY });
    EXPECT_EQ(taps, std::vector<std::string> { "7|https://shop.example/p/7?x=1" });
    host.tap({ 380, stripY });
    EXPECT_EQ(taps.back(), "|") << "both texts, empty";
    EXPECT_EQ(taps.size(), 2u);
}

TEST_F(ChatPanelTest, theStripHasItsRoomWhileItIsShown)
{
    const CGRect whole = onScreen(*panel);
    setChat(lines(1, 40));
    setProducts({ product("a"), product("b") });
    EXPECT_EQ(chat()->alpha(), 0);
    EXPECT_TRUE(strip()->isHidden());
    EXPECT_EQ(onScreen(*chat()), whole);
    showAll();
    EXPECT_EQ(chat()->alpha(), 1);
    EXPECT_FALSE(strip()->isHidden());
    EXPECT_EQ(onScreen(*chat()).height, 300);
    EXPECT_EQ(onScreen(*strip()), (CGRect { 0, whole.maxY() - 100, 393, 100 }));
    const auto card = [&](int item) { return onScreen(*find(strip()->cellForItem(item), "containerView")); };
    EXPECT_EQ(card(0).x, 10);
    EXPECT_EQ(card(0).y, whole.maxY() - 90);
    EXPECT_EQ(card(0).height, 80);
    EXPECT_NEAR(card(0).width, 393 * 0.8 - 10, 0.34);
    EXPECT_NEAR(card(1).x, card(0).maxX() + 10, 0.34);
    EXPECT_NEAR(place(40)->maxY(), whole.maxY() - 100, 1e-6) << "the newest line right above it";

    panel->showHideProducts(false);
    EXPECT_FALSE(strip()->isHidden()) << "while it fades";
    host.advance(0.4);
    EXPECT_TRUE(strip()->isHidden());
    EXPECT_EQ(onScreen(*chat()), whole);
    setProducts({});
    panel->showHideProducts(true);
    host.advance(0.4);
    EXPECT_FALSE(strip()->isHidden());
    EXPECT_EQ(strip()->alpha(), 1);
    EXPECT_EQ(onScreen(*chat()), whole) << "an empty strip takes no room";
}

TEST_F(ChatPanelTest, theLastWordOnTheStripCounts)
{
    setProducts({ product("a") });
    showAll();
    const auto advanceTo = [&](double shown) {
        host.advance(0.4);
        EXPECT_EQ(strip()->isHidden(), shown == 0);
        EXPECT_EQ(strip()->alpha(), shown);
    };
    panel->showHideProducts(false);
    host.advance(0.1);
    panel->showHideProducts(true);
    host.advance(0.1);
    EXPECT_FALSE(strip()->isHidden()) << "fading in again";
    advanceTo(1);
    panel->showHideProducts(false);
    panel->showHideProducts(true);
    advanceTo(1);
    panel->showHideProducts(true);
    panel->showHideProducts(false);
    advanceTo(0);
    panel->showHideProducts(true);
    panel->removeFromSuperview();
    panel = nullptr; // nobody minds the end of the animation
    host.advance(0.4);
}

TEST_F(ChatPanelTest, landscapeShowsBothAndPortraitWhatTheScreenWants)
{
    setChat(lines(1, 40));
    setProducts({ product("a"), product("b") });
    bottom->setConstant(0);
    turn(UIDeviceOrientation::landscapeLeft);
    EXPECT_EQ(chat()->alpha(), 1);
    EXPECT_FALSE(strip()->isHidden());
    EXPECT_EQ(onScreen(*strip()), (CGRect { 59, 293, 852 - 118, 100 })) << "inside the safe area and the panel";
    EXPECT_NEAR(place(40)->maxY(), 293, 1e-6);
    EXPECT_EQ(onScreen(*find(table()->cellForRow(0), "messageTextView")).x, 59 + 15);
    setProducts({});
    EXPECT_EQ(onScreen(*chat()).maxY(), 393) << "no products, no room";
    setProducts({ product("c") });
    EXPECT_EQ(onScreen(*chat()).maxY(), 293);

    panel->didDeviceOrientationChanged(UIDeviceOrientation::faceUp);
    EXPECT_EQ(takeLines(), std::vector<std::string> { "UnSupported Orientation" });
    EXPECT_EQ(chat()->alpha(), 1);
    turn(UIDeviceOrientation::portrait);
    EXPECT_EQ(chat()->alpha(), 0);
    EXPECT_TRUE(strip()->isHidden());
    EXPECT_EQ(onScreen(*chat()).maxY(), onScreen(*panel).maxY());

    showAll();
    panel->showHideProducts(false); // still fading when the device turns
    host.advance(0.1);
    turn(UIDeviceOrientation::landscapeRight);
    EXPECT_FALSE(strip()->isHidden());
    EXPECT_EQ(strip()->alpha(), 1);
    turn(UIDeviceOrientation::portrait);
    EXPECT_EQ(chat()->alpha(), 1);
    EXPECT_TRUE(strip()->isHidden());
}

TEST_F(ChatPanelTest, leavesTheHandlerWhenItEnds)
{
    const auto before = MVSystemNotificationHandler::instance().delegateCount();
    panel->removeFromSuperview();
    panel = nullptr;
    EXPECT_EQ(MVSystemNotificationHandler::instance().delegateCount(), before - 1);
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.rotate(UIDeviceOrientation::portrait);
}

TEST_F(ChatPanelTest, theChatFadesOverItsTopQuarter)
{
    showAll();
    const std::string block(2000, 'W');
    setChat(ChatMessageList({ message(1, block) }));
    // How much of the green behind is covered at most in a band of lines.
    const auto covered = [&](double from, double to) {
        unsigned most = 0;
        for (double y = from; y < to; y += 1.0 / 3)
            for (double x = 20; x < 370; x += 1.0 / 3)
                most = std::max(most, pixel({ x, y }) & 0xff); // white letters over green
        return most;
    };
    const auto fades = [&](const CGRect& box) {
        EXPECT_LT(covered(box.y, box.y + 5), 25u);
        EXPECT_NEAR(covered(box.y + box.height * 0.1, box.y + box.height * 0.15), 255 * 0.5, 60);
        EXPECT_EQ(covered(box.y + box.height * 0.3, box.y + box.height * 0.5), 255u);
        EXPECT_EQ(covered(box.y - 50, box.y), 0u);
    };
    fades(onScreen(*chat()));
    setProducts({ product("a") });
    showAll();
    EXPECT_EQ(onScreen(*chat()).height, 300);
    fades(onScreen(*chat()));

    // The fade goes along while the strip comes.
    panel->showHideProducts(false);
    host.advance(0.4);
    panel->showHideProducts(true);
    host.advance(0.08);
    const double y = onScreen(*panel).y;
    EXPECT_GT(covered(y + 305, y + 330), 200u);
}

TEST_F(ChatPanelTest, runsFromTheRightWhereTheInterfaceDoes)
{
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    setChat(lines(1, 3));
    setProducts({ product("a"), product("b") });
    showAll();
    EXPECT_EQ(onScreen(*find(table()->cellForRow(0), "containerView")).maxX(), 393 - 10);
    EXPECT_NEAR(onScreen(*strip()->cellForItem(0)).maxX(), 393 - 5, 0.34);
    EXPECT_LT(onScreen(*strip()->cellForItem(1)).x, 80);
    host.tap({ 20, onScreen(*panel).maxY() - 50 });
    EXPECT_EQ(taps, std::vector<std::string> { "b|" });
}

} // namespace
} // namespace mv
