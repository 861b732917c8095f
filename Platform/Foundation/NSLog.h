#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Writes one line to the console (standard error). Line breaks and other control characters inside are written as escapes,
// invalid UTF-8 as U+FFFD, so that a call is always exactly one line. Any thread.
void NSLog(std::string_view text);

// While it lives, console lines of all threads are kept here instead of printed. Captures nest: the innermost takes the lines.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<std::string> lines() const; // so far, oldest first
    void clear();

private:
    friend void NSLog(std::string_view text);

    LogCapture* outer = nullptr;
    std::vector<std::string> captured;
};

} // namespace platform
