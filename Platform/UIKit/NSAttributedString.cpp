#include "Platform/UIKit/NSAttributedString.h"

namespace platform {

NSAttributedString::NSAttributedString(std::string text, NSAttributes attributes)
{
    if (!text.empty())
        runs_.push_back({ std::move(text), std::move(attributes) });
}

void NSAttributedString::append(const NSAttributedString& other)
{
    const std::vector<Run> added = other.runs_; // it may be this very text
    for (const Run& run : added) {
        if (!runs_.empty() && runs_.back().attributes == run.attributes)
            runs_.back().text += run.text;
        else
            runs_.push_back(run);
    }
}

std::string NSAttributedString::string() const
{
    std::string whole;
    for (const Run& run : runs_)
        whole += run.text;
    return whole;
}

TextParagraph NSAttributedString::paragraph(const UIFont& font, const UIColor& color, const UITraitCollection& traits) const
{
    TextParagraph result;
    result.font = font.ctFont();
    result.color = color.cgColor(traits);
    result.direction = traits.textDirection();
    for (const Run& run : runs_) {
        const NSAttributes& look = run.attributes;
        TextRun textRun;
        textRun.text = run.text;
        textRun.font = (look.font ? *look.font : font).ctFont();
        if (result.runs.empty() || textRun.font->lineHeight() > result.font->lineHeight())
            result.font = textRun.font;
        if (look.foregroundColor)
            textRun.color = look.foregroundColor->cgColor(traits);
        textRun.link = look.link.value_or("");
        textRun.underline = look.underline;
        result.runs.push_back(std::move(textRun));
        if (look.shadow && !result.shadow)
            result.shadow = TextShadow { look.shadow->color.cgColor(traits), look.shadow->blurRadius, look.shadow->offset };
    }
    return result;
}

} // namespace platform
