#pragma once

#include "Platform/UIKit/UILayoutItem.h"

namespace platform {

// A rectangle in its owning view that takes part in constraints and draws nothing.
class UILayoutGuide : public NSObject, public UILayoutItem {
public:
    // What a guide follows: constraints alone, or the safe area of its view.
    enum class Role : unsigned char { free, safeArea };

    explicit UILayoutGuide(Role role = Role::free);
    ~UILayoutGuide() override;

    UIView* owningView() const { return owner; }
    Role role() const { return role_; }
    CGRect layoutFrame() const; // in the owning view's coordinates, as of the last layout pass

    UIView* layoutView() const override { return owner; }
    std::string layoutName() const override;

private:
    friend class UIView;

    Role role_;
    UIView* owner = nullptr; // which clears it at its end
};

} // namespace platform
