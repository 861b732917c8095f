#include "UI/Common/SubViews/MVLinkTextView.h"

#include "Platform/UIKit/UIDevice.h"
#include "Platform/UIKit/UILongPressGestureRecognizer.h"
#include "UI/Extensions/MVStrings.h"

#include <algorithm>
#include <typeinfo>

namespace mv {

namespace {

// How the platform calls recognisers of its text views. The names are kept and compared in base64 and never decoded.
enum class SystemGestureRecognizerNames { forcePress, loupe, linkTap };

constexpr std::string_view rawValue(SystemGestureRecognizerNames name)
{
    switch (name) {
    case SystemGestureRecognizerNames::forcePress:
        return "X1VJS2V5Ym9hcmRUZXh0U2VsZWN0aW9uR2VzdHVyZUZvcmNlUHJlc3M=";
    case SystemGestureRecognizerNames::loupe:
        return "VUlUZXh0SW50ZXJhY3Rpb25OYW1lTG91cGU=";
    case SystemGestureRecognizerNames::linkTap:
        return "VUlUZXh0SW50ZXJhY3Rpb25OYW1lTGlua1RhcA==";
    }
    return "";
}

// That class itself: what derives from it may select text.
bool isPlainLongPress(const UIGestureRecognizer& recognizer)
{
    return typeid(recognizer) == typeid(UILongPressGestureRecognizer) && recognizer.delaysTouchesEnded();
}

bool isAllowed(const UIGestureRecognizer& recognizer)
{
    const int version = UIDevice::current().systemMajorVersion();
    const std::string name = base64String(recognizer.name()).value_or("");
    if (version >= 13)
        return !MVLinkTextView::notAllowedGestureRecognizerNames.contains(name);
    if (version >= 11 && name == rawValue(SystemGestureRecognizerNames::linkTap))
        return true;
    return isPlainLongPress(recognizer);
}

} // namespace

const std::set<std::string_view> MVLinkTextView::notAllowedGestureRecognizerNames
    = { rawValue(SystemGestureRecognizerNames::forcePress), rawValue(SystemGestureRecognizerNames::loupe) };

bool MVLinkTextView::canPerformAction(const std::string& /*action*/, const std::shared_ptr<NSObject>& /*sender*/) const
{
    return false;
}

NSRange MVLinkTextView::selectedRange() const { return {}; }

void MVLinkTextView::setSelectedRange(NSRange /*range*/) { }

std::vector<std::shared_ptr<UIGestureRecognizer>> MVLinkTextView::gestureRecognizers() const
{
    auto list = UITextView::gestureRecognizers();
    std::erase_if(list, [](const auto& recognizer) { return !isAllowed(*recognizer); });
    return list;
}

void MVLinkTextView::setContentOffset(CGPoint /*offset*/, bool /*animated*/) { }

} // namespace mv
