#pragma once

#include "Platform/UIKit/UIView.h"
#include "UI/Extensions/MVSetter.h"

#include <optional>

namespace mv {

// Marks the subview that is a border, so that it can be found again.
enum class BordersViewTag { right = 55769030, left = 55769031, top = 55769032, bottom = 55769033 };
std::optional<BordersViewTag> bordersViewTag(int value);

// A strip along the inner edge of the view's present bounds; it keeps its width (points) and its edge when the view changes its
// size. A further strip on the same side is added, none is replaced. An absent colour leaves the strip clear.
void addBorder(UIView& view, BordersViewTag side, std::optional<UIColor> color, CGFloat width);
// Removes every strip of that side; other views keep their place.
void removeBorder(UIView& view, BordersViewTag side);

inline auto addBorderWord(BordersViewTag side, std::optional<UIColor> color, CGFloat width)
{
    return Setter { [=](UIView& view) { addBorder(view, side, color, width); } };
}
inline auto removeBorderWord(BordersViewTag side)
{
    return Setter { [=](UIView& view) { removeBorder(view, side); } };
}

inline auto addTopBorder(std::optional<UIColor> color, CGFloat width)
{
    return addBorderWord(BordersViewTag::top, std::move(color), width);
}
inline auto addBottomBorder(std::optional<UIColor> color, CGFloat width)
{
    return addBorderWord(BordersViewTag::bottom, std::move(color), width);
}
inline auto addLeftBorder(std::optional<UIColor> color, CGFloat width)
{
    return addBorderWord(BordersViewTag::left, std::move(color), width);
}
inline auto addRightBorder(std::optional<UIColor> color, CGFloat width)
{
    return addBorderWord(BordersViewTag::right, std::move(color), width);
}
inline auto removeTopBorder() { return removeBorderWord(BordersViewTag::top); }
inline auto removeBottomBorder() { return removeBorderWord(BordersViewTag::bottom); }
inline auto removeLeftBorder() { return removeBorderWord(BordersViewTag::left); }
inline auto removeRightBorder() { return removeBorderWord(BordersViewTag::right); }

// Rounds the view by half of its present height, into a circle or a pill, and clips it. For a layout pass, when the frame is
// known.
void setViewCircular(UIView& view);

} // namespace mv
