#pragma once

#include "Service/MVRecords.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace mv {

// Runs the call at once on the main thread; from another thread it goes through the main queue, and the console hears once for
// every name that the service broke its promise.
void deliverOnMainThread(const char* name, std::function<void()> call);

// Says once for every name that the service answered again; the answer is dropped.
void reportSecondAnswer(const char* name);

// The answer to a call that no service is there to take.
MVApiError noServiceError();

// What the kit hands to a service as completion: it reaches the kit on the main thread, and only the first answer does.
template <typename... Results>
std::function<void(Results...)> deliveredOnce(const char* name, std::function<void(Results...)> completion)
{
    return [name, completion = std::move(completion), answered = std::make_shared<std::atomic_bool>(false)](Results... results) {
        if (answered->exchange(true))
            return reportSecondAnswer(name);
        if (completion)
            deliverOnMainThread(name, [completion, ... results = std::move(results)] { completion(results...); });
    };
}

// Who listens under which identifier, in the order of registration. Held weakly. Main thread.
template <typename Delegate> class MVDelegateRegistry {
public:
    // A second delegate under the same identifier takes the place of the first.
    void add(const std::shared_ptr<Delegate>& delegate, const std::string& identifier)
    {
        remove(identifier);
        entries.push_back(std::make_shared<Entry>(Entry { identifier, delegate }));
    }

    void remove(const std::string& identifier)
    {
        std::erase_if(entries, [&](const auto& entry) {
            const bool found = entry->identifier == identifier || entry->delegate.expired();
            if (found)
                entry->delegate.reset(); // a delivery that is under way skips it
            return found;
        });
    }

    // Calls everyone who is registered now; one who leaves during the round is not called any more, one who joins waits for the
    // next.
    void forEach(const std::function<void(Delegate&)>& call) const
    {
        const auto round = entries;
        for (const auto& entry : round) {
            if (const auto delegate = entry->delegate.lock())
                call(*delegate);
        }
    }

    std::size_t count() const { return entries.size(); }

private:
    struct Entry {
        std::string identifier;
        std::weak_ptr<Delegate> delegate;
    };
    std::vector<std::shared_ptr<Entry>> entries;
};

} // namespace mv
