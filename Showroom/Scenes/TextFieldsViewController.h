#pragma once

#include "Platform/UIKit/UIViewController.h"

#include <memory>

namespace platform {
class UIStackView;
}

namespace showroom {

using namespace platform;

// The gallery's page of text fields: borders, alignments, scripts, one that is too long. Upright in one column, sideways in two.
class TextFieldsViewController final : public UIViewController {
protected:
    // UIViewController
    void viewDidLoad() override;
    void viewWillLayoutSubviews() override;

private:
    std::shared_ptr<UIStackView> columns;
};

} // namespace showroom
