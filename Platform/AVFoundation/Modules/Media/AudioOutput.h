#pragma once

#include <atomic>
#include <cstdint>

namespace platform {

// What is seen of the sound of one player on its way to the sink.
struct AudioTap {
    std::atomic<int> peak { 0 }; // the loudest 16-bit sample since it was last taken
};

// A sink of 16-bit samples for a player: the user's sound device or, where there is none, one that only keeps time; for steps one
// that does not even do that. Returns a floating reference to an element of the media library. The tap must outlive it.
void* makeAudioOutput(bool keepsTime, AudioTap& tap);

} // namespace platform
