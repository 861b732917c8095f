#include "UI/Common/Models/BroadcastProduct.h"
#include "UI/Common/Models/ChatMessage.h"

#include <gtest/gtest.h>

namespace mv {
namespace {

class ChatMessageTest : public testing::Test {
protected:
    ChatMessageTest()
    {
        broadcast->conversationId = "talk";
        broadcast->hosts = { std::make_shared<MVHost>(MVHost { .userId = "h", .rtcUserId = {}, .user = {} }),
            std::make_shared<MVHost>(MVHost { .userId = "second", .rtcUserId = {}, .user = {} }) };
    }

    std::optional<ChatMessage> line() const { return makeChatMessage(std::make_shared<MVMessage>(message), *broadcast); }

    std::shared_ptr<MVBroadcast> broadcast = make<MVBroadcast>();
    MVMessage message { .id = "1",
        .body = "Lovely lamp",
        .owner = MVUser { .id = "u", .displayName = "Ana" },
        .ownerId = "u",
        .createdAt = Date { 1000 },
        .conversationId = "talk",
        .isDeleted = false };
};

TEST_F(ChatMessageTest, takesOverWhatTheMessageSays)
{
    const auto shown = line();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->id, "1");
    EXPECT_EQ(shown->commentText, "Lovely lamp");
    EXPECT_EQ(shown->owner, "Ana");
    EXPECT_FALSE(shown->isHostOwner);
    EXPECT_EQ(shown->createdAt, Date { 1000 });
}

TEST_F(ChatMessageTest, leavesOutWhatMayNotBeShown)
{
    EXPECT_FALSE(makeChatMessage(nullptr, *broadcast));
    const auto whole = message;
    const std::pair<const char*, std::function<void(MVMessage&)>> cases[] = {
        { "deleted", [](MVMessage& m) { m.isDeleted = true; } },
        { "not said to be kept", [](MVMessage& m) { m.isDeleted.reset(); } },
        { "no identifier", [](MVMessage& m) { m.id.reset(); } },
        { "no body", [](MVMessage& m) { m.body.reset(); } },
        { "of another conversation", [](MVMessage& m) { m.conversationId = "other"; } },
        { "of no conversation", [](MVMessage& m) { m.conversationId.reset(); } },
    };
    for (const auto& [why, change] : cases) {
        message = whole;
        change(message);
        EXPECT_FALSE(line()) << why;
    }
}

TEST_F(ChatMessageTest, absentEqualsAbsentAndHasDefaults)
{
    broadcast->conversationId.reset();
    broadcast->hosts = std::vector<std::shared_ptr<MVHost>> {};
    message = { .id = "1", .body = "", .owner = {}, .ownerId = {}, .createdAt = {}, .conversationId = {}, .isDeleted = false };
    const auto before = Date::now();
    const auto shown = line();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->commentText, "");
    EXPECT_EQ(shown->owner, "");
    EXPECT_TRUE(shown->isHostOwner);
    EXPECT_GE(shown->createdAt, before);
    EXPECT_LE(shown->createdAt, Date::now());
}

TEST_F(ChatMessageTest, marksOnlyTheFirstHost)
{
    message.ownerId = "h";
    EXPECT_TRUE(line()->isHostOwner);
    message.ownerId = "second";
    EXPECT_FALSE(line()->isHostOwner);
    message.ownerId.reset();
    EXPECT_FALSE(line()->isHostOwner);
}

TEST(BroadcastProduct, wrapsInOrderAndSharesTheFlag)
{
    const auto product = [](const char* id, std::optional<bool> featured) {
        auto made = std::make_shared<MVProduct>();
        made->id = id;
        made->isFeatured = featured;
        return made;
    };
    const auto wrapped = makeBroadcastProducts({ product("a", {}), product("b", true), nullptr, product("c", false) });
    ASSERT_EQ(wrapped.size(), 3u);
    EXPECT_EQ(wrapped[0]->product->id, "a");
    EXPECT_FALSE(wrapped[0]->isFeatured);
    EXPECT_TRUE(wrapped[1]->isFeatured);
    EXPECT_EQ(wrapped[2]->product->id, "c");
}

} // namespace
} // namespace mv
