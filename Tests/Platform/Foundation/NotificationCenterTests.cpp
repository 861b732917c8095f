#include "Platform/Foundation/NotificationCenter.h"

#include "Tests/Platform/Foundation/QuietTest.h"

#include <optional>

namespace platform {

namespace {

class NotificationCenterTests : public QuietTest {
protected:
    NotificationCenter center;
    std::string heard;

    NotificationCenter::Callback hear(char letter)
    {
        return [this, letter](const Notification&) { heard += letter; };
    }
};

class Sender final : public NSObject { };

} // namespace

TEST_F(NotificationCenterTests, deliversByNameInTheOrderOfRegistration)
{
    const auto a = center.addObserver("tapped", hear('a'));
    const auto b = center.addObserver("tapped", hear('b'));
    const auto other = center.addObserver("tapped ", hear('x'));
    center.post("tapped");
    center.post("nobody");
    EXPECT_EQ(heard, "ab");
}

TEST_F(NotificationCenterTests, carriesTypedUserInfo)
{
    std::string url;
    const auto token = center.addObserver("tapped", [&](const Notification& notification) {
        ASSERT_NE(notification.value<std::string>("productUrl"), nullptr);
        url = *notification.value<std::string>("productUrl");
        EXPECT_EQ(notification.value<int>("productUrl"), nullptr);
        EXPECT_EQ(notification.value<std::string>("absent"), nullptr);
    });
    center.post("tapped", nullptr, { { "productUrl", std::string("https://shop") } });
    EXPECT_EQ(url, "https://shop");
}

TEST_F(NotificationCenterTests, aSenderFilterLetsOnlyThatObjectThrough)
{
    auto mine = make<Sender>();
    const auto other = make<Sender>();
    const auto token = center.addObserver("ended", mine, hear('m'));
    center.post("ended", other);
    center.post("ended");
    EXPECT_EQ(heard, "");
    center.post("ended", mine);
    EXPECT_EQ(heard, "m");

    // Its memory may be given to another object after its end, which must not be taken for it.
    mine = nullptr;
    for (int i = 0; i < 100; ++i)
        center.post("ended", make<Sender>());
    EXPECT_EQ(heard, "m");
}

TEST_F(NotificationCenterTests, anObserverMayLeaveInsideItsOwnDelivery)
{
    NotificationToken self;
    self = center.addObserver("event", [&, name = std::string("a long enough capture")](const Notification&) {
        heard += 's';
        self.reset();
        EXPECT_EQ(name, "a long enough capture");
    });
    const auto after = center.addObserver("event", hear('a'));
    center.post("event");
    center.post("event");
    EXPECT_EQ(heard, "saa");
}

TEST_F(NotificationCenterTests, oneThatIsDestroyedDuringADeliveryHearsNothingMore)
{
    auto victim = std::make_optional<NotificationToken>();
    const auto killer = center.addObserver("event", [&](const Notification&) {
        heard += 'k';
        victim.reset();
    });
    *victim = center.addObserver("event", hear('v'));
    center.post("event");
    EXPECT_EQ(heard, "k");
}

TEST_F(NotificationCenterTests, oneThatComesDuringADeliveryHearsTheNext)
{
    std::vector<NotificationToken> tokens;
    tokens.push_back(center.addObserver("event", [&](const Notification&) {
        heard += 'a';
        tokens.push_back(center.addObserver("event", hear('n')));
    }));
    center.post("event");
    EXPECT_EQ(heard, "a");
    center.post("event");
    EXPECT_EQ(heard, "aan");
}

TEST_F(NotificationCenterTests, aPosterMayReEnter)
{
    int depth = 0;
    const auto a = center.addObserver("event", [&](const Notification&) {
        heard += 'a';
        if (++depth < 3)
            center.post("event");
    });
    const auto b = center.addObserver("event", hear('b'));
    center.post("event");
    EXPECT_EQ(heard, "aaabbb");
}

TEST_F(NotificationCenterTests, allMayLeaveBeforeANestedDelivery)
{
    std::vector<NotificationToken> tokens;
    for (const char letter : { 'a', 'b', 'c' }) {
        tokens.push_back(center.addObserver("event", [&, letter](const Notification&) {
            heard += letter;
            if (letter == 'b') {
                tokens.clear();
                center.post("event");
            }
        }));
    }
    center.post("event");
    EXPECT_EQ(heard, "ab");
}

TEST_F(NotificationCenterTests, assigningATokenEndsTheOldRegistration)
{
    auto token = center.addObserver("event", hear('1'));
    token = center.addObserver("event", hear('2'));
    center.post("event");
    EXPECT_EQ(heard, "2");
    NotificationToken moved = std::move(token);
    center.removeObserver(moved);
    center.post("event");
    EXPECT_EQ(heard, "2");
}

TEST_F(NotificationCenterTests, aTokenMayOutliveItsCenter)
{
    NotificationToken token;
    {
        NotificationCenter shortLived;
        token = shortLived.addObserver("event", hear('x'));
    }
    token.reset();
    EXPECT_FALSE(token);
}

} // namespace platform
