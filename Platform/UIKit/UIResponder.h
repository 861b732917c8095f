#pragma once

#include "Platform/Foundation/NSObject.h"

#include <memory>
#include <vector>

namespace platform {

class UIEvent;
class UITouch;

// The touches that one call is about; never empty.
using UITouches = std::vector<std::shared_ptr<UITouch>>;

// Something in the chain along which touches travel: a view, its controller, the superview ..., the window, the application. What
// a responder does not handle goes to the next one.
class UIResponder : public NSObject {
public:
    virtual UIResponder* nextResponder() const { return nullptr; }

    virtual void touchesBegan(const UITouches& touches, const UIEvent& event);
    virtual void touchesMoved(const UITouches& touches, const UIEvent& event);
    virtual void touchesEnded(const UITouches& touches, const UIEvent& event);
    virtual void touchesCancelled(const UITouches& touches, const UIEvent& event);
};

} // namespace platform
