#include "Tests/UI/Stage.h"
#include "UI/Common/SubViews/MVTextField.h"
#include "UI/Extensions/MVBorders.h"
#include "UI/Extensions/MVColor.h"
#include "UI/Extensions/MVFonts.h"
#include "UI/Screens/Broadcast Screen/SubViews/MVCommentInputView.h"
#include "UI/Utils/MVUtilities.h"

namespace mv {
namespace {

class MVCommentInputViewTest : public Stage {
protected:
    using Texts = std::vector<std::string>;

    MVCommentInputViewTest()
    {
        host.device().setModel(HostDevice::phone());
        host.setHardwareKeyboard(true); // nothing lifts the bar above one on the screen here
        show();
    }

    void show()
    {
        bar = make<MVCommentInputView>();
        bar->onPressSendCommentButton = [this](const std::string& comment) {
            sent.push_back(comment);
            seenAtTheCall = buttons() + (field->isEditing() ? " editing" : "") + field->text();
        };
        bar->onPressSendReactionButton = [this](bool isOn, const std::shared_ptr<UIButton>& sender) {
            sent.push_back(isOn ? "on" : "off");
            EXPECT_EQ(sender, button("sendReactionButton"));
        };
        bar->setTranslatesAutoresizingMaskIntoConstraints(false);
        field = bar->getTextField();
        window->addSubview(bar);
        bottom = bar->bottomAnchor().equalTo(window->bottomAnchor());
        activate({ bottom, bar->leadingAnchor().equalTo(window->leadingAnchor()),
            bar->trailingAnchor().equalTo(window->trailingAnchor()) });
        host.advance(0);
    }
    std::shared_ptr<UIButton> button(const std::string& name) const { return find<UIButton>(bar, name); }
    std::string buttons() const
    {
        std::string all;
        if (!button("sendCommentButton")->isHidden())
            all += button("sendCommentButton")->isEnabled() ? "send" : "(send)";
        if (!button("sendReactionButton")->isHidden())
            all += all.empty() ? "react" : " react";
        return all;
    }
    void tap(const UIView& view)
    {
        host.tap(middle(view));
        host.advance(0.4);
    }
    void press(const std::string& name) { tap(*button(name)); }
    void write(const std::string& text)
    {
        tap(*field);
        host.type(text);
    }
    void expectLayout(double width, const UIEdgeInsets& safe, double height, bool mirrored) const
    {
        const double top = height - 50 - safe.bottom;
        const auto at = [&](CGRect box) {
            if (mirrored)
                box.x = width - box.maxX();
            return box;
        };
        EXPECT_TRUE(isNear(onScreen(*bar), { 0, top, width, 50 + safe.bottom }));
        EXPECT_TRUE(isNear(onScreen(*find(bar, "containerView")), { 0, top, width, 50 }));
        const CGRect react = at({ width - safe.right - 38, top + 11, 28, 28 });
        EXPECT_TRUE(isNear(onScreen(*button("sendReactionButton")), react));
        EXPECT_TRUE(
            isNear(onScreen(*field), at({ safe.left + 10, top, width - safe.left - safe.right - 10 - 10 - 28 - 10, 50 })));
        const auto line = bar->viewWithTag(int(BordersViewTag::top));
        ASSERT_TRUE(line);
        EXPECT_TRUE(isNear(onScreen(*line), { 0, top, width, 0.5 }));
        EXPECT_EQ(line->backgroundColor(), MVColor::seperatorColor());
    }

    std::shared_ptr<MVCommentInputView> bar;
    std::shared_ptr<UITextField> field;
    std::shared_ptr<NSLayoutConstraint> bottom;
    Texts sent; // and whether reactions are on
    std::string seenAtTheCall;
};

TEST_F(MVCommentInputViewTest, keepsItsMeasuresOnEveryDevice)
{
    for (const bool mirrored : { false, true }) {
        host.setDirection(mirrored ? UIUserInterfaceLayoutDirection::rightToLeft : UIUserInterfaceLayoutDirection::leftToRight);
        for (const auto& device : { HostDevice::phone(), HostDevice::smallPhone(), HostDevice::tablet() }) {
            host.device().setModel(device);
            for (const auto orientation : { UIDeviceOrientation::portrait, UIDeviceOrientation::landscapeLeft }) {
                SCOPED_TRACE(device.name + (mirrored ? " mirrored" : ""));
                turn(orientation);
                const CGSize size = host.device().size();
                expectLayout(size.width, host.device().safeArea(), size.height, mirrored);
            }
            host.rotate(UIDeviceOrientation::portrait);
        }
    }
}

TEST_F(MVCommentInputViewTest, isFiftyPointsHighAboveTheKeyboardAndGetsThereInOneMove)
{
    const auto shown = [&] { return bar->layer()->presentationFrame(host.now()); };
    EXPECT_EQ(onScreen(*bar), (CGRect { 0, 768, 393, 84 }));
    UIView::animate(0.25, [&] {
        bottom->setConstant(-325);
        window->layoutIfNeeded();
    });
    double former = 768;
    for (int frame = 0; frame < 16; ++frame) {
        host.advance(1.0 / 60);
        EXPECT_LE(shown().y, former + 1e-9) << "always upwards";
        EXPECT_GE(shown().height, 50);
        EXPECT_LE(shown().height, 84);
        // The field stays 50 points high at the bar's top.
        EXPECT_NEAR(find(bar, "containerView")->layer()->presentationFrame(host.now()).height, 50, 1e-6);
        former = shown().y;
    }
    EXPECT_EQ(onScreen(*bar), (CGRect { 0, 477, 393, 50 }));
    EXPECT_EQ(shown(), onScreen(*bar));
    UIView::animate(0.25, [&] {
        bottom->setConstant(0);
        window->layoutIfNeeded();
    });
    EXPECT_EQ(onScreen(*bar), (CGRect { 0, 768, 393, 84 })) << "the goal, at once";
    host.advance(0.3);
    EXPECT_EQ(shown(), (CGRect { 0, 768, 393, 84 }));
}

TEST_F(MVCommentInputViewTest, wearsWhatIsAgreed)
{
    EXPECT_EQ(field->attributedPlaceholder().string(), MVLocalized("mvTypeMessage"));
    const auto& looks = field->attributedPlaceholder().runs().at(0).attributes;
    EXPECT_EQ(looks.font, MVFonts::semiBoldFont(16));
    EXPECT_EQ(looks.foregroundColor, UIColor::white().withAlphaComponent(0.8));
    EXPECT_EQ(field->font(), MVFonts::regularFont(18));
    EXPECT_EQ(field->textColor(), UIColor::white());
    EXPECT_EQ(field->tintColor(), UIColor::white());
    for (const char* name : { "sendCommentButton", "sendReactionButton" }) {
        ASSERT_TRUE(button(name)->currentImage()) << name;
        EXPECT_EQ(button(name)->currentImage()->size(), (CGSize { 28, 28 })) << "fills the button";
        EXPECT_EQ(button(name)->tintColor(), UIColor::white());
    }
    EXPECT_NE(button("sendCommentButton")->currentImage(), button("sendReactionButton")->currentImage());
}

TEST_F(MVCommentInputViewTest, offersToSendWhileOneWritesAndToReactOtherwise)
{
    EXPECT_EQ(buttons(), "react");
    EXPECT_FALSE(button("sendCommentButton")->isEnabled());
    tap(*field);
    EXPECT_TRUE(field->isEditing());
    EXPECT_EQ(buttons(), "(send)");
    EXPECT_TRUE(isNear(onScreen(*button("sendCommentButton")), { 355, 779, 28, 28 })) << "in the other one's place";
    host.type(" ");
    EXPECT_EQ(buttons(), "send") << "a space is a text";
    host.pressDelete();
    EXPECT_EQ(buttons(), "(send)");
    host.type("Hi");
    field->endEditing(true);
    host.advance(0.4);
    EXPECT_EQ(buttons(), "send react") << "an unsent text";
    EXPECT_TRUE(isNear(onScreen(*button("sendCommentButton")), { 317, 779, 28, 28 }));
    EXPECT_TRUE(isNear(onScreen(*button("sendReactionButton")), { 355, 779, 28, 28 }));
    EXPECT_TRUE(isNear(onScreen(*field), { 10, 768, 297, 50 }));
    tap(*field);
    EXPECT_EQ(buttons(), "send");
    host.pressDelete();
    host.pressDelete();
    field->endEditing(true);
    EXPECT_EQ(buttons(), "react");
}

TEST_F(MVCommentInputViewTest, sendsTheTextAsTypedAndIsEmptyThen)
{
    write("  Is it safe?  ");
    press("sendCommentButton");
    EXPECT_EQ(sent, Texts { "  Is it safe?  " });
    EXPECT_EQ(seenAtTheCall, "react") << "empty, not edited, before anybody hears of it";
    EXPECT_FALSE(button("sendCommentButton")->isEnabled());
    write("   ");
    press("sendCommentButton");
    write("left");
    field->endEditing(true);
    host.advance(0.4);
    press("sendCommentButton");
    EXPECT_EQ(sent, (Texts { "  Is it safe?  ", "   ", "left" })) << "spaces alone, and without the keyboard";
    EXPECT_EQ(buttons(), "react");
}

TEST_F(MVCommentInputViewTest, sendsNothingWhenThereIsNothing)
{
    tap(*field);
    press("sendCommentButton");
    button("sendCommentButton")->setEnabled(true); // as an owner might
    press("sendCommentButton");
    EXPECT_EQ(sent, Texts {});
    EXPECT_TRUE(field->isEditing());
    write("Hi");
    const auto at = middle(*button("sendCommentButton"));
    host.tap(at);
    host.tap(at);
    EXPECT_EQ(sent, (Texts { "Hi", "on" })) << "once; the other button is there by then";
}

TEST_F(MVCommentInputViewTest, turnsReactionsOnAndOffWithEveryPress)
{
    const auto at = middle(*button("sendReactionButton"));
    host.tap(at);
    host.tap(at);
    write("Hi");
    field->endEditing(true);
    host.advance(0.4);
    press("sendReactionButton");
    EXPECT_EQ(sent, (Texts { "on", "off", "on" }));
}

TEST_F(MVCommentInputViewTest, mayEndInItsOwnCallAndNeedsNobodyToCall)
{
    for (const char* name : { "sendCommentButton", "sendReactionButton" }) {
        const bool sends = std::string(name) == "sendCommentButton";
        const auto drop = [this] {
            bar->removeFromSuperview();
            bar = nullptr;
            field = nullptr;
        };
        bar->onPressSendCommentButton = [=](const std::string&) { drop(); };
        bar->onPressSendReactionButton = [=](bool, const auto&) { drop(); };
        if (sends)
            write("Hi");
        host.tap(middle(*button(name)));
        EXPECT_FALSE(bar);
        host.advance(0.5);
        show();
        bar->onPressSendCommentButton = nullptr;
        bar->onPressSendReactionButton = nullptr;
        if (sends)
            write("Hi");
        press(name);
        EXPECT_EQ(buttons(), "react");
    }
}

TEST_F(MVCommentInputViewTest, keepsTextAndCaretFifteenPointsInInAFieldOfTheKits)
{
    const auto name = make<MVTextField>(CGRect { 20, 100, 300, 40 });
    for (const auto& rect : { name->textRect(name->bounds()), name->editingRect(name->bounds()) })
        EXPECT_EQ(rect, (CGRect { 15, 0, 270, 40 }));
    window->addSubview(name);
    tap(*name);
    const CGRect caret = name->textInput()->caretRect();
    EXPECT_NEAR(caret.midX(), 35, 1.5);
    EXPECT_NEAR(caret.midY(), 120, 1);
}

} // namespace
} // namespace mv
