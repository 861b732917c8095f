#include "Tests/UI/Screens/ListStage.h"
#include "UI/Extensions/MVColor.h"

namespace mv {
namespace {

using Direction = UIUserInterfaceLayoutDirection;

constexpr CGFloat tabsBottom = 45 + 50; // from the safe area's top

class ListPagesTest : public ListStage {
protected:
    MVBroadcastsViewController& openFullList()
    {
        return openList(
            makeShows({ "a", "b" }), makeShows({ "u", "v" }, Status::upcoming), makeShows({ "p" }, Status::completed));
    }
    // The page that fills the pager; -1 while they move.
    int pageInView() const
    {
        for (int index = 0; index < 3; ++index)
            if (onScreen(*page(index)) == onScreen(*pager()))
                return index;
        return -1;
    }
    bool hasWideCards(int index) const
    {
        const auto cell = table(index)->cellForRow(0);
        return onScreen(*find(cell, "broadcastNameLabel")).y < onScreen(*find(cell, "broadcastImageView")).maxY();
    }
};

TEST_F(ListPagesTest, standsBelowTheSafeAreasTop)
{
    openFullList();
    const CGFloat top = host.device().safeArea().top, bottom = top + tabsBottom;
    EXPECT_GT(top, 0);
    const CGRect screen = window->bounds();
    EXPECT_EQ(onScreen(*find(root(), "headerView")), (CGRect { 0, top, screen.width, 45 }));
    EXPECT_EQ(onScreen(*find(root(), "buttonsTabView")), (CGRect { 0, top + 45, screen.width, 50 }));
    EXPECT_EQ(onScreen(*pager()), (CGRect { 0, bottom, screen.width, screen.height - bottom }));
    EXPECT_EQ(onScreen(*table(0)), onScreen(*pager())) << "down to the screen's end";
    const CGRect loader = onScreen(*find(root(), "loaderView"));
    EXPECT_EQ(loader.size(), (CGSize { 50, 50 }));
    EXPECT_NEAR(loader.midX(), screen.midX(), 0.34);
    EXPECT_EQ(loader.midY(), screen.midY());
    EXPECT_EQ(onScreen(*find(root(), "backButton")).width, 30);
    EXPECT_EQ(onScreen(*find(root(), "refreshButton")).maxX(), screen.width - 10);
    EXPECT_EQ(std::dynamic_pointer_cast<UILabel>(find(root(), "headerView")->subviews()[1])->text(), "mvBroadcasts");
    EXPECT_EQ(root()->backgroundColor(), MVColor::backgroundColor());
    EXPECT_TRUE(navigation->isNavigationBarHidden());
    const auto& views = root()->subviews();
    const Lines order { "headerView", "loaderView", "buttonsTabView", "containerScrollView" };
    ASSERT_EQ(views.size(), order.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        EXPECT_EQ(views[i]->accessibilityIdentifier(), order[i]);
}

TEST_F(ListPagesTest, aTabSlidesItsPageIn)
{
    openFullList();
    const double width = window->bounds().width;
    EXPECT_EQ(pageInView(), 0);
    pressTab(2);
    host.advance(0.1);
    EXPECT_GT(pager()->contentOffset().x, 0);
    EXPECT_LT(pager()->contentOffset().x, 2 * width);
    host.advance(1);
    EXPECT_EQ(pager()->contentOffset(), (CGPoint { 2 * width, 0 }));
    EXPECT_EQ(pageInView(), 2);
    pressTab(1);
    host.advance(1);
    EXPECT_EQ(pageInView(), 1);
    pressTab(1);
    host.advance(1);
    EXPECT_EQ(pageInView(), 1);
    pressTab(0);
    host.advance(1);
    EXPECT_EQ(pageInView(), 0);
}

TEST_F(ListPagesTest, aFingerDoesNotChangeThePage)
{
    openFullList();
    const CGRect pages = onScreen(*pager());
    host.drag({ pages.maxX() - 60, pages.midY() }, { pages.minX() + 20, pages.midY() }, 0.1);
    host.advance(1);
    EXPECT_EQ(pageInView(), 0);
    host.drag({ pages.midX(), pages.midY() + 200 }, { pages.midX(), pages.midY() }, 0.2);
    EXPECT_GT(table(0)->contentOffset().y, 100) << "it scrolls the cards";
}

TEST_F(ListPagesTest, turningTheDeviceKeepsThePage)
{
    for (const auto direction : { Direction::leftToRight, Direction::rightToLeft }) {
        host.setDirection(direction);
        openFullList();
        for (int index = 0; index < 3; ++index) {
            pressTab(index);
            host.advance(1);
            turn(UIDeviceOrientation::landscapeLeft);
            EXPECT_EQ(pageInView(), index);
            EXPECT_TRUE(hasWideCards(0));
            turn(UIDeviceOrientation::portrait);
            EXPECT_EQ(pageInView(), index);
            EXPECT_FALSE(hasWideCards(0));
        }
        navigation->popViewController(false);
    }
}

// Which one it is follows from how far the pages have come.
TEST_F(ListPagesTest, aTurnEndsASlide)
{
    openFullList();
    pressTab(2);
    while (pager()->contentOffset().x < 1.2 * window->bounds().width)
        host.advance(1.0 / 60);
    turn(UIDeviceOrientation::landscapeRight);
    EXPECT_EQ(pageInView(), 1);
}

TEST_F(ListPagesTest, pagesFollowOneAnotherFromTheRight)
{
    host.setDirection(Direction::rightToLeft);
    openFullList();
    const double width = window->bounds().width;
    EXPECT_EQ(pageInView(), 0);
    EXPECT_EQ(onScreen(*page(1)).x, -width);
    pressTab(1);
    host.advance(0.1);
    EXPECT_GT(onScreen(*page(1)).x, -width);
    EXPECT_LT(onScreen(*page(1)).x, 0);
    host.advance(1);
    EXPECT_EQ(pageInView(), 1);
    host.setDirection(Direction::leftToRight);
    host.advance(1);
    EXPECT_EQ(pageInView(), 1) << "also when the direction changes";
    EXPECT_EQ(onScreen(*page(0)).x, -width);
}

TEST_F(ListPagesTest, startsOnTheFirstPageHoweverItIsTurnedBefore)
{
    const auto list = make<MVBroadcastsViewController>();
    list->loadViewIfNeeded();
    navigation->pushViewController(list, false);
    turn(UIDeviceOrientation::landscapeLeft);
    answerAll(makeShows({ "a" }), {}, {});
    EXPECT_EQ(pageInView(), 0);
    EXPECT_TRUE(hasWideCards(0));
}

TEST_F(ListPagesTest, aSquarePageHasUprightCards)
{
    host.device().setModel(HostDevice::window({ 500, 500 + tabsBottom }, 1));
    host.advance(1);
    openFullList();
    EXPECT_EQ(onScreen(*page(0)).size(), (CGSize { 500, 500 }));
    EXPECT_FALSE(hasWideCards(0));
    host.device().setModel(HostDevice::window({ 501, 500 + tabsBottom }, 1));
    host.advance(1);
    EXPECT_TRUE(hasWideCards(0));
}

TEST_F(ListPagesTest, cardsKeepClearOfTheCameraAndStayPutAsTheirPageSlides)
{
    turn(UIDeviceOrientation::landscapeLeft);
    openFullList();
    const auto card = [&](int index) { return find(table(index)->cellForRow(0), "containerView"); };
    const auto inPage = [&](int index) { return card(index)->convertTo(card(index)->bounds(), page(index).get()); };
    const CGFloat side = host.device().safeArea().left;
    EXPECT_EQ(inPage(0).x, side + 20);
    const CGRect before = inPage(1);
    EXPECT_TRUE(isNear(before, inPage(0))) << "out of view as well";
    pressTab(1);
    for (int frame = 0; frame < 30; ++frame) {
        host.advance(1.0 / 60);
        ASSERT_TRUE(isNear(inPage(1), before)) << frame;
    }
    EXPECT_EQ(pageInView(), 1);
    pressTab(2);
    host.advance(1);
    turn(UIDeviceOrientation::portrait);
    table(2)->setContentOffset({ 0, 10'000 });
    host.advance(1);
    EXPECT_EQ(inPage(2).x, 20);
}

TEST_F(ListPagesTest, theLastCardEndsAboveTheHomeIndicator)
{
    openList(makeShows({ "a", "b", "c" }), {}, {});
    for (int drag = 0; drag < 2; ++drag) {
        host.drag({ 200, 700 }, { 200, 100 }, 0.1);
        host.advance(3);
    }
    const auto last = table(0)->cellForRow(2);
    ASSERT_TRUE(last);
    EXPECT_NEAR(onScreen(*last).maxY(), window->bounds().height - host.device().safeArea().bottom, 0.34);
}

TEST_F(ListPagesTest, cardsOfATurnedDeviceDoNotGrowIntoTheirPlaces)
{
    openFullList();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.1);
    const auto cell = table(0)->cellForRow(0);
    for (const char* name : { "containerView", "broadcastImageView", "broadcastNameLabel", "actionButton" })
        EXPECT_TRUE(find(cell, name)->layer()->animationKeys().empty()) << name;
}

TEST_F(ListPagesTest, wideCardsHaveTheTurnedScreensHeightEveryTime)
{
    openFullList();
    const auto expectCardsOf = [this](CGFloat screenHeight) {
        for (int index = 0; index < 3; ++index) {
            const auto cell = table(index)->cellForRow(0);
            ASSERT_TRUE(cell);
            EXPECT_NEAR(onScreen(*find(cell, "containerView")).height, screenHeight * 0.75, 0.34) << index;
            EXPECT_NEAR(cell->bounds().height, screenHeight * 0.75 + 30, 0.34) << index;
            const CGRect picture = onScreen(*find(cell, "broadcastImageView"));
            EXPECT_NEAR(picture.width, picture.height, 0.34) << index;
        }
    };
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        turn(UIDeviceOrientation::landscapeLeft);
        expectCardsOf(393);
        turn(UIDeviceOrientation::portrait);
    }
    navigation->pushViewController(make<UIViewController>(), false);
    turn(UIDeviceOrientation::landscapeLeft);
    turn(UIDeviceOrientation::portrait);
    navigation->popViewController(false);
    turn(UIDeviceOrientation::landscapeLeft);
    expectCardsOf(393);
    host.device().setModel(HostDevice::window({ 360, 852 }, 1));
    host.advance(1);
    expectCardsOf(360);
}

TEST_F(ListPagesTest, manyShowsCostWhatCanBeSeen)
{
    const auto content = make<MVBroadcastsContainerViewController>();
    window->setRootViewController(content);
    host.advance(0);
    List shows(100'000);
    for (std::size_t i = 0; i < shows.size(); ++i) {
        shows[i] = make<MVBroadcast>();
        shows[i]->id = std::to_string(i);
        shows[i]->status = Status::upcoming;
    }
    content->setBroadcasts(shows);
    host.advance(0);
    const auto rows = find<UITableView>(content->view(), "broadcastsTableView");
    EXPECT_EQ(rows->numberOfRows(), 100'000);
    const auto cells = [&] { return rows->subviews().size(); };
    EXPECT_LT(cells(), 6u);
    rows->setContentOffset({ 0, 10'000'000 });
    host.advance(0);
    EXPECT_GT(rows->indicesForVisibleRows().front(), 10'000);
    EXPECT_LT(cells(), 10u);
}

} // namespace
} // namespace mv
