#pragma once

#include "Platform/Foundation/NSObject.h"

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

struct Notification {
    using UserInfo = std::map<std::string, std::any, std::less<>>;

    std::string name;
    std::shared_ptr<NSObject> object; // the sender; null when there is none
    UserInfo userInfo;

    // The entry of that key if it has exactly that type, else null.
    template <typename T> const T* value(std::string_view key) const
    {
        const auto entry = userInfo.find(key);
        return entry == userInfo.end() ? nullptr : std::any_cast<T>(&entry->second);
    }
};

// An observer's registration: ends when it is destroyed, reset or assigned over.
class NotificationToken {
public:
    struct Registration;

    NotificationToken() = default;
    explicit NotificationToken(std::shared_ptr<Registration> made);
    NotificationToken(NotificationToken&&) noexcept = default;
    NotificationToken& operator=(NotificationToken&& other) noexcept;
    ~NotificationToken();

    void reset();
    explicit operator bool() const { return registration != nullptr; }

private:
    std::shared_ptr<Registration> registration;
};

// Delivers a posted notification at once to everyone who observes its name. Observers may come, go and post again inside a
// delivery: one that has left gets nothing more, one that came during a delivery gets the next one. Main thread.
class NotificationCenter {
public:
    using Callback = std::function<void(const Notification& notification)>;
    struct Impl;

    NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    ~NotificationCenter();

    static NotificationCenter& defaultCenter();

    // With a sender, only that very object's notifications arrive (none once it is gone). The caller keeps the token.
    [[nodiscard]] NotificationToken addObserver(std::string name, Callback callback);
    [[nodiscard]] NotificationToken addObserver(std::string name, const std::shared_ptr<NSObject>& sender, Callback callback);
    void removeObserver(NotificationToken& token) { token.reset(); }

    // In the order of registration.
    void post(const Notification& notification);
    void post(std::string name, std::shared_ptr<NSObject> object = nullptr, Notification::UserInfo userInfo = {});

private:
    std::shared_ptr<Impl> impl; // tokens refer to it weakly
};

} // namespace platform
