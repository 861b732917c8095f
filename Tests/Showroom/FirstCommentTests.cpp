#include "Platform/Foundation/NSLog.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UITableView.h"
#include "Platform/UIKit/UITextView.h"
#include "Platform/UIKit/UIWindow.h"
#include "Service/MVVideoStreamService.h"
#include "Service/Mivora.h"
#include "Showroom/Service/CannedService.h"
#include "Showroom/ShowroomApp.h"
#include "Showroom/Tour/ScreenReader.h"
#include "Tests/Support/ViewSearch.h"
#include "UI/Utils/MVSystemNotificationHandler.h"
#include "UI/Utils/MVUtilities.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace showroom {
namespace {

using namespace platform;

// Somebody who has never been in this shop, and what the service is asked on the way.
class FirstCommentTest : public testing::Test {
protected:
    using Calls = std::vector<std::string>;

    FirstCommentTest()
    {
        app.installService([](Scenario& scenario) {
            scenario.timeline.clear(); // nobody else says anything meanwhile
            for (auto& show : scenario.broadcasts)
                show.stream = std::nullopt;
            scenario.operations["sendMessage"].echo = 0.3;
            scenario.operations["addReaction"].echo = 0.2;
        });
        app.openShop();
        host.advance(3);
    }

    bool sees(std::string_view nameOrText) const { return findOnScreen(host.device(), nameOrText).has_value(); }
    void tap(std::string_view nameOrText)
    {
        const auto place = findOnScreen(host.device(), nameOrText);
        ASSERT_TRUE(place) << nameOrText;
        host.tap({ place->midX(), place->midY() });
        host.advance(1);
    }
    void tapText(const std::string& key) { tap(mv::MVLocalized(key)); } // of the host's table
    std::shared_ptr<UIView> part(const std::string& name) const
    {
        return test::findView(UIApplication::shared().keyWindow(), name);
    }
    std::size_t flying() const { return part("reactionAnimationView")->subviews().size(); }
    // How many lines of the chat say that.
    std::size_t count(const std::string& line) const
    {
        const auto chat = std::dynamic_pointer_cast<UITableView>(part("chatTableView"));
        return std::size_t(std::ranges::count_if(chat->indicesForVisibleRows(), [&](int row) {
            return std::dynamic_pointer_cast<UITextView>(test::findView(chat->cellForRow(row), "messageTextView"))->text()
                == line;
        }));
    }
    static std::vector<std::size_t> listeners()
    {
        mv::MVSystemNotificationHandler::instance().removeDelegate(""); // which forgets who is gone
        return { mv::Mivora::instance()->delegateCount(), mv::MVVideoStreamService::instance()->delegateCount(),
            mv::MVSystemNotificationHandler::instance().delegateCount() };
    }
    // Since the last look.
    Calls takeCalls()
    {
        const auto& log = app.service()->callLog();
        Calls fresh(log.begin() + std::ptrdiff_t(seen), log.end());
        seen = log.size();
        return fresh;
    }

    const LogCapture console;
    HeadlessHost host { HostDevice::phone() };
    ShowroomApp app { host.device().state() };
    std::size_t seen = 0;
    const std::string question = "Is it dishwasher safe?";
};

TEST_F(FirstCommentTest, goesFromTheListToTheChatAndAReactionAndBack)
{
    const auto listeners = this->listeners();
    takeCalls();
    tapText("mvJoinNow");
    host.advance(1);
    EXPECT_EQ(takeCalls(),
        (Calls { "getBroadcast ceramic-hour", "ceramic-hour subscribeEvents", "ceramic-hour startWatching",
            "ceramic-hour startWatchingBroadcastConversation", "ceramic-hour loadChatMessages 50 0", "ceramic-hour getProducts",
            "ceramic-hour playVideoStream" }));

    tap("commentTextField");
    EXPECT_TRUE(host.tapKeys(question)) << "on the keys that the screen shows";
    host.advance(1);
    tap("sendCommentButton");
    EXPECT_TRUE(sees(mv::MVLocalized("mvEnterNameToJoinChat")));
    EXPECT_EQ(takeCalls(), Calls {}) << "nobody knows the viewer yet";

    host.type("Wren");
    tapText("mvJoin");
    host.advance(1);
    EXPECT_FALSE(sees(mv::MVLocalized("mvEnterNameToJoinChat")));
    EXPECT_EQ(takeCalls(), (Calls { "createGuestUser Wren", "ceramic-hour sendMessage " + question }));
    EXPECT_EQ(count("Wren: " + question), 1u) << "answer and echo have come";

    tap("sendReactionButton");
    tap("reactionButton"); // the first of the row
    EXPECT_EQ(flying(), 1u);
    EXPECT_EQ(takeCalls(), Calls { "ceramic-hour addReaction wow" });
    host.advance(6);
    EXPECT_EQ(flying(), 0u);

    tap("commentTextField");
    host.type("Thanks!");
    tap("sendCommentButton");
    EXPECT_EQ(takeCalls(), Calls { "ceramic-hour sendMessage Thanks!" }) << "asked once only";
    EXPECT_EQ(count("Wren: Thanks!"), 1u);

    tap("closeButton");
    EXPECT_EQ(takeCalls(),
        (Calls {
            "ceramic-hour stopWatching", "ceramic-hour stopWatchingBroadcastConversation", "ceramic-hour stopVideoStream" }));
    EXPECT_TRUE(sees(mv::MVLocalized("mvJoinNow")));
    EXPECT_EQ(this->listeners(), listeners);
    EXPECT_EQ(console.lines(),
        (Calls { "Video Channel Joined Successfully", "Recieved Host Video Stream", "Video Channel Left Successfully" }));
}

} // namespace
} // namespace showroom
