#include "Platform/UIKit/Keyboard/ScreenKeyboard.h"

#include "Platform/Foundation/MainQueue.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/UIKit/Keyboard/KeyboardLayout.h"
#include "Platform/UIKit/Keyboard/KeyboardView.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIKeyboard.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace platform {

namespace {

constexpr double slideDuration = 0.25; // seconds
constexpr CGFloat panelMargin = 12; // points that the floating panel keeps from the screen's edges

KeyboardMetrics metricsNow(bool floats)
{
    const auto& screen = UIScreen::main();
    return KeyboardMetrics::of(
        screen.bounds().size(), screen.safeAreaInsets(), screen.traitCollection().userInterfaceIdiom, floats);
}

// A view's own traits, where the first responder is one: a dark page gets a dark keyboard.
const UITraitCollection& traitsOf(const UIResponder* responder)
{
    const auto* view = dynamic_cast<const UIView*>(responder);
    return view ? view->traitCollection() : UIScreen::main().traitCollection();
}

bool types(const KeyboardKey& key, std::string_view character)
{
    switch (key.role) {
    case KeyboardRole::character:
    case KeyboardRole::emoji:
        return key.text == character;
    case KeyboardRole::space:
        return character == " ";
    case KeyboardRole::enter:
        return character == "\n";
    case KeyboardRole::erase:
        return character == "\b";
    default:
        return false;
    }
}

const KeyboardKey* find(const KeyboardKeys& keys, const std::function<bool(const KeyboardKey&)>& matches)
{
    const auto found = std::ranges::find_if(keys, matches);
    return found == keys.end() ? nullptr : &*found;
}

const KeyboardKey* findRole(const KeyboardKeys& keys, KeyboardRole role)
{
    return find(keys, [role](const KeyboardKey& key) { return key.role == role; });
}

// The key that brings `wanted` nearer. Symbols lie behind the numbers.
const KeyboardKey* turnTowards(const KeyboardKeys& keys, const KeyboardPlane& present, const KeyboardPlane& wanted)
{
    if (wanted.script != present.script)
        return findRole(keys, KeyboardRole::globe);
    if (wanted.page == present.page)
        return findRole(keys, KeyboardRole::shift);
    const auto exact
        = find(keys, [&](const KeyboardKey& key) { return key.role == KeyboardRole::page && key.page == wanted.page; });
    return exact ? exact : findRole(keys, KeyboardRole::page);
}

} // namespace

ScreenKeyboard& ScreenKeyboard::shared()
{
    static auto& keyboard = *new ScreenKeyboard; // never destroyed
    return keyboard;
}

CGFloat ScreenKeyboard::coveredHeight() const { return there && !floatsNow() ? metricsNow(false).size.height : 0; }

std::optional<ScreenKeyboard::Step> ScreenKeyboard::stepTowards(std::string_view character) const
{
    if (!there)
        return std::nullopt;
    const auto onScreen = [this](const KeyboardKey& key, bool last) {
        return Step { key.cap.offsetBy(window->frame().x, window->frame().y), last };
    };
    const auto typesIt = [&](const KeyboardKey& key) { return types(key, character); };
    const auto& keys = view->keys();
    if (const auto* key = find(keys, typesIt))
        return onScreen(*key, true);
    const auto& present = typing.plane();
    for (const auto script : { present.script, KeyboardScript::latin, KeyboardScript::arabic })
        for (const auto page : { KeyboardPage::letters, KeyboardPage::numbers, KeyboardPage::symbols })
            for (const auto shift : { KeyboardShift::off, KeyboardShift::once }) {
                const KeyboardPlane wanted { script, page, shift, present.returnKey };
                if (!find(keyboardKeys(metricsNow(floatsNow()), wanted, false, 1), typesIt))
                    continue;
                const auto* key = turnTowards(keys, present, wanted);
                return key ? std::optional(onScreen(*key, false)) : std::nullopt;
            }
    return std::nullopt;
}

void ScreenKeyboard::attach()
{
    detach();
    attached = true;
    typing = {};
    typing.onDock = [this] { setFloating(!floating, slideDuration); };
}

void ScreenKeyboard::detach()
{
    attached = hardware = floating = settling = there = toldCovering = false;
    served = {};
    told = {};
    panelOrigin.reset();
    window = nullptr;
    view = nullptr;
}

void ScreenKeyboard::setHardwareKeyboard(bool connected, double duration)
{
    if (std::exchange(hardware, connected) != connected)
        arrange(duration);
}

void ScreenKeyboard::setFloating(bool floats, double duration)
{
    if (std::exchange(floating, floats) != floats)
        arrange(duration);
}

void ScreenKeyboard::deviceChanged(double duration) { arrange(duration); }

// Looks later, since a change of fields is a resigning and a becoming.
void ScreenKeyboard::firstResponderChanged()
{
    if (!attached || std::exchange(settling, true))
        return;
    MainQueue::shared().async([this] {
        if (std::exchange(settling, false))
            settle();
    });
}

void ScreenKeyboard::textInputChanged()
{
    const auto responder = servedResponder();
    if (!responder || settling)
        return;
    typing.follow(*responder->textInput());
    if (there)
        refresh();
}

void ScreenKeyboard::firstRespondersTraitsChanged()
{
    if (there && !settling)
        refresh();
}

std::shared_ptr<UIResponder> ScreenKeyboard::servedResponder() const
{
    auto responder = served.lock();
    return responder && responder->textInput() ? responder : nullptr;
}

bool ScreenKeyboard::isWanted() const { return attached && !hardware && servedResponder(); }

bool ScreenKeyboard::floatsNow() const
{
    return floating && UIScreen::main().traitCollection().userInterfaceIdiom == UIUserInterfaceIdiom::pad;
}

CGRect ScreenKeyboard::place() const
{
    const CGRect screen = UIScreen::main().bounds();
    const CGSize size = metricsNow(floatsNow()).size;
    if (!floatsNow())
        return { 0, screen.height - size.height, size.width, size.height };
    const CGRect room = UIScreen::main().safeAreaInsets().inset(screen).insetBy(panelMargin, panelMargin);
    const CGPoint wanted = panelOrigin.value_or(CGPoint { room.midX() - size.width / 2, room.maxY() - size.height });
    const auto held = [](CGFloat value, CGFloat from, CGFloat to) { return std::max(from, std::min(value, to)); };
    return { held(wanted.x, room.x, room.maxX() - size.width), held(wanted.y, room.y, room.maxY() - size.height), size.width,
        size.height };
}

void ScreenKeyboard::settle()
{
    if (!attached)
        return;
    const auto responder = UIApplication::shared().firstResponder();
    auto* input = responder ? responder->textInput() : nullptr;
    const auto former = servedResponder();
    served = input ? weak(responder) : WeakRef<UIResponder>();
    if (input && responder != former)
        typing.begin(*input, traitsOf(responder.get()).isRightToLeft());
    arrange(slideDuration, input && !former);
}

// Brings the keyboard to where it belongs now, and says so first where that is new to the listeners, or `tells` asks for it.
void ScreenKeyboard::arrange(double duration, bool tells)
{
    if (!attached)
        return;
    const bool comes = isWanted(), covers = comes && !floatsNow();
    const CGRect screen = UIScreen::main().bounds();
    const CGFloat height = metricsNow(false).size.height;
    const CGRect end { 0, covers ? screen.height - height : screen.height, screen.width, height };
    there = comes;
    if (comes)
        prepareWindow();
    if (tells || ((covers || toldCovering) && end != told))
        tell(end, covers, duration);
    if (there != comes) // a listener has changed its mind
        return;
    if (comes)
        enter(duration);
    else if (window && !window->isHidden())
        leave(duration);
}

void ScreenKeyboard::tell(const CGRect& frame, bool covers, double duration)
{
    told = frame;
    toldCovering = covers;
    NotificationCenter::defaultCenter().post(UIKeyboard::willChangeFrameNotification, nullptr,
        { { UIKeyboard::frameEndUserInfoKey, frame }, { UIKeyboard::animationDurationUserInfoKey, duration } });
}

// Shows the right keys where the move to their place begins: below the screen, or where they are.
void ScreenKeyboard::prepareWindow()
{
    const CGRect screen = UIScreen::main().bounds();
    if (!window) {
        window = make<UIWindow>(CGRect { 0, screen.height, 0, 0 });
        window->setAccessibilityIdentifier("keyboardWindow");
        window->setWindowLevel(UIWindowLevel::keyboard);
        view = make<KeyboardView>();
        view->onStrike = [this](const KeyboardKey& key, double time) { strike(key, time); };
        view->onDrag = [this](CGSize way) { movePanel(way); };
        window->addSubview(view);
    }
    const bool wasShown = !window->isHidden(), floated = window->bounds().width < screen.width && wasShown;
    const CGRect end = place(), former = window->frame();
    UIView::performWithoutAnimation([&] {
        if (wasShown && former.size() == end.size())
            return;
        window->layer()->removeAllAnimations();
        const bool goesOn = wasShown && floated == floatsNow();
        const CGFloat from = floatsNow() ? end.y : goesOn ? std::clamp(former.y, end.y, screen.height) : screen.height;
        window->setFrame({ end.x, from, end.width, end.height });
        window->setAlpha(floatsNow() ? 0 : 1);
        view->setFrame({ 0, 0, end.width, end.height });
        window->setHidden(false);
    });
    refresh();
}

void ScreenKeyboard::enter(double duration)
{
    UIView::animate(duration, [this] {
        window->setFrame(place());
        window->setAlpha(1);
    });
}

void ScreenKeyboard::leave(double duration)
{
    const CGRect former = window->frame();
    const bool floated = former.width < UIScreen::main().bounds().width;
    UIView::animate(
        duration,
        [&] {
            if (floated)
                window->setAlpha(0);
            else
                window->setFrame({ former.x, UIScreen::main().bounds().height, former.width, former.height });
        },
        [this, leaving = weak(window)](bool) {
            const auto left = leaving.lock();
            if (there || !left || left != window)
                return;
            window->setHidden(true);
            view->dropPictures();
        });
}

void ScreenKeyboard::refresh()
{
    const auto responder = servedResponder();
    if (!responder || !view)
        return;
    auto& input = *responder->textInput();
    KeyboardView::Look look { .metrics = metricsNow(floatsNow()),
        .plane = typing.plane(),
        .dark = traitsOf(responder.get()).isDark(),
        .mirrored = UIScreen::main().traitCollection().isRightToLeft(),
        .scale = UIScreen::main().scale(),
        .usable = {} };
    for (const auto action : { UIEditAction::cut, UIEditAction::copy, UIEditAction::paste, UIEditAction::selectAll })
        if (input.canPerform(action))
            look.usable.push_back(action);
    view->show(look);
}

void ScreenKeyboard::strike(const KeyboardKey& key, double time)
{
    typing.strike(key, time);
    refresh();
}

void ScreenKeyboard::movePanel(CGSize way)
{
    const CGRect frame = window->frame();
    panelOrigin = CGPoint { frame.x + way.width, frame.y + way.height };
    window->setFrame(place());
}

} // namespace platform
