#include "Platform/UIKit/RestingLine.h"

#include "Platform/UIKit/TextPicture.h"

#include <cmath>

namespace platform {

namespace {
constexpr CGFloat widthTolerance = 0.01; // points, so that a measured width holds its text after some arithmetic
}

RestingLine::RestingLine(CALayer& parent) { parent.addSublayer(layer); }

void RestingLine::show(TextParagraph paragraph, std::optional<CGColor> tint, const CGRect& rect, CGFloat scale)
{
    if (rect.isEmpty())
        return hide();
    const NSTextAlignment alignment = paragraph.alignment;
    paragraph.alignment = NSTextAlignment::left; // so that fields of any width share the layout
    paragraph.lineBreakMode = NSLineBreakMode::byTruncatingTail;
    paragraph.numberOfLines = 1;
    const auto layout = TextLayout::make(paragraph, rect.width + widthTolerance, scale);
    const CGFloat free = rect.width - linesRect(*layout, scale).width;
    const CGFloat share = alignment == NSTextAlignment::center ? 0.5 : alignment == NSTextAlignment::right ? 1 : 0;
    const TextPicture picture = textPicture(layout, paragraph, scale);
    layer->setFrame(picture.rect.offsetBy(std::round((rect.x + free * share) * scale) / scale,
        std::round((rect.y + (rect.height - layout->size().height) / 2) * scale) / scale));
    layer->setContents(picture.image);
    layer->setContentsTint(tint);
}

} // namespace platform
