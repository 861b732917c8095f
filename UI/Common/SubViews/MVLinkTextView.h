#pragma once

#include "Platform/UIKit/UITextView.h"
#include "Service/MVPlatform.h"

#include <set>
#include <string>
#include <string_view>

namespace mv {

// A text to be read whose links can be tapped, and that offers nothing else: no selection, no menu, no keyboard, no scrolling, no
// loupe.
class MVLinkTextView : public UITextView {
public:
    // Of recognisers that never get a touch, in base64.
    static const std::set<std::string_view> notAllowedGestureRecognizerNames;

    using UITextView::UITextView;

    bool canPerformAction(const std::string& action, const std::shared_ptr<NSObject>& sender) const; // never
    NSRange selectedRange() const; // always empty at 0
    void setSelectedRange(NSRange range); // ignored

    // UIResponder
    bool canBecomeFirstResponder() const override { return false; }
    // UIView
    std::vector<std::shared_ptr<UIGestureRecognizer>>
    gestureRecognizers() const override; // those that the platform's version allows
    // UIScrollView
    CGPoint contentOffset() const override { return {}; }
    void setContentOffset(CGPoint offset, bool animated = false) override; // ignored
};

} // namespace mv
