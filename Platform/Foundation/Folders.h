#pragma once

#include <string>

namespace platform {

// Where this application keeps what it owns. A host names itself, or sets the folders, before their first use. Main thread.
class Folders {
public:
    // The sub-folder's name in the user's folders; by default the executable's name.
    static void setApplicationName(std::string name);
    static void setData(std::string path);
    static void setCache(std::string path);

    static std::string data(); // kept for the user: $XDG_DATA_HOME or ~/.local/share, then the application's name
    static std::string cache(); // may be emptied by anyone: $XDG_CACHE_HOME or ~/.cache, then the application's name
    static std::string executable(); // the folder that the running program lies in
};

} // namespace platform
