#pragma once

#include "Platform/UIKit/UIView.h"
#include "Service/MVPlatform.h"

namespace mv {

// Constrains all four edges of the view to another item's, without room in between.
inline void pinEdges(UIView& view, const UILayoutItem& other)
{
    view.setTranslatesAutoresizingMaskIntoConstraints(false);
    activate({
        view.leadingAnchor().equalTo(other.leadingAnchor()),
        view.trailingAnchor().equalTo(other.trailingAnchor()),
        view.topAnchor().equalTo(other.topAnchor()),
        view.bottomAnchor().equalTo(other.bottomAnchor()),
    });
}

} // namespace mv
