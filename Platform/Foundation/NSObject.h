#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace platform {

class NSObject;

// What outlives an object just long enough to say whether it still lives. Captured early, locked late.
struct LifeBlock {
    std::weak_ptr<NSObject> self; // bound by make; empty before that and after the object's end
};

// The root of everything that is shared and referred to weakly. Main thread.
class NSObject {
public:
    NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
    virtual ~NSObject() = default;

    const std::shared_ptr<LifeBlock>& lifeBlock() const { return lifeBlock_; }

private:
    std::shared_ptr<LifeBlock> lifeBlock_ = std::make_shared<LifeBlock>();
};

// A reference that does not keep its object alive. Unlike std::weak_ptr it may be taken inside the object's own constructor: it
// locks from the moment make has bound the object.
template <typename T> class WeakRef {
public:
    WeakRef() = default;
    WeakRef(const std::shared_ptr<T>& target)
        : WeakRef(target.get())
    {
    }
    explicit WeakRef(T* target)
        : lifeBlock(target ? target->lifeBlock() : nullptr)
        , object(target)
    {
    }

    // The object, or null when it is gone or not yet bound.
    std::shared_ptr<T> lock() const
    {
        auto alive = lifeBlock ? lifeBlock->self.lock() : nullptr;
        return alive ? std::shared_ptr<T>(std::move(alive), object) : nullptr;
    }
    // True while it refers to that very object, alive or not.
    bool refersTo(const T* other) const { return object == other; }

private:
    std::shared_ptr<LifeBlock> lifeBlock;
    T* object = nullptr;
};

template <typename T> WeakRef<T> weak(T* object) { return WeakRef<T>(object); }
template <typename T> WeakRef<T> weak(const std::shared_ptr<T>& object) { return WeakRef<T>(object.get()); }

// Makes an object that can be referred to weakly. The only way to make one.
template <typename T, typename... Arguments> std::shared_ptr<T> make(Arguments&&... arguments)
{
    static_assert(std::is_base_of_v<NSObject, T>);
    auto object = std::make_shared<T>(std::forward<Arguments>(arguments)...);
    object->lifeBlock()->self = object;
    return object;
}

} // namespace platform
