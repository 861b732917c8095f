#pragma once

#include "Platform/Foundation/JSONCoding.h"
#include "Service/MVPlatform.h"

#include <string>

namespace mv {

// The calendar entry that the viewer made for a broadcast. Kept in the user defaults under the broadcast's identifier.
class MVCalendarEvent {
public:
    std::string identifier; // of the entry in the calendar
    std::string broadcastId;

    static constexpr auto codingKeys()
    {
        return std::tuple { codingKey("identifier", &MVCalendarEvent::identifier),
            codingKey("broadcastId", &MVCalendarEvent::broadcastId) };
    }
};

} // namespace mv
