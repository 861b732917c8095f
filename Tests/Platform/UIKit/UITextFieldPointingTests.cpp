#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UITextField.h"
#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

namespace platform {
namespace {

class UITextFieldPointing : public ScreenTest {
protected:
    UITextFieldPointing()
    {
        scroller->setContentSize({ 320, 2000 });
        window->addSubview(scroller);
        field->setFrame({ 20, 40, 200, 50 });
        field->setFont(kitFont("Regular", 18));
        scroller->addSubview(field);
    }
    ~UITextFieldPointing() override { window->endEditing(true); }
    void mouse(UITouchPhase phase, CGFloat x, CGFloat y = 60)
    {
        UIApplication::shared().sendTouch(0, phase, { x, y }, clock.now(), UITouchType::pointer);
        makeFrame();
    }
    void click(CGFloat x)
    {
        mouse(UITouchPhase::began, x);
        advance(0.1);
        mouse(UITouchPhase::ended, x);
        advance(0.1);
    }
    // Where the middle of that character of the text stands, screen points.
    CGFloat middle(std::size_t character)
    {
        const NSRange former = field->selectedRange();
        const auto caretAt = [&](std::size_t offset) {
            field->setSelectedRange({ offset, 0 });
            makeFrame();
            return field->textInput()->caretRect().midX();
        };
        const CGFloat x = (caretAt(character) + caretAt(character + 1)) / 2;
        field->setSelectedRange(former);
        return x;
    }
    std::string selected() const { return field->text().substr(field->selectedRange().location, field->selectedRange().length); }

    const std::shared_ptr<UIScrollView> scroller = make<UIScrollView>(CGRect { 0, 0, 320, 480 });
    const std::shared_ptr<UITextField> field = make<UITextField>();
};

TEST_F(UITextFieldPointing, putsTheCaretUnderTheFinger)
{
    field->setText("wide words");
    makeFrame();
    tap({ 21, 60 });
    EXPECT_EQ(field->selectedRange(), (NSRange { 0, 0 }));
    advance(1);
    tap({ 215, 60 });
    EXPECT_EQ(field->selectedRange(), (NSRange { 10, 0 }));
    advance(1);
    tap({ 45, 60 });
    const NSRange single = field->selectedRange();
    EXPECT_GT(single.location, 0u);
    EXPECT_LT(single.location, 5u);
    advance(0.2);
    tap({ 45, 60 });
    EXPECT_EQ(field->selectedRange(), (NSRange { 0, 4 })) << "the word";
    advance(0.2);
    tap({ 45, 60 });
    EXPECT_EQ(field->selectedRange(), (NSRange { 0, 10 })) << "everything";
    advance(0.2);
    tap({ 45, 60 });
    EXPECT_EQ(field->selectedRange(), single);
    advance(0.2);
    tap({ 120, 60 });
    EXPECT_EQ(field->selectedRange().length, 0u) << "at another place";
    advance(1);
    // Stays, then takes the caret along.
    touch(UITouchPhase::began, { 21, 60 });
    MainQueue::shared().advance(clock, 0.6);
    touch(UITouchPhase::moved, { 300, 90 });
    EXPECT_EQ(field->selectedRange(), (NSRange { 10, 0 }));
    touch(UITouchPhase::moved, { 5, 60 });
    EXPECT_EQ(field->selectedRange(), (NSRange { 0, 0 }));
    touch(UITouchPhase::ended, { 5, 60 });
}

TEST_F(UITextFieldPointing, selectsWhatTheMouseIsDrawnOver)
{
    field->setText("tea for two");
    makeFrame();
    mouse(UITouchPhase::began, 215);
    EXPECT_TRUE(field->isEditing()) << "before the button comes up";
    EXPECT_EQ(field->selectedRange(), (NSRange { 11, 0 }));
    mouse(UITouchPhase::ended, 215);
    const CGFloat inTea = middle(1), inFor = middle(5), inTwo = middle(9);
    advance(1);
    mouse(UITouchPhase::began, inFor - 3);
    mouse(UITouchPhase::moved, inTwo + 3, 400);
    EXPECT_EQ(selected(), "or tw");
    mouse(UITouchPhase::moved, inTea - 3);
    EXPECT_EQ(selected(), "ea f") << "to the other side of where it began";
    EXPECT_EQ(scroller->contentOffset().y, 0) << "the page stays";
    mouse(UITouchPhase::ended, inTea - 3);
    EXPECT_EQ(selected(), "ea f");
    advance(1);

    int presses = 0;
    field->addAction(UIControlEvent::touchUpInside, [&] { ++presses; });
    click(inFor);
    EXPECT_EQ(selected(), "");
    EXPECT_EQ(presses, 1) << "it is a control all the same";
    click(inFor);
    EXPECT_EQ(selected(), "for");
    mouse(UITouchPhase::began, inFor);
    EXPECT_EQ(selected(), "tea for two");
    mouse(UITouchPhase::moved, inTea);
    EXPECT_EQ(selected(), "tea for two") << "there is no more";
    mouse(UITouchPhase::ended, inTea);
    click(inFor);
    EXPECT_EQ(selected(), "") << "from the beginning";
    click(inFor);
    EXPECT_EQ(selected(), "for");
    click(inFor + 6);
    EXPECT_EQ(selected(), "") << "not at the same place";
    advance(1);
    const CGFloat endOfFor = middle(6) + 2;
    click(endOfFor);
    mouse(UITouchPhase::began, endOfFor);
    EXPECT_EQ(selected(), "for") << "up to its last letter's right half";
    mouse(UITouchPhase::moved, inTwo);
    EXPECT_EQ(selected(), "for two") << "by words";
    mouse(UITouchPhase::moved, inTea);
    EXPECT_EQ(selected(), "tea for");
    mouse(UITouchPhase::moved, inFor);
    EXPECT_EQ(selected(), "for");
    mouse(UITouchPhase::ended, inFor);
    advance(1);
    mouse(UITouchPhase::began, inFor);
    advance(0.7);
    mouse(UITouchPhase::moved, inTwo + 3);
    EXPECT_GT(selected().size(), 3u) << "a mouse that stays is no finger that stays";
    field->resignFirstResponder();
    const NSRange left = field->selectedRange();
    mouse(UITouchPhase::moved, inTea);
    EXPECT_FALSE(field->isEditing());
    EXPECT_EQ(field->selectedRange(), left);
    mouse(UITouchPhase::ended, inTea);

    field->setEnabled(false);
    mouse(UITouchPhase::began, inFor, 60);
    for (CGFloat y = 50; y > 0; y -= 10)
        mouse(UITouchPhase::moved, inFor, y);
    mouse(UITouchPhase::ended, inFor, 10);
    EXPECT_GT(scroller->contentOffset().y, 0) << "where nothing can be selected it draws the page";
}

TEST_F(UITextFieldPointing, bringsIntoSightWhatTheMouseIsDrawnTo)
{
    field->setText("the longer a line is the more of it lies out of sight at its end");
    makeFrame();
    mouse(UITouchPhase::began, 100);
    const std::size_t start = field->selectedRange().location;
    for (int i = 0; i < 12; ++i)
        mouse(UITouchPhase::moved, 260 + i);
    EXPECT_EQ(field->selectedRange(), (NSRange { start, field->text().size() - start }));
    mouse(UITouchPhase::moved, 30);
    EXPECT_EQ(field->selectedRange().location, start);
    EXPECT_GT(field->selectedRange().end(), 30u) << "the line has moved along";
    mouse(UITouchPhase::ended, 30);
}

} // namespace
} // namespace platform
