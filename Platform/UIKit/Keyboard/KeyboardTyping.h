#pragma once

#include "Platform/UIKit/Keyboard/KeyboardKey.h"

#include <functional>
#include <string>

namespace platform {

// What striking the keys of an on-screen keyboard does to the text and to the keys themselves. Main thread.
class KeyboardTyping {
public:
    const KeyboardPlane& plane() const { return plane_; }

    // Another text is being written in: it begins with letters, in the script of the interface unless one was chosen.
    void begin(UITextInput& input, bool rightToLeft);
    // The text, its caret or selection may be others: capitals follow.
    void follow(UITextInput& input);
    // `time`: seconds. Acts on the application's first responder, which may be another one, or none, afterwards.
    void strike(const KeyboardKey& key, double time);

    std::function<void()> onDock; // the key between the screen's edge and the floating panel

private:
    void strikeSpace(double time);
    void strikeShift(double time);
    void capitalize(UITextInput& input);

    KeyboardPlane plane_;
    std::string before; // the text before the caret as it was last seen
    double shiftTime = never;
    double spaceTime = never;
    bool scriptChosen = false;

    static constexpr double never = -1e9; // seconds
};

// Whether the next letter is a capital.
bool beginsWithCapital(const std::string& textBefore, UITextAutocapitalizationType type);

} // namespace platform
