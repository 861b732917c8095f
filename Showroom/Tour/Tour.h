#pragma once

#include <string>

namespace platform {
class HeadlessHost;
}

namespace showroom {

class ShowroomApp;

// Plays the story of what there is in the shop, from the start page on, on a device without a display, in the host's time: some
// three quarters of a minute. Leaves pictures, events.jsonl and on request tour.mp4 in the folder, which is made. False, after a
// line on the console or in the log, when a step of the story found nothing to touch or a file could not be written.
bool playTour(ShowroomApp& app, platform::HeadlessHost& host, const std::string& folder, bool withFilm);

} // namespace showroom
