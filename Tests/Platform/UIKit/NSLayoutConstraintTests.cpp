#include "ScreenTest.h"

namespace platform {
namespace {

using NSLayoutConstraintTest = ScreenTest;

TEST_F(NSLayoutConstraintTest, placesViewsInsideAndBesideEachOther)
{
    const auto card = addConstrained("card");
    const auto title = addConstrained("title", card);
    const auto image = addConstrained("image", card);
    fill(*card, *window, 20);
    activate({
        image->leadingAnchor().equalTo(card->leadingAnchor(), 15),
        image->topAnchor().equalTo(card->topAnchor(), 15),
        image->bottomAnchor().equalTo(card->bottomAnchor(), -15),
        image->widthAnchor().equalToMultiple(image->heightAnchor(), 0.5),
        title->leadingAnchor().equalTo(image->trailingAnchor(), 10),
        title->trailingAnchor().lessThanOrEqualTo(card->trailingAnchor(), -5),
        title->widthAnchor().equalToConstant(30),
        title->centerYAnchor().equalTo(image->centerYAnchor(), 2),
        title->heightAnchor().equalToConstant(10),
    });
    makeFrame();
    EXPECT_EQ(card->frame(), (CGRect { 20, 20, 280, 440 }));
    EXPECT_EQ(image->frame(), (CGRect { 15, 15, 205, 410 }));
    EXPECT_EQ(title->frame(), (CGRect { 230, 217, 30, 10 }));

    UIScreen::main().setGeometry({ 480, 320 }, {});
    makeFrame();
    EXPECT_EQ(image->frame(), (CGRect { 15, 15, 125, 250 }));
}

TEST_F(NSLayoutConstraintTest, givesWayByPriority)
{
    const auto first = make<Content>(CGSize { 200, 10 }), second = make<Content>(CGSize { 200, 10 });
    window->addSubview(first);
    window->addSubview(second);
    second->setContentCompressionResistancePriority(751, NSLayoutConstraintAxis::horizontal);
    activate(
        { first->leadingAnchor().equalTo(window->leadingAnchor()), second->leadingAnchor().equalTo(first->trailingAnchor(), 20),
            second->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(first->frame().width, 100);
    EXPECT_EQ(second->frame().width, 200);
    // With room to spare it goes to the one that hugs less.
    first->setSize({ 50, 10 });
    second->setSize({ 50, 10 });
    first->setContentHuggingPriority(251, NSLayoutConstraintAxis::horizontal);
    makeFrame();
    EXPECT_EQ(first->frame().width, 50);
    EXPECT_EQ(second->frame().width, 250);
    first->setContentHuggingPriority(249, NSLayoutConstraintAxis::horizontal);
    makeFrame();
    EXPECT_EQ(first->frame().width, 250);
}

TEST_F(NSLayoutConstraintTest, keepsASpacerFromBecomingNegative)
{
    const auto label = make<Content>(CGSize { 500, 10 });
    window->addSubview(label);
    const auto spacer = addConstrained("spacer");
    activate({ label->leadingAnchor().equalTo(window->leadingAnchor()), spacer->leadingAnchor().equalTo(label->trailingAnchor()),
        spacer->trailingAnchor().equalTo(window->trailingAnchor()) });
    makeFrame();
    EXPECT_EQ(label->frame().width, 320);
    EXPECT_EQ(spacer->frame().width, 0);
}

TEST_F(NSLayoutConstraintTest, changesLive)
{
    const auto view = addConstrained("view");
    const auto width = view->widthAnchor().equalToConstant(100);
    const auto wide = view->widthAnchor().equalToConstant(50);
    wide->setPriority(500);
    activate({ width, wide, view->heightAnchor().equalToConstant(7) });
    makeFrame();
    EXPECT_EQ(view->frame(), (CGRect { 0, 0, 100, 7 }));
    width->setConstant(120);
    makeFrame();
    EXPECT_EQ(view->frame().width, 120);
    width->setPriority(499);
    makeFrame();
    EXPECT_EQ(view->frame().width, 50);
    width->setConstant(std::numeric_limits<double>::infinity());
    width->setPriority(1001);
    EXPECT_EQ(width->constant(), 120);
    EXPECT_EQ(width->priority(), 499);
    EXPECT_EQ(takeLines().size(), 2u);
    wide->setActive(false);
    makeFrame();
    EXPECT_EQ(view->frame().width, 120);
}

TEST_F(NSLayoutConstraintTest, mirrorsLeadingAndTrailingButNotLeftAndCenter)
{
    const auto leading = addConstrained("leading"), left = addConstrained("left"), centre = addConstrained("centre"),
               least = addConstrained("least");
    for (const auto& view : { leading, left, centre, least })
        view->widthAnchor().equalToConstant(100)->setActive(true);
    activate({ leading->leadingAnchor().equalTo(window->leadingAnchor(), 20),
        left->leftAnchor().equalTo(window->leftAnchor(), 20), centre->centerXAnchor().equalTo(window->centerXAnchor(), 10),
        least->leadingAnchor().greaterThanOrEqualTo(leading->trailingAnchor(), 30) });
    const auto near = least->leadingAnchor().equalTo(window->leadingAnchor());
    near->setPriority(10);
    near->setActive(true);
    const auto lefts = [&] {
        makeFrame();
        return std::vector<double> { leading->frame().x, left->frame().x, centre->frame().x, least->frame().x };
    };
    EXPECT_EQ(lefts(), (std::vector<double> { 20, 20, 120, 150 }));
    setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    EXPECT_EQ(lefts(), (std::vector<double> { 200, 20, 120, 70 }));
    leading->setSemanticContentAttribute(UISemanticContentAttribute::forceLeftToRight);
    EXPECT_EQ(lefts()[0], 20);
}

TEST_F(NSLayoutConstraintTest, alignsBaselinesAndFollowsTheirChange)
{
    const auto big = make<Content>(CGSize { 10, 40 }), small = make<Content>(CGSize { 10, 20 });
    window->addSubview(big);
    window->addSubview(small);
    activate(
        { big->topAnchor().equalTo(window->topAnchor(), 100), small->lastBaselineAnchor().equalTo(big->lastBaselineAnchor()) });
    const auto firsts = small->firstBaselineAnchor().equalTo(big->firstBaselineAnchor(), 1);
    makeFrame();
    EXPECT_EQ(small->frame().y, 120);
    NSLayoutConstraint::deactivate(big->superview()->constraints());
    activate({ big->topAnchor().equalTo(window->topAnchor(), 100), firsts });
    makeFrame();
    EXPECT_EQ(small->frame().y, 101);
}

TEST_F(NSLayoutConstraintTest, saysOnceWhichConstraintsConflict)
{
    const auto card = addConstrained("card");
    const auto hundred = card->widthAnchor().equalToConstant(100);
    const auto fifty = card->widthAnchor().equalToConstant(50);
    fifty->setIdentifier("narrow");
    activate({ hundred, fifty });
    makeFrame();
    EXPECT_EQ(card->frame().width, 100);
    EXPECT_EQ(takeLines(),
        std::vector<std::string> {
            "constraints cannot hold together, \"narrow: card.width == 50\" is given up; against it: \"card.width == 100\"" });
    hundred->setConstant(110);
    makeFrame(); // still in conflict, said already
    hundred->setActive(false);
    makeFrame();
    EXPECT_EQ(card->frame().width, 50) << "the one given up comes back";
}

TEST_F(NSLayoutConstraintTest, judgesASwapAsAWhole)
{
    const auto view = addConstrained("view");
    const NSLayoutConstraints portrait { view->widthAnchor().equalToConstant(100), view->heightAnchor().equalToConstant(10) };
    const NSLayoutConstraints landscape { view->widthAnchor().equalToConstant(200), view->heightAnchor().equalToConstant(20) };
    NSLayoutConstraint::activate(portrait);
    makeFrame();
    for (int turn = 0; turn < 3; ++turn) {
        NSLayoutConstraint::activate(landscape); // before the others leave
        NSLayoutConstraint::deactivate(portrait);
        makeFrame();
        EXPECT_EQ(view->frame().size(), (CGSize { 200, 20 }));
        NSLayoutConstraint::deactivate(landscape);
        NSLayoutConstraint::activate(portrait);
        makeFrame();
        EXPECT_EQ(view->frame().size(), (CGSize { 100, 10 }));
    }
}

TEST_F(NSLayoutConstraintTest, waitsForItsItemsToMeetAndThenSaysSo)
{
    const auto a = addConstrained("a");
    const auto b = make<UIView>();
    b->setAccessibilityIdentifier("b");
    b->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto late = b->leadingAnchor().equalTo(a->leadingAnchor(), 5);
    activate({ late, a->leadingAnchor().equalTo(window->leadingAnchor()) });
    window->addSubview(b);
    makeFrame();
    EXPECT_TRUE(late->isActive());
    EXPECT_EQ(b->frame().x, 5);

    const auto stray = make<UIView>();
    stray->setAccessibilityIdentifier("stray");
    const auto never = stray->leadingAnchor().equalTo(a->leadingAnchor());
    never->setActive(true);
    window->setNeedsLayout();
    makeFrame();
    EXPECT_FALSE(never->isActive());
    EXPECT_EQ(takeLines(),
        std::vector<std::string> { "constraint \"stray.leading == a.leading\" ignored: its items have no common ancestor" });
    b->removeFromSuperview();
    EXPECT_FALSE(late->isActive());
}

TEST_F(NSLayoutConstraintTest, outlivesItsViews)
{
    const auto a = addConstrained("a");
    auto b = addConstrained("b");
    const auto inactive = b->leadingAnchor().equalTo(a->leadingAnchor());
    const auto active = b->topAnchor().equalTo(a->topAnchor());
    active->setActive(true);
    makeFrame();
    b->removeFromSuperview();
    b = nullptr;
    EXPECT_EQ(inactive->firstItem(), nullptr);
    inactive->setActive(true);
    active->setActive(true);
    makeFrame();
    EXPECT_FALSE(inactive->isActive());
    EXPECT_FALSE(active->isActive());
    EXPECT_TRUE(a->constraintsNaming().empty() || !a->constraintsNaming()[0]->isActive());
}

} // namespace
} // namespace platform
