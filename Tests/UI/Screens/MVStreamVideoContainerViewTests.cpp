#include "UI/Screens/Broadcast Screen/SubViews/MVStreamVideoContainerView.h"

#include "Platform/UIKit/UILabel.h"
#include "Tests/UI/Stage.h"

namespace mv {
namespace {

class MVStreamVideoContainerViewTest : public Stage {
protected:
    MVStreamVideoContainerViewTest()
    {
        window->setBackgroundColor(UIColor::white());
        container->setAutoresizingMask(flexibleWidth | flexibleHeight);
        window->addSubview(container);
        host.advance(0);
    }
    double shownAlpha() const { return std::get<double>(gradient->layer()->presentationValue("opacity", host.now())); }

    const std::shared_ptr<MVStreamVideoContainerView> container = make<MVStreamVideoContainerView>(CGRect { 0, 0, 393, 852 });
    const std::shared_ptr<UIView> gradient = find(container, "gradientView");
    const std::shared_ptr<UILabel> label = find<UILabel>(container, "noStreamLabel");
};

TEST_F(MVStreamVideoContainerViewTest, waitsForTheHostAtFirst)
{
    EXPECT_EQ(label->text(), "Waiting for Host video");
    EXPECT_FALSE(label->isHidden());
    EXPECT_TRUE(container->getStreamView()->isHidden());
    EXPECT_EQ(pixel({ 200, 850 }), 0xffffffu) << "no shade yet";
    EXPECT_EQ(onScreen(*container->getStreamView()), window->bounds());
    EXPECT_NEAR(onScreen(*gradient).y, 852 * 0.3, 0.2) << "the lower seven tenths";
    EXPECT_EQ(onScreen(*gradient).maxY(), 852);
    EXPECT_NEAR(middle(*label).x, 393 / 2.0, 1e-6);
    EXPECT_NEAR(onScreen(*label).maxY(), 852 / 2.0 - 40, 1e-6);
    EXPECT_EQ(onScreen(*label).x, 25);
}

TEST_F(MVStreamVideoContainerViewTest, showsEitherTheVideoOrTheText)
{
    container->getStreamView()->addSubview(make<UIView>(CGRect { 0, 0, 393, 852 }));
    container->getStreamView()->subviews().front()->setBackgroundColor(UIColor(1, 0, 0));
    EXPECT_EQ(pixel({ 200, 100 }), 0xffffffu);
    for (int i = 0; i < 2; ++i) {
        container->showHideNoStreamLabel(false);
        EXPECT_EQ(pixel({ 200, 100 }), 0xff0000u);
        EXPECT_TRUE(label->isHidden());
    }
    container->showHideNoStreamLabel(true);
    EXPECT_EQ(pixel({ 200, 100 }), 0xffffffu);
    EXPECT_FALSE(label->isHidden());
}

TEST_F(MVStreamVideoContainerViewTest, shadesTheLowerPartOfTheVideoMoreAndMore)
{
    container->setGradientViewAlpha(1);
    host.advance(1);
    EXPECT_EQ(pixel({ 200, 250 }), 0xffffffu);
    const auto brightness = [this](double y) { return int(pixel({ 200, y }) & 255); };
    EXPECT_NEAR(brightness(852 * 0.65), 255 * 0.55, 3) << "half of nine tenths, half-way down";
    EXPECT_NEAR(brightness(851.5), 255 * 0.1, 3);
    EXPECT_NE(container->hitTest({ 200, 800 }, nullptr), gradient) << "the video below takes the touch";
}

TEST_F(MVStreamVideoContainerViewTest, fadesTheShadeWithinAThirdOfASecond)
{
    container->setGradientViewAlpha(1);
    EXPECT_EQ(gradient->alpha(), 1) << "the model is there at once";
    host.advance(0);
    EXPECT_EQ(shownAlpha(), 0);
    host.advance(0.165);
    EXPECT_NEAR(shownAlpha(), 0.5, 0.02) << "half-way, eased alike at both ends";
    host.advance(0.15);
    EXPECT_LT(shownAlpha(), 1);
    host.advance(0.02);
    EXPECT_EQ(shownAlpha(), 1);
}

TEST_F(MVStreamVideoContainerViewTest, theLastShadeAskedForCounts)
{
    container->setGradientViewAlpha(1);
    container->setGradientViewAlpha(0);
    for (int frame = 0; frame < 30; ++frame) {
        host.advance(1.0 / 60);
        EXPECT_EQ(shownAlpha(), 0) << "it never flashes";
    }
    container->setGradientViewAlpha(1);
    host.advance(0.165);
    container->setGradientViewAlpha(0); // turned back half-way
    host.advance(0);
    EXPECT_NEAR(shownAlpha(), 0.5, 0.05);
    host.advance(1);
    EXPECT_EQ(shownAlpha(), 0);
    EXPECT_EQ(pixel({ 200, 850 }), 0xffffffu);
    const int frames = host.frameCount();
    host.advance(5);
    EXPECT_EQ(host.frameCount(), frames);
}

// The live screen shows the video on the left half; only that half's outer side has to keep clear of the camera.
TEST_F(MVStreamVideoContainerViewTest, theTextKeepsClearOfTheCameraRatherThanInTheMiddle)
{
    container->setAutoresizingMask(flexibleHeight);
    for (const auto direction : { UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft }) {
        host.setDirection(direction);
        host.rotate(UIDeviceOrientation::landscapeLeft);
        container->setFrame({ 0, 0, 426, 393 });
        host.advance(1);
        EXPECT_NEAR(onScreen(*gradient).y, 393 * 0.3, 0.2);
        EXPECT_EQ(onScreen(*gradient).width, 426);
        EXPECT_NEAR(onScreen(*label).x, 59 + 25, 0.34);
        EXPECT_NEAR(onScreen(*label).maxX(), 426 - 25, 0.34);
        EXPECT_NEAR(onScreen(*label).maxY(), 393 / 2.0 - 40, 0.34);
    }
}

TEST_F(MVStreamVideoContainerViewTest, aNarrowOneBreaksTheTextAndKeepsAllOfIt)
{
    const double line = label->frame().height;
    container->setFrame({ 100, 100, 150, 600 });
    host.advance(0);
    EXPECT_NEAR(label->frame().height, 2 * line, 0.4);
    EXPECT_NEAR(onScreen(*label).maxY(), 100 + 300 - 40, 0.34) << "it grows upwards";
}

} // namespace
} // namespace mv
