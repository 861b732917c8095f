#include "Platform/UIKit/Keyboard/KeyboardView.h"

#include "Platform/Foundation/Clock.h"
#include "Platform/Foundation/NSTimer.h"
#include "Platform/UIKit/Keyboard/KeyboardLayout.h"
#include "Platform/UIKit/UITouch.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>

namespace platform {

namespace {

constexpr double eraseDelay = 0.5; // seconds that delete is held before it repeats
constexpr double eraseInterval = 0.1;
constexpr CGFloat panelRadius = 12; // points
constexpr CGFloat panelShadowRadius = 10;
constexpr double panelShadowOpacity = 0.3;
constexpr CGFloat balloonShadowRadius = 2;
constexpr double balloonShadowOpacity = 0.35;

const char* identifier(const KeyboardKey& key)
{
    static constexpr const char* edits[] = { "cutKey", "copyKey", "pasteKey", "selectAllKey" };
    switch (key.role) {
    case KeyboardRole::space:
        return "spaceKey";
    case KeyboardRole::shift:
        return "shiftKey";
    case KeyboardRole::erase:
        return "deleteKey";
    case KeyboardRole::enter:
        return "returnKey";
    case KeyboardRole::page:
        return "pageKey";
    case KeyboardRole::globe:
        return "globeKey";
    case KeyboardRole::hide:
        return "hideKey";
    case KeyboardRole::dock:
        return "dockKey";
    case KeyboardRole::grip:
        return "grip";
    case KeyboardRole::edit:
        return edits[std::size_t(key.action)];
    case KeyboardRole::character:
    case KeyboardRole::emoji:
        break;
    }
    return "";
}

} // namespace

KeyboardView::KeyboardView()
{
    setAccessibilityIdentifier("keyboard");
    body->addSublayer(stripLayer);
    body->addSublayer(rowsLayer);
    layer()->addSublayer(body);
    layer()->addSublayer(pressLayer);
    pressLayer->setHidden(true);
    pressLayer->setShadowOffset({ 0, 1 });
    pressLayer->setShadowRadius(balloonShadowRadius);
}

void KeyboardView::show(const Look& next)
{
    if (look == next && !keys_.empty())
        return;
    const bool sameMeasures = look.metrics == next.metrics && look.dark == next.dark && look.scale == next.scale;
    if (!sameMeasures) {
        dropPictures();
        endPress(false, 0);
    }
    look = next;
    keys_ = keyboardKeys(look.metrics, look.plane, look.mirrored, look.scale);
    for (auto& key : keys_)
        key.enabled = key.role != KeyboardRole::edit || std::ranges::find(look.usable, key.action) != look.usable.end();
    placeLayers();
    setNeedsLayout();
}

void KeyboardView::dropPictures()
{
    drawn.reset();
    stripLayer->setContents(nullptr);
    rowsLayer->setContents(nullptr);
    setNeedsLayout();
}

void KeyboardView::placeLayers()
{
    const auto& colors = KeyboardColors::of(look.dark);
    const KeyboardPainter painter(look.metrics, look.dark, look.scale);
    const CGRect whole { 0, 0, look.metrics.size.width, look.metrics.size.height };
    const bool floats = look.metrics.form == KeyboardForm::floating;
    setBackgroundColor(floats ? std::nullopt : std::optional(UIColor(colors.background)));
    body->setFrame(whole);
    body->setBackgroundColor(colors.background);
    body->setCornerRadius(floats ? panelRadius : 0);
    body->setMasksToBounds(floats);
    stripLayer->setFrame(painter.stripRect());
    rowsLayer->setFrame(painter.rowsRect());
    layer()->setShadowPath(floats ? CGPath::roundedRect(whole, panelRadius) : nullptr);
    layer()->setShadowRadius(panelShadowRadius);
    layer()->setShadowOffset({ 0, 4 });
    layer()->setShadowOpacity(floats ? panelShadowOpacity : 0);
}

void KeyboardView::layoutSubviews()
{
    UIView::layoutSubviews();
    if (keys_.empty() || !window() || window()->isHidden())
        return;
    const KeyboardPainter painter(look.metrics, look.dark, look.scale);
    if (!drawn || drawn->plane != look.plane)
        rowsLayer->setContents(painter.rows(keys_));
    if (!drawn || drawn->usable != look.usable || drawn->mirrored != look.mirrored)
        stripLayer->setContents(painter.strip(keys_));
    drawn = look;
}

std::vector<UIAccessibilityElement> KeyboardView::accessibilityElements() const
{
    std::vector<UIAccessibilityElement> elements;
    elements.reserve(keys_.size());
    for (const auto& key : keys_)
        elements.push_back({ identifier(key), key.text, key.cap, key.enabled, key.selected });
    return elements;
}

const KeyboardKey* KeyboardView::keyAt(CGPoint point) const
{
    const auto found = std::ranges::find_if(keys_, [&](const KeyboardKey& key) { return key.reach.contains(point); });
    return found == keys_.end() ? nullptr : &*found;
}

// Fast fingers overlap: the next one coming down strikes what the former one is on.
void KeyboardView::touchesBegan(const UITouches& touches, const UIEvent& /*event*/)
{
    for (const auto& touch : touches) {
        endPress(true, touch->timestamp());
        beginPress(touch);
    }
}

void KeyboardView::touchesMoved(const UITouches& touches, const UIEvent& /*event*/)
{
    for (const auto& touch : touches) {
        const CGPoint point = touch->location(this);
        if (touch == dragging) {
            const CGPoint now { point.x + window()->frame().x, point.y + window()->frame().y };
            const CGSize way { now.x - dragPoint.x, now.y - dragPoint.y };
            dragPoint = now;
            if (onDrag)
                onDrag(way);
        } else if (press && press->touch == touch) {
            const auto* key = keyAt(point);
            if (key && press->key.typesText() && key->typesText())
                press->key = *key;
            press->isOver = key && key->cap == press->key.cap;
            if (!press->isOver)
                stopErasing();
            showPress();
        }
    }
}

void KeyboardView::touchesEnded(const UITouches& touches, const UIEvent& /*event*/)
{
    for (const auto& touch : touches) {
        if (touch == dragging)
            dragging.reset();
        else if (press && press->touch == touch)
            endPress(true, touch->timestamp());
    }
}

void KeyboardView::touchesCancelled(const UITouches& touches, const UIEvent& /*event*/)
{
    for (const auto& touch : touches) {
        if (touch == dragging)
            dragging.reset();
        else if (press && press->touch == touch)
            endPress(false, touch->timestamp());
    }
}

void KeyboardView::beginPress(const std::shared_ptr<UITouch>& touch)
{
    const CGPoint point = touch->location(this);
    const auto* found = keyAt(point);
    if (!found || !found->enabled)
        return;
    const KeyboardKey key = *found; // a strike may replace the keys
    if (key.role == KeyboardRole::grip) {
        dragging = touch;
        dragPoint = { point.x + window()->frame().x, point.y + window()->frame().y };
        return;
    }
    press = Press { touch, key };
    showPress();
    if (!key.actsOnTouch())
        return;
    if (key.role == KeyboardRole::erase)
        eraseTimer = NSTimer::scheduledTimer(eraseDelay, Repeats::no, [self = weak(this)](NSTimer&) {
            if (const auto view = self.lock())
                view->repeatErase();
        });
    strike(key, touch->timestamp());
}

void KeyboardView::endPress(bool strikes, double time)
{
    stopErasing();
    const auto ended = std::exchange(press, std::nullopt);
    if (!ended)
        return;
    showPress();
    if (strikes && ended->isOver && !ended->key.actsOnTouch())
        strike(ended->key, time);
}

void KeyboardView::strike(const KeyboardKey& key, double time)
{
    if (const auto callback = onStrike)
        callback(key, time);
}

void KeyboardView::repeatErase()
{
    if (!press || press->key.role != KeyboardRole::erase)
        return;
    eraseTimer = NSTimer::scheduledTimer(eraseInterval, Repeats::no, [self = weak(this)](NSTimer&) {
        if (const auto view = self.lock())
            view->repeatErase();
    });
    strike(KeyboardKey(press->key), Clock::current().now());
}

void KeyboardView::stopErasing()
{
    if (eraseTimer)
        eraseTimer->invalidate();
    eraseTimer = nullptr;
}

// Shift and the page keys answer with other keys; they need nothing over them.
void KeyboardView::showPress()
{
    const bool visible
        = press && press->isOver && press->key.role != KeyboardRole::shift && press->key.role != KeyboardRole::page;
    pressLayer->setHidden(!visible);
    if (!visible) {
        pressLayer->setContents(nullptr);
        return;
    }
    const auto shown = KeyboardPainter(look.metrics, look.dark, look.scale).press(press->key);
    pressLayer->setFrame(shown.frame);
    pressLayer->setContents(shown.picture);
    pressLayer->setShadowPath(shown.shadow);
    pressLayer->setShadowOpacity(shown.shadow ? balloonShadowOpacity : 0);
}

} // namespace platform
