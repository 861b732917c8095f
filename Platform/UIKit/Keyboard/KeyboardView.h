#pragma once

#include "Platform/UIKit/Keyboard/KeyboardKey.h"
#include "Platform/UIKit/Keyboard/KeyboardMetrics.h"
#include "Platform/UIKit/Keyboard/KeyboardPainter.h"
#include "Platform/UIKit/UIView.h"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

class NSTimer;

// Shows a keyboard and turns fingers into strikes of its keys. The rows are one picture, drawn when other keys are to be seen; a
// key is a rectangle of it. A pressed key lies over it as a small picture of its own, so nothing else is drawn again.
class KeyboardView final : public UIView {
public:
    struct Look {
        KeyboardMetrics metrics;
        KeyboardPlane plane;
        bool dark = false;
        bool mirrored = false; // the strip begins at the right
        CGFloat scale = 1; // pixels a point
        std::vector<UIEditAction> usable; // editing keys that do something now
        bool operator==(const Look&) const = default;
    };

    KeyboardView();

    void show(const Look& look);
    const KeyboardKeys& keys() const { return keys_; }
    void dropPictures(); // until it is shown again

    std::function<void(const KeyboardKey& key, double time)> onStrike; // seconds
    std::function<void(CGSize way)> onDrag; // of the panel by its grip, points

    // UIResponder
    void touchesBegan(const UITouches& touches, const UIEvent& event) override;
    void touchesMoved(const UITouches& touches, const UIEvent& event) override;
    void touchesEnded(const UITouches& touches, const UIEvent& event) override;
    void touchesCancelled(const UITouches& touches, const UIEvent& event) override;
    // UIView
    std::vector<UIAccessibilityElement> accessibilityElements() const override;

protected:
    // UIView
    void layoutSubviews() override;

private:
    // The finger that counts, and the key it would strike.
    struct Press {
        std::shared_ptr<UITouch> touch;
        KeyboardKey key;
        bool isOver = true; // the finger is still on it
    };

    void placeLayers();
    const KeyboardKey* keyAt(CGPoint point) const;
    void beginPress(const std::shared_ptr<UITouch>& touch);
    void endPress(bool strikes, double time);
    void strike(const KeyboardKey& key, double time);
    void repeatErase();
    void stopErasing();
    void showPress();

    Look look;
    KeyboardKeys keys_;
    std::optional<Look> drawn; // what the pictures show; nothing while there are none
    std::optional<Press> press;
    std::shared_ptr<UITouch> dragging;
    CGPoint dragPoint; // where the finger was, screen points
    std::shared_ptr<NSTimer> eraseTimer; // while delete is held
    std::shared_ptr<CALayer> body = make<CALayer>(); // cut to round corners when the panel floats
    std::shared_ptr<CALayer> stripLayer = make<CALayer>();
    std::shared_ptr<CALayer> rowsLayer = make<CALayer>();
    std::shared_ptr<CALayer> pressLayer = make<CALayer>(); // over both, since a balloon lies on both
};

} // namespace platform
