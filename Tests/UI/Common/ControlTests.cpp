#include "Tests/UI/Stage.h"
#include "UI/Common/SubViews/MVBlurButton.h"
#include "UI/Common/SubViews/MVButtonsTabView.h"
#include "UI/Common/SubViews/MVHorizontalImageTextView.h"
#include "UI/Common/SubViews/MVUIViewControllerHeader.h"

namespace mv {
namespace {

class MVButtonsTabViewTest : public Stage {
protected:
    MVButtonsTabViewTest()
    {
        tabs->onSelectTab
            = [this](int index, const std::optional<std::string>& title) { selected.emplace_back(index, title.value_or("-")); };
        window->addSubview(tabs);
        tabs->setButtons({ "Live", "Upcoming", "Past" });
        host.advance(0);
    }
    std::shared_ptr<UIButton> tab(int index) { return std::dynamic_pointer_cast<UIButton>(tabs->viewWithTag(3000 + index)); }
    double barLeft() { return onScreen(*bar).x; }

    const std::shared_ptr<MVButtonsTabView> tabs = make<MVButtonsTabView>(CGRect { 0, 100, 393, 50 });
    const std::shared_ptr<UIView> bar = find(tabs, "selectedButtonIndicatorView");
    std::vector<std::pair<int, std::string>> selected;
};

TEST_F(MVButtonsTabViewTest, beginsWithTheFirstTabAndTellsNobody)
{
    EXPECT_TRUE(selected.empty());
    EXPECT_TRUE(isNear(onScreen(*bar), CGRect { 0, 146, 131, 4 }));
    EXPECT_EQ(tab(0)->titleColor(UIControlState::normal), MVColor::accentColor());
    EXPECT_EQ(tab(1)->titleColor(UIControlState::normal), MVColor::primaryTextColor());
    EXPECT_EQ(onScreen(*tab(2)), (CGRect { 262, 100, 131, 50 }));
}

TEST_F(MVButtonsTabViewTest, slidesTheBarToThePressedTab)
{
    host.tap({ 330, 125 });
    EXPECT_EQ(selected, (decltype(selected) { { 2, "Past" } }));
    EXPECT_EQ(tab(0)->titleColor(UIControlState::normal), MVColor::primaryTextColor());
    EXPECT_EQ(tab(2)->titleColor(UIControlState::normal), MVColor::accentColor());
    EXPECT_EQ(barLeft(), 262) << "the model is there at once";
    host.advance(0.33 / 2);
    const double half = bar->layer()->presentationFrame(host.now()).x;
    EXPECT_GT(half, 80);
    EXPECT_LT(half, 182) << "it is on its way for a third of a second";
    host.advance(0.33 / 2 + 0.02);
    EXPECT_EQ(bar->layer()->presentationFrame(host.now()).x, 262);
    host.tap({ 330, 125 });
    EXPECT_EQ(selected.size(), 2u) << "the selected tab tells again";
}

TEST_F(MVButtonsTabViewTest, mirrors)
{
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    host.advance(0);
    EXPECT_EQ(barLeft(), 262);
    host.tap({ 20, 125 });
    EXPECT_EQ(selected, (decltype(selected) { { 2, "Past" } }));
    host.advance(0.33 / 2);
    EXPECT_NEAR(bar->layer()->presentationFrame(host.now()).x, 131, 40) << "half-way, to the left";
    host.advance(1);
    EXPECT_EQ(barLeft(), 0);
}

TEST_F(MVButtonsTabViewTest, replacesItsTabs)
{
    tabs->setButtons({ "One", "Two" });
    host.advance(0);
    EXPECT_NEAR(onScreen(*tab(1)).width, 196.5, 0.34) << "half, on device pixels";
    EXPECT_FALSE(tab(2));
    EXPECT_NEAR(middle(*bar).x, middle(*tab(0)).x, 0.34);
    tabs->setButtons({});
    host.advance(0);
    EXPECT_TRUE(bar->isHidden());
    tabs->setButtons({ "Only" });
    host.advance(0);
    EXPECT_FALSE(bar->isHidden());
    EXPECT_NEAR(middle(*bar).x, 196.5, 0.34);
}

TEST_F(MVButtonsTabViewTest, mayBeReplacedOrEndedByItsOwner)
{
    tabs->onSelectTab = [this](int, const auto&) { tabs->setButtons({ "Other" }); };
    host.tap({ 330, 125 });
    host.advance(1);
    EXPECT_EQ(tab(0)->titleColor(UIControlState::normal), MVColor::accentColor());
    const auto passing = make<MVButtonsTabView>(CGRect { 0, 300, 393, 50 });
    window->addSubview(passing);
    passing->setButtons({ "A", "B" });
    host.advance(0);
    passing->onSelectTab = [view = passing.get()](int, const auto&) { view->removeFromSuperview(); };
    host.tap({ 330, 325 });
    host.advance(1);
    EXPECT_FALSE(passing->superview());
}

class MVUIViewControllerHeaderTest : public Stage {
protected:
    static std::shared_ptr<UIButton> button()
    {
        auto button = make<UIButton>();
        button->widthAnchor().equalToConstant(30)->setActive(true);
        return button;
    }
};

TEST_F(MVUIViewControllerHeaderTest, keepsTheTitleInTheMiddleBetweenItsButtons)
{
    const auto header = make<MVUIViewControllerHeader>(CGRect { 0, 59, 393, 45 });
    window->addSubview(header);
    header->setTitle("Live Shows");
    const auto back = button(), refresh = button();
    header->setRightNavButtons({ refresh });
    header->setLeftNavButtons({ back });
    host.advance(0);
    EXPECT_TRUE(isNear(onScreen(*back), CGRect { 0, 61 + 2.0 / 3, 30, 40 }));
    EXPECT_EQ(onScreen(*refresh).x, 353);
    const auto title = header->subviews()[1];
    EXPECT_NEAR(middle(*title).x, 196.5, 0.2);
    EXPECT_EQ(onScreen(*title).x, 40);

    const auto other = button();
    header->setLeftNavButtons({ other });
    host.advance(0);
    EXPECT_FALSE(back->superview());
    EXPECT_EQ(onScreen(*other).x, 0);
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    host.advance(0);
    EXPECT_EQ(onScreen(*other).x, 363);
    EXPECT_EQ(onScreen(*refresh).x, 10);
    header->setLeftNavButtons({});
    host.advance(0);
    EXPECT_TRUE(find<UIStackView>(header, "leftButtonsStackView")->arrangedSubviews().empty());
}

class MVHorizontalImageTextViewTest : public Stage {
protected:
    MVHorizontalImageTextViewTest()
    {
        pill->setTranslatesAutoresizingMaskIntoConstraints(false);
        window->addSubview(pill);
        activate({
            pill->leftAnchor().equalTo(window->leftAnchor(), 20),
            pill->topAnchor().equalTo(window->topAnchor(), 100),
            pill->heightAnchor().equalToConstant(30),
        });
        pill->setLabelAndImage("1204", "eyeIcon").setLabelFont(UIFont::systemFont(16));
        host.advance(0);
    }
    const std::shared_ptr<MVHorizontalImageTextView> pill = make<MVHorizontalImageTextView>();
    const std::shared_ptr<UIView> icon = find(pill, "iconView"), label = find(pill, "label");
};

TEST_F(MVHorizontalImageTextViewTest, putsASquareIconBeforeTheText)
{
    EXPECT_TRUE(isNear(onScreen(*icon), CGRect { 20, 100, 30, 30 }));
    EXPECT_EQ(onScreen(*label).x, 50);
    EXPECT_EQ(onScreen(*pill).maxX(), onScreen(*label).maxX());
    pill->setImagePadding({ 4, 8, 4, 0 }).setLabelPadding({ 0, 5, 0, 10 });
    host.advance(0);
    EXPECT_TRUE(isNear(onScreen(*icon), CGRect { 28, 104, 22, 22 }));
    EXPECT_EQ(onScreen(*label).x, 55);
    EXPECT_EQ(onScreen(*pill).maxX(), onScreen(*label).maxX() + 10);
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    host.advance(0);
    EXPECT_NEAR(onScreen(*icon).maxX(), onScreen(*pill).maxX() - 8, 1e-6);
    EXPECT_NEAR(onScreen(*label).maxX(), onScreen(*icon).x - 5, 1e-6);
    EXPECT_EQ(onScreen(*label).x, 30);
}

TEST_F(MVHorizontalImageTextViewTest, putsTheIconAfterTheText)
{
    pill->setImagePadding({ 5, 6, 5, 7 }).setImagePosition(MVHorizontalImageTextView::ImagePosition::right);
    host.advance(0);
    EXPECT_EQ(onScreen(*label).x, 20);
    EXPECT_EQ(onScreen(*icon).x, onScreen(*label).maxX() + 6);
    EXPECT_NEAR(onScreen(*icon).width, 20, 1e-6) << "still square";
    EXPECT_NEAR(onScreen(*icon).height, 20, 1e-6);
    EXPECT_NEAR(onScreen(*pill).maxX(), onScreen(*icon).maxX() + 7, 1e-6);
    pill->setImagePosition({}).setImagePosition(MVHorizontalImageTextView::ImagePosition::left);
    host.advance(0);
    EXPECT_TRUE(isNear(onScreen(*icon), CGRect { 26, 105, 20, 20 })) << "back and forth leaves no constraint behind";
}

TEST_F(MVHorizontalImageTextViewTest, growsWithItsTextAndTakesTouchesEverywhere)
{
    const double before = onScreen(*pill).width;
    pill->updateLabelText("1205000");
    EXPECT_GT(onScreen(*pill).width, before) << "laid out at once";
    int presses = 0;
    pill->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    host.tap(middle(*label));
    host.tap(middle(*icon));
    EXPECT_EQ(presses, 2);
    EXPECT_TRUE(find(pill, "backBlurView")->isHidden());
    pill->showBlur(UIColor(1, 0, 0, 0.5));
    EXPECT_FALSE(find(pill, "backBlurView")->isHidden());
    EXPECT_EQ(find(pill, "containerView")->backgroundColor(), UIColor(1, 0, 0, 0.5));
    pill->setLabelAndImage({}, {});
    EXPECT_FALSE(find<UIImageView>(pill, "iconView")->image());
}

class MVBlurButtonTest : public Stage { };

TEST_F(MVBlurButtonTest, blursWhatLiesBehindAndTakesThePress)
{
    // Black and white stripes of a point each: blurred they are one tone.
    for (int x = 0; x < 100; x += 2) {
        const auto stripe = make<UIView>(CGRect { double(x), 100, 1, 100 });
        stripe->setBackgroundColor(UIColor::black());
        window->addSubview(stripe);
    }
    window->setBackgroundColor(UIColor::white());
    const auto blur = make<MVBlurButton>(CGRect { 20, 120, 44, 44 });
    window->addSubview(blur);
    int presses = 0;
    blur->button()->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    host.advance(0);
    EXPECT_EQ(onScreen(*blur->button()), (CGRect { 20, 120, 44, 44 }));
    const auto tone = [&](double x) { return int(pixel({ x, 142 }) & 0xff); };
    EXPECT_NEAR(tone(42), tone(43), 6) << "the stripes behind are gone";
    EXPECT_LT(tone(42), 120) << "the backing is dark";
    const auto pressable = blur->button();
    blur->setBlurEffectStyle(UIBlurEffect::Style::light);
    host.advance(0);
    EXPECT_GT(tone(42), 150);
    EXPECT_EQ(blur->button(), pressable);
    host.tap({ 42, 142 });
    EXPECT_EQ(presses, 1);
}

} // namespace
} // namespace mv
