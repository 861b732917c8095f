#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/UIKit/UIResponder.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class UIGestureRecognizer;
class UIView;
enum class UITouchPhase : unsigned char;

// A discrete gesture goes from possible to ended (recognised) or failed; a continuous one through began and changed.
enum class UIGestureRecognizerState : unsigned char { possible, began, changed, ended, cancelled, failed };

class UIGestureRecognizerDelegate {
public:
    virtual ~UIGestureRecognizerDelegate() = default;
    virtual bool gestureRecognizerShouldBegin(UIGestureRecognizer& /*recognizer*/) { return true; }
    virtual bool gestureRecognizerShouldReceive(UIGestureRecognizer& /*recognizer*/, UITouch& /*touch*/) { return true; }
    virtual bool gestureRecognizerShouldRecognizeSimultaneously(
        UIGestureRecognizer& /*recognizer*/, UIGestureRecognizer& /*other*/)
    {
        return false;
    }
};

// Watches the touches that come down in its view or below. The first one to recognise makes the others on the same touches fail,
// unless either delegate lets both run, and takes the touches from their view when cancelsTouchesInView says so.
class UIGestureRecognizer : public NSObject {
public:
    using Action = std::function<void(UIGestureRecognizer&)>;

    explicit UIGestureRecognizer(Action action = {});
    ~UIGestureRecognizer() override;

    // Runs at every state from began on, for a discrete gesture once; several are run in the order of adding.
    void addAction(Action action);
    UIGestureRecognizerState state() const { return state_; }
    UIView* view() const { return view_; }
    bool isEnabled() const { return enabled; }
    void setEnabled(bool enabled); // switching off cancels a gesture under way
    bool cancelsTouchesInView() const { return cancelsTouchesInView_; }
    void setCancelsTouchesInView(bool cancels) { cancelsTouchesInView_ = cancels; }
    // Whether the view hears of a touch's end only once this one is decided. All of ours are decided by then, so nothing waits:
    // it tells recognisers apart.
    bool delaysTouchesEnded() const { return delaysTouchesEnded_; }
    void setDelaysTouchesEnded(bool delays) { delaysTouchesEnded_ = delays; }
    void setDelegate(std::weak_ptr<UIGestureRecognizerDelegate> delegate) { delegate_ = std::move(delegate); }
    const std::string& name() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }
    // The middle of its touches, in that view's coordinates (null: the window's); the last known one after they ended.
    CGPoint location(const UIView* view) const;
    std::size_t numberOfTouches() const { return touches_.size(); }

protected:
    // Overrides look at the touches (in the given order) and set the state. Those that came before are in activeTouches.
    virtual void touchesBegan(const UITouches& /*touches*/, const UIEvent& /*event*/) { }
    virtual void touchesMoved(const UITouches& /*touches*/, const UIEvent& /*event*/) { }
    virtual void touchesEnded(const UITouches& /*touches*/, const UIEvent& /*event*/) { }
    virtual void touchesCancelled(const UITouches& touches, const UIEvent& event);
    virtual void reset() { } // before the next gesture
    const UITouches& activeTouches() const { return touches_; } // down or ending now
    // Leaving possible asks the delegate and the touched view first, and fails when one of them refuses.
    void setState(UIGestureRecognizerState state);

private:
    friend class UIView;
    friend class UIWindow;

    bool shouldReceive(UITouch& touch);
    void deliver(UITouchPhase phase, const std::shared_ptr<UITouch>& touch, const UIEvent& event);
    void finishTouch(const UITouch& touch);
    void cancel();
    void restart();
    bool isUnderWay() const;
    bool mayBegin();
    void runActions();
    void preventOthers();

    std::vector<Action> actions;
    UITouches touches_;
    std::weak_ptr<UIGestureRecognizerDelegate> delegate_;
    std::string name_;
    CGPoint lastLocation; // window coordinates
    UIGestureRecognizerState state_ = UIGestureRecognizerState::possible;
    bool enabled = true;
    bool cancelsTouchesInView_ = true;
    bool delaysTouchesEnded_ = true;

    UIView* view_ = nullptr; // which clears it
};

} // namespace platform
