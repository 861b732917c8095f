#include "UI/Extensions/MVViewControllers.h"

#include "Platform/UIKit/UINavigationController.h"
#include "Platform/UIKit/UITabBarController.h"
#include "Tests/UI/Stage.h"

namespace mv {
namespace {

using Controller = std::shared_ptr<UIViewController>;

class IsModalTest : public Stage {
protected:
    IsModalTest()
    {
        window->setRootViewController(root);
        host.advance(0);
    }
    // The kit asks on the screen, at rest.
    bool isModalOver(const Controller& presenter, const Controller& presented, const Controller& asked)
    {
        presenter->present(presented, false);
        host.advance(0);
        return isModal(*asked);
    }
    static Controller makeStack(const std::vector<Controller>& controllers)
    {
        const auto navigation = make<UINavigationController>();
        for (const auto& controller : controllers)
            navigation->pushViewController(controller, false);
        return navigation;
    }
    static std::shared_ptr<UITabBarController> makeTabs(const std::vector<Controller>& controllers)
    {
        auto tabs = make<UITabBarController>();
        tabs->setViewControllers(controllers);
        return tabs;
    }

    const Controller root = make<UIViewController>();
    const Controller screen = make<UIViewController>();
};

TEST_F(IsModalTest, isFalseWithoutAPresenter)
{
    EXPECT_FALSE(isModal(*screen)) << "alone";
    window->setRootViewController(makeStack({ screen, root }));
    host.advance(0);
    EXPECT_FALSE(isModal(*screen)) << "lowest";
    EXPECT_FALSE(isModal(*root)) << "above it";
    const Controller other = make<UIViewController>();
    window->setRootViewController(makeTabs({ makeStack({ other }) }));
    host.advance(0);
    EXPECT_FALSE(isModal(*other)) << "in a tab";
}

TEST_F(IsModalTest, isTrueWhenPresentedItself) { EXPECT_TRUE(isModalOver(root, screen, screen)); }

TEST_F(IsModalTest, isTrueForTheLowestOfAPresentedStackOnly)
{
    const Controller lowest = make<UIViewController>(), middle = make<UIViewController>();
    EXPECT_TRUE(isModalOver(root, makeStack({ lowest, middle, screen }), lowest));
    EXPECT_FALSE(isModal(*middle));
    EXPECT_FALSE(isModal(*screen));
}

TEST_F(IsModalTest, isTrueWhenPresentedOverAPushedScreen)
{
    const Controller pushed = make<UIViewController>();
    window->setRootViewController(makeStack({ root, pushed }));
    EXPECT_TRUE(isModalOver(pushed, screen, screen));
    EXPECT_FALSE(isModal(*pushed)) << "who presents is not presented";
}

TEST_F(IsModalTest, looksAtTheTabBarThatItsStackSitsIn)
{
    const auto tabs = makeTabs({ root });
    window->setRootViewController(tabs);
    const Controller above = make<UIViewController>();
    const auto stack = makeStack({ screen, above });
    EXPECT_TRUE(isModalOver(tabs, makeTabs({ stack }), screen)) << "a tab bar over a tab bar";
    EXPECT_FALSE(isModal(*above)) << "it has somewhere to go back to";
    const Controller single = make<UIViewController>();
    window->setRootViewController(single);
    EXPECT_TRUE(isModalOver(single, makeTabs({ root }), root)) << "a tab bar over a single screen";
}

TEST_F(IsModalTest, goesByTheNearestStack)
{
    const Controller inner = makeStack({ screen });
    const Controller outer = makeStack({ make<UIViewController>(), inner });
    EXPECT_TRUE(isModalOver(root, outer, screen)) << "lowest of its own";
    EXPECT_FALSE(isModal(*inner)) << "pushed in the one around";
}

TEST_F(IsModalTest, followsAChildThatIsNoMemberOfTheStack)
{
    const Controller container = make<UIViewController>();
    add(*container, screen);
    const Controller stack = makeStack({ root, container });
    window->setRootViewController(nullptr);
    window->setRootViewController(stack);
    EXPECT_FALSE(isModal(*screen));
    root->present(make<UIViewController>(), false);
    EXPECT_FALSE(isModal(*screen)) << "covered, not presented";
}

TEST_F(IsModalTest, changesWithTheWayItIsShown)
{
    EXPECT_TRUE(isModalOver(root, screen, screen));
    screen->dismiss(true);
    EXPECT_TRUE(isModal(*screen)) << "until it is away";
    host.advance(1);
    EXPECT_FALSE(isModal(*screen));
    const Controller stack = makeStack({ make<UIViewController>() });
    window->setRootViewController(stack);
    static_cast<UINavigationController&>(*stack).pushViewController(screen, true);
    EXPECT_FALSE(isModal(*screen));
}

// Notes what it hears, and where its view was at that moment.
class Child final : public UIViewController {
public:
    std::vector<std::string> heard;
    bool goesByItself = false; // as soon as it hears that it will

    void willMoveToParent(UIViewController* parent) override
    {
        note(parent ? "will join" : "will leave");
        if (!parent && goesByItself)
            removeFromParent();
    }
    void didMoveToParent(UIViewController* parent) override { note(parent ? "joined" : "left"); }

protected:
    void viewDidAppear(bool) override { note("appeared"); }
    void viewDidDisappear(bool) override { note("disappeared"); }

private:
    void note(const std::string& what) { heard.push_back(what + (view()->superview() ? " in" : " out")); }
};
using Heard = std::vector<std::string>;

class ChildControllersTest : public Stage {
protected:
    ChildControllersTest()
    {
        window->setRootViewController(parent);
        host.advance(0);
    }
    const Controller parent = make<UIViewController>();
};

TEST_F(ChildControllersTest, areAddedWithTheirViewsAndTold)
{
    const auto child = make<Child>(), second = make<Child>();
    add(*parent, child);
    EXPECT_EQ(child->parent(), parent.get());
    EXPECT_EQ(child->view()->superview(), parent->view().get());
    EXPECT_EQ(child->heard, (Heard { "will join out", "appeared in", "joined in" }));
    add(*parent, second);
    EXPECT_EQ(parent->view()->subviews(), (std::vector { child->view(), second->view() })) << "the later one above";
}

TEST_F(ChildControllersTest, areRemovedWithTheirViewsAndTold)
{
    auto child = make<Child>();
    add(*parent, child);
    child->heard.clear();
    remove(*child);
    EXPECT_EQ(child->heard, (Heard { "will leave in", "disappeared out", "left out" }));
    EXPECT_FALSE(child->parent());
    EXPECT_TRUE(parent->children().empty());
    EXPECT_TRUE(parent->view()->subviews().empty());
    child->heard.clear();
    remove(*child);
    EXPECT_TRUE(child->heard.empty()) << "without a parent nothing happens";
    const auto loose = make<Child>();
    window->addSubview(loose->view());
    remove(*loose);
    EXPECT_TRUE(loose->view()->superview());
    add(*parent, child);
    EXPECT_TRUE(child->view()->superview()) << "and back again";
}

TEST_F(ChildControllersTest, mayBeRemovedByTheLastWhoKnowsThem)
{
    auto child = make<Child>();
    const std::weak_ptr<Child> gone = child;
    add(*parent, child);
    auto* last = child.get();
    child->goesByItself = true;
    child = nullptr;
    remove(*last);
    EXPECT_TRUE(gone.expired());
    EXPECT_TRUE(parent->view()->subviews().empty());
}

} // namespace
} // namespace mv
