#pragma once

#include "Platform/UIKit/UIPanGestureRecognizer.h"

namespace platform {

enum class UIRectEdge : unsigned char { left, right };

// A finger that comes in from one side of the screen and moves across it. Other drags fail.
class UIScreenEdgePanGestureRecognizer final : public UIPanGestureRecognizer {
public:
    using UIPanGestureRecognizer::UIPanGestureRecognizer;

    UIRectEdge edge() const { return edge_; }
    void setEdge(UIRectEdge edge) { edge_ = edge; }

protected:
    bool mayBegin(CGPoint way) const override;

private:
    UIRectEdge edge_ = UIRectEdge::left;
};

} // namespace platform
