#include "Platform/UIKit/UIWindow.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIGestureRecognizer.h"
#include "Platform/UIKit/UIPresentationController.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UIViewController.h"

#include <algorithm>

namespace platform {

namespace {

constexpr double contentTouchDelay = 0.15; // seconds

} // namespace

UIWindow::UIWindow()
    : UIWindow(UIScreen::main().bounds())
{
}

UIWindow::UIWindow(const CGRect& frame)
    : UIView(frame)
{
    window_ = this;
    setAccessibilityIdentifier("window");
    UIView::setHidden(true);
    filledScreen = frame == UIScreen::main().bounds();
    updateSafeArea();
}

UIWindow::~UIWindow()
{
    setHidden(true);
    const auto children = subviews();
    for (const auto& child : children)
        child->removeFromSuperview();
}

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller)
{
    if (rootViewController_ == controller)
        return;
    const auto keep = weak(this).lock();
    const auto former = std::exchange(rootViewController_, std::move(controller));
    const auto next = rootViewController_;
    const bool visible = !isHidden();
    if (former) {
        if (const auto above = former->presentation)
            above->dismiss(false, {});
        if (visible)
            former->beginAppearanceTransition(false, false);
        if (former->isViewLoaded())
            former->view()->removeFromSuperview();
        if (visible)
            former->endAppearanceTransition();
    }
    if (!next)
        return;
    const auto view = next->view();
    view->setFrame(bounds());
    view->setAutoresizingMask(flexibleWidth | flexibleHeight);
    if (visible)
        next->beginAppearanceTransition(true, false);
    insertSubview(view, 0);
    if (visible)
        next->endAppearanceTransition();
}

void UIWindow::makeKeyAndVisible()
{
    setHidden(false);
    UIApplication::shared().makeKey(*this);
}

std::shared_ptr<UIViewController> UIWindow::topmostController() const
{
    const auto above = presentations();
    return above.empty() ? rootViewController_ : above.back()->presentedViewController();
}

void UIWindow::setHidden(bool hidden)
{
    if (hidden == isHidden())
        return;
    UIView::setHidden(hidden);
    const auto controllers = uncoveredControllers();
    for (const auto& controller : controllers)
        controller->beginAppearanceTransition(!hidden, false);
    if (hidden) {
        filledScreen = frame() == UIScreen::main().bounds();
        UIApplication::shared().hide(*this);
        cancelAllTouches(lastTimestamp);
    } else {
        // Whatever happened to the screen meanwhile.
        if (filledScreen)
            setFrame(UIScreen::main().bounds());
        updateSafeArea();
        adoptTraitsInTree(UIScreen::main().sharedTraits());
        UIApplication::shared().show(*this);
    }
    for (const auto& controller : controllers)
        controller->endAppearanceTransition();
}

std::vector<std::shared_ptr<UIViewController>> UIWindow::uncoveredControllers() const
{
    std::vector<std::shared_ptr<UIViewController>> controllers;
    if (rootViewController_)
        controllers.push_back(rootViewController_);
    for (const auto& presentation : presentations()) {
        if (presentation->coversPresenter())
            controllers.clear();
        controllers.push_back(presentation->presentedViewController());
    }
    return controllers;
}

std::vector<std::shared_ptr<UIPresentationController>> UIWindow::presentations() const
{
    std::vector<std::shared_ptr<UIPresentationController>> list;
    if (rootViewController_)
        rootViewController_->appendPresentations(list);
    return list;
}

UIResponder* UIWindow::nextResponder() const { return &UIApplication::shared(); }

UIEdgeInsets UIWindow::inheritedSafeAreaInsets() const
{
    const CGRect own = frame();
    const CGRect screen = UIScreen::main().bounds();
    const CGRect safe = UIScreen::main().safeAreaInsets().inset(screen);
    return { std::max(0.0, safe.minY() - own.minY()), std::max(0.0, safe.minX() - own.minX()),
        std::max(0.0, own.maxY() - safe.maxY()), std::max(0.0, own.maxX() - safe.maxX()) };
}

void UIWindow::screenChanged(const CGRect& previousScreen, double duration)
{
    const auto keep = weak(this).lock();
    const CGRect screen = UIScreen::main().bounds();
    const bool fills = frame() == previousScreen;
    if (!fills || previousScreen == screen) {
        UIView::animate(duration, [this] {
            updateSafeArea();
            layoutIfNeeded();
        });
        return;
    }
    UIViewControllerTransitionCoordinator coordinator(std::max(duration, 0.0));
    if (const auto root = rootViewController_)
        root->viewWillTransition(screen.size(), coordinator);
    for (const auto& presentation : presentations())
        if (const auto controller = presentation->presentedViewController())
            controller->viewWillTransition(screen.size(), coordinator);
    const auto completions = std::make_shared<std::vector<std::function<void()>>>();
    const auto change = [&] {
        setFrame(screen);
        layoutIfNeeded();
        for (const auto& animation : coordinator.animations)
            animation();
        layoutIfNeeded();
    };
    UIView::animate(
        duration,
        [&] {
            if (duration > 0)
                change();
            else
                performWithoutAnimation(change); // blocks inside included
        },
        [completions](bool) {
            for (const auto& completion : *completions)
                completion();
        });
    *completions = std::move(coordinator.completions);
}

bool UIWindow::beginTouch(int identifier, UITouchType type, CGPoint point, double timestamp)
{
    const auto keep = weak(this).lock();
    changeTouch(identifier, UITouchPhase::cancelled, point, timestamp); // one that the host never ended
    const CGPoint own = { point.x - frame().x, point.y - frame().y };
    const auto hit = hitTest(own, nullptr);
    if (!hit)
        return false;
    lastTimestamp = timestamp;
    const auto touch = make<UITouch>();
    touch->identifier = identifier;
    touch->type_ = type;
    touch->timestamp_ = timestamp;
    touch->point = touch->previousPoint = own;
    touch->view_ = hit;
    touch->window_ = weak(this);
    collectRecognizers(*touch);
    withholdIfItMayScroll(touch);
    touches.push_back(touch);
    deliver(touch);
    return true;
}

bool UIWindow::changeTouch(int identifier, UITouchPhase phase, CGPoint point, double timestamp)
{
    const auto found = std::ranges::find_if(touches, [&](const auto& touch) { return touch->identifier == identifier; });
    if (found == touches.end())
        return false;
    const auto keep = weak(this).lock();
    const auto touch = *found;
    const CGPoint own = { point.x - frame().x, point.y - frame().y };
    lastTimestamp = timestamp;
    if (phase == UITouchPhase::moved && own == touch->point)
        return true;
    touch->phase_ = phase;
    touch->timestamp_ = timestamp;
    touch->previousPoint = touch->point;
    touch->point = own;
    deliver(touch);
    return true;
}

void UIWindow::cancelAllTouches(double timestamp)
{
    const auto list = touches;
    for (const auto& touch : list)
        changeTouch(
            touch->identifier, UITouchPhase::cancelled, { touch->point.x + frame().x, touch->point.y + frame().y }, timestamp);
}

void UIWindow::cancelTouchesIn(const UIView& subtree)
{
    const auto list = touches;
    for (const auto& touch : list)
        if (touch->view_->isDescendant(subtree))
            changeTouch(touch->identifier, UITouchPhase::cancelled, { touch->point.x + frame().x, touch->point.y + frame().y },
                lastTimestamp);
}

void UIWindow::collectRecognizers(UITouch& touch)
{
    for (const UIView* view = touch.view_.get(); view; view = view->superview()) {
        const auto recognizers = view->gestureRecognizers();
        for (const auto& recognizer : recognizers)
            if (recognizer->shouldReceive(touch))
                touch.recognizers.push_back(weak(recognizer));
    }
}

// Recognisers hear of it first, so that they can take the touch before its view acts on it.
void UIWindow::deliver(const std::shared_ptr<UITouch>& touch)
{
    const UITouchPhase phase = touch->phase_;
    const bool last = phase == UITouchPhase::ended || phase == UITouchPhase::cancelled;
    const UIEvent now = event();
    const auto recognizers = touch->recognizers;
    for (const auto& reference : recognizers)
        if (const auto recognizer = reference.lock())
            recognizer->deliver(phase, touch, now);
    if (last)
        std::erase(touches, touch);
    if (phase == UITouchPhase::ended)
        handOver(touch);
    if (!touch->viewCancelled && !touch->withheld)
        deliverToView(touch, phase);
    if (last)
        for (const auto& reference : recognizers)
            if (const auto recognizer = reference.lock())
                recognizer->finishTouch(*touch);
}

void UIWindow::deliverToView(const std::shared_ptr<UITouch>& touch, UITouchPhase phase)
{
    const auto view = touch->view_;
    const UITouches one { touch };
    switch (phase) {
    case UITouchPhase::began:
        view->touchesBegan(one, event());
        break;
    case UITouchPhase::moved:
        view->touchesMoved(one, event());
        break;
    case UITouchPhase::ended:
        view->touchesEnded(one, event());
        break;
    case UITouchPhase::cancelled:
        view->touchesCancelled(one, event());
        break;
    }
}

// Inside what scrolls a view hears of a touch a little later, so that a flick does not flash the button under the finger.
void UIWindow::withholdIfItMayScroll(const std::shared_ptr<UITouch>& touch)
{
    for (const UIView* view = touch->view_.get(); view; view = view->superview()) {
        const auto* scroller = dynamic_cast<const UIScrollView*>(view);
        if (!scroller || view == touch->view_.get() || !scroller->isScrollEnabled() || !scroller->delaysContentTouches())
            continue;
        touch->withheld = true;
        MainQueue::shared().asyncAfter(contentTouchDelay, [self = weak(this), waiting = std::weak_ptr(touch)] {
            const auto window = self.lock();
            const auto held = waiting.lock();
            if (window && held && std::ranges::find(window->touches, held) != window->touches.end())
                window->handOver(held);
        });
        return;
    }
}

void UIWindow::handOver(const std::shared_ptr<UITouch>& touch)
{
    if (std::exchange(touch->withheld, false) && !touch->viewCancelled)
        deliverToView(touch, UITouchPhase::began);
}

void UIWindow::takeFromView(const std::shared_ptr<UITouch>& touch)
{
    if (std::exchange(touch->viewCancelled, true) || std::exchange(touch->withheld, false))
        return;
    if (touch->phase_ != UITouchPhase::began)
        deliverToView(touch, UITouchPhase::cancelled);
}

UIEvent UIWindow::event() const
{
    UIEvent event;
    event.touches = touches;
    event.timestamp_ = lastTimestamp;
    return event;
}

} // namespace platform
