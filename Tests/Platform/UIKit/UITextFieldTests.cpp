#include "Platform/UIKit/UITextField.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UITextInput.h"
#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

#include <functional>

namespace platform {
namespace {

// Writes down what a field tells and asks; answers as told.
class Witness final : public UITextFieldDelegate {
public:
    bool textFieldShouldBeginEditing(UITextField&) override { return note("may begin?", mayBegin); }
    void textFieldDidBeginEditing(UITextField&) override { note("begun"); }
    bool textFieldShouldEndEditing(UITextField&) override { return note("may end?", mayEnd); }
    void textFieldDidEndEditing(UITextField&) override { note("ended"); }
    bool textFieldShouldReturn(UITextField&) override { return note("may return?", mayReturn); }
    bool textFieldShouldChangeCharacters(UITextField&, NSRange range, const std::string& text) override
    {
        return note("may " + std::to_string(range.location) + "+" + std::to_string(range.length) + " become \"" + text + "\"?",
            mayChange);
    }

    void listenTo(UITextField& field)
    {
        using enum UIControlEvent;
        for (const auto& [event, name] :
            { std::pair { editingDidBegin, "did begin" }, { editingChanged, "changed" }, { editingDidEnd, "did end" } })
            field.addAction(event, [this, name] { note(name); });
    }
    std::string take() { return std::exchange(log, {}); }

    bool mayBegin = true, mayEnd = true, mayReturn = true, mayChange = true;

private:
    bool note(const std::string& line, bool answer = true)
    {
        log += (log.empty() ? "" : ", ") + line;
        return answer;
    }
    std::string log;
};

class UITextFieldTest : public ScreenTest {
protected:
    UITextFieldTest()
    {
        field->setFrame({ 20, 40, 200, 50 });
        field->setFont(kitFont("Regular", 18));
        window->addSubview(field);
        field->setDelegate(witness);
        witness->listenTo(*field);
        makeFrame();
    }
    ~UITextFieldTest() override { window->endEditing(true); } // while there is a witness
    static void type(const std::string& text) { UIApplication::shared().sendText(text); }

    const std::shared_ptr<UITextField> field = make<UITextField>();
    const std::shared_ptr<Witness> witness = std::make_shared<Witness>();
};

TEST_F(UITextFieldTest, tellsAndAsksAsItIsEdited)
{
    tap({ 100, 60 });
    EXPECT_EQ(witness->take(), "may begin?, begun, did begin");
    type("h\xc3\xa9");
    EXPECT_EQ(witness->take(), "may 0+0 become \"h\xc3\xa9\"?, changed");
    UIApplication::shared().sendDeleteBackward();
    EXPECT_EQ(witness->take(), "may 1+2 become \"\"?, changed");
    witness->mayChange = false;
    type("x");
    witness->take();
    EXPECT_EQ(field->text(), "h");
    field->setText("typed by nobody");
    EXPECT_EQ(witness->take(), "");
    witness->mayEnd = false;
    EXPECT_FALSE(window->endEditing(false));
    EXPECT_TRUE(field->isEditing());
    EXPECT_TRUE(window->endEditing(true));
    EXPECT_EQ(witness->take(), "may end?, ended, did end");
    EXPECT_FALSE(field->isFirstResponder());
}

TEST_F(UITextFieldTest, returnEndsEditingOnlyWhereSomebodyTakesIt)
{
    field->becomeFirstResponder();
    witness->take();
    UIApplication::shared().sendKey(UIKey::enter);
    EXPECT_EQ(witness->take(), "may return?");
    EXPECT_TRUE(field->isEditing());
    field->addAction(UIControlEvent::editingDidEndOnExit, [] {});
    witness->mayReturn = false;
    type("\n"); // an on-screen keyboard's
    EXPECT_EQ(witness->take(), "may return?");
    witness->mayReturn = true;
    type("\n");
    EXPECT_EQ(witness->take(), "may return?, may end?, ended, did end");
    EXPECT_EQ(field->text(), "");
}

TEST_F(UITextFieldTest, isNotEditedWhereItCannotBe)
{
    struct Case {
        const char* why;
        std::function<void()> leave, comeBack;
    };
    const auto around = add({ 0, 0, 320, 200 });
    const Case cases[] = {
        { "disabled", [&] { field->setEnabled(false); }, [&] { field->setEnabled(true); } },
        { "hidden", [&] { field->setHidden(true); }, [&] { field->setHidden(false); } },
        { "taken out", [&] { field->removeFromSuperview(); }, [&] { around->addSubview(field); } },
        { "taken out with what holds it", [&] { around->removeFromSuperview(); }, [&] { window->addSubview(around); } },
    };
    witness->mayEnd = false; // nobody is asked
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        ASSERT_TRUE(field->becomeFirstResponder());
        witness->take();
        c.leave();
        EXPECT_EQ(witness->take(), "ended, did end");
        EXPECT_FALSE(field->becomeFirstResponder());
        c.comeBack();
    }
    witness->mayBegin = false;
    witness->take();
    EXPECT_FALSE(field->becomeFirstResponder());
    tap({ 100, 60 });
    EXPECT_FALSE(field->isEditing());
    EXPECT_EQ(witness->take(), "may begin?, may begin?");
    field->addAction(UIControlEvent::editingDidBegin, [this] { field->removeFromSuperview(); });
    witness->mayBegin = true;
    EXPECT_FALSE(field->becomeFirstResponder()) << "an action has taken it away";
}

TEST_F(UITextFieldTest, obeysTheKeys)
{
    field->becomeFirstResponder();
    const auto press = [](UIKey key, UIKeyModifiers held = UIKeyModifiers::none) { UIApplication::shared().sendKey(key, held); };
    const auto edit = [](UIEditAction action) { return UIApplication::shared().sendEditAction(action); };
    const auto shift = UIKeyModifiers::shift, control = UIKeyModifiers::control;
    type("tea for two");
    press(UIKey::left, control);
    EXPECT_EQ(field->selectedRange(), (NSRange { 8, 0 }));
    press(UIKey::left, control | shift);
    EXPECT_EQ(field->selectedRange(), (NSRange { 4, 4 }));
    EXPECT_TRUE(edit(UIEditAction::cut));
    EXPECT_EQ(field->text(), "tea two");
    EXPECT_FALSE(edit(UIEditAction::copy)) << "nothing is selected";
    press(UIKey::home);
    EXPECT_TRUE(edit(UIEditAction::paste));
    EXPECT_EQ(field->text(), "for tea two");
    press(UIKey::end, shift);
    press(UIKey::left, shift);
    EXPECT_EQ(field->selectedRange(), (NSRange { 4, 6 }));
    press(UIKey::left);
    EXPECT_EQ(field->selectedRange(), (NSRange { 4, 0 })) << "a selection ends where the key points";
    press(UIKey::deleteForward);
    press(UIKey::deleteBackward, control);
    EXPECT_EQ(field->text(), "ea two");
    press(UIKey::tab);
    EXPECT_EQ(field->text(), "ea two");
    EXPECT_TRUE(edit(UIEditAction::selectAll));
    type("a\r\nb"); // pasted by a desktop
    EXPECT_EQ(field->text(), "a b");
    field->setText("\u05e9\u05dc\u05d5\u05dd");
    press(UIKey::left);
    EXPECT_EQ(field->selectedRange(), (NSRange { 8, 0 })) << "at the left end";
    press(UIKey::right);
    EXPECT_EQ(field->selectedRange(), (NSRange { 6, 0 }));
    EXPECT_TRUE(window->endEditing(false));
    EXPECT_FALSE(edit(UIEditAction::selectAll));
}

TEST_F(UITextFieldTest, takesBackWhatWasDoneAndAsksBefore)
{
    const auto edit = [](UIEditAction action) { return UIApplication::shared().sendEditAction(action); };
    field->setText("Hi");
    field->becomeFirstResponder();
    EXPECT_FALSE(edit(UIEditAction::undo)) << "nothing has been done";
    type(" you");
    witness->take();
    EXPECT_FALSE(edit(UIEditAction::redo));
    EXPECT_TRUE(edit(UIEditAction::undo));
    EXPECT_EQ(witness->take(), "may 2+4 become \"\"?, changed");
    EXPECT_EQ(field->text(), "Hi");
    EXPECT_TRUE(edit(UIEditAction::redo));
    EXPECT_EQ(witness->take(), "may 2+0 become \" you\"?, changed");
    EXPECT_EQ(field->text(), "Hi you");
    witness->mayChange = false;
    edit(UIEditAction::undo);
    EXPECT_EQ(field->text(), "Hi you");
    EXPECT_EQ(witness->take(), "may 2+4 become \"\"?");
    witness->mayChange = true;
    field->resignFirstResponder();
    EXPECT_FALSE(edit(UIEditAction::undo));
    field->becomeFirstResponder();
    EXPECT_FALSE(edit(UIEditAction::undo)) << "forgotten when editing ended";
}

TEST_F(UITextFieldTest, keepsTheCaretInsideItsRectangle)
{
    const auto caretX = [&] {
        makeFrame();
        return field->textInput()->caretRect().x;
    };
    field->setText(std::string(300, 'm'));
    EXPECT_EQ(field->editingRect(field->bounds()).width, 200);
    field->becomeFirstResponder();
    EXPECT_NEAR(caretX(), 20 + 198, 0.51) << "at the end, two points wide";
    UIApplication::shared().sendKey(UIKey::left);
    EXPECT_LT(caretX(), 20 + 190) << "what is seen stays while the caret is inside";
    UIApplication::shared().sendKey(UIKey::home);
    EXPECT_NEAR(caretX(), 20, 0.01);
    UIApplication::shared().sendKey(UIKey::end);
    makeFrame();
    UIApplication::shared().sendDeleteBackward();
    EXPECT_NEAR(caretX(), 20 + 198, 0.51) << "the text comes back with it";
    field->setText("i");
    EXPECT_LT(caretX(), 20 + 20);
    field->setTextAlignment(NSTextAlignment::right);
    EXPECT_NEAR(caretX(), 20 + 198, 0.51);
    field->setTextAlignment(NSTextAlignment::natural);
    field->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    field->setText("");
    EXPECT_NEAR(caretX(), 20 + 198, 0.51) << "lines begin on the right there";
    type("\u05e9");
    EXPECT_LT(caretX(), 20 + 195);
    EXPECT_GT(caretX(), 20 + 170);

    // Half of it stands before the line where the field's edge does not cut it.
    field->setBorderStyle(UITextBorderStyle::roundedRect);
    field->setText("");
    const CGRect inside = field->editingRect(field->bounds());
    EXPECT_NEAR(caretX(), 20 + inside.maxX() - 1, 0.01);
    field->setSemanticContentAttribute(UISemanticContentAttribute::forceLeftToRight);
    EXPECT_NEAR(caretX(), 20 + inside.x - 1, 0.01);
}

TEST_F(UITextFieldTest, blinksWhileItIsEdited)
{
    const auto isLit = [&] {
        bool lit = false;
        const std::function<void(const CALayer&, bool)> look = [&](const CALayer& layer, bool visible) {
            visible = visible && !layer.isHidden();
            if (visible && layer.bounds().width == 2 && layer.cornerRadius() == 1 && layer.backgroundColor())
                lit = true;
            for (const auto& child : layer.sublayers())
                look(*child, visible);
        };
        makeFrame();
        look(*field->layer(), true);
        return lit;
    };
    const auto wait = [&](double seconds) { MainQueue::shared().advance(clock, seconds); };
    EXPECT_FALSE(isLit());
    field->becomeFirstResponder();
    EXPECT_TRUE(isLit());
    wait(0.55);
    EXPECT_FALSE(isLit());
    type("a");
    EXPECT_TRUE(isLit()) << "at once after a key";
    wait(0.45);
    EXPECT_TRUE(isLit());
    wait(0.1);
    EXPECT_FALSE(isLit());
    wait(0.5);
    EXPECT_TRUE(isLit());
    UIApplication::shared().sendEditAction(UIEditAction::selectAll);
    EXPECT_FALSE(isLit()) << "the selection shows where";
    field->setSelectedRange({ 0, 0 });
    EXPECT_TRUE(isLit());
    field->resignFirstResponder();
    EXPECT_FALSE(isLit());
    wait(0.55);
    EXPECT_FALSE(isLit()) << "no timer goes on";
}

TEST_F(UITextFieldTest, composesThroughAnInputMethod)
{
    field->becomeFirstResponder();
    auto& application = UIApplication::shared();
    type("go ");
    witness->take();
    application.sendMarkedText("ni", 2);
    EXPECT_EQ(witness->take(), "may 3+0 become \"ni\"?, changed");
    EXPECT_EQ(field->text(), "go ni");
    EXPECT_EQ(field->markedRange(), (NSRange { 3, 2 }));
    type("\u4f60");
    EXPECT_EQ(witness->take(), "may 3+2 become \"\u4f60\"?, changed");
    EXPECT_EQ(field->text(), "go \u4f60");
    application.sendMarkedText("hao", 3);
    application.sendMarkedText("", 0);
    EXPECT_EQ(field->text(), "go \u4f60");
    application.sendMarkedText("hao", 3);
    field->resignFirstResponder();
    EXPECT_EQ(field->text(), "go \u4f60hao") << "what is composed stays";
    EXPECT_FALSE(field->markedRange());
    EXPECT_EQ(field->textInput()->textBeforeCaret(), "go \u4f60hao");
}

} // namespace
} // namespace platform
