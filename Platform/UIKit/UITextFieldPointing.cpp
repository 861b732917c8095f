// What the viewer does with a text field by finger and by mouse.
#include "Platform/Foundation/Clock.h"
#include "Platform/UIKit/EditedLine.h"
#include "Platform/UIKit/UILongPressGestureRecognizer.h"
#include "Platform/UIKit/UITextField.h"
#include "Platform/UIKit/UITouch.h"

#include <algorithm>

namespace platform {

namespace {

constexpr double fingerPressDelay = 0.5; // seconds that a finger stays before it takes the caret along

} // namespace

// Hears of fingers only, or of the mouse only.
class UITextField::TouchRules final : public UIGestureRecognizerDelegate {
public:
    explicit TouchRules(UITouchType type)
        : type(type)
    {
    }
    bool gestureRecognizerShouldReceive(UIGestureRecognizer& recognizer, UITouch& touch) override
    {
        return touch.type() == type && static_cast<UIControl*>(recognizer.view())->isEnabled();
    }

private:
    const UITouchType type;
};

void UITextField::watchTouches()
{
    const auto watch = [this](UITouchType type, double delay, void (UITextField::*pressed)(const UIGestureRecognizer&)) {
        const auto press = make<UILongPressGestureRecognizer>();
        press->setMinimumPressDuration(delay);
        press->setDelegate(touchRules.emplace_back(std::make_shared<TouchRules>(type)));
        press->addAction([weakSelf = weak(this), pressed](UIGestureRecognizer& recognizer) {
            if (const auto self = weakSelf.lock())
                (*self.*pressed)(recognizer);
        });
        addGestureRecognizer(press);
        return press;
    };
    watch(UITouchType::direct, fingerPressDelay, &UITextField::pressedByFinger);
    watch(UITouchType::pointer, 0, &UITextField::pressedByPointer)->setCancelsTouchesInView(false);
}

void UITextField::endTracking(UITouch* touch)
{
    if (!touch || touch->type() == UITouchType::pointer || !bounds().contains(touch->location(this)))
        return;
    const CGPoint point = touch->location(this);
    const int taps = fingerTaps.add(point, touch->timestamp());
    if (beginEditingAt(point))
        select(taps, point.x);
}

void UITextField::pressedByFinger(const UIGestureRecognizer& recognizer)
{
    using enum UIGestureRecognizerState;
    if (recognizer.state() == began || (recognizer.state() == changed && editing))
        beginEditingAt(recognizer.location(this));
}

// The mouse selects from where its button comes down, by words from the second time on.
void UITextField::pressedByPointer(const UIGestureRecognizer& recognizer)
{
    using enum UIGestureRecognizerState;
    const CGPoint point = recognizer.location(this);
    if (recognizer.state() == began) {
        const int clicks = pointerClicks.add(point, Clock::current().now());
        if (beginEditingAt(point))
            select(clicks, point.x);
    } else if (recognizer.state() == changed && editing) {
        extendSelection(point.x);
    }
}

// With the caret at the nearest place. What is edited anew shows the text's beginning, as it was seen when the finger came.
bool UITextField::beginEditingAt(CGPoint point)
{
    if (!editing) {
        const TextPosition before = editor.caret();
        editor.moveTo({ 0 });
        if (!becomeFirstResponder()) {
            editor.moveTo(before);
            return false;
        }
    }
    layoutIfNeeded();
    editor.moveTo(editedLine->positionAt(point.x));
    caretMoved();
    return true;
}

// One tap leaves the caret where it is, the second one selects the word, the third one everything.
void UITextField::select(int taps, CGFloat x)
{
    if (taps == 2)
        setSelectedRange(wordAt(x));
    else if (taps == 3)
        setSelectedRange({ 0, editor.text().size() });
    selectedFirst = selectedRange();
}

// What the button came down on stays selected.
void UITextField::extendSelection(CGFloat x)
{
    const NSRange first = selectedFirst;
    if (first.length == 0) {
        editor.moveTo(editedLine->positionAt(x), true);
    } else {
        const NSRange word = wordAt(x);
        const bool backward = word.location < first.location;
        editor.select(backward ? first.end() : first.location, backward ? word.location : std::max(word.end(), first.end()));
    }
    caretMoved();
}

NSRange UITextField::wordAt(CGFloat x) const
{
    const TextPosition hit = editedLine->positionAt(x);
    return editor.word(hit.leansForward || hit.offset == 0 ? hit.offset : hit.offset - 1); // of the character under it
}

} // namespace platform
