#pragma once

#include "Platform/CoreGraphics/CGColor.h"
#include "Platform/UIKit/UITraitCollection.h"

#include <functional>
#include <memory>
#include <string>

namespace platform {

// A colour of the interface: an immutable value, cheap to copy. It is fixed, or dynamic: then a function answers for the traits
// in which it is drawn. Absence is a std::optional's business. Main thread.
class UIColor {
public:
    using Provider = std::function<UIColor(const UITraitCollection& traits)>;
    // All from 0 to 1; the hue goes once round the circle.
    struct HSB {
        double hue = 0;
        double saturation = 0;
        double brightness = 0;
        double alpha = 1;
    };

    // Components are held to 0 ... 1; what is not a number counts as 0.
    UIColor(double red, double green, double blue, double alpha = 1);
    UIColor(const CGColor& color);
    static UIColor white(double white, double alpha = 1); // a grey from 0, black, to 1
    static UIColor fromHSB(const HSB& hsb);
    // The function may answer with another dynamic colour (eight deep at most, then black). It is kept as long as the colour.
    static UIColor dynamic(Provider provider);

    bool isDynamic() const { return bool(provider); }
    UIColor resolved(const UITraitCollection& traits) const; // a fixed colour
    CGColor cgColor() const; // in the current traits
    CGColor cgColor(const UITraitCollection& traits) const;
    HSB hsb() const; // in the current traits; a grey has hue and saturation 0
    UIColor withAlphaComponent(double alpha) const; // a dynamic colour stays dynamic

    // Fixed colours by their components, dynamic ones when they share one function.
    bool operator==(const UIColor& other) const { return provider == other.provider && (provider || fixed == other.fixed); }

    static UIColor clear(); // black with alpha 0
    static UIColor black();
    static UIColor white() { return white(1); }
    static UIColor darkGray(); // white 1/3
    static UIColor gray(); // white 1/2
    static UIColor lightGray(); // white 2/3
    static UIColor red();
    // The system's palette, dynamic.
    static UIColor label();
    static UIColor secondaryLabel();
    static UIColor separator();
    static UIColor systemGray4();
    static UIColor systemGray5();
    static UIColor systemRed();
    static UIColor systemBlue();

private:
    explicit UIColor(std::shared_ptr<const Provider> shared);
    CGColor fixed;
    std::shared_ptr<const Provider> provider; // null for a fixed colour
};

// "#rrggbbaa", as view trees show a colour.
std::string hexText(const CGColor& color);

} // namespace platform
