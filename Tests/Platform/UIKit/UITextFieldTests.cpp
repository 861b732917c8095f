#include "Platform/UIKit/UITextField.h"

#include "Tests/Platform/UIKit/KitResources.h"
#include "Tests/Platform/UIKit/ScreenTest.h"

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

} // namespace
} // namespace platform
