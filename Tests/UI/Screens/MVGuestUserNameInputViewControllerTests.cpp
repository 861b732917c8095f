#include "Tests/UI/Stage.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Screens/Broadcast Screen/Controllers/MVGuestUserNameInputViewController.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {
namespace {

class MVGuestUserNameInputViewControllerTest : public Stage {
protected:
    using Texts = std::vector<std::string>;

    MVGuestUserNameInputViewControllerTest()
    {
        host.device().setModel(HostDevice::phone());
        window->setRootViewController(screen);
        host.advance(0);
        show();
    }

    void show()
    {
        prompt = make<MVGuestUserNameInputViewController>();
        prompt->setModalPresentationStyle(UIModalPresentationStyle::overFullScreen);
        prompt->onPressJoinButton = [this](const std::string& name) { names.push_back(name); };
        screen->present(prompt, true);
        host.advance(0.5);
    }
    template <typename View = UIView> std::shared_ptr<View> part(const std::string& name) const
    {
        return find<View>(prompt->view(), name);
    }
    CGRect place(const std::string& name) const { return onScreen(*part(name)); }
    bool mayJoin() const { return part<UIButton>("joinButton")->isEnabled(); }
    void press(const std::string& name)
    {
        host.tap(middle(*part(name)));
        host.advance(0.5);
    }
    bool isUp() const { return screen->presentedViewController() != nullptr; }

    std::shared_ptr<UIViewController> screen = make<UIViewController>();
    std::shared_ptr<MVGuestUserNameInputViewController> prompt;
    Texts names; // joined with
};

TEST_F(MVGuestUserNameInputViewControllerTest, liesJustAboveTheMiddleOnEveryDevice)
{
    for (const auto direction : { UIUserInterfaceLayoutDirection::leftToRight, UIUserInterfaceLayoutDirection::rightToLeft }) {
        host.setDirection(direction);
        const bool mirrored = direction == UIUserInterfaceLayoutDirection::rightToLeft;
        for (const auto& device : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
            host.device().setModel(device);
            for (const auto orientation : { UIDeviceOrientation::portrait, UIDeviceOrientation::landscapeRight }) {
                SCOPED_TRACE(device.name + (mirrored ? " mirrored" : ""));
                turn(orientation);
                const double pixel = 1 / device.scale + 1e-6; // frames lie on whole ones
                const CGSize size = host.device().size();
                const CGRect card = place("containerView"), header = place("headerLabel"), name = place("inputTextField"),
                             buttons = place("buttonsStackView"), join = place("joinButton"), cancel = place("cancelButton");
                EXPECT_NEAR(card.width, size.width * 0.85, pixel);
                EXPECT_NEAR(card.midX(), size.width / 2, pixel);
                EXPECT_NEAR(card.maxY(), size.height / 2 - 20, pixel);
                EXPECT_NEAR(card.height, header.height + 145, 1e-6);
                EXPECT_TRUE(isNear(header, { card.x + 15, card.y + 20, card.width - 30, header.height }, pixel));
                EXPECT_NEAR(header.height, 23, 0.5) << "one line of 18 points";
                EXPECT_TRUE(isNear(name, { card.x + 15, header.maxY() + 20, card.width - 30, 40 }, pixel));
                EXPECT_TRUE(isNear(buttons, { card.x, name.maxY() + 20, card.width, 45 }, pixel));
                EXPECT_NEAR(join.width, cancel.width, pixel);
                EXPECT_NEAR(mirrored ? cancel.maxX() : join.maxX(), mirrored ? join.x : cancel.x, 1e-6);
                EXPECT_NEAR(mirrored ? cancel.x : join.x, card.x, 1e-6);
                const auto line = part("joinButton")->viewWithTag(int(mirrored ? BordersViewTag::left : BordersViewTag::right));
                ASSERT_TRUE(line) << "between the two";
                EXPECT_TRUE(isNear(onScreen(*line), { mirrored ? join.x : join.maxX() - 0.8, join.y, 0.8, 45 }, pixel));
                const auto top = part("buttonsStackView")->viewWithTag(int(BordersViewTag::top));
                ASSERT_TRUE(top);
                EXPECT_TRUE(isNear(onScreen(*top), { buttons.x, buttons.y, buttons.width, 0.8 }, pixel));
            }
            host.rotate(UIDeviceOrientation::portrait);
        }
    }
}

TEST_F(MVGuestUserNameInputViewControllerTest, wearsWhatIsAgreed)
{
    const auto card = part<UIVisualEffectView>("containerView");
    EXPECT_EQ(card->effect(), (UIBlurEffect { UIBlurEffect::Style::systemMaterialDark }));
    EXPECT_EQ(prompt->view()->backgroundColor(), UIColor::black().withAlphaComponent(0.2));
    EXPECT_EQ(part<UILabel>("headerLabel")->text(), MVLocalized("mvEnterNameToJoinChat"));
    EXPECT_EQ(part<UILabel>("headerLabel")->textAlignment(), NSTextAlignment::center);
    EXPECT_EQ(part<UILabel>("headerLabel")->font(), MVFonts::semiBoldFont(18));

    const auto name = part<MVTextField>("inputTextField");
    EXPECT_EQ(name->font(), MVFonts::regularFont(16));
    EXPECT_EQ(name->attributedPlaceholder().string(), MVLocalized("mvEnterYourNameHere"));
    const auto& looks = name->attributedPlaceholder().runs().at(0).attributes;
    EXPECT_EQ(looks.font, UIFont::systemFont(14, UIFontWeight::medium));
    EXPECT_EQ(looks.foregroundColor, UIColor::white().withAlphaComponent(0.8));

    const auto join = part<UIButton>("joinButton"), cancel = part<UIButton>("cancelButton");
    EXPECT_EQ(join->currentTitle(), MVLocalized("mvJoin"));
    const auto& traits = prompt->traitCollection();
    EXPECT_EQ(traits.userInterfaceStyle, UIUserInterfaceStyle::light);
    const UIColor lightGray = MVColor::systemGray5().resolved(traits);
    EXPECT_EQ(join->currentTitleColor(), lightGray) << "while there is no name";
    host.setAppearance(UIUserInterfaceStyle::dark);
    EXPECT_EQ(join->currentTitleColor().resolved(prompt->traitCollection()), lightGray) << "to be read on a dark card";
    host.setAppearance(UIUserInterfaceStyle::light);
    EXPECT_EQ(join->titleColor(UIControlState::normal), MVColor::accentColor());
    EXPECT_EQ(cancel->currentTitle(), MVLocalized("mvCancel"));
    EXPECT_EQ(cancel->currentTitleColor(), UIColor::systemRed());
    for (const auto& button : { join, cancel })
        EXPECT_EQ(button->titleLabel()->font(), MVFonts::semiBoldFont(18));
}

TEST_F(MVGuestUserNameInputViewControllerTest, takesANameAtOnceAndHandsItOnAsTyped)
{
    EXPECT_TRUE(part<MVTextField>("inputTextField")->isEditing());
    EXPECT_FALSE(mayJoin());
    press("joinButton");
    EXPECT_EQ(names, Texts {});
    host.type("A");
    EXPECT_TRUE(mayJoin());
    host.pressDelete();
    EXPECT_FALSE(mayJoin());
    host.type("  ");
    EXPECT_TRUE(mayJoin());
    press("joinButton");
    EXPECT_EQ(names, Texts { "  " });
    EXPECT_TRUE(isUp()) << "its owner closes it";
    EXPECT_TRUE(part<MVTextField>("inputTextField")->isEditing());
    host.type("Zoë");
    press("joinButton");
    EXPECT_EQ(names.back(), "  Zoë");
    prompt->onPressJoinButton = nullptr;
    press("joinButton");
    EXPECT_EQ(names.size(), 2u);
}

TEST_F(MVGuestUserNameInputViewControllerTest, closesOnCancelWithTheKeyboardAndWithoutAWord)
{
    host.type("Ana");
    const auto name = part<MVTextField>("inputTextField");
    host.tap(middle(*part("cancelButton")));
    EXPECT_FALSE(name->isEditing()) << "at once, so that the keyboard goes along";
    const auto join = middle(*part("joinButton"));
    host.tap(join);
    host.advance(0.5);
    EXPECT_FALSE(isUp());
    EXPECT_EQ(names, Texts {});
    const std::weak_ptr<UIViewController> gone = prompt;
    prompt = nullptr;
    host.advance(0);
    EXPECT_TRUE(gone.expired());
}

} // namespace
} // namespace mv
