#include "Platform/Host/ViewTree.h"

#include "Platform/Host/SimulatedDevice.h"
#include "Platform/QuartzCore/CAGradientLayer.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UIButton.h"
#include "Platform/UIKit/UIImageView.h"
#include "Platform/UIKit/UILabel.h"
#include "Platform/UIKit/UIScreen.h"
#include "Platform/UIKit/UIScrollView.h"
#include "Platform/UIKit/UITextField.h"
#include "Platform/UIKit/UITextView.h"
#include "Platform/UIKit/UIViewController.h"
#include "Platform/UIKit/UIWindow.h"

#include <algorithm>
#include <cxxabi.h>
#include <typeinfo>

namespace platform {

namespace {

std::string className(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    const std::string whole = status == 0 ? name.get() : type.name();
    const auto colon = whole.rfind("::");
    return colon == std::string::npos ? whole : whole.substr(colon + 2);
}

const char* name(UIViewContentMode mode)
{
    static constexpr const char* names[] = { "scaleToFill", "scaleAspectFit", "scaleAspectFill", "redraw", "center", "top",
        "bottom", "left", "right", "topLeft", "topRight", "bottomLeft", "bottomRight" };
    return names[std::size_t(mode)];
}

const char* name(NSTextAlignment alignment)
{
    static constexpr const char* names[] = { "natural", "left", "center", "right", "justified" };
    return names[std::size_t(alignment)];
}

JSONArray numbers(std::initializer_list<double> values) { return JSONArray(values.begin(), values.end()); }

JSONArray insets(const UIEdgeInsets& edges) { return numbers({ edges.top, edges.left, edges.bottom, edges.right }); }

// Describes one view; what has its default is left out.
class NodeWriter {
public:
    explicit NodeWriter(const UIView& view)
        : view(view)
        , layer(*view.layer())
    {
    }

    JSONObject write()
    {
        node.append("class", className(typeid(view)));
        if (!view.accessibilityIdentifier().empty())
            node.append("name", view.accessibilityIdentifier());
        if (const auto* controller = view.viewController())
            node.append("controller", className(typeid(*controller)));
        node.append("frame", onScreen(view.bounds()));
        if (layer.opacity() != 1)
            node.append("alpha", layer.opacity());
        if (layer.isHidden())
            node.append("hidden", true);
        return std::move(node);
    }

    // What is drawn rather than a view, as views below this one.
    JSONArray elements() const
    {
        JSONArray list;
        for (const auto& element : view.accessibilityElements()) {
            JSONObject described { { "class", "UIAccessibilityElement" } };
            if (!element.identifier.empty())
                described.append("name", element.identifier);
            described.append("frame", onScreen(element.frame));
            if (!element.enabled)
                described.append("enabled", false);
            if (element.selected)
                described.append("selected", true);
            described.append("text", element.label);
            list.push_back(std::move(described));
        }
        return list;
    }

    void writeLooks(JSONObject& target)
    {
        node = std::move(target);
        writeControl();
        writeText();
        writeLayer();
        writeImage();
        writeScrolling();
        target = std::move(node);
    }

private:
    JSONArray onScreen(const CGRect& rect) const // of the view's coordinates
    {
        const CGPoint origin = view.window() ? view.window()->frame().origin() : CGPoint {};
        const CGRect frame = view.convertTo(rect, nullptr).offsetBy(origin.x, origin.y);
        return numbers({ frame.x, frame.y, frame.width, frame.height });
    }
    void append(const char* key, const std::optional<CGColor>& color)
    {
        if (color && !color->isClear())
            node.append(key, hexText(*color));
    }
    CGColor resolved(const UIColor& color) const { return color.cgColor(view.traitCollection()); }

    void writeControl()
    {
        const auto* control = dynamic_cast<const UIControl*>(&view);
        if (control && !control->isEnabled())
            node.append("enabled", false);
        if (control && control->isSelected())
            node.append("selected", true);
    }

    void writeText()
    {
        if (const auto* label = dynamic_cast<const UILabel*>(&view))
            return writeLabel(*label);
        if (const auto* textView = dynamic_cast<const UITextView*>(&view))
            return writeTextView(*textView);
        if (const auto* field = dynamic_cast<const UITextField*>(&view))
            return writeTextField(*field);
        if (const auto* button = dynamic_cast<const UIButton*>(&view); button && !button->currentTitle().empty()) {
            node.append("text", button->currentTitle());
            node.append("font", button->titleLabel()->font().text());
            append("color", resolved(button->currentTitleColor()));
        }
    }

    void writeLabel(const UILabel& label)
    {
        if (!label.text().empty())
            node.append("text", label.text());
        if (const auto& text = label.attributedText())
            writeRuns(*text, label.font(), label.textColor());
        node.append("font", label.font().text());
        append("color", resolved(label.textColor()));
        if (label.numberOfLines() != 1)
            node.append("numberOfLines", label.numberOfLines());
        if (label.textAlignment() != NSTextAlignment::natural)
            node.append("textAlignment", name(label.textAlignment()));
    }

    void writeTextView(const UITextView& textView)
    {
        if (!textView.text().empty())
            node.append("text", textView.text());
        const auto& runs = textView.displayedText().runs();
        const bool hasLinks = std::ranges::any_of(runs, [](const auto& run) { return bool(run.attributes.link); });
        if (textView.attributedText() || hasLinks)
            writeRuns(textView.displayedText(), textView.font(), textView.textColor());
        node.append("font", textView.font().text());
        append("color", resolved(textView.textColor()));
        append("tint", resolved(textView.tintColor()));
    }

    void writeTextField(const UITextField& field)
    {
        if (!field.text().empty())
            node.append("text", field.text());
        if (!field.attributedPlaceholder().isEmpty())
            node.append("placeholder", field.placeholder());
        node.append("font", field.font().text());
        append("color", resolved(field.textColor()));
        append("tint", resolved(field.tintColor()));
        if (field.textAlignment() != NSTextAlignment::natural)
            node.append("textAlignment", name(field.textAlignment()));
    }

    // What a run leaves open is the view's.
    void writeRuns(const NSAttributedString& text, const UIFont& font, const UIColor& color)
    {
        JSONArray runs;
        for (const auto& run : text.runs()) {
            JSONObject described;
            described.append("text", run.text);
            described.append("font", run.attributes.font.value_or(font).text());
            described.append("color", hexText(resolved(run.attributes.foregroundColor.value_or(color))));
            if (run.attributes.link)
                described.append("link", *run.attributes.link);
            runs.push_back(std::move(described));
        }
        node.append("runs", std::move(runs));
    }

    void writeLayer()
    {
        append("background", layer.backgroundColor());
        if (const auto* gradient = dynamic_cast<const CAGradientLayer*>(&layer))
            writeGradient(*gradient);
        if (layer.cornerRadius() != 0)
            node.append("cornerRadius", layer.cornerRadius());
        if (layer.borderWidth() != 0) {
            node.append("borderWidth", layer.borderWidth());
            append("borderColor", layer.borderColor());
        }
        if (layer.shadowOpacity() > 0)
            return writeShadow(layer);
        for (const auto& sublayer : layer.sublayers()) {
            if (sublayer->shadowOpacity() > 0 && !isViewLayer(*sublayer))
                return writeShadow(*sublayer);
        }
    }

    bool isViewLayer(const CALayer& sublayer) const
    {
        for (const auto& subview : view.subviews()) {
            if (subview->layer().get() == &sublayer)
                return true;
        }
        return false;
    }

    void writeGradient(const CAGradientLayer& gradient)
    {
        const auto& colors = gradient.colors();
        const auto& locations = gradient.locations();
        JSONArray stops;
        for (std::size_t i = 0; i < colors.size(); ++i) {
            JSONObject stop;
            stop.append("color", hexText(colors[i]));
            if (i < locations.size())
                stop.append("at", locations[i]);
            else if (locations.empty())
                stop.append("at", colors.size() > 1 ? double(i) / double(colors.size() - 1) : 0.0);
            stops.push_back(std::move(stop));
        }
        if (!stops.empty())
            node.append("gradient", std::move(stops));
    }

    void writeShadow(const CALayer& caster)
    {
        JSONObject shadow;
        shadow.append("color", hexText(caster.shadowColor()));
        shadow.append("opacity", caster.shadowOpacity());
        shadow.append("radius", caster.shadowRadius());
        shadow.append("offset", numbers({ caster.shadowOffset().width, caster.shadowOffset().height }));
        node.append("shadow", std::move(shadow));
    }

    void writeImage()
    {
        if (view.contentMode() != UIViewContentMode::scaleToFill)
            node.append("contentMode", name(view.contentMode()));
        const auto* imageView = dynamic_cast<const UIImageView*>(&view);
        const auto* button = dynamic_cast<const UIButton*>(&view);
        const auto image = imageView ? imageView->image() : button ? button->currentImage() : nullptr;
        if (!image)
            return;
        node.append("image", image->name());
        if (image->isTemplate())
            append("tint", resolved(view.tintColor()));
    }

    void writeScrolling()
    {
        const auto* scroller = dynamic_cast<const UIScrollView*>(&view);
        if (!scroller)
            return;
        const CGPoint offset = scroller->contentOffset();
        const CGSize size = scroller->contentSize();
        if (offset != CGPoint {})
            node.append("contentOffset", numbers({ offset.x, offset.y }));
        if (size != CGSize {})
            node.append("contentSize", numbers({ size.width, size.height }));
        if (scroller->contentInset() != UIEdgeInsets {})
            node.append("contentInset", insets(scroller->contentInset()));
    }

    const UIView& view;
    const CALayer& layer;
    JSONObject node;
};

JSONObject describe(const UIView& view, bool ancestorsVisible)
{
    NodeWriter writer(view);
    auto node = writer.write();
    const bool visible = ancestorsVisible && !view.isHidden() && view.alpha() > 0;
    if (!visible)
        node.append("visible", false);
    writer.writeLooks(node);
    JSONArray children = writer.elements();
    for (const auto& subview : view.subviews())
        children.push_back(describe(*subview, visible));
    if (!children.empty())
        node.append("children", std::move(children));
    return node;
}

JSONValue root()
{
    const auto windows = UIApplication::shared().windows();
    if (windows.size() == 1)
        return describe(*windows.front(), true);
    JSONArray shown;
    for (const auto& window : windows)
        shown.push_back(describe(*window, true));
    const auto bounds = numbers({ 0, 0, UIScreen::main().bounds().width, UIScreen::main().bounds().height });
    return JSONObject { { "class", "UIScreen" }, { "frame", bounds }, { "children", std::move(shown) } };
}

} // namespace

JSONValue viewTree(const SimulatedDevice& device)
{
    const auto size = device.size();
    const bool rightToLeft = device.state().direction == UIUserInterfaceLayoutDirection::rightToLeft;
    return JSONObject {
        { "device", device.model().name },
        { "scale", device.model().scale },
        { "size", numbers({ size.width, size.height }) },
        { "safeArea", insets(device.safeArea()) },
        { "direction", rightToLeft ? "rtl" : "ltr" },
        { "orientation", device.isLandscape() ? "landscape" : "portrait" },
        { "appearance", device.state().appearance == UIUserInterfaceStyle::dark ? "dark" : "light" },
        { "keyboardHeight", device.state().keyboardHeight },
        { "root", root() },
    };
}

} // namespace platform
