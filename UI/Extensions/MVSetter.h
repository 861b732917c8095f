#pragma once

#include "Service/MVPlatform.h"

#include <concepts>
#include <memory>

namespace mv {

// A word that the kit adds to a view it does not own: `label | mv::setFont(font) | mv::setText("Live")`. Each word changes one
// thing and hands on the very view it was given.
template <typename Apply> struct Setter {
    Apply apply;
};
template <typename Apply> Setter(Apply) -> Setter<Apply>;

template <typename View, typename Apply>
requires std::invocable<const Apply&, View&> std::shared_ptr<View>
operator|(std::shared_ptr<View> view, const Setter<Apply>& setter)
{
    setter.apply(*view);
    return view;
}

// One word for several types of views.
template <typename... Applies> struct OneOf : Applies... {
    using Applies::operator()...;
};
template <typename... Applies> OneOf(Applies...) -> OneOf<Applies...>;

} // namespace mv
