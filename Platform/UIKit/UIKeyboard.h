#pragma once

namespace platform {

// What is posted on the default notification centre before the on-screen keyboard moves, without a sender: an animation block of
// that duration, begun by a listener, moves along with it.
struct UIKeyboard {
    static constexpr const char* willChangeFrameNotification = "UIKeyboardWillChangeFrameNotification";
    // CGRect: where it will be, in screen points; below the screen when it leaves.
    static constexpr const char* frameEndUserInfoKey = "UIKeyboardFrameEndUserInfoKey";
    // double: seconds that its move takes.
    static constexpr const char* animationDurationUserInfoKey = "UIKeyboardAnimationDurationUserInfoKey";
};

} // namespace platform
