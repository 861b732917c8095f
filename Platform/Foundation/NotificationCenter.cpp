#include "Platform/Foundation/NotificationCenter.h"

#include <algorithm>
#include <vector>

namespace platform {

struct NotificationCenter::Impl {
    std::map<std::string, std::vector<std::shared_ptr<NotificationToken::Registration>>, std::less<>> observers;
};

struct NotificationToken::Registration {
    std::weak_ptr<NotificationCenter::Impl> center;
    std::string name;
    std::shared_ptr<LifeBlock> sender; // null: any. Held, so that no later object can be taken for this one.
    NotificationCenter::Callback callback;
    bool active = true;
};

NotificationToken::NotificationToken(std::shared_ptr<Registration> made)
    : registration(std::move(made))
{
}

NotificationToken& NotificationToken::operator=(NotificationToken&& other) noexcept
{
    if (this != &other) {
        reset();
        registration = std::move(other.registration);
    }
    return *this;
}

NotificationToken::~NotificationToken() { reset(); }

void NotificationToken::reset()
{
    const auto ended = std::exchange(registration, nullptr);
    if (!ended)
        return;
    ended->active = false;
    const auto center = ended->center.lock();
    if (!center)
        return;
    const auto list = center->observers.find(ended->name);
    std::erase(list->second, ended);
    if (list->second.empty())
        center->observers.erase(list);
}

NotificationCenter::NotificationCenter()
    : impl(std::make_shared<Impl>())
{
}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter& NotificationCenter::defaultCenter()
{
    static auto* const center = new NotificationCenter; // outlives every observer
    return *center;
}

NotificationToken NotificationCenter::addObserver(std::string name, Callback callback)
{
    return addObserver(std::move(name), nullptr, std::move(callback));
}

NotificationToken NotificationCenter::addObserver(std::string name, const std::shared_ptr<NSObject>& sender, Callback callback)
{
    auto registration = std::make_shared<NotificationToken::Registration>();
    registration->center = impl;
    registration->name = std::move(name);
    registration->sender = sender ? sender->lifeBlock() : nullptr;
    registration->callback = std::move(callback);
    impl->observers[registration->name].push_back(registration);
    return NotificationToken(std::move(registration));
}

void NotificationCenter::post(const Notification& notification)
{
    const auto list = impl->observers.find(notification.name);
    if (list == impl->observers.end())
        return;
    const auto present = list->second; // a copy, for the list changes when observers come and go
    const auto sender = notification.object ? notification.object->lifeBlock() : nullptr;
    for (const auto& registration : present) {
        if (registration->active && (!registration->sender || registration->sender == sender) && registration->callback)
            registration->callback(notification);
    }
}

void NotificationCenter::post(std::string name, std::shared_ptr<NSObject> object, Notification::UserInfo userInfo)
{
    post(Notification { std::move(name), std::move(object), std::move(userInfo) });
}

} // namespace platform
