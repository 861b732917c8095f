#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

// An address. Made only from text that has the form of one, and then never changes.
class URL {
public:
    static constexpr std::size_t maximumBytes = 1u << 20;

    // Nothing for an empty text, one with control characters or invalid UTF-8, a malformed scheme, host or port, or one that is
    // too long. Characters that may not stand in an address (spaces, letters beyond ASCII, a stray '%') are percent-encoded.
    static std::optional<URL> parse(std::string_view text);
    static URL fileURL(std::string_view path); // a relative one counts from the working folder

    const std::string& absoluteString() const { return text; }
    std::string scheme() const; // lower case; "" for a relative address
    std::string host() const; // without brackets, percent-decoded; "" when there is none
    std::optional<std::uint16_t> port() const; // only when the text has one
    std::string path() const; // percent-decoded
    std::optional<std::string> query() const; // as in the text
    std::optional<std::string> fragment() const;
    bool isFileURL() const { return scheme() == "file"; }
    std::string filePath() const; // "" for what is no file's address or could be no file's name
    std::string pathExtension() const; // "mp4" for ".../clip.mp4?x", "" when there is none

    auto operator<=>(const URL&) const = default;

private:
    struct Parts;

    explicit URL(std::string wellFormed)
        : text(std::move(wellFormed))
    {
    }
    Parts parts() const;

    std::string text;
};

std::string percentEncoded(std::string_view text); // everything but letters, digits and - . _ ~
std::string percentDecoded(std::string_view text); // a stray '%' stays; invalid UTF-8 becomes U+FFFD

} // namespace platform
