#pragma once

#include "Platform/UIKit/UIGeometry.h"
#include "Platform/UIKit/UITraitCollection.h"

namespace platform {

enum class KeyboardForm : unsigned char {
    phone, // letters in ten columns
    tablet, // an eleventh column for delete and return
    floating, // the phone's columns on a panel of its own
};

// The measures of an on-screen keyboard on one device in one orientation. Points.
struct KeyboardMetrics {
    KeyboardForm form = KeyboardForm::phone;
    CGSize size {}; // of the whole keyboard, what lies under the home indicator included
    UIEdgeInsets safeArea {}; // that keys keep clear of
    CGFloat strip = 0; // height of the row of editing keys and emoji at the top
    CGFloat rowPitch = 0; // from row to row
    CGFloat capHeight = 0; // without the point of shadow below it
    CGFloat gap = 0; // between keys of a row
    CGFloat letterSize = 0; // of fonts
    CGFloat wordSize = 0;
    bool hasRowBelow = false; // globe and hide key lie under the last row, on the home indicator's strip

    static KeyboardMetrics of(CGSize screen, const UIEdgeInsets& safeArea, UIUserInterfaceIdiom idiom, bool floating);
    bool operator==(const KeyboardMetrics&) const = default;
};

} // namespace platform
