#include "Platform/UIKit/UITextView.h"

#include "Platform/Foundation/LinkDetector.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/URL.h"
#include "Platform/UIKit/TextPicture.h"
#include "Platform/UIKit/UIApplication.h"
#include "Platform/UIKit/UILongPressGestureRecognizer.h"
#include "Platform/UIKit/UIPanGestureRecognizer.h"
#include "Platform/UIKit/UITouch.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace platform {

namespace {

constexpr CGFloat unlimited = std::numeric_limits<CGFloat>::infinity();
constexpr CGFloat widthTolerance = 0.01; // points, so that a measured width holds its text after some arithmetic
constexpr CGFloat pressSlop = 10; // points that a finger may stray and still tap
constexpr std::size_t longestLoggedLink = 200; // characters

// The text with what was found in it carrying its link, but for stretches that lead somewhere already.
NSAttributedString linked(const NSAttributedString& text, const std::vector<DetectedLink>& links)
{
    NSAttributedString result;
    std::size_t position = 0; // of the run in the whole text
    auto link = links.begin();
    for (const NSAttributedString::Run& run : text.runs()) {
        const std::size_t end = position + run.text.size();
        for (std::size_t at = position; at < end;) {
            while (link != links.end() && link->location + link->length <= at)
                ++link;
            const bool inside = link != links.end() && link->location <= at;
            const std::size_t border = link == links.end() ? end : inside ? link->location + link->length : link->location;
            const std::size_t next = std::min(end, border);
            NSAttributes attributes = run.attributes;
            if (inside && !attributes.link)
                attributes.link = link->address;
            result.append(NSAttributedString(run.text.substr(at - position, next - at), std::move(attributes)));
            at = next;
        }
        position = end;
    }
    return result;
}

NSAttributedString withLinksIn(const UIColor& color, const NSAttributedString& text)
{
    NSAttributedString result;
    for (const NSAttributedString::Run& run : text.runs()) {
        NSAttributes attributes = run.attributes;
        if (attributes.link)
            attributes.foregroundColor = color;
        result.append(NSAttributedString(run.text, std::move(attributes)));
    }
    return result;
}

bool isInMotion(const UIView& inner)
{
    for (const UIView* view = &inner; view; view = view->superview())
        if (const auto* scroller = dynamic_cast<const UIScrollView*>(view); scroller && scroller->isDecelerating())
            return true;
    return false;
}

} // namespace

// A press is a link's from the first moment, so that no tap around it is recognised as well; only drags go on beside it.
class UITextView::PressRules final : public UIGestureRecognizerDelegate {
public:
    explicit PressRules(UITextView& owner)
        : textView(weak(&owner))
    {
    }
    bool gestureRecognizerShouldReceive(UIGestureRecognizer& /*recognizer*/, UITouch& touch) override
    {
        const auto view = textView.lock();
        return view && view->mayPress(touch);
    }
    bool gestureRecognizerShouldRecognizeSimultaneously(UIGestureRecognizer& /*recognizer*/, UIGestureRecognizer& other) override
    {
        return dynamic_cast<UIPanGestureRecognizer*>(&other);
    }

private:
    const WeakRef<UITextView> textView;
};

UITextView::UITextView(const CGRect& frame)
    : UIScrollView(frame)
    , font_(UIFont::systemFont(UIFont::labelFontSize))
    , textColor_(UIColor::label())
    , linkPress(make<UILongPressGestureRecognizer>())
    , pressRules(std::make_shared<PressRules>(*this))
{
    linkPress->setName(linkTapName);
    linkPress->setMinimumPressDuration(0);
    linkPress->setCancelsTouchesInView(false);
    linkPress->setDelegate(pressRules);
    linkPress->addAction([weakSelf = weak(this)](UIGestureRecognizer& recognizer) {
        if (const auto self = weakSelf.lock())
            self->pressed(static_cast<UILongPressGestureRecognizer&>(recognizer));
    });
    addGestureRecognizer(linkPress);
}

UITextView::~UITextView() = default;

void UITextView::setText(std::string text)
{
    if (!attributedText_ && text == text_)
        return;
    attributedText_.reset();
    text_ = std::move(text);
    contentChanged();
}

void UITextView::setAttributedText(std::optional<NSAttributedString> text)
{
    if (attributedText_ == text && (text || text_.empty()))
        return;
    text_ = text ? text->string() : std::string();
    attributedText_ = std::move(text);
    contentChanged();
}

const NSAttributedString& UITextView::displayedText() const
{
    if (!displayedText_) {
        displayedText_ = attributedText_ ? *attributedText_ : NSAttributedString(text_);
        if (dataDetectorTypes_ == UIDataDetectorTypes::link) {
            const auto links = detectLinks(text_);
            if (!links.empty())
                displayedText_ = linked(*displayedText_, links);
        }
        const auto& runs = displayedText_->runs();
        if (std::ranges::any_of(runs, [](const auto& run) { return bool(run.attributes.link); }))
            displayedText_ = withLinksIn(tintColor(), *displayedText_);
    }
    return *displayedText_;
}

void UITextView::setFont(const UIFont& font)
{
    if (font_ == font)
        return;
    font_ = font;
    contentChanged();
}

void UITextView::setTextColor(const UIColor& color)
{
    if (textColor_ == color)
        return;
    textColor_ = color;
    looksChanged();
}

void UITextView::setTextContainerInset(const UIEdgeInsets& inset)
{
    if (textContainerInset_ == inset)
        return;
    textContainerInset_ = inset;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void UITextView::setLineFragmentPadding(CGFloat padding)
{
    if (lineFragmentPadding_ == padding)
        return;
    lineFragmentPadding_ = padding;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void UITextView::setDataDetectorTypes(UIDataDetectorTypes types)
{
    if (dataDetectorTypes_ == types)
        return;
    dataDetectorTypes_ = types;
    looksChanged();
}

void UITextView::setDelegate(const std::weak_ptr<UITextViewDelegate>& delegate)
{
    textDelegate = delegate;
    UIScrollView::setDelegate(delegate);
}

std::optional<std::string> UITextView::linkAt(CGPoint point) const
{
    const auto link = findLink(point);
    return link ? std::optional(link->target) : std::nullopt;
}

void UITextView::setScrollEnabled(bool enabled)
{
    UIScrollView::setScrollEnabled(enabled);
    setClipsToBounds(enabled);
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

CGSize UITextView::intrinsicContentSize() const
{
    return isScrollEnabled() ? UIScrollView::intrinsicContentSize() : measured(unlimited);
}

CGSize UITextView::sizeThatFits(const CGSize& size) const { return measured(size.width > 0 ? size.width : unlimited); }

void UITextView::layoutSubviews()
{
    UIScrollView::layoutSubviews();
    showText();
}

void UITextView::boundsDidChange(const CGRect& previous)
{
    UIScrollView::boundsDidChange(previous);
    if (bounds().size() != previous.size())
        setNeedsLayout();
}

void UITextView::tintColorDidChange() { looksChanged(); }

void UITextView::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIScrollView::traitCollectionDidChange(previous);
    if (previous.displayScale != traitCollection().displayScale)
        invalidateIntrinsicContentSize();
    looksChanged();
}

std::optional<CGFloat> UITextView::intrinsicHeight(CGFloat width) const
{
    if (isScrollEnabled() || !(room(width) > 0))
        return std::nullopt;
    // The frame's edges will lie on pixels, which may cost the width part of one.
    const CGFloat scale = traitCollection().displayScale;
    return measured(std::floor((width + widthTolerance) * scale) / scale).height;
}

CGFloat UITextView::firstBaselineOffset() const
{
    return textContainerInset_.top + layoutFor(room(bounds().width))->firstBaseline();
}

CGFloat UITextView::lastBaselineOffset() const
{
    const auto& layout = layoutFor(room(bounds().width));
    return textContainerInset_.bottom + layout->size().height - layout->lastBaseline();
}

void UITextView::contentChanged()
{
    invalidateIntrinsicContentSize();
    looksChanged();
}

// What depends on colours or traits is made anew.
void UITextView::looksChanged()
{
    displayedText_.reset();
    paragraph_.reset();
    natural = broken = nullptr;
    setNeedsLayout();
}

const TextParagraph& UITextView::paragraph() const
{
    if (!paragraph_) {
        paragraph_ = displayedText().paragraph(font_, textColor_, traitCollection());
        const bool rightToLeft = effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
        paragraph_->direction = rightToLeft ? TextDirection::rightToLeft : TextDirection::leftToRight;
        paragraph_->alignment = rightToLeft ? NSTextAlignment::right : NSTextAlignment::left;
        paragraph_->lineBreakMode = NSLineBreakMode::byWordWrapping;
        paragraph_->numberOfLines = 0;
    }
    return *paragraph_;
}

// The lines that the text has where they may be so long; one layout for all widths at which nothing needs breaking.
const std::shared_ptr<const TextLayout>& UITextView::layoutFor(CGFloat width) const
{
    const CGFloat scale = traitCollection().displayScale;
    if (!natural)
        natural = TextLayout::make(paragraph(), unlimited, scale);
    if (linesRect(*natural, scale).width <= width + widthTolerance)
        return natural;
    if (!broken || brokenWidth != width)
        broken = TextLayout::make(paragraph(), width + widthTolerance, scale);
    brokenWidth = width;
    return broken;
}

std::optional<UITextView::PlacedLayout> UITextView::placedLayout() const
{
    const CGFloat width = room(bounds().width);
    if (text_.empty() || !(width > 0))
        return std::nullopt;
    const CGFloat scale = traitCollection().displayScale;
    PlacedLayout placed { layoutFor(width), { textContainerInset_.left + lineFragmentPadding_, textContainerInset_.top } };
    if (placed.layout == natural && paragraph().alignment == NSTextAlignment::right)
        placed.origin.x += width - linesRect(*placed.layout, scale).width;
    placed.origin.x = std::round(placed.origin.x * scale) / scale;
    placed.origin.y = std::round(placed.origin.y * scale) / scale;
    return placed;
}

CGSize UITextView::measured(CGFloat width) const
{
    const auto& layout = layoutFor(room(width));
    const CGFloat lines = linesRect(*layout, traitCollection().displayScale).width;
    return { lines + textContainerInset_.left + textContainerInset_.right + 2 * lineFragmentPadding_,
        layout->size().height + textContainerInset_.top + textContainerInset_.bottom };
}

// What is left of a width for the lines.
CGFloat UITextView::room(CGFloat width) const
{
    return width - textContainerInset_.left - textContainerInset_.right - 2 * lineFragmentPadding_;
}

void UITextView::showText()
{
    const auto placed = placedLayout();
    const auto pictures
        = placed ? textPictures(placed->layout, paragraph(), traitCollection().displayScale) : std::vector<TextPicture> {};
    while (textLayers.size() > std::max<std::size_t>(pictures.size(), 1)) {
        textLayers.back()->removeFromSuperlayer();
        textLayers.pop_back();
    }
    while (textLayers.size() < pictures.size()) {
        textLayers.push_back(make<CALayer>());
        layer()->insertSublayer(textLayers.back(), 0);
    }
    for (std::size_t i = 0; i < textLayers.size(); ++i) {
        const bool shows = i < pictures.size();
        if (shows)
            textLayers[i]->setFrame(pictures[i].rect.offsetBy(placed->origin.x, placed->origin.y));
        textLayers[i]->setContents(shows ? pictures[i].image : nullptr);
    }
    if (isScrollEnabled())
        setContentSize({ bounds().width, text_.empty() ? 0 : measured(bounds().width).height });
}

std::optional<UITextView::Link> UITextView::findLink(CGPoint point) const
{
    const auto placed = placedLayout();
    const auto hit = placed ? placed->layout->runAt({ point.x - placed->origin.x, point.y - placed->origin.y }) : std::nullopt;
    const auto& runs = displayedText().runs();
    if (!hit || *hit >= runs.size() || !runs[*hit].attributes.link)
        return std::nullopt;
    // A link goes on where only its looks change.
    std::size_t first = *hit, last = *hit;
    while (first > 0 && runs[first - 1].attributes.link == runs[*hit].attributes.link)
        --first;
    while (last + 1 < runs.size() && runs[last + 1].attributes.link == runs[*hit].attributes.link)
        ++last;
    Link link { *runs[*hit].attributes.link, {} };
    for (std::size_t i = 0; i <= last; ++i)
        (i < first ? link.range.location : link.range.length) += runs[i].text.size();
    return link;
}

// A finger that stops what glides around it does not tap.
bool UITextView::mayPress(const UITouch& touch) const
{
    return selectable && findLink(touch.location(this)) && !isInMotion(*this);
}

void UITextView::pressed(const UILongPressGestureRecognizer& recognizer)
{
    const CGPoint now = recognizer.location(nullptr);
    switch (recognizer.state()) {
    case UIGestureRecognizerState::began:
        pressedLink = findLink(recognizer.location(this));
        pressedAt = now;
        break;
    case UIGestureRecognizerState::changed:
        if (std::hypot(now.x - pressedAt.x, now.y - pressedAt.y) > pressSlop)
            pressedLink.reset();
        break;
    case UIGestureRecognizerState::ended:
        if (const auto link = std::exchange(pressedLink, std::nullopt); link && findLink(recognizer.location(this)) == link)
            follow(*link);
        break;
    default:
        pressedLink.reset();
        break;
    }
}

void UITextView::follow(const Link& link)
{
    const auto keep = weak(this).lock();
    const auto delegate = textDelegate.lock();
    if (delegate
        && !delegate->textViewShouldInteractWith(*this, link.target, link.range, UITextItemInteraction::invokeDefaultAction))
        return;
    const auto url = URL::parse(link.target);
    const bool leadsToTheWeb = url && (url->scheme() == "http" || url->scheme() == "https");
    if (leadsToTheWeb)
        UIApplication::shared().open(*url);
    else
        NSLog("link \"" + validUTF8(prefix(link.target, longestLoggedLink)) + "\" not opened: it is no address of the web");
}

} // namespace platform
