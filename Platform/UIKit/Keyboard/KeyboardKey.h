#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/UIKit/UITextInput.h"

#include <string>
#include <vector>

namespace platform {

enum class KeyboardScript : unsigned char { latin, arabic };
enum class KeyboardPage : unsigned char { letters, numbers, symbols };
enum class KeyboardShift : unsigned char { off, once, locked };

// What the keys of a keyboard say at present.
struct KeyboardPlane {
    KeyboardScript script = KeyboardScript::latin;
    KeyboardPage page = KeyboardPage::letters;
    KeyboardShift shift = KeyboardShift::off;
    UIReturnKeyType returnKey = UIReturnKeyType::normal;
    bool operator==(const KeyboardPlane&) const = default;
};

enum class KeyboardRole : unsigned char {
    character,
    emoji,
    space,
    shift,
    erase,
    enter,
    page,
    globe, // to the other script
    hide,
    dock, // between the screen's lower edge and the floating panel
    edit,
    grip, // by which the floating panel is moved
};

// One key: a rectangle of the keyboard's picture and what a finger there does.
struct KeyboardKey {
    KeyboardRole role = KeyboardRole::character;
    std::string text; // what it shows, or its name when it shows a sign; a character's and an emoji's is what it types
    CGRect cap; // where it is drawn, points of the keyboard
    CGRect reach; // where a finger meets it
    KeyboardPage page = KeyboardPage::letters; // that a page key leads to
    UIEditAction action = UIEditAction::cut; // of an editing key
    bool selected = false; // shift that is on, whose lock `locked` tells
    bool locked = false;
    bool prominent = false; // a return key that does more than begin a line
    bool bare = false; // without a cap of its own
    bool enabled = true; // false: an editing key that would do nothing now

    bool typesText() const { return role == KeyboardRole::character || role == KeyboardRole::space; }
    // Acts when the finger comes down, so that one may hold it or go on at once.
    bool actsOnTouch() const { return role == KeyboardRole::shift || role == KeyboardRole::erase || role == KeyboardRole::page; }
};

using KeyboardKeys = std::vector<KeyboardKey>;

} // namespace platform
