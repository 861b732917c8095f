#pragma once

#include "Service/MVPlatform.h"

#include <mutex>
#include <optional>
#include <utility>

namespace mv {

// A class-wide value that a host may replace: read with `MVColor::accentColor()`, replaced with `MVColor::accentColor = color`.
// Its first value is made once, at the first access of either kind, also when two threads race for it; views that already read it
// keep what they read.
template <typename Value> class MVEntry {
public:
    constexpr explicit MVEntry(Value (*makeInitial)())
        : makeInitial(makeInitial)
    {
    }
    MVEntry(const MVEntry&) = delete;

    Value operator()()
    {
        makeOnce();
        const std::lock_guard lock(mutex);
        return *value;
    }

    MVEntry& operator=(Value replacement)
    {
        makeOnce();
        const std::lock_guard lock(mutex);
        value = std::move(replacement);
        return *this;
    }

private:
    void makeOnce()
    {
        std::call_once(made, [this] { value = makeInitial(); });
    }

    Value (*makeInitial)();
    std::once_flag made;
    std::mutex mutex;
    std::optional<Value> value;
};

} // namespace mv
