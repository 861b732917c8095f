#include "Platform/AVFoundation/AVAudioSession.h"

namespace platform {

AVAudioSession& AVAudioSession::sharedInstance()
{
    static AVAudioSession& session = *new AVAudioSession;
    return session;
}

bool AVAudioSession::setCategory(AVAudioSessionCategory category, std::string* /*error*/)
{
    category_ = category;
    return true;
}

bool AVAudioSession::setMode(AVAudioSessionMode mode, std::string* /*error*/)
{
    mode_ = mode;
    return true;
}

} // namespace platform
