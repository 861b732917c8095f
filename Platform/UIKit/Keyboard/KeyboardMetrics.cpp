#include "Platform/UIKit/Keyboard/KeyboardMetrics.h"

#include <algorithm>

namespace platform {

namespace {

struct Proportions {
    CGFloat strip, rowPitch, capHeight, gap, letterSize, wordSize;
};

// A height is the strip, four rows and what the home indicator takes. With the known devices' that gives:
constexpr Proportions phonePortrait { 48, 54, 43, 6, 23, 16 }; // 325, the row below and 34 points of safe area included
constexpr Proportions smallPhonePortrait { 44, 54, 43, 6, 23, 16 }; // 260: less than half of 568
constexpr Proportions phoneLandscape { 36, 38, 32, 6, 21, 15 }; // 209: 184 of 393 points stay free
constexpr Proportions smallPhoneLandscape { 36, 36, 30, 6, 20, 15 }; // 180: 140 of 320 points stay free
constexpr Proportions tabletPortrait { 44, 64, 54, 11, 25, 17 }; // 320: keys as wide as fingers are apart
constexpr Proportions tabletLandscape { 44, 84, 72, 13, 29, 19 }; // 400: keys about as high as they are wide
constexpr Proportions floatingPanel { 40, 46, 38, 5, 21, 15 }; // 260: a thumb reaches all of it

constexpr CGFloat smallestPhone = 375; // points of the shorter side from which the taller keyboard has its place
constexpr CGFloat rowBelow = 27; // that the globe's row needs above the home indicator
constexpr CGFloat floatingWidth = 320;
constexpr CGFloat floatingRowBelow = 36;
constexpr CGFloat largestShare = 0.6; // of the screen's height, which only a window drawn small comes to

const Proportions& proportionsOf(CGSize screen, UIUserInterfaceIdiom idiom)
{
    const bool landscape = screen.width > screen.height;
    if (idiom == UIUserInterfaceIdiom::pad)
        return landscape ? tabletLandscape : tabletPortrait;
    const bool small = std::min(screen.width, screen.height) < smallestPhone;
    if (landscape)
        return small ? smallPhoneLandscape : phoneLandscape;
    return small ? smallPhonePortrait : phonePortrait;
}

} // namespace

KeyboardMetrics KeyboardMetrics::of(CGSize screen, const UIEdgeInsets& safeArea, UIUserInterfaceIdiom idiom, bool floating)
{
    const Proportions& chosen = floating ? floatingPanel : proportionsOf(screen, idiom);
    KeyboardMetrics metrics { .strip = chosen.strip,
        .rowPitch = chosen.rowPitch,
        .capHeight = chosen.capHeight,
        .gap = chosen.gap,
        .letterSize = chosen.letterSize,
        .wordSize = chosen.wordSize };
    const CGFloat rows = chosen.strip + 4 * chosen.rowPitch;
    if (floating) {
        metrics.form = KeyboardForm::floating;
        metrics.hasRowBelow = true;
        metrics.size = { std::min(floatingWidth, screen.width), rows + floatingRowBelow };
        return metrics;
    }
    const bool phone = idiom == UIUserInterfaceIdiom::phone;
    metrics.form = phone ? KeyboardForm::phone : KeyboardForm::tablet;
    metrics.safeArea = { 0, safeArea.left, safeArea.bottom, safeArea.right };
    metrics.hasRowBelow = phone && screen.width <= screen.height && safeArea.bottom > 0;
    const CGFloat below = safeArea.bottom + (metrics.hasRowBelow ? rowBelow : 0);
    const CGFloat shrink = std::min(1.0, std::max(screen.height * largestShare - below, 0.0) / rows);
    metrics.strip *= shrink;
    metrics.rowPitch *= shrink;
    metrics.capHeight *= shrink;
    metrics.size = { screen.width, rows * shrink + below };
    return metrics;
}

} // namespace platform
