#include "Platform/UIKit/UIGestureRecognizer.h"

#include "Platform/UIKit/UITouch.h"
#include "Platform/UIKit/UIView.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>

namespace platform {

using State = UIGestureRecognizerState;

UIGestureRecognizer::UIGestureRecognizer(Action action) { addAction(std::move(action)); }

UIGestureRecognizer::~UIGestureRecognizer() = default;

void UIGestureRecognizer::addAction(Action action)
{
    if (action)
        actions.push_back(std::move(action));
}

void UIGestureRecognizer::setEnabled(bool newEnabled)
{
    enabled = newEnabled;
    if (!enabled)
        cancel();
}

CGPoint UIGestureRecognizer::location(const UIView* view) const
{
    return view ? view->convertFrom(lastLocation, nullptr) : lastLocation;
}

void UIGestureRecognizer::touchesCancelled(const UITouches& /*touches*/, const UIEvent& /*event*/)
{
    setState(isUnderWay() ? State::cancelled : State::failed);
}

void UIGestureRecognizer::setState(State newState)
{
    const auto keep = weak(this).lock();
    const bool hasBegun = newState == State::began || newState == State::changed || newState == State::ended;
    if (state_ == State::failed || state_ == State::cancelled || (state_ == State::ended && newState != State::possible))
        return; // until it is reset
    if (state_ == State::possible && hasBegun) {
        if (!mayBegin()) {
            state_ = State::failed;
            return;
        }
        state_ = newState;
        preventOthers();
        runActions();
        return;
    }
    state_ = newState;
    if (hasBegun || newState == State::cancelled)
        runActions();
}

bool UIGestureRecognizer::isUnderWay() const { return state_ == State::began || state_ == State::changed; }

void UIGestureRecognizer::cancel()
{
    const auto keep = weak(this).lock();
    if (touches_.empty())
        return;
    setState(isUnderWay() ? State::cancelled : State::failed);
    touches_.clear();
    restart();
}

bool UIGestureRecognizer::shouldReceive(UITouch& touch)
{
    if (!enabled)
        return false;
    const auto delegate = delegate_.lock();
    return !delegate || delegate->gestureRecognizerShouldReceive(*this, touch);
}

void UIGestureRecognizer::deliver(UITouchPhase phase, const std::shared_ptr<UITouch>& touch, const UIEvent& event)
{
    const auto keep = weak(this).lock();
    const bool known = std::ranges::find(touches_, touch) != touches_.end();
    if (phase == UITouchPhase::began)
        touches_.push_back(touch);
    else if (!known)
        return; // it was switched off in between
    CGPoint sum;
    for (const auto& each : touches_) {
        const CGPoint point = each->location(nullptr);
        sum = { sum.x + point.x, sum.y + point.y };
    }
    lastLocation = { sum.x / double(touches_.size()), sum.y / double(touches_.size()) };
    if (state_ == State::failed || state_ == State::cancelled || state_ == State::ended)
        return; // done with these touches
    const UITouches one { touch };
    switch (phase) {
    case UITouchPhase::began:
        touchesBegan(one, event);
        break;
    case UITouchPhase::moved:
        touchesMoved(one, event);
        break;
    case UITouchPhase::ended:
        touchesEnded(one, event);
        break;
    case UITouchPhase::cancelled:
        touchesCancelled(one, event);
        break;
    }
}

void UIGestureRecognizer::finishTouch(const UITouch& touch)
{
    std::erase_if(touches_, [&](const auto& each) { return each.get() == &touch; });
    if (touches_.empty())
        restart();
}

void UIGestureRecognizer::restart()
{
    state_ = State::possible;
    reset();
}

bool UIGestureRecognizer::mayBegin()
{
    if (const auto delegate = delegate_.lock(); delegate && !delegate->gestureRecognizerShouldBegin(*this))
        return false;
    const auto touched = touches_.empty() ? nullptr : touches_.front()->view();
    return enabled && view_ && (!touched || touched->gestureRecognizerShouldBegin(*this));
}

void UIGestureRecognizer::runActions()
{
    const auto list = actions;
    for (const Action& action : list)
        action(*this);
}

void UIGestureRecognizer::preventOthers()
{
    const auto simultaneous = [this](UIGestureRecognizer& other) {
        const auto own = delegate_.lock(), others = other.delegate_.lock();
        return (own && own->gestureRecognizerShouldRecognizeSimultaneously(*this, other))
            || (others && others->gestureRecognizerShouldRecognizeSimultaneously(other, *this));
    };
    const auto list = touches_;
    for (const auto& touch : list) {
        const auto recognizers = touch->recognizers;
        for (const auto& reference : recognizers) {
            const auto other = reference.lock();
            if (other && other.get() != this && !simultaneous(*other))
                other->setState(other->isUnderWay() ? State::cancelled : State::failed);
        }
        if (const auto window = cancelsTouchesInView_ ? touch->window() : nullptr)
            window->takeFromView(touch);
    }
}

} // namespace platform
