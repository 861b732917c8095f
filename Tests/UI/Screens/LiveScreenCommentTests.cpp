#include "Tests/UI/Screens/LiveScreenViewerStage.h"

namespace mv {
namespace {

class LiveScreenCommentTest : public LiveScreenViewerStage { };

TEST_F(LiveScreenCommentTest, sendsAtOnceForWhoHasAName)
{
    for (const Role role : { Role::user, Role::guest }) {
        renewShow();
        service->role = role;
        show->isGuestUserAllowedToChat = true;
        openWithChat({ "m1" });
        comment("  Is it safe?  ");
        EXPECT_EQ(show->takeCalls(), Lines { "sendMessage   Is it safe?  " }) << "as typed";
        EXPECT_FALSE(prompt());
        EXPECT_EQ(chat(), Lines { "Ana: line 1" }) << "not before the service has it";
        EXPECT_EQ(barButtons(), "react");
        EXPECT_FALSE(field()->isEditing());
        answerComment(0, message("m2"));
        EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" }));
        navigation->popViewController(false);
    }
}

TEST_F(LiveScreenCommentTest, showsACommentOnceHoweverTheServiceAnswers)
{
    const auto deleted = message("m5"), elsewhere = message("m6");
    deleted->isDeleted = true;
    elsewhere->conversationId = "other";
    const auto answer
        = [this](const std::shared_ptr<const MVMessage>& message) { return [=, this] { answerComment(0, message); }; };
    const auto fail = [this] { answerComment(0, nullptr, refusal); };
    const auto echo = [this] { send(message("m2")); };
    const Lines once { "Ana: line 2", "Ana: line 1" }, none { "Ana: line 1" }, error { "E7", "not now", "429" };
    struct Case {
        const char* why;
        std::vector<std::function<void()>> steps;
        Lines chat, lines;
    };
    const Case cases[] = {
        { "answer, then echo", { answer(message("m2")), echo }, once, {} },
        { "echo, then answer", { echo, answer(message("m2")) }, once, {} },
        { "echo on both sides", { echo, answer(message("m2")), echo }, once, {} },
        { "answer alone", { answer(message("m2")) }, once, {} },
        { "echo alone", { echo }, once, {} },
        { "no message", { answer(nullptr) }, none, {} },
        { "no message, but its echo", { answer(nullptr), echo }, once, {} },
        { "a deleted message", { answer(deleted) }, none, {} },
        { "a message of another conversation", { answer(elsewhere) }, none, {} },
        { "failure", { fail }, none, error },
        { "failure, though it had arrived", { echo, fail }, once, error },
        { "failure with a message", { [this] { answerComment(0, message("m2"), refusal); } }, none, error },
        { "failure without a word", { [this] { answerComment(0, nullptr, MVApiError {}); } }, none, { "", "", "" } },
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.why);
        renewShow();
        openWithChat({ "m1" });
        comment("line 2");
        for (const auto& step : each.steps)
            step();
        EXPECT_EQ(chat(), each.chat);
        EXPECT_EQ(takeLines(), each.lines);
        EXPECT_EQ(show->takeCalls(), Lines { "sendMessage line 2" }) << "and nothing of itself";
        navigation->popViewController(false);
    }
}

TEST_F(LiveScreenCommentTest, takesTheFirstOfTwoAnswers)
{
    openWithChat({});
    comment("line 2");
    answerComment(0, message("m2"));
    answerComment(0, message("m3"));
    answerComment(0, nullptr, refusal);
    EXPECT_EQ(chat(), Lines { "Ana: line 2" });
    takeLines(); // that the service has answered twice, once in a process
}

TEST_F(LiveScreenCommentTest, bringsTheChatBackWithTheAnswerAndShowsItsEnd)
{
    Lines many;
    for (int i = 40; i > 0; --i)
        many.push_back("m" + std::to_string(i));
    openWithChat(many);
    const auto table = find<UITableView>(screen->view(), "chatTableView");
    table->setContentOffset({ 0, 300 });
    host.advance(0.5);
    ASSERT_NE(chat().front(), "Ana: line 40");
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden());
    comment("line 41");
    EXPECT_TRUE(isChatHidden()) << "it may still fail";
    answerComment(0, nullptr, refusal);
    EXPECT_TRUE(isChatHidden());
    EXPECT_EQ(takeLines().size(), 3u);
    comment("line 41");
    answerComment(1, message("m41"));
    host.advance(1);
    EXPECT_TRUE(isChatShown());
    EXPECT_EQ(chat().front(), "Ana: line 41");
    EXPECT_EQ(toggles(), "chat products");
    press("chatToggleButton");
    EXPECT_TRUE(isChatHidden()) << "its button was on";
    comment("line 42");
    answerComment(2, nullptr);
    EXPECT_TRUE(isChatShown()) << "also when the service keeps the message for itself";
}

TEST_F(LiveScreenCommentTest, sendsTheNextWhileTheFormerIsUnderWay)
{
    openWithChat({});
    comment("line 1");
    comment("line 2");
    EXPECT_EQ(show->takeCalls(), (Lines { "sendMessage line 1", "sendMessage line 2" }));
    answerComment(1, message("m2"));
    answerComment(0, message("m1"));
    EXPECT_EQ(chat(), (Lines { "Ana: line 2", "Ana: line 1" })) << "as they were written, not as they were answered";
    send(message("m2"));
    EXPECT_EQ(chat().size(), 2u);
}

TEST_F(LiveScreenCommentTest, hearsNoAnswerOfWhatItDoesNotWatchAnyMore)
{
    openWithChat({ "m1" });
    comment("line 2");
    const auto former = show;
    renewShow();
    screen->setBroadcast(show);
    answerPage({ "m5" });
    former->comments[0](message("m2"), std::nullopt);
    EXPECT_EQ(chat(), Lines { "Ana: line 5" }) << "another show";
    comment("line 6");
    press("closeButton");
    answerComment(0, message("m6"));
    answerComment(0, nullptr, refusal);
    EXPECT_EQ(chat(), Lines { "Ana: line 5" }) << "closed";
    takeLines();
}

TEST_F(LiveScreenCommentTest, stopsWritingAtATapOnTheVideoAndOnlyThere)
{
    openWithChat({ "m1" });
    write("Hi");
    EXPECT_TRUE(field()->isEditing());
    host.tap(middle(*part("chatTableView")));
    EXPECT_TRUE(field()->isEditing()) << "the chat may be read meanwhile";
    host.tap({ 100, 300 });
    host.advance(0.5);
    EXPECT_FALSE(field()->isEditing());
    EXPECT_EQ(field()->text(), "Hi");
    EXPECT_EQ(barButtons(), "send react");
    press("sendCommentButton");
    EXPECT_EQ(show->takeCalls(), Lines { "sendMessage Hi" });
}

} // namespace
} // namespace mv
