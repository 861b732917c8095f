#include "Platform/UIKit/UIApplication.h"

#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Foundation/URL.h"
#include "Platform/QuartzCore/LayerCommitter.h"
#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"
#include "Platform/UIKit/LayoutRoot.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UIPresentationController.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>

namespace platform {

UIApplication::UIApplication()
    : keyboardToken(NotificationCenter::defaultCenter().addObserver(
        UIKeyboard::willChangeFrameNotification, [this](const Notification& notification) {
            if (const auto* frame = notification.value<CGRect>(UIKeyboard::frameEndUserInfoKey))
                keyboard = *frame;
        }))
{
}

UIApplication& UIApplication::shared()
{
    static const auto& application = *new std::shared_ptr<UIApplication>(make<UIApplication>()); // never destroyed
    return *application;
}

std::vector<std::shared_ptr<UIWindow>> UIApplication::windows() const
{
    std::vector<std::shared_ptr<UIWindow>> list;
    for (const auto& reference : shown)
        if (auto window = reference.lock())
            list.push_back(std::move(window));
    return list;
}

std::shared_ptr<UIWindow> UIApplication::keyWindow() const { return key.lock(); }

UIInterfaceOrientationMask UIApplication::supportedInterfaceOrientations(const UIWindow* /*window*/) const
{
    return supportedOrientations;
}

bool UIApplication::open(const URL& url)
{
    if (host && host->open(url))
        return true;
    NSLog("\"" + url.absoluteString() + "\" not opened: nothing here opens such an address");
    return false;
}

void UIApplication::setIdleTimerDisabled(bool disabled)
{
    if (idleTimerDisabled == disabled)
        return;
    idleTimerDisabled = disabled;
    if (host)
        host->setIdleTimerDisabled(disabled);
}

void UIApplication::sendTouch(int identifier, UITouchPhase phase, CGPoint point, double timestamp, UITouchType type)
{
    const auto list = windows();
    for (auto window = list.rbegin(); window != list.rend(); ++window) {
        const bool taken = phase == UITouchPhase::began ? (*window)->beginTouch(identifier, type, point, timestamp)
                                                        : (*window)->changeTouch(identifier, phase, point, timestamp);
        if (taken)
            return;
    }
}

bool UIApplication::sendScroll(CGPoint point, double dx, double dy)
{
    const auto list = windows();
    for (auto window = list.rbegin(); window != list.rend(); ++window) {
        const auto hit = (*window)->hitTest({ point.x - (*window)->frame().x, point.y - (*window)->frame().y }, nullptr);
        for (UIView* view = hit.get(); view; view = view->superview()) {
            auto* scroller = dynamic_cast<UIScrollView*>(view);
            if (!scroller)
                continue;
            const CGPoint zero = scroller->convertFrom(CGPoint {}, nullptr),
                          way = scroller->convertFrom(CGPoint { dx, dy }, nullptr);
            if (scroller->scrollBy(way.x - zero.x, way.y - zero.y))
                return true;
        }
        if (hit)
            return false;
    }
    return false;
}

void UIApplication::cancelTouches(double timestamp)
{
    for (const auto& window : windows())
        window->cancelAllTouches(timestamp);
}

void UIApplication::layoutWindows()
{
    settleLayout();
    if (layoutFollowers.empty())
        return;
    const auto followers = layoutFollowers;
    for (const auto& reference : followers)
        if (const auto presentation = reference.lock(); presentation && presentation->isComingOrThere())
            presentation->layoutDidSettle();
    std::erase_if(layoutFollowers, [](const auto& reference) {
        const auto presentation = reference.lock();
        return !presentation || !presentation->isComingOrThere();
    });
    settleLayout();
}

void UIApplication::addLayoutFollower(UIPresentationController& presentation) { layoutFollowers.push_back(weak(&presentation)); }

void UIApplication::settleLayout()
{
    const LayoutRoot::Pass pass;
    // A layout that changes constraints asks for another one; a circle of such changes is cut off.
    for (int round = 0; round < 100; ++round) {
        bool solved = false;
        for (const auto& window : windows())
            solved = window->solveConstraints() || solved;
        if (round > 0 && !solved)
            return;
        LayerCommitter::layout(windowLayers());
    }
    static bool said = false;
    if (!std::exchange(said, true))
        NSLog("layout goes round in a circle: layout passes change constraints for ever");
}

std::vector<std::shared_ptr<CALayer>> UIApplication::windowLayers() const
{
    std::vector<std::shared_ptr<CALayer>> layers;
    for (const auto& window : windows())
        layers.push_back(window->layer());
    return layers;
}

void UIApplication::enterBackground()
{
    NotificationCenter::defaultCenter().post(didEnterBackgroundNotification, weak(this).lock());
}

void UIApplication::becomeActive() { NotificationCenter::defaultCenter().post(didBecomeActiveNotification, weak(this).lock()); }

void UIApplication::show(UIWindow& window)
{
    hide(window);
    const auto above = std::ranges::find_if(shown, [&](const WeakRef<UIWindow>& each) {
        const auto other = each.lock();
        return other && other->windowLevel() > window.windowLevel();
    });
    shown.insert(above, weak(&window));
}

void UIApplication::hide(UIWindow& window)
{
    std::erase_if(shown, [&](const WeakRef<UIWindow>& each) { return each.refersTo(&window); });
    if (key.refersTo(&window))
        key = {};
}

void UIApplication::makeKey(UIWindow& window) { key = weak(&window); }

void UIApplication::setFirstResponder(UIResponder* responder)
{
    first = WeakRef<UIResponder>(responder);
    ScreenKeyboard::shared().firstResponderChanged();
}

void UIApplication::responderEnds(const UIResponder& responder)
{
    if (first.refersTo(&responder))
        setFirstResponder(nullptr);
}

void UIApplication::textInputDidChange() { ScreenKeyboard::shared().textInputChanged(); }

void UIApplication::sendText(const std::string& text)
{
    if (const auto responder = firstResponder())
        responder->insertText(text);
    textInputDidChange();
}

void UIApplication::sendDeleteBackward()
{
    if (const auto responder = firstResponder())
        responder->deleteBackward();
    textInputDidChange();
}

void UIApplication::sendMarkedText(const std::string& text, std::size_t caret)
{
    const auto responder = firstResponder();
    if (UITextInput* const input = responder ? responder->textInput() : nullptr)
        input->setMarkedText(text, caret);
}

bool UIApplication::sendEditAction(UIEditAction action)
{
    const auto responder = firstResponder();
    UITextInput* const input = responder ? responder->textInput() : nullptr;
    if (!input || !input->canPerform(action))
        return false;
    input->perform(action);
    return true;
}

void UIApplication::sendKey(UIKey pressed, UIKeyModifiers modifiers)
{
    const auto window = keyWindow();
    const auto top = window ? window->topmostController() : nullptr;
    const bool presented = top && top != window->rootViewController();
    if (presented && top->pressKey(pressed, modifiers))
        return;
    std::shared_ptr<UIResponder> responder = firstResponder();
    if (!responder)
        responder = presented ? nullptr : top;
    if (responder && responder->pressKey(pressed, modifiers))
        return;
    if (pressed == UIKey::enter || pressed == UIKey::tab)
        sendText(pressed == UIKey::enter ? "\n" : "\t");
}

} // namespace platform
