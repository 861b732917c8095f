#pragma once

#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Host/HeadlessHost.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UITextInput.h"
#include "Platform/UIKit/UIWindow.h"

#include <gtest/gtest.h>

namespace platform {

// The plainest thing that can be written in.
class Paper final : public UIView, public UITextInput {
public:
    std::string text, done;
    UITextInputTraits traits;

    bool canBecomeFirstResponder() const override { return true; }
    UITextInput* textInput() override { return this; }
    void insertText(const std::string& typed) override { text += typed; }
    bool pressKey(UIKey key, UIKeyModifiers) override
    {
        text += key == UIKey::enter ? "⏎" : "?";
        return true;
    }
    void deleteBackward() override
    {
        if (hasText())
            text.pop_back();
    }
    bool hasText() const override { return !text.empty(); }
    std::string textBeforeCaret() const override { return text; }
    UITextInputTraits inputTraits() const override { return traits; }
    void setMarkedText(const std::string&, std::size_t) override { }
    void unmarkText() override { }
    CGRect caretRect() const override { return {}; }
    bool canPerform(UIEditAction action) const override { return action == UIEditAction::selectAll && hasText(); }
    void perform(UIEditAction action) override { done += action == UIEditAction::selectAll ? "all" : "?"; }
};

class OnScreenKeyboard : public testing::Test {
protected:
    explicit OnScreenKeyboard(HostDevice model = HostDevice::phone())
        : host(std::move(model))
    {
        window->setBackgroundColor(UIColor::white());
        window->makeKeyAndVisible();
        paper = add();
        host.advance(0);
        heard.clear();
    }
    ~OnScreenKeyboard() override { EXPECT_EQ(console.lines(), std::vector<std::string> {}); }

    std::shared_ptr<Paper> add()
    {
        auto made = make<Paper>();
        window->addSubview(made);
        return made;
    }
    void beginWriting()
    {
        paper->becomeFirstResponder();
        host.advance(1);
        heard.clear();
    }
    // In screen points; empty when it is not there.
    CGRect key(const std::string& nameOrText) const
    {
        for (const auto& shown : UIApplication::shared().windows())
            for (const auto& view : shown->subviews())
                for (const auto& element : view->accessibilityElements())
                    if (element.identifier == nameOrText || element.label == nameOrText)
                        return element.frame.offsetBy(shown->frame().x, shown->frame().y);
        return {};
    }
    void tap(const std::string& nameOrText)
    {
        const CGRect place = key(nameOrText);
        EXPECT_FALSE(place.isEmpty()) << "no key " << nameOrText;
        host.tap(place.center());
    }
    std::string written() { return std::exchange(paper->text, {}); }
    CGFloat covered() const { return host.device().state().keyboardHeight; }
    std::vector<CGRect> takeHeard() { return std::exchange(heard, {}); }

    LogCapture console;
    HeadlessHost host;
    std::shared_ptr<UIWindow> window = make<UIWindow>();
    std::shared_ptr<Paper> paper;
    std::vector<CGRect> heard; // end frames
    NotificationToken token = NotificationCenter::defaultCenter().addObserver(
        UIKeyboard::willChangeFrameNotification, [this](const Notification& told) {
            heard.push_back(*told.value<CGRect>(UIKeyboard::frameEndUserInfoKey));
            EXPECT_TRUE(told.value<double>(UIKeyboard::animationDurationUserInfoKey));
        });
};

} // namespace platform
