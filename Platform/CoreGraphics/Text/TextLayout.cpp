#include "Platform/CoreGraphics/Text/TextLayout.h"

#include "Platform/CoreGraphics/Text/LineBuilder.h"
#include "Platform/CoreGraphics/Text/TextLayoutImpl.h"
#include "Platform/CoreGraphics/Text/TwoGenerationCache.h"

#include <functional>

namespace platform {
namespace {
constexpr std::size_t cacheBound = 2 << 20; // bytes, roughly

// Everything that a layout depends on.
struct Question {
    TextParagraph paragraph;
    double width, maximumHeight, scale;
    bool operator==(const Question&) const = default;
};

struct Hash {
    std::size_t value = 0;
    template <typename T> void add(const T& part) { value = value * 0x9e3779b97f4a7c15 + std::hash<T> {}(part); }
};

// Colours are left out: equal texts in different ones are rare, and the comparison tells them apart.
std::size_t hashOf(const TextParagraph& paragraph, double width, double maximumHeight, double scale)
{
    Hash hash;
    for (const auto& run : paragraph.runs) {
        hash.add(run.text);
        hash.add(run.font);
    }
    hash.add(paragraph.font);
    hash.add(int(paragraph.alignment) | int(paragraph.lineBreakMode) << 8 | int(paragraph.direction) << 16);
    hash.add(paragraph.numberOfLines * 2 + paragraph.isEdited);
    hash.add(width);
    hash.add(maximumHeight);
    hash.add(scale);
    return hash.value;
}

struct Answer {
    Question question;
    std::shared_ptr<const TextLayout> layout;
};

TwoGenerationCache<std::size_t, Answer>& cache()
{
    static auto& shared = *new TwoGenerationCache<std::size_t, Answer>(cacheBound);
    return shared;
}

std::size_t bytesOf(const TextLayout& layout, const TextParagraph& paragraph)
{
    std::size_t bytes = 1024; // the objects around
    for (const auto& run : paragraph.runs)
        bytes += sizeof run + run.text.size();
    for (const auto& line : layout.implementation().runs) {
        for (const auto& run : line)
            bytes += sizeof run + run.glyphs.size() * sizeof(PlacedGlyph);
    }
    bytes += layout.characters().size() * sizeof(TextLayout::Character);
    return bytes;
}
}

TextLayout::TextLayout()
    : impl(std::make_unique<Impl>())
{
}

TextLayout::~TextLayout() = default;

std::shared_ptr<const TextLayout> TextLayout::make(
    const TextParagraph& paragraph, CGFloat width, CGFloat scale, CGFloat maximumHeight)
{
    if (std::isnan(width))
        width = std::numeric_limits<double>::infinity();
    const auto key = hashOf(paragraph, width, maximumHeight, scale);
    if (auto* known = cache().find(key)) {
        const auto& asked = known->question;
        if (asked.width == width && asked.maximumHeight == maximumHeight && asked.scale == scale && asked.paragraph == paragraph)
            return known->layout;
    }
    std::shared_ptr<TextLayout> layout(new TextLayout);
    buildLines(*layout->impl, paragraph, width, scale, maximumHeight);
    cache().insert(key, { { paragraph, width, maximumHeight, scale }, layout }, bytesOf(*layout, paragraph));
    return layout;
}

CGSize TextLayout::size() const { return impl->size; }

const std::vector<TextLayout::Line>& TextLayout::lines() const { return impl->lines; }

bool TextLayout::isTruncated() const { return impl->truncated; }

CGFloat TextLayout::firstBaseline() const { return impl->lines.front().baseline; }

CGFloat TextLayout::lastBaseline() const { return impl->lines.back().baseline; }

std::optional<std::size_t> TextLayout::runAt(CGPoint point) const
{
    for (std::size_t i = 0; i < impl->lines.size(); ++i) {
        if (!impl->lines[i].rect.contains(point))
            continue;
        for (const auto& run : impl->runs[i]) {
            if (point.x >= run.x && point.x < run.x + run.width)
                return run.style;
        }
    }
    return {};
}

std::string TextLayout::linkAt(CGPoint point) const
{
    const auto run = runAt(point);
    return run ? impl->styles[*run].link : std::string();
}

const std::vector<TextLayout::Character>& TextLayout::characters() const { return impl->characters; }

} // namespace platform
