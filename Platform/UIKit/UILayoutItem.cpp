#include "Platform/UIKit/UILayoutItem.h"

#include <cassert>

namespace platform {

UILayoutItem::~UILayoutItem() { assert(naming.empty() && "a layout item tells the constraints that name it of its end"); }

} // namespace platform
