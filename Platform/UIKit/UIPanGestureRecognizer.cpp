#include "Platform/UIKit/UIPanGestureRecognizer.h"

#include "Platform/UIKit/UITouch.h"
#include "Platform/UIKit/UIView.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

using State = UIGestureRecognizerState;

constexpr double slop = 10; // points that a finger may stray before it counts as moving
constexpr double window = 0.1; // seconds that the velocity is taken over

} // namespace

CGPoint UIPanGestureRecognizer::translation(const UIView* view) const
{
    return inAxesOf(view, { now.x - origin.x, now.y - origin.y });
}

void UIPanGestureRecognizer::setTranslation(CGPoint translation, const UIView* view)
{
    const CGPoint here = view ? view->convertFrom(now, nullptr) : now;
    const CGPoint start { here.x - translation.x, here.y - translation.y };
    origin = view ? view->convertTo(start, nullptr) : start;
}

CGPoint UIPanGestureRecognizer::velocity(const UIView* view) const
{
    if (samples.size() < 2 || lastTime - samples.back().time > window)
        return {};
    const Sample& first = samples.front();
    const Sample& last = samples.back();
    const double seconds = lastTime - first.time;
    if (seconds <= 0)
        return {};
    return inAxesOf(view, { (last.point.x - first.point.x) / seconds, (last.point.y - first.point.y) / seconds });
}

CGPoint UIPanGestureRecognizer::inAxesOf(const UIView* view, CGPoint vector)
{
    if (!view)
        return vector;
    const CGPoint zero = view->convertFrom(CGPoint {}, nullptr), end = view->convertFrom(vector, nullptr);
    return { end.x - zero.x, end.y - zero.y };
}

void UIPanGestureRecognizer::touchesBegan(const UITouches& touches, const UIEvent& /*event*/)
{
    if (!followed.expired())
        return;
    followed = touches.front();
    record(*touches.front());
    down = origin = now;
}

void UIPanGestureRecognizer::touchesMoved(const UITouches& touches, const UIEvent& /*event*/)
{
    if (followed.lock() != touches.front())
        return;
    record(*touches.front());
    if (state() == State::began || state() == State::changed) {
        setState(State::changed);
        return;
    }
    const CGPoint way { now.x - down.x, now.y - down.y };
    if (std::hypot(way.x, way.y) < slop)
        return;
    origin = now; // what it moves does not jump by the slop
    setState(mayBegin(way) ? State::began : State::failed);
}

void UIPanGestureRecognizer::touchesEnded(const UITouches& touches, const UIEvent& /*event*/)
{
    if (followed.lock() != touches.front())
        return;
    lastTime = touches.front()->timestamp();
    now = touches.front()->location(nullptr);
    setState(state() == State::possible ? State::failed : State::ended);
}

void UIPanGestureRecognizer::reset()
{
    followed.reset();
    samples.clear();
}

void UIPanGestureRecognizer::record(UITouch& touch)
{
    now = touch.location(nullptr);
    lastTime = touch.timestamp();
    samples.push_back({ lastTime, now });
    while (samples.size() > 2 && lastTime - samples.front().time > window)
        samples.erase(samples.begin());
}

} // namespace platform
