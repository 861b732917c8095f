#include "Tests/UI/Screens/ListStage.h"

namespace mv {
namespace {

class ListEventsTest : public ListStage {
protected:
    ListEventsTest() { useTallDevice(); }

    void start(const std::optional<std::string>& id)
    {
        MVBroadcastLiveUpdate update;
        update.broadcastId = id;
        update.newStatus = Status::live;
        update.broadcastActualStartTime = Date { 500 };
        service->start(update);
        host.advance(0);
    }
    void complete(const std::optional<std::string>& id)
    {
        MVBroadcastCompletedUpdate update;
        update.broadcastId = id;
        update.newStatus = Status::completed;
        update.broadcastActualEndTime = Date { 900 };
        update.totalDuration = 400;
        service->complete(update);
        host.advance(0);
    }
};

TEST_F(ListEventsTest, aStartedShowMovesToTheTopOfTheLiveOnes)
{
    const auto upcoming = makeShows({ "u1", "u2", "u3" }, Status::upcoming);
    openList(makeShows({ "a", "b" }), upcoming, {});
    start("u2");
    EXPECT_EQ(titles(0), (Lines { "Show u2", "Show a", "Show b" }));
    EXPECT_EQ(titles(1), (Lines { "Show u1", "Show u3" }));
    EXPECT_EQ(actions(0).front(), "mvJoinNow");
    EXPECT_FALSE(find(table(0)->cellForRow(0), "dateTimeView"));
    EXPECT_EQ(upcoming[1]->status, Status::live);
    EXPECT_EQ(upcoming[1]->actualStartTime, Date { 500 });
    EXPECT_EQ(service->takeCalls(), Lines {});

    start("u1");
    start("u3");
    EXPECT_EQ(titles(0), (Lines { "Show u3", "Show u1", "Show u2", "Show a", "Show b" }));
    EXPECT_FALSE(showsTable(1));
    EXPECT_EQ(message(1), "There are currently no Upcoming Shows. Please check back later.");
}

TEST_F(ListEventsTest, oneThatIsLiveAlreadyIsNotShownTwice)
{
    const auto live = makeShows({ "x", "a" });
    const auto upcoming = makeShows({ "a", "u" }, Status::upcoming);
    openList(live, upcoming, {});
    start("a");
    EXPECT_EQ(titles(0), (Lines { "Show x", "Show a" }));
    EXPECT_EQ(titles(1), Lines { "Show u" });
    EXPECT_EQ(upcoming[0]->status, Status::live);
    EXPECT_FALSE(live[1]->actualStartTime) << "the live page's own object is left alone";
}

TEST_F(ListEventsTest, aCompletedShowMovesToTheTopOfThePastOnes)
{
    const auto live = makeShows({ "a", "b", "c" });
    live[1]->isRecordingAllowed = true;
    live[1]->recordingUrl.reset(); // it comes later
    openList(live, {}, makeShows({ "p" }, Status::completed));
    complete("b");
    EXPECT_EQ(titles(0), (Lines { "Show a", "Show c" }));
    EXPECT_EQ(titles(2), (Lines { "Show b", "Show p" }));
    EXPECT_EQ(actions(2).front(), "mvPlayNow");
    EXPECT_EQ(live[1]->status, Status::completed);
    EXPECT_EQ(live[1]->actualEndTime, Date { 900 });
    EXPECT_EQ(live[1]->duration, 400);
    EXPECT_EQ(service->takeCalls(), Lines { "unsubscribe b" });
}

TEST_F(ListEventsTest, onlyRecordedShowsBecomePastOnesAndEachOnce)
{
    const auto live = makeShows({ "may not", "does not say", "known" });
    live[0]->isRecordingAllowed = false;
    live[2]->isRecordingAllowed = true;
    const auto past = makeShows({ "p", "known" }, Status::completed);
    openList(live, {}, past);
    for (const auto& show : live)
        complete(show->id);
    EXPECT_EQ(titles(2), (Lines { "Show p", "Show known" }));
    EXPECT_EQ(service->takeCalls(), (Lines { "unsubscribe may not", "unsubscribe does not say", "unsubscribe known" }));
    EXPECT_FALSE(showsTable(0));
    EXPECT_EQ(message(0), "There are currently no Live Shows. Please check back later.");
}

TEST_F(ListEventsTest, othersAreIgnored)
{
    const auto live = makeShows({ "a" }), upcoming = makeShows({ "u" }, Status::upcoming), past = makeShows({ "p" });
    openList(live, upcoming, past);
    for (const char* id : { "nobody", "", "a", "p" })
        start(id);
    start(std::nullopt);
    for (const char* id : { "nobody", "", "u", "p" })
        complete(id);
    complete(std::nullopt);
    EXPECT_EQ(titles(0), Lines { "Show a" });
    EXPECT_EQ(titles(1), Lines { "Show u" });
    EXPECT_EQ(titles(2), Lines { "Show p" });
    EXPECT_EQ(live[0]->actualEndTime, std::nullopt);
    EXPECT_EQ(past[0]->status, Status::live) << "as it was made";
    EXPECT_EQ(service->takeCalls(), Lines {});
}

TEST_F(ListEventsTest, absentIdentifiersAreEqual)
{
    const auto first = makeShow(std::nullopt, Status::upcoming), second = makeShow(std::nullopt, Status::upcoming);
    second->title = "The second";
    first->isRecordingAllowed = true;
    openList(makeShows({ "a" }), { makeShow("u", Status::upcoming), first, second }, {});
    start(std::nullopt);
    EXPECT_EQ(titles(0), (Lines { "Show without identifier", "Show a" }));
    EXPECT_EQ(titles(1), (Lines { "Show u", "The second" })) << "only the first of them";
    start(std::nullopt);
    EXPECT_EQ(titles(0).size(), 2u) << "one without identifier is live already";
    EXPECT_EQ(titles(1), Lines { "Show u" });
    complete(std::nullopt);
    EXPECT_EQ(titles(0), Lines { "Show a" });
    EXPECT_EQ(titles(2), Lines { "Show without identifier" });
}

TEST_F(ListEventsTest, countWhileListsAreLoaded)
{
    openList();
    service->answer(makeShows({ "a" }));
    service->answer(makeShows({ "u", "v" }, Status::upcoming));
    start("u");
    complete("a");
    EXPECT_EQ(state(), "loader refreshable");
    service->answer({});
    host.advance(0);
    EXPECT_EQ(titles(0), Lines { "Show u" });
    EXPECT_EQ(titles(1), Lines { "Show v" });
}

TEST_F(ListEventsTest, mayComeWhileTheListAsksForThem)
{
    const auto live = makeShows({ "a", "b" });
    std::static_pointer_cast<ListedShow>(live[0])->onSubscribe = [this] {
        complete("a");
        complete("b");
    };
    openList();
    service->answer(live);
    EXPECT_EQ(service->takeCalls().back(), "subscribe b") << "each of the answer's shows";
    EXPECT_EQ(message(0), "There are currently no Live Shows. Please check back later.");
}

TEST_F(ListEventsTest, aNewFirstShowDoesNotMoveWhatIsRead)
{
    host.device().setModel(HostDevice::phone());
    host.advance(1);
    openList(makeShows({ "1", "2", "3", "4", "5", "6" }), makeShows({ "u" }, Status::upcoming), {});
    table(0)->setContentOffset({ 0, 900 });
    host.advance(0);
    const auto place = [&] {
        for (const int row : table(0)->indicesForVisibleRows()) {
            const auto cell = table(0)->cellForRow(row);
            if (find<UILabel>(cell, "broadcastNameLabel")->text() == "Show 4")
                return std::pair { cell, onScreen(*cell) };
        }
        return std::pair { std::shared_ptr<UITableViewCell>(), CGRect {} };
    };
    const auto before = place();
    ASSERT_TRUE(before.first);
    start("u");
    EXPECT_EQ(place(), before) << "the very cell, so that its picture does not appear anew";
    press("refreshButton");
    answerAll(makeShows({ "new", "u", "1", "2", "3", "4", "5", "6" }), {}, {});
    EXPECT_EQ(place(), before) << "when the service sends them all anew, too";
    table(0)->setContentOffset({});
    host.advance(0);
    EXPECT_EQ(titles(0).front(), "Show new");
}

// What the test writes into a card stays as long as the page does not fill it again.
TEST_F(ListEventsTest, onlyCardsThatChangedAreFilledAgain)
{
    const auto live = makeShows({ "a", "b", "c" });
    openList(live, makeShows({ "u" }, Status::upcoming), {});
    const auto mark = [&] {
        for (const int row : table(0)->indicesForVisibleRows())
            find<UILabel>(table(0)->cellForRow(row), "descriptionLabel")->setText("marked");
        host.advance(0);
    };
    const auto marked = [&] {
        std::string ids;
        for (const int row : table(0)->indicesForVisibleRows()) {
            const auto cell = table(0)->cellForRow(row);
            if (find<UILabel>(cell, "descriptionLabel")->text() == "marked")
                ids += find<UILabel>(cell, "broadcastNameLabel")->text().substr(5);
        }
        return ids;
    };
    mark();
    for (int pass = 0; pass < 10; ++pass) {
        page(0)->setNeedsLayout();
        host.advance(0);
    }
    EXPECT_EQ(marked(), "abc") << "a layout pass";
    start("u");
    EXPECT_EQ(marked(), "abc") << "another show before them";
    complete("b");
    EXPECT_EQ(marked(), "ac");
    live[0]->title = "Show z"; // as a screen that shares the object does
    live[2]->description = "Noor paints.";
    page(0)->setNeedsLayout();
    host.advance(0);
    EXPECT_EQ(titles(0), (Lines { "Show u", "Show z", "Show c" }));
    EXPECT_EQ(marked(), "");

    mark();
    press("refreshButton");
    const auto anew = makeShow("a");
    anew->title = live[0]->title;
    answerAll({ anew, live[2] }, {}, {});
    EXPECT_EQ(marked(), "c") << "a press means the new object from now on";
}

} // namespace
} // namespace mv
