#pragma once

#include "Platform/UIKit/NSLayoutConstraint.h"

namespace platform {

// One edge, centre or baseline of a view or guide. Its operations make constraints, not yet active. A small value that must not
// outlive its item.
template <typename Kind> class NSLayoutAnchor {
public:
    NSLayoutAnchor(const UILayoutItem& item, NSLayoutAttribute attribute)
        : item_(const_cast<UILayoutItem*>(&item))
        , attribute_(attribute)
    {
    }

    std::shared_ptr<NSLayoutConstraint> equalTo(const Kind& other, CGFloat constant = 0) const
    {
        return to(other, NSLayoutRelation::equal, 1, constant);
    }
    std::shared_ptr<NSLayoutConstraint> lessThanOrEqualTo(const Kind& other, CGFloat constant = 0) const
    {
        return to(other, NSLayoutRelation::lessThanOrEqual, 1, constant);
    }
    std::shared_ptr<NSLayoutConstraint> greaterThanOrEqualTo(const Kind& other, CGFloat constant = 0) const
    {
        return to(other, NSLayoutRelation::greaterThanOrEqual, 1, constant);
    }

protected:
    std::shared_ptr<NSLayoutConstraint> to(
        const NSLayoutAnchor& other, NSLayoutRelation relation, CGFloat multiplier, CGFloat constant) const
    {
        return make<NSLayoutConstraint>(*item_, attribute_, relation, other.item_, other.attribute_, multiplier, constant);
    }
    std::shared_ptr<NSLayoutConstraint> toConstant(NSLayoutRelation relation, CGFloat constant) const
    {
        return make<NSLayoutConstraint>(*item_, attribute_, relation, nullptr, NSLayoutAttribute::notAnAttribute, 1, constant);
    }

private:
    UILayoutItem* item_;
    NSLayoutAttribute attribute_;
};

class NSLayoutXAxisAnchor final : public NSLayoutAnchor<NSLayoutXAxisAnchor> {
    using NSLayoutAnchor::NSLayoutAnchor;
};

class NSLayoutYAxisAnchor final : public NSLayoutAnchor<NSLayoutYAxisAnchor> {
    using NSLayoutAnchor::NSLayoutAnchor;
};

class NSLayoutDimension final : public NSLayoutAnchor<NSLayoutDimension> {
public:
    using NSLayoutAnchor::NSLayoutAnchor;

    std::shared_ptr<NSLayoutConstraint> equalToMultiple(
        const NSLayoutDimension& other, CGFloat multiplier, CGFloat constant = 0) const
    {
        return to(other, NSLayoutRelation::equal, multiplier, constant);
    }
    std::shared_ptr<NSLayoutConstraint> lessThanOrEqualToMultiple(
        const NSLayoutDimension& other, CGFloat multiplier, CGFloat constant = 0) const
    {
        return to(other, NSLayoutRelation::lessThanOrEqual, multiplier, constant);
    }
    std::shared_ptr<NSLayoutConstraint> greaterThanOrEqualToMultiple(
        const NSLayoutDimension& other, CGFloat multiplier, CGFloat constant = 0) const
    {
        return to(other, NSLayoutRelation::greaterThanOrEqual, multiplier, constant);
    }
    std::shared_ptr<NSLayoutConstraint> equalToConstant(CGFloat constant) const
    {
        return toConstant(NSLayoutRelation::equal, constant);
    }
    std::shared_ptr<NSLayoutConstraint> lessThanOrEqualToConstant(CGFloat constant) const
    {
        return toConstant(NSLayoutRelation::lessThanOrEqual, constant);
    }
    std::shared_ptr<NSLayoutConstraint> greaterThanOrEqualToConstant(CGFloat constant) const
    {
        return toConstant(NSLayoutRelation::greaterThanOrEqual, constant);
    }
};

} // namespace platform
