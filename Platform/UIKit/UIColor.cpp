#include "Platform/UIKit/UIColor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace platform {

namespace {
constexpr int deepestDynamicColor = 8; // a colour that answers with itself must not hang the program

double component(double value) { return std::isnan(value) ? 0 : std::clamp(value, 0.0, 1.0); }

UIColor fromRGB(std::uint32_t rgb, double alpha = 1)
{
    return { ((rgb >> 16) & 255) / 255.0, ((rgb >> 8) & 255) / 255.0, (rgb & 255) / 255.0, alpha };
}

UIColor lightAndDark(const UIColor& light, const UIColor& dark)
{
    return UIColor::dynamic([light, dark](const UITraitCollection& traits) { return traits.isDark() ? dark : light; });
}
}

UIColor::UIColor(double red, double green, double blue, double alpha)
    : fixed { component(red), component(green), component(blue), component(alpha) }
{
}

UIColor::UIColor(const CGColor& color)
    : UIColor(color.red, color.green, color.blue, color.alpha)
{
}

UIColor::UIColor(std::shared_ptr<const Provider> shared)
    : provider(std::move(shared))
{
}

UIColor UIColor::white(double white, double alpha) { return { white, white, white, alpha }; }

UIColor UIColor::fromHSB(const HSB& hsb)
{
    const double saturation = component(hsb.saturation), brightness = component(hsb.brightness);
    const double sixth = (hsb.hue - std::floor(hsb.hue)) * 6; // six stretches of the circle, in each of which one component moves
    if (!std::isfinite(sixth))
        return white(brightness, hsb.alpha);
    const auto channel = [&](double offset) {
        const double k = std::fmod(sixth + offset, 6);
        return brightness * (1 - saturation * std::clamp(std::min(k, 4 - k), 0.0, 1.0));
    };
    return { channel(5), channel(3), channel(1), hsb.alpha };
}

UIColor UIColor::dynamic(Provider provider)
{
    return provider ? UIColor(std::make_shared<const Provider>(std::move(provider))) : black();
}

UIColor UIColor::resolved(const UITraitCollection& traits) const
{
    UIColor color = *this;
    for (int depth = 0; color.provider && depth < deepestDynamicColor; ++depth)
        color = (*std::shared_ptr(color.provider))(traits);
    return color.provider ? black() : color;
}

CGColor UIColor::cgColor() const { return cgColor(UITraitCollection::current()); }

CGColor UIColor::cgColor(const UITraitCollection& traits) const { return provider ? resolved(traits).fixed : fixed; }

UIColor::HSB UIColor::hsb() const
{
    const CGColor color = cgColor();
    const double high = std::max({ color.red, color.green, color.blue });
    const double range = high - std::min({ color.red, color.green, color.blue });
    HSB result { 0, 0, high, color.alpha };
    if (range <= 0)
        return result;
    result.saturation = range / high;
    double sixth = 0;
    if (high == color.red)
        sixth = (color.green - color.blue) / range;
    else if (high == color.green)
        sixth = (color.blue - color.red) / range + 2;
    else
        sixth = (color.red - color.green) / range + 4;
    result.hue = sixth < 0 ? (sixth + 6) / 6 : sixth / 6;
    return result;
}

UIColor UIColor::withAlphaComponent(double alpha) const
{
    if (!provider)
        return { fixed.red, fixed.green, fixed.blue, alpha };
    return dynamic(
        [base = *this, alpha](const UITraitCollection& traits) { return base.resolved(traits).withAlphaComponent(alpha); });
}

UIColor UIColor::clear() { return { 0, 0, 0, 0 }; }

UIColor UIColor::black() { return { 0, 0, 0 }; }

UIColor UIColor::darkGray() { return white(1.0 / 3); }

UIColor UIColor::gray() { return white(0.5); }

UIColor UIColor::lightGray() { return white(2.0 / 3); }

UIColor UIColor::red() { return { 1, 0, 0 }; }

UIColor UIColor::label()
{
    static const UIColor color = lightAndDark(fromRGB(0x000000), fromRGB(0xffffff));
    return color;
}

UIColor UIColor::secondaryLabel()
{
    static const UIColor color = lightAndDark(fromRGB(0x3c3c43, 0.6), fromRGB(0xebebf5, 0.6));
    return color;
}

UIColor UIColor::separator()
{
    static const UIColor color = lightAndDark(fromRGB(0x3c3c43, 0.29), fromRGB(0x545458, 0.6));
    return color;
}

UIColor UIColor::systemGray4()
{
    static const UIColor color = lightAndDark(fromRGB(0xd1d1d6), fromRGB(0x3a3a3c));
    return color;
}

UIColor UIColor::systemGray5()
{
    static const UIColor color = lightAndDark(fromRGB(0xe5e5ea), fromRGB(0x2c2c2e));
    return color;
}

UIColor UIColor::systemRed()
{
    static const UIColor color = lightAndDark(fromRGB(0xff3b30), fromRGB(0xff453a));
    return color;
}

UIColor UIColor::systemBlue()
{
    static const UIColor color = lightAndDark(fromRGB(0x007aff), fromRGB(0x0a84ff));
    return color;
}

std::string hexText(const CGColor& color)
{
    const auto byte = [](double value) { return unsigned(std::lround(component(value) * 255)); };
    char text[10];
    std::snprintf(
        text, sizeof text, "#%02x%02x%02x%02x", byte(color.red), byte(color.green), byte(color.blue), byte(color.alpha));
    return text;
}

} // namespace platform
