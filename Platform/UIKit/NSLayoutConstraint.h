#pragma once

#include "Platform/CoreGraphics/CGGeometry.h"
#include "Platform/Foundation/NSObject.h"

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace platform {

class LayoutRoot;
class UILayoutItem;
class UIView;

enum class NSLayoutAttribute : unsigned char {
    left,
    right,
    top,
    bottom,
    leading,
    trailing,
    width,
    height,
    centerX,
    centerY,
    firstBaseline,
    lastBaseline,
    notAnAttribute,
};

enum class NSLayoutRelation : signed char { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };

// Above 0 up to 1000, which must hold; lower ones give way to higher ones.
using UILayoutPriority = float;
namespace LayoutPriority {
constexpr UILayoutPriority required = 1000;
constexpr UILayoutPriority defaultHigh = 750; // resisting compression
constexpr UILayoutPriority defaultLow = 250; // hugging the content
constexpr UILayoutPriority fittingSizeLevel = 50; // as small as possible, when a fitting size is asked for
}

// first.attribute (relation) second.attribute * multiplier + constant, in points. While it is active, the nearest common ancestor
// of its two items keeps it; it becomes inactive when either item leaves that ancestor or ends. Activating one whose items have
// no common ancestor by the next layout pass leaves one console line. Changes count from the next layout pass.
class NSLayoutConstraint final : public NSObject {
public:
    // `second` is null for a constant size (with notAnAttribute).
    NSLayoutConstraint(UILayoutItem& first, NSLayoutAttribute firstAttribute, NSLayoutRelation relation, UILayoutItem* second,
        NSLayoutAttribute secondAttribute, CGFloat multiplier, CGFloat constant);
    // A placeholder for a member that is replaced later: names nothing, activating it does nothing.
    NSLayoutConstraint();
    ~NSLayoutConstraint() override;

    // In the order given; null entries are left out.
    static void activate(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);
    static void deactivate(const std::vector<std::shared_ptr<NSLayoutConstraint>>& constraints);

    bool isActive() const { return active; }
    void setActive(bool active);
    CGFloat constant() const { return constant_; }
    void setConstant(CGFloat constant);
    UILayoutPriority priority() const { return priority_; }
    void setPriority(UILayoutPriority priority);
    const std::string& identifier() const { return identifier_; } // stands in the console line of a conflict
    void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }

    UILayoutItem* firstItem() const { return items[0]; } // null once it has ended
    UILayoutItem* secondItem() const { return items[1]; }
    NSLayoutAttribute firstAttribute() const { return attributes[0]; }
    NSLayoutAttribute secondAttribute() const { return attributes[1]; }
    NSLayoutRelation relation() const { return relation_; }
    CGFloat multiplier() const { return multiplier_; }

    // "title.leading == card.leading + 15", with @priority when it is not required.
    std::string description() const;

private:
    friend class ConstraintKeeper; // who keeps which active constraint

    static constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

    UILayoutItem* items[2] = {};
    NSLayoutAttribute attributes[2] = { NSLayoutAttribute::notAnAttribute, NSLayoutAttribute::notAnAttribute };
    NSLayoutRelation relation_ = NSLayoutRelation::equal;
    CGFloat multiplier_ = 1;
    CGFloat constant_ = 0;
    UILayoutPriority priority_ = LayoutPriority::required;
    std::string identifier_;

    bool active = false;
    UIView* holder = nullptr; // the common ancestor; null while there is none
    std::size_t heldIndex = nowhere; // in the holder's list, or among those without a holder
    std::size_t namedIndex[2] = { nowhere, nowhere }; // in the items' lists
};

using NSLayoutConstraints = std::vector<std::shared_ptr<NSLayoutConstraint>>;

// Activates all of them, in the order given.
void activate(std::initializer_list<std::shared_ptr<NSLayoutConstraint>> constraints);

} // namespace platform
