#include "Platform/Foundation/UUID.h"

#include <array>
#include <cstdint>
#include <random>
#include <sys/random.h>

namespace platform {

std::string makeUUID()
{
    std::array<std::uint8_t, 16> bytes;
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        std::random_device device; // a kernel without the call
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(device());
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0f) | 0x40); // version 4
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3f) | 0x80); // the common variant

    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0f];
    }
    return text;
}

} // namespace platform
