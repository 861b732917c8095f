#include "ScreenTest.h"

namespace platform {
namespace {

using UIViewControllerTest = ScreenTest;

class Screen : public UIViewController {
public:
    std::vector<std::string> heard;
    CGFloat widthInLayout = 0;
    std::shared_ptr<UIView> follower;

    void willMoveToParent(UIViewController* parent) override { heard.push_back(parent ? "will join" : "will leave"); }
    void didMoveToParent(UIViewController* parent) override { heard.push_back(parent ? "joined" : "left"); }
    void viewWillTransition(CGSize size, UIViewControllerTransitionCoordinator& coordinator) override
    {
        UIViewController::viewWillTransition(size, coordinator);
        heard.push_back(view()->bounds().width < size.width ? "gets wider" : "gets narrower");
        coordinator.animateAlongside([this] { follower->setAlpha(0.5); }, [this] { heard.push_back("turned"); });
    }

protected:
    void viewDidLoad() override
    {
        heard.push_back("loaded");
        follower = make<UIView>();
        view()->addSubview(follower);
    }
    void viewWillAppear(bool) override { heard.push_back("will appear"); }
    void viewDidAppear(bool) override { heard.push_back("appeared"); }
    void viewWillDisappear(bool) override { heard.push_back("will disappear"); }
    void viewDidDisappear(bool) override { heard.push_back("disappeared"); }
    void viewWillLayoutSubviews() override { heard.push_back("will layout"); }
    void viewDidLayoutSubviews() override
    {
        heard.push_back("did layout");
        widthInLayout = view()->bounds().width;
    }
    void viewSafeAreaInsetsDidChange() override { heard.push_back("safe area"); }
    void traitCollectionDidChange(const UITraitCollection&) override { heard.push_back("traits"); }
};
using Heard = std::vector<std::string>;

TEST_F(UIViewControllerTest, fillsItsWindowAndFollowsATurn)
{
    const auto screen = make<Screen>();
    window->setRootViewController(screen);
    EXPECT_EQ(screen->heard, (Heard { "loaded", "will appear", "appeared" }));
    screen->heard.clear();
    makeFrame();
    EXPECT_EQ(screen->heard, (Heard { "will layout", "did layout" }));
    screen->heard.clear();
    UIScreen::main().setGeometry({ 480, 320 }, {}, 0.25);
    EXPECT_EQ(screen->heard, (Heard { "gets wider", "will layout", "did layout" }));
    EXPECT_EQ(screen->widthInLayout, 480);
    makeFrame();
    advance(0.125);
    EXPECT_NEAR(screen->view()->layer()->presentationFrame(clock.now()).width, 400, 1e-6);
    EXPECT_NEAR(std::get<double>(screen->follower->layer()->presentationValue("opacity", clock.now())), 0.75, 1e-6);
    EXPECT_NE(screen->heard.back(), "turned");
    advance(0.125);
    EXPECT_EQ(screen->heard.back(), "turned");
}

TEST_F(UIViewControllerTest, hearsOfSafeAreaAndAppearance)
{
    const auto screen = make<Screen>();
    window->setRootViewController(screen);
    makeFrame();
    screen->heard.clear();
    UIScreen::main().setGeometry({ 320, 480 }, { 20, 0, 0, 0 });
    EXPECT_EQ(screen->heard.front(), "safe area");
    makeFrame();
    screen->heard.clear();
    setDark(true);
    EXPECT_EQ(screen->heard, Heard { "traits" });
    EXPECT_TRUE(screen->traitCollection().isDark());
    makeFrame();
    screen->heard.clear();
    setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    makeFrame();
    EXPECT_EQ(screen->heard, (Heard { "traits", "will layout", "did layout" })) << "what it places by hand changes sides";
}

TEST_F(UIViewControllerTest, keepsChildrenAndTellsThem)
{
    const auto parent = make<Screen>();
    auto child = make<Screen>();
    const std::weak_ptr<UIViewController> kept = child;
    window->setRootViewController(parent);
    parent->addChild(child);
    parent->view()->addSubview(child->view());
    child->didMoveToParent(parent.get());
    EXPECT_EQ(child->heard, (Heard { "will join", "loaded", "will appear", "appeared", "joined" }));
    EXPECT_EQ(child->nextResponder(), parent->view().get());
    EXPECT_EQ(child->view()->nextResponder(), child.get());
    child->addChild(parent);
    EXPECT_EQ(takeLines().size(), 1u) << "it would hold itself";
    child->heard.clear();
    window->setHidden(true);
    EXPECT_EQ(child->heard, (Heard { "will disappear", "disappeared" }));
    child->removeFromParent();
    EXPECT_EQ(child->parent(), nullptr);
    child->view()->removeFromSuperview();
    child = nullptr;
    EXPECT_TRUE(kept.expired());
}

TEST_F(UIViewControllerTest, isReplacedWithItsView)
{
    const auto first = make<Screen>(), second = make<Screen>();
    window->setRootViewController(first);
    first->heard.clear();
    window->setRootViewController(second);
    EXPECT_EQ(first->heard, (Heard { "will disappear", "disappeared" }));
    EXPECT_EQ(window->subviews(), std::vector { second->view() });
    EXPECT_EQ(second->view()->frame(), window->bounds());
}

} // namespace
} // namespace platform
