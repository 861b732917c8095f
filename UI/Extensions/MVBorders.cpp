#include "UI/Extensions/MVBorders.h"

namespace mv {

namespace {

struct Strip {
    CGRect frame;
    UIViewAutoresizing autoresizing;
};

Strip stripAlong(BordersViewTag side, CGSize size, CGFloat width)
{
    switch (side) {
    case BordersViewTag::top:
        return { { 0, 0, size.width, width }, flexibleWidth | flexibleBottomMargin };
    case BordersViewTag::bottom:
        return { { 0, size.height - width, size.width, width }, flexibleWidth | flexibleTopMargin };
    case BordersViewTag::left:
        return { { 0, 0, width, size.height }, flexibleHeight | flexibleRightMargin };
    case BordersViewTag::right:
        return { { size.width - width, 0, width, size.height }, flexibleHeight | flexibleLeftMargin };
    }
    return {};
}

} // namespace

std::optional<BordersViewTag> bordersViewTag(int value)
{
    for (const auto tag : { BordersViewTag::right, BordersViewTag::left, BordersViewTag::top, BordersViewTag::bottom }) {
        if (int(tag) == value)
            return tag;
    }
    return std::nullopt;
}

void addBorder(UIView& view, BordersViewTag side, std::optional<UIColor> color, CGFloat width)
{
    const auto [frame, autoresizing] = stripAlong(side, view.frame().size(), width);
    const auto strip = make<UIView>(frame);
    strip->setTag(int(side));
    strip->setBackgroundColor(std::move(color));
    strip->setAutoresizingMask(autoresizing);
    view.addSubview(strip);
}

void removeBorder(UIView& view, BordersViewTag side)
{
    const auto subviews = view.subviews();
    for (const auto& subview : subviews) {
        if (subview->tag() == int(side))
            subview->removeFromSuperview();
    }
}

void setViewCircular(UIView& view)
{
    view.layer()->setCornerRadius(view.frame().height / 2);
    view.layer()->setMasksToBounds(true);
}

} // namespace mv
