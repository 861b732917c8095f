#include "UI/Common/SubViews/MVTextField.h"

namespace mv {

namespace {

CGRect inset(const CGRect& bounds) { return UIEdgeInsets { 0, 15, 0, 15 }.inset(bounds); }

} // namespace

CGRect MVTextField::textRect(const CGRect& bounds) const { return inset(bounds); }

CGRect MVTextField::editingRect(const CGRect& bounds) const { return inset(bounds); }

} // namespace mv
