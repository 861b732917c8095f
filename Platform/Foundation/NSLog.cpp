#include "Platform/Foundation/NSLog.h"

#include "Platform/Foundation/Text.h"

#include <array>
#include <cstdio>
#include <mutex>
#include <unistd.h>

namespace platform {

namespace {

std::mutex consoleMutex; // guards `innermost` and every capture's lines
LogCapture* innermost = nullptr;

std::string oneLine(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    const std::string valid = isValidUTF8(text) ? std::string() : validUTF8(text);
    for (const char c : valid.empty() ? text : std::string_view(valid)) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n')
            line += "\\n";
        else if (c == '\r')
            line += "\\r";
        else if (c == '\t' || (byte >= 0x20 && byte != 0x7f))
            line += c;
        else {
            std::array<char, 5> escape;
            std::snprintf(escape.data(), escape.size(), "\\x%02x", byte);
            line += escape.data();
        }
    }
    return line;
}

void print(std::string line)
{
    line += '\n';
    const char* rest = line.data();
    std::size_t left = line.size();
    while (left > 0) {
        const ssize_t written = ::write(STDERR_FILENO, rest, left);
        if (written <= 0)
            return; // nobody listens
        rest += written;
        left -= static_cast<std::size_t>(written);
    }
}

} // namespace

void NSLog(std::string_view text)
{
    std::string line = oneLine(text);
    const std::lock_guard lock(consoleMutex);
    if (innermost)
        innermost->captured.push_back(std::move(line));
    else
        print(std::move(line));
}

LogCapture::LogCapture()
{
    const std::lock_guard lock(consoleMutex);
    outer = innermost;
    innermost = this;
}

LogCapture::~LogCapture()
{
    const std::lock_guard lock(consoleMutex);
    innermost = outer;
}

std::vector<std::string> LogCapture::lines() const
{
    const std::lock_guard lock(consoleMutex);
    return captured;
}

void LogCapture::clear()
{
    const std::lock_guard lock(consoleMutex);
    captured.clear();
}

} // namespace platform
