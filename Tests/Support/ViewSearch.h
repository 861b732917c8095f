#pragma once

#include "Platform/UIKit/UIView.h"

#include <memory>
#include <string>

namespace test {

// The first view of that name in the tree, depth first; null for none.
inline std::shared_ptr<platform::UIView> findView(const std::shared_ptr<platform::UIView>& root, const std::string& name)
{
    if (root->accessibilityIdentifier() == name)
        return root;
    for (const auto& child : root->subviews())
        if (auto found = findView(child, name))
            return found;
    return nullptr;
}

} // namespace test
