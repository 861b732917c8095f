#include "UI/Screens/Broadcast Screen/SubViews/BroadcastScreenButtonsContainerView.h"

#include "Platform/UIKit/UIImageView.h"
#include "Tests/UI/Stage.h"

namespace mv {
namespace {

class ScreenButtonsTest : public Stage {
protected:
    ScreenButtonsTest()
    {
        window->setBackgroundColor(UIColor(0.2, 0.6, 0.2));
        buttons = addButtons();
    }
    // At the top of the trailing side, as the screens place it.
    std::shared_ptr<BroadcastScreenButtonsContainerView> addButtons()
    {
        const auto added = make<BroadcastScreenButtonsContainerView>();
        added->setTranslatesAutoresizingMaskIntoConstraints(false);
        window->addSubview(added);
        activate({ added->trailingAnchor().equalTo(window->safeAreaLayoutGuide()->trailingAnchor(), -15),
            added->topAnchor().equalTo(window->safeAreaLayoutGuide()->topAnchor(), 15) });
        host.advance(0);
        return added;
    }
    void showAll()
    {
        buttons->setButtonsInitialState(true, true);
        host.advance(1);
    }
    std::shared_ptr<MVBlurButton> named(const char* name) const { return find<MVBlurButton>(buttons, name); }
    std::shared_ptr<MVBlurButton> close() const { return named("closeButton"); }
    std::shared_ptr<MVBlurButton> chat() const { return named("chatToggleButton"); }
    std::shared_ptr<MVBlurButton> products() const { return named("productsToggleButton"); }
    static std::string imageName(const MVBlurButton& button) { return button.button()->currentImage()->name(); }
    static void expectLook(const MVBlurButton& button, const UIColor& background, const UIColor& tint, const std::string& image)
    {
        EXPECT_EQ(button.button()->backgroundColor(), background) << image;
        EXPECT_EQ(button.button()->tintColor(), tint) << image;
        EXPECT_EQ(imageName(button), image);
    }
    // Where the layout wants it, to the nearest device pixels.
    static testing::AssertionResult isOnPixelsOf(const CGRect& shown, const CGRect& wanted) { return isNear(shown, wanted, 0.2); }
    static bool isRound(const UIView& view)
    {
        return view.clipsToBounds() && view.layer()->cornerRadius() == view.frame().height / 2;
    }

    std::shared_ptr<BroadcastScreenButtonsContainerView> buttons;
};

constexpr double top = 59 + 15, left = 393 - 15 - 37.5; // of the column in portrait

TEST_F(ScreenButtonsTest, showsOnlyCloseAtFirst)
{
    EXPECT_TRUE(isOnPixelsOf(onScreen(*buttons), { left, top, 37.5, 37.5 }));
    EXPECT_TRUE(isOnPixelsOf(onScreen(*close()), { left, top, 37.5, 37.5 }));
    EXPECT_TRUE(chat()->isHidden());
    EXPECT_TRUE(products()->isHidden());
    EXPECT_FALSE(buttons->isChatOn());
    EXPECT_FALSE(buttons->isProductsOn());
    expectLook(*close(), UIColor::clear(), UIColor::white(), "crossPlainIcon");
    const auto icon = close()->button()->imageView();
    EXPECT_TRUE(isOnPixelsOf(onScreen(*icon), { left + 9, top + 9, 19.5, 19.5 })) << "nine points clear of the edge";
    EXPECT_EQ(icon->contentMode(), UIViewContentMode::scaleAspectFit);
    const unsigned behind = pixel({ 10, 10 });
    EXPECT_EQ(pixel({ left + 2, top + 2 }), behind) << "round";
    EXPECT_NE(pixel({ left + 19, top + 4 }), behind);
}

TEST_F(ScreenButtonsTest, showsTheTogglesForWhichThereIsSomething)
{
    struct Case {
        bool chat, products;
        double height;
    };
    for (const Case& c : { Case { true, true, 3 * 37.5 + 30 }, { true, false, 90 }, { false, true, 90 }, { false, false, 37.5 },
             { true, true, 142.5 } }) {
        buttons->setButtonsInitialState(c.chat, c.products);
        EXPECT_EQ(chat()->isHidden(), !c.chat);
        EXPECT_EQ(products()->isHidden(), !c.products);
        host.advance(1);
        EXPECT_TRUE(isOnPixelsOf(onScreen(*buttons), { left, top, 37.5, c.height }));
        if (c.products) {
            EXPECT_TRUE(isOnPixelsOf(onScreen(*products()), { left, top + (c.chat ? 105 : 52.5), 37.5, 37.5 }));
        }
        for (const auto& button : { close(), chat(), products() }) {
            if (!button->isHidden()) {
                EXPECT_TRUE(isRound(*button));
            }
        }
    }
}

TEST_F(ScreenButtonsTest, aToggleFadesInRoundAndInItsPlace)
{
    buttons->setButtonsInitialState(false, true);
    host.advance(1);
    buttons->setButtonsInitialState(true, true);
    host.advance(0.165);
    const auto shown = [this](const UIView& view, const char* what) {
        return std::get<double>(view.layer()->presentationValue(what, host.now()));
    };
    EXPECT_NEAR(shown(*chat(), "opacity"), 0.5, 0.05) << "half-way through a third of a second";
    EXPECT_EQ(shown(*chat(), "cornerRadius"), chat()->frame().height / 2);
    EXPECT_EQ(chat()->layer()->presentationFrame(host.now()), chat()->frame());
    const auto inner = chat()->button();
    EXPECT_EQ(inner->layer()->presentationFrame(host.now()), inner->frame());
    EXPECT_NEAR(products()->layer()->presentationFrame(host.now()).y, 52.5 * 1.5, 4) << "the other makes room meanwhile";
    host.advance(0.2);
    EXPECT_EQ(shown(*chat(), "opacity"), 1);
}

TEST_F(ScreenButtonsTest, theLastStateAskedForCounts)
{
    buttons->setButtonsInitialState(true, true);
    buttons->setButtonsInitialState(false, true);
    buttons->setButtonsInitialState(true, false);
    host.advance(0.1);
    buttons->setButtonsInitialState(false, false);
    buttons->setButtonsInitialState(true, true);
    host.advance(1);
    EXPECT_TRUE(isOnPixelsOf(onScreen(*products()), { left, top + 105, 37.5, 37.5 }));
    EXPECT_NE(pixel({ left + 19, top + 52.5 + 4 }), pixel({ 10, 10 }));
    EXPECT_NE(pixel({ left + 19, top + 105 + 4 }), pixel({ 10, 10 }));
    const int frames = host.frameCount();
    buttons->setButtonsInitialState(true, true); // the screen says it again with every message
    host.advance(5);
    EXPECT_LE(host.frameCount(), frames + 1);
}

TEST_F(ScreenButtonsTest, drawsATogglesStateWithoutACall)
{
    showAll();
    buttons->onPressShowHideChatButton = [](bool) { ADD_FAILURE() << "nobody pressed"; };
    buttons->onPressShowHideProductsButton = [](bool) { ADD_FAILURE() << "nobody pressed"; };
    const UIColor white = UIColor::white(), black = UIColor::black(), clear = UIColor::clear();
    expectLook(*chat(), clear, white, "commentEnable");
    expectLook(*products(), clear, white, "productIcon");
    for (int i = 0; i < 2; ++i) {
        buttons->setChatToggleOnOff(true);
        EXPECT_TRUE(buttons->isChatOn());
        EXPECT_FALSE(buttons->isProductsOn());
        expectLook(*chat(), white, black, "commentDisable");
        expectLook(*products(), clear, white, "productIcon");
    }
    buttons->setProductToggleOnOff(true);
    EXPECT_TRUE(buttons->isProductsOn());
    expectLook(*products(), white, black, "productIcon");
    host.advance(0);
    EXPECT_EQ(pixel({ left + 19, top + 52.5 + 4 }), 0xffffffu);
    buttons->setChatToggleOnOff(false);
    buttons->setProductToggleOnOff(false);
    expectLook(*chat(), clear, white, "commentEnable");
    expectLook(*products(), clear, white, "productIcon");
    expectLook(*close(), clear, white, "crossPlainIcon");
}

TEST_F(ScreenButtonsTest, tellsOfPressesAfterTheyTookEffect)
{
    showAll();
    host.tap(middle(*close())); // nobody listens yet
    std::vector<std::string> told;
    buttons->onPressCloseScreenButton = [&] { told.emplace_back("close"); };
    buttons->onPressShowHideChatButton = [&](bool isOn) {
        EXPECT_EQ(buttons->isChatOn(), isOn);
        EXPECT_EQ(imageName(*chat()), isOn ? "commentDisable" : "commentEnable");
        told.emplace_back(isOn ? "chat on" : "chat off");
    };
    buttons->onPressShowHideProductsButton = [&](bool isOn) {
        EXPECT_EQ(products()->button()->backgroundColor(), isOn ? UIColor::white() : UIColor::clear());
        told.emplace_back(isOn ? "products on" : "products off");
    };
    host.tap(middle(*chat()));
    host.tap(middle(*chat()));
    host.tap(middle(*products()));
    host.tap(middle(*close()));
    buttons->setProductToggleOnOff(false);
    host.tap(middle(*products()));
    EXPECT_EQ(told, (decltype(told) { "chat on", "chat off", "products on", "close", "products on" }));
}

TEST_F(ScreenButtonsTest, mayBeReplacedOrEndedByItsOwner)
{
    showAll();
    buttons->onPressShowHideChatButton = [this](bool) { buttons->onPressShowHideChatButton = nullptr; };
    host.tap(middle(*chat()));
    host.tap(middle(*chat()));
    EXPECT_FALSE(buttons->isChatOn());
    const auto watched = weak(buttons);
    buttons->onPressCloseScreenButton = [this] {
        buttons->removeFromSuperview();
        buttons = nullptr;
    };
    host.tap(middle(*close()));
    host.advance(1);
    EXPECT_FALSE(watched.lock());
    host.rotate(UIDeviceOrientation::landscapeLeft); // an ended one is not told
    host.advance(1);
}

TEST_F(ScreenButtonsTest, inLandscapeTheTogglesTakeNoSpace)
{
    showAll();
    const auto underneath = make<UIButton>(CGRect { 700, 15 + 37.5, 152, 60 });
    window->insertSubview(underneath, 0);
    int presses = 0;
    underneath->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    for (const auto orientation : { UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::landscapeRight }) {
        turn(orientation);
        EXPECT_TRUE(isOnPixelsOf(onScreen(*buttons), { 852 - 59 - 15 - 37.5, 15, 37.5, 37.5 }));
        EXPECT_TRUE(isOnPixelsOf(onScreen(*close()), onScreen(*buttons)));
        for (const auto& toggle : { chat(), products() }) {
            EXPECT_FALSE(toggle->isHidden());
            EXPECT_EQ(toggle->frame().size(), (CGSize { 0, 0 }));
        }
        const CGPoint below { onScreen(*buttons).midX(), 15 + 37.5 + 10 };
        EXPECT_EQ(pixel(below), pixel({ 10, 10 }));
        host.tap(below);
        turn(UIDeviceOrientation::portrait);
        EXPECT_TRUE(isOnPixelsOf(onScreen(*products()), { left, top + 105, 37.5, 37.5 }));
        EXPECT_TRUE(isRound(*products()));
    }
    EXPECT_EQ(presses, 2);
}

TEST_F(ScreenButtonsTest, togglesShrinkRoundWithinAQuarterOfASecond)
{
    showAll();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.advance(0.125);
    const auto frame = chat()->layer()->presentationFrame(host.now());
    EXPECT_NEAR(frame.width, 37.5 / 2, 2);
    EXPECT_NEAR(frame.height, frame.width, 1e-6);
    EXPECT_NEAR(std::get<double>(chat()->layer()->presentationValue("cornerRadius", host.now())), frame.width / 2, 0.5);
    host.advance(0.14);
    EXPECT_EQ(chat()->layer()->presentationFrame(host.now()).width, 0);
}

TEST_F(ScreenButtonsTest, whatIsShownInLandscapeIsThereAfterTurningBack)
{
    turn(UIDeviceOrientation::landscapeLeft);
    showAll();
    EXPECT_NEAR(onScreen(*buttons).height, 37.5, 0.2);
    turn(UIDeviceOrientation::portrait);
    EXPECT_TRUE(isOnPixelsOf(onScreen(*chat()), { left, top + 52.5, 37.5, 37.5 }));
    EXPECT_TRUE(isRound(*chat()));
    for (const auto orientation : { UIDeviceOrientation::portraitUpsideDown, UIDeviceOrientation::unknown }) {
        buttons->didDeviceOrientationChanged(orientation);
        host.advance(1);
        EXPECT_NEAR(onScreen(*buttons).height, 142.5, 0.2) << int(orientation);
    }
}

TEST_F(ScreenButtonsTest, startsAsTheDeviceIsHeld)
{
    buttons->removeFromSuperview();
    turn(UIDeviceOrientation::landscapeRight);
    buttons = addButtons();
    EXPECT_FALSE(chat()->layer()->hasAnimations());
    showAll();
    EXPECT_NEAR(onScreen(*buttons).height, 37.5, 0.2);
}

TEST_F(ScreenButtonsTest, oneThatIsNotOnScreenYetTurnsSilently)
{
    buttons->removeFromSuperview();
    host.rotate(UIDeviceOrientation::landscapeLeft);
    host.rotate(UIDeviceOrientation::portrait);
    host.rotate(UIDeviceOrientation::landscapeRight);
    window->addSubview(buttons);
    buttons->topAnchor().equalTo(window->topAnchor())->setActive(true);
    buttons->leadingAnchor().equalTo(window->leadingAnchor())->setActive(true);
    showAll();
    EXPECT_NEAR(onScreen(*buttons).height, 37.5, 0.2);
}

TEST_F(ScreenButtonsTest, standsAtTheLeftInAMirroredInterface)
{
    showAll();
    host.setDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    host.advance(0);
    EXPECT_TRUE(isOnPixelsOf(onScreen(*products()), { 15, top + 105, 37.5, 37.5 }));
    int presses = 0;
    buttons->onPressShowHideProductsButton = [&](bool) { ++presses; };
    host.tap({ 15 + 18, top + 105 + 18 });
    EXPECT_EQ(presses, 1);
}

} // namespace
} // namespace mv
