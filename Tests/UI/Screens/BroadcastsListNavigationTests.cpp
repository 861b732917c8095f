#include "Tests/UI/Screens/ListStage.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVBroadcastScreenViewController.h"

namespace mv {
namespace {

using Role = MVCurrentUserType;

const std::vector<std::string> loginAlert { "Error", "Please Login First", "Ok" };

class ListNavigationTest : public ListStage {
protected:
    // The identifier of the broadcast that is open on top; absent when it is something else.
    std::optional<std::string> opened() const
    {
        const auto screen = std::dynamic_pointer_cast<MVBroadcastScreenViewController>(navigation->topViewController());
        return screen ? std::optional(screen->broadcastId) : std::nullopt;
    }
    void showOnly(const std::shared_ptr<ListedShow>& show)
    {
        openList({ show }, { show }, { show });
        pressTab(show->status ? int(*show->status) : 0);
        host.advance(1);
    }
    void leaveAll()
    {
        while (navigation->popViewController(false)) { }
        takeLines(); // the broadcast's screen found no such show
    }
};

TEST_F(ListNavigationTest, aCardsButtonOpensItsShow)
{
    openList(makeShows({ "a", "b" }), {}, {});
    pressAction(0, 0);
    EXPECT_EQ(opened(), "a");
    EXPECT_EQ(navigation->viewControllers().size(), 3u);
    navigation->popViewController(true);
    host.advance(1);
    EXPECT_EQ(titles(0), (Lines { "Show a", "Show b" })) << "the list is as it was";
    EXPECT_EQ(service->asked.size(), 3u) << "and is not loaded again";
    leaveAll();
}

TEST_F(ListNavigationTest, aShowWithoutIdentifierOpensWithAnEmptyOne)
{
    showOnly(makeShow(std::nullopt));
    pressAction(0);
    EXPECT_EQ(opened(), "");
    leaveAll();
}

TEST_F(ListNavigationTest, twoQuickPressesOpenOneScreen)
{
    openList(makeShows({ "a" }), {}, {});
    const CGPoint button = middle(*find(table(0)->cellForRow(0), "actionButton"));
    host.tap(button);
    host.tap(button);
    host.advance(1);
    EXPECT_EQ(navigation->viewControllers().size(), 3u);
    leaveAll();
}

TEST_F(ListNavigationTest, onlyLiveShowsMayAskForALogin)
{
    struct Case {
        Role role;
        Status status;
        bool isForAll, opens;
    };
    const Case cases[] = {
        { Role::anonymous, Status::live, false, false },
        { Role::guest, Status::live, false, false },
        { Role::user, Status::live, false, true },
        { Role::anonymous, Status::live, true, true },
        { Role::guest, Status::live, true, true },
        { Role::anonymous, Status::upcoming, false, true },
        { Role::guest, Status::upcoming, false, true },
        { Role::anonymous, Status::completed, false, true },
        { Role::guest, Status::completed, false, true },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "role " << int(c.role) << ", status " << int(c.status) << ", for all " << c.isForAll);
        const auto show = makeShow("s", c.status);
        show->isAnonymousAllowedToWatch = c.isForAll;
        service->role = c.role;
        showOnly(show);
        pressAction(int(c.status));
        EXPECT_EQ(opened(), c.opens ? std::optional<std::string>("s") : std::nullopt);
        ASSERT_EQ(alertTexts(), c.opens ? Lines {} : loginAlert);
        if (!c.opens) {
            tapOk();
            EXPECT_EQ(alertTexts(), Lines {}) << "Ok closes it";
            EXPECT_EQ(titles(0), Lines { "Show s" }) << "and the list is still there";
            pressAction(0);
            EXPECT_EQ(alertTexts(), loginAlert) << "asked again";
            tapOk();
        }
        leaveAll();
    }
}

// The role is asked for at the press.
TEST_F(ListNavigationTest, opensAfterALogin)
{
    service->role = Role::guest;
    openList(makeShows({ "a" }), {}, {});
    service->role = Role::user;
    pressAction(0);
    EXPECT_EQ(opened(), "a");
    leaveAll();
}

TEST_F(ListNavigationTest, withoutAStackNothingOpensButTheAlertStillComes)
{
    const auto list = make<MVBroadcastsViewController>();
    window->setRootViewController(list);
    host.advance(0.1);
    for (int answer = 0; answer < 3; ++answer)
        service->answer(answer == 0 ? makeShows({ "a" }) : List {});
    host.advance(0.1);
    const auto button = find(list->view(), "actionButton");
    host.tap(middle(*button));
    host.advance(1);
    EXPECT_EQ(window->topmostController(), list);
    service->role = Role::anonymous;
    host.tap(middle(*button));
    host.advance(1);
    EXPECT_EQ(alertTexts(), loginAlert);
    tapOk();
    host.tap(middle(*find(list->view(), "backButton")));
    host.advance(1);
    EXPECT_EQ(window->topmostController(), list) << "there is no way back either";
    window->setRootViewController(nullptr);
}

TEST_F(ListNavigationTest, theBackButtonPops)
{
    openList({}, {}, {});
    press("backButton");
    EXPECT_TRUE(navigation->isTransitioning());
    host.advance(1);
    EXPECT_EQ(navigation->topViewController(), shop);
    EXPECT_EQ(service->delegateCount(), 0u);
}

TEST_F(ListNavigationTest, theBackButtonDismissesAListThatWasPresented)
{
    for (const bool inAStack : { false, true }) {
        const auto list = make<MVBroadcastsViewController>();
        const auto presented
            = inAStack ? std::shared_ptr<UIViewController>(make<UINavigationController>(list)) : std::shared_ptr(list);
        shop->present(presented, true);
        host.advance(1);
        ASSERT_EQ(window->topmostController(), presented);
        host.tap(middle(*find(list->view(), "backButton")));
        host.advance(0.1);
        EXPECT_EQ(window->topmostController(), presented) << "it takes its time";
        host.advance(1);
        EXPECT_EQ(window->topmostController(), navigation);
    }
    EXPECT_EQ(service->delegateCount(), 0u);
}

TEST_F(ListNavigationTest, openingAndClosingItLeavesNothingBehind)
{
    host.device().setModel(HostDevice::window({ 393, 700 }, 1));
    host.advance(1);
    std::vector<WeakRef<NSObject>> objects;
    const auto watch = [&](const std::shared_ptr<NSObject>& object) { objects.emplace_back(object); };
    const std::function<void(const std::shared_ptr<UIView>&)> watchTree = [&](const std::shared_ptr<UIView>& view) {
        watch(view);
        for (const auto& child : view->subviews())
            watchTree(child);
    };
    for (int visit = 0; visit < 200; ++visit) {
        auto& list = openList();
        watch(weak(&list).lock());
        watchTree(list.view());
        for (const auto& child : list.children())
            watch(child);
        if (visit % 4 != 0) // it may be left with a request under way
            answerAll(makeShows({ "a", "b" }), makeShows({ "u" }, Status::upcoming), {});
        if (visit % 4 == 2)
            pressTab(1); // or with pages on their way
        if (visit % 40 == 3)
            pressAction(0);
        const bool animated = visit % 20 < 4;
        while (navigation->popViewController(animated))
            host.advance(animated ? 0.5 : 0);
        takeLines();
        service->asked.clear();
    }
    EXPECT_EQ(service->delegateCount(), 0u);
    EXPECT_EQ(std::ranges::count_if(objects, [](const auto& object) { return object.lock() != nullptr; }), 0);
}

TEST_F(ListNavigationTest, anotherServiceMayTakeOver)
{
    openList({}, {}, {});
    const auto other = std::make_shared<ListService>();
    Mivora::install(other);
    press("refreshButton");
    EXPECT_EQ(*other->calls, Lines { "live 30 0 DESC" });
    navigation->popViewController(false);
    other->answer(makeShows({ "a" }));
}

} // namespace
} // namespace mv
