#pragma once

#include "Platform/Foundation/NSObject.h"

#include <memory>
#include <string>

namespace platform {

enum class AVAudioSessionCategory : unsigned char { ambient, soloAmbient, playback };
enum class AVAudioSessionMode : unsigned char { standard, moviePlayback };

// What the application says it uses sound for. On this platform every application may play at any time and nothing is silenced
// by a switch, so it is kept for whoever asks, and nothing fails. Main thread.
class AVAudioSession final : public NSObject {
public:
    static AVAudioSession& sharedInstance();

    AVAudioSessionCategory category() const { return category_; }
    bool setCategory(AVAudioSessionCategory category, std::string* error = nullptr);
    AVAudioSessionMode mode() const { return mode_; }
    bool setMode(AVAudioSessionMode mode, std::string* error = nullptr);

private:
    AVAudioSessionCategory category_ = AVAudioSessionCategory::soloAmbient;
    AVAudioSessionMode mode_ = AVAudioSessionMode::standard;
};

} // namespace platform
