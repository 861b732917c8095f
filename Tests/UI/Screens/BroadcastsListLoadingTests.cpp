#include "Tests/UI/Screens/ListStage.h"

namespace mv {
namespace {

class ListLoadingTest : public ListStage {
protected:
    ListLoadingTest() { useTallDevice(); }
};

TEST_F(ListLoadingTest, asksForOneListAfterTheOther)
{
    openList();
    EXPECT_EQ(service->takeCalls(), Lines { "live 30 0 DESC" }) << "before it listens to events";
    EXPECT_EQ(service->delegateCount(), 1u);
    service->answer(makeShows({ "a", "b" }));
    EXPECT_EQ(service->takeCalls(), (Lines { "upcoming 30 0 ASC heard", "subscribe a", "subscribe b" }));
    service->answer(makeShows({ "c" }));
    EXPECT_EQ(service->takeCalls(), (Lines { "completed 30 0 DESC heard", "subscribe c" }));
    service->answer(makeShows({ "d", "e" }));
    EXPECT_EQ(service->takeCalls(), Lines {}) << "what is past has no events";
    host.advance(60);
    EXPECT_EQ(service->takeCalls(), Lines {});
}

TEST_F(ListLoadingTest, showsTheLoaderUntilThePastListIsThere)
{
    openList();
    for (int answer = 0; answer < 3; ++answer) {
        EXPECT_EQ(state(), "loader refreshable") << answer;
        service->answer(makeShows({ "a" }));
        host.advance(2);
    }
    EXPECT_EQ(state(), "pages refreshable");
}

TEST_F(ListLoadingTest, leavesOutWhatIsOver)
{
    openList();
    const Date end = Date::now() + 10;
    const auto shows = [&] {
        auto list = makeShows({ "before", "then", "after", "never" });
        const std::optional<Date> ends[] { end - 0.5, end, end + 0.5, std::nullopt };
        for (std::size_t i = 0; i < list.size(); ++i)
            list[i]->endTime = ends[i];
        return list;
    };
    host.advance(end - Date::now()); // what counts is the moment of the answer
    service->answer(shows());
    service->answer(shows());
    service->answer({});
    host.advance(0);
    EXPECT_EQ(titles(0), Lines { "Show after" });
    EXPECT_EQ(titles(1), Lines { "Show after" });
    EXPECT_EQ(service->takeCalls().back(), "subscribe after");
}

TEST_F(ListLoadingTest, keepsPastShowsThatWereRecorded)
{
    auto past = makeShows({ "recorded", "not recorded", "long over" }, Status::completed);
    past[1]->recordingUrl.reset();
    past[2]->endTime.reset();
    openList({}, {}, past);
    EXPECT_EQ(titles(2), (Lines { "Show recorded", "Show long over" }));
}

TEST_F(ListLoadingTest, saysWhatIsMissingInPlaceOfAnEmptyList)
{
    openList();
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(message(index), "") << "nothing is known yet";
        EXPECT_FALSE(showsTable(index));
    }
    answerAll({}, {}, {});
    const std::string messages[] { "There are currently no Live Shows. Please check back later.",
        "There are currently no Upcoming Shows. Please check back later.", "There are currently no Recorded Shows." };
    for (int index = 0; index < 3; ++index) {
        EXPECT_EQ(message(index), messages[index]);
        EXPECT_FALSE(showsTable(index));
    }
    press("refreshButton");
    answerAll(makeShows({ "a" }), {}, makeShows({ "b" }));
    EXPECT_TRUE(showsTable(0) && !showsTable(1) && showsTable(2));
    EXPECT_EQ(message(0) + message(1) + message(2), messages[1]);
    press("refreshButton");
    for (int answer = 0; answer < 3; ++answer)
        service->answer(std::nullopt);
    EXPECT_EQ(message(0), messages[0]) << "an absent list is an empty one";
    EXPECT_FALSE(showsTable(0) || showsTable(1) || showsTable(2));
}

TEST_F(ListLoadingTest, anEmptyEntryIsLeftOut)
{
    auto live = makeShows({ "a", "b" });
    live.insert(live.begin() + 1, nullptr);
    openList(live, {}, {});
    EXPECT_EQ(titles(0), (Lines { "Show a", "Show b" }));
    EXPECT_EQ(takeLines(), Lines { "broadcast service: a list of broadcasts has an empty entry; left out" });
}

TEST_F(ListLoadingTest, refreshesAllThreeLists)
{
    openList(makeShows({ "a" }), makeShows({ "b" }), makeShows({ "c" }));
    press("refreshButton");
    EXPECT_EQ(service->takeCalls(), Lines { "live 30 0 DESC heard" });
    EXPECT_EQ(state(), "loader busy");
    EXPECT_EQ(titles(0), Lines { "Show a" }) << "kept until there is an answer";
    press("refreshButton");
    EXPECT_EQ(service->takeCalls(), Lines {}) << "one at a time";
    service->answer(makeShows({ "d", "a" }));
    service->answer(makeShows({ "e" }));
    EXPECT_EQ(state(), "loader busy");
    service->answer(makeShows({ "f" }));
    host.advance(0);
    EXPECT_EQ(state(), "pages refreshable");
    EXPECT_EQ(titles(0), (Lines { "Show d", "Show a" }));
    EXPECT_EQ(titles(1), Lines { "Show e" });
    EXPECT_EQ(titles(2), Lines { "Show f" });
}

TEST_F(ListLoadingTest, mayBeRefreshedWhileTheFirstListsAreUnderWay)
{
    openList();
    const auto first = service->asked.front();
    press("refreshButton");
    EXPECT_EQ(service->asked.size(), 2u);
    EXPECT_EQ(state(), "loader busy");
    answerAll(makeShows({ "new" }), {}, {});
    EXPECT_EQ(titles(0), Lines { "Show new" });
    first(makeShows({ "old" }), std::nullopt);
    host.advance(0);
    EXPECT_EQ(titles(0), Lines { "Show old" }) << "every answer counts";
}

TEST_F(ListLoadingTest, aFailureEndsTheChainAndIsLogged)
{
    openList();
    service->fail({ .errorCode = "offline", .errorMessage = "No way to the shop.", .statusCode = 503 });
    EXPECT_EQ(takeLines(), (Lines { "offline", "No way to the shop.", "503" }));
    EXPECT_EQ(service->asked.size(), 1u);
    EXPECT_EQ(state(), "loader refreshable");
    press("refreshButton");
    service->answer(makeShows({ "a" }));
    service->fail({});
    host.advance(0);
    EXPECT_EQ(takeLines(), (Lines { "", "", "500" })) << "what is absent";
    EXPECT_EQ(service->asked.size(), 3u) << "no past list is asked for";
    EXPECT_EQ(state(), "loader busy");
    EXPECT_EQ(titles(0), Lines { "Show a" });
    EXPECT_FALSE(showsTable(1) || showsTable(2));
    press("refreshButton");
    EXPECT_EQ(service->asked.size(), 3u) << "the button stays as it was";
}

TEST_F(ListLoadingTest, aFailedPastListLeavesThePagesAsTheyWere)
{
    openList({}, {}, makeShows({ "c" }));
    press("refreshButton");
    service->answer(makeShows({ "a" }));
    service->answer(makeShows({ "b" }));
    service->fail({ .errorCode = "late", .errorMessage = {}, .statusCode = 0 });
    host.advance(0);
    EXPECT_EQ(takeLines(), (Lines { "late", "", "0" }));
    EXPECT_EQ(state(), "pages refreshable");
    EXPECT_EQ(titles(0), Lines { "Show a" });
    EXPECT_EQ(titles(2), Lines { "Show c" });
}

TEST_F(ListLoadingTest, aServiceMayAnswerWithinTheCall)
{
    service->atOnce = [this](Status status) { return makeShows({ std::to_string(int(status)) }, status); };
    openList();
    EXPECT_EQ(service->takeCalls(),
        (Lines { "live 30 0 DESC", "upcoming 30 0 ASC", "completed 30 0 DESC", "subscribe 1", "subscribe 0" }));
    EXPECT_EQ(state(), "pages refreshable");
    EXPECT_EQ(titles(0), Lines { "Show 0" });
}

TEST_F(ListLoadingTest, onlyTheFirstOfTwoAnswersCounts)
{
    openList();
    service->answer(makeShows({ "a" }));
    service->asked.front()(makeShows({ "b" }), std::nullopt);
    EXPECT_EQ(service->asked.size(), 2u);
    service->answer({});
    service->answer({});
    host.advance(0);
    EXPECT_EQ(titles(0), Lines { "Show a" });
    takeLines(); // the console hears of it once in a program
}

TEST_F(ListLoadingTest, anAnswerAfterItHasGoneIsIgnored)
{
    for (const std::size_t answers : { 0u, 1u, 2u }) {
        openList();
        for (std::size_t i = 0; i < answers; ++i)
            service->answer({});
        navigation->popViewController(false);
        const auto count = service->asked.size();
        service->takeCalls();
        service->answer(makeShows({ "a" }));
        service->asked.back()(std::nullopt, MVApiError {});
        EXPECT_EQ(service->asked.size(), count);
        EXPECT_EQ(service->takeCalls(), Lines {});
    }
    takeLines();
}

TEST_F(ListLoadingTest, itMayGoWhileItsShowsAreAskedForEvents)
{
    openList();
    auto live = makeShows({ "a", "b" });
    std::static_pointer_cast<ListedShow>(live[0])->onSubscribe = [this] { navigation->popViewController(false); };
    service->answer(live);
    EXPECT_EQ(service->takeCalls().back(), "subscribe b");
    EXPECT_EQ(service->delegateCount(), 0u);
}

} // namespace
} // namespace mv
