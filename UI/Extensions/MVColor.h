#pragma once

#include "Platform/UIKit/UIColor.h"
#include "UI/Utils/MVEntry.h"

namespace mv {

// The palette's first values. Each read makes a new colour; where the platform is older than version 13, which has neither
// dynamic nor system colours, a fixed one.
class MVDefaultColors {
public:
    static UIColor backgroundColor();
    static UIColor cardBackgroundColor();
    static UIColor shadowColor();
    static UIColor primaryTextColor();
    static UIColor secondaryTextColor();
    static UIColor seperatorColor();
    static UIColor systemGray5();
};

// The palette. A host replaces an entry with `MVColor::accentColor = color`; views that exist keep the colour they read.
class MVColor {
public:
    static inline MVEntry<UIColor> backgroundColor { MVDefaultColors::backgroundColor };
    static inline MVEntry<UIColor> cardBackgroundColor { MVDefaultColors::cardBackgroundColor };
    static inline MVEntry<UIColor> shadowColor { MVDefaultColors::shadowColor };
    static inline MVEntry<UIColor> primaryTextColor { MVDefaultColors::primaryTextColor };
    static inline MVEntry<UIColor> secondaryTextColor { MVDefaultColors::secondaryTextColor };
    // The light appearance's system blue, in both appearances.
    static inline MVEntry<UIColor> accentColor { [] {
        return UIColor::systemBlue().resolved({ .userInterfaceStyle = UIUserInterfaceStyle::light });
    } };
    static inline MVEntry<UIColor> seperatorColor { MVDefaultColors::seperatorColor };
    static inline MVEntry<UIColor> systemGray5 { MVDefaultColors::systemGray5 };
};

} // namespace mv
