#include "Platform/Foundation/URL.h"

#include "Platform/Foundation/Text.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace platform {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isUnreserved(char c) { return isLetter(c) || isDigit(c) || c == '-' || c == '.' || c == '_' || c == '~'; }

// May stand in an address as it is, in the one place or the other (RFC 3986).
bool isAllowed(char c) { return isUnreserved(c) || std::string_view("!$&'()*+,;=:@/?#[]").find(c) != std::string_view::npos; }

int hexDigit(char c) // -1 for another character
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

bool isEscape(std::string_view text, std::size_t offset)
{
    return text[offset] == '%' && offset + 2 < text.size() && hexDigit(text[offset + 1]) >= 0 && hexDigit(text[offset + 2]) >= 0;
}

void appendEscape(std::string& text, char c)
{
    constexpr const char* digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    text += '%';
    text += digits[byte >> 4];
    text += digits[byte & 15];
}

std::string encodedWhereNeeded(std::string_view text)
{
    std::string encoded;
    encoded.reserve(text.size());
    bool inFragment = false; // a second '#' would begin another one
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSecondHash = text[i] == '#' && inFragment;
        inFragment = inFragment || text[i] == '#';
        if ((isAllowed(text[i]) && !isSecondHash) || isEscape(text, i))
            encoded += text[i];
        else
            appendEscape(encoded, text[i]);
    }
    return encoded;
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }

bool isScheme(std::string_view text)
{
    return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), [](char c) {
        return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
    });
}

std::optional<std::uint16_t> portNumber(std::string_view digits)
{
    std::uint16_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc() && end == digits.data() + digits.size() ? std::optional(number) : std::nullopt;
}

bool isIPv6(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return hexDigit(c) >= 0 || c == ':' || c == '.'; })
        && text.find(':') != std::string_view::npos;
}

} // namespace

// Views into the whole text; absent parts have no data.
struct URL::Parts {
    std::string_view scheme;
    std::optional<std::string_view> authority;
    std::string_view host; // an IPv6 address without its brackets
    std::optional<std::string_view> port;
    std::string_view path;
    std::optional<std::string_view> query;
    std::optional<std::string_view> fragment;
    bool isWellFormed = true;

    explicit Parts(std::string_view rest)
    {
        const std::size_t colon = rest.find_first_of(":/?#");
        if (colon != std::string_view::npos && rest[colon] == ':') {
            scheme = rest.substr(0, colon);
            isWellFormed = isScheme(scheme);
            rest.remove_prefix(colon + 1);
        }
        fragment = cutAfter(rest, '#');
        query = cutAfter(rest, '?');
        if (rest.starts_with("//")) {
            const std::size_t end = std::min(rest.find('/', 2), rest.size());
            authority = rest.substr(2, end - 2);
            rest.remove_prefix(end);
            readAuthority(*authority);
        }
        path = rest;
        isWellFormed = isWellFormed && path.find_first_of("[]") == std::string_view::npos;
    }

private:
    static std::optional<std::string_view> cutAfter(std::string_view& rest, char mark)
    {
        const std::size_t place = rest.find(mark);
        if (place == std::string_view::npos)
            return std::nullopt;
        const std::string_view part = rest.substr(place + 1);
        rest = rest.substr(0, place);
        return part;
    }

    void readAuthority(std::string_view rest)
    {
        const std::size_t user = rest.rfind('@');
        if (user != std::string_view::npos)
            rest.remove_prefix(user + 1);
        if (rest.starts_with('[')) {
            const std::size_t end = std::min(rest.find(']'), rest.size());
            host = rest.substr(1, end - 1);
            isWellFormed = isWellFormed && end < rest.size() && isIPv6(host);
            rest.remove_prefix(std::min(end + 1, rest.size()));
            isWellFormed = isWellFormed && (rest.empty() || rest.front() == ':');
            port = cutAfter(rest, ':');
        } else {
            port = cutAfter(rest, ':');
            host = rest;
            isWellFormed = isWellFormed && host.find_first_of("[]") == std::string_view::npos;
        }
        // An empty port is allowed and means none.
        isWellFormed = isWellFormed && (!port || port->empty() || portNumber(*port));
        // Addresses of the web name a host.
        isWellFormed = isWellFormed && !(host.empty() && (scheme.starts_with("http") || scheme.starts_with("HTTP")));
    }
};

std::optional<URL> URL::parse(std::string_view text)
{
    if (text.empty() || text.size() > maximumBytes || std::any_of(text.begin(), text.end(), isControl) || !isValidUTF8(text))
        return std::nullopt;
    URL url(encodedWhereNeeded(text));
    return url.parts().isWellFormed ? std::optional(std::move(url)) : std::nullopt;
}

URL URL::fileURL(std::string_view path)
{
    std::error_code error;
    const std::string absolute = std::filesystem::absolute(path, error).string();
    std::string text = "file://";
    for (const char c : absolute) {
        if (isUnreserved(c) || c == '/')
            text += c;
        else
            appendEscape(text, c);
    }
    return URL(std::move(text));
}

URL::Parts URL::parts() const { return Parts(text); }

std::string URL::scheme() const
{
    std::string scheme(parts().scheme);
    std::transform(scheme.begin(), scheme.end(), scheme.begin(),
        [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return scheme;
}

std::string URL::host() const { return percentDecoded(parts().host); }

std::optional<std::uint16_t> URL::port() const
{
    const auto digits = parts().port;
    return digits ? portNumber(*digits) : std::nullopt;
}

std::string URL::path() const { return percentDecoded(parts().path); }

std::string URL::filePath() const
{
    std::string file = isFileURL() ? path() : std::string();
    return file.find('\0') == std::string::npos ? file : std::string();
}

std::optional<std::string> URL::query() const
{
    const auto query = parts().query;
    return query ? std::optional(std::string(*query)) : std::nullopt;
}

std::optional<std::string> URL::fragment() const
{
    const auto fragment = parts().fragment;
    return fragment ? std::optional(std::string(*fragment)) : std::nullopt;
}

std::string URL::pathExtension() const
{
    const std::string whole = path();
    const std::string name = whole.substr(whole.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos || dot == 0 ? "" : name.substr(dot + 1);
}

std::string percentEncoded(std::string_view text)
{
    std::string encoded;
    for (const char c : text) {
        if (isUnreserved(c))
            encoded += c;
        else
            appendEscape(encoded, c);
    }
    return encoded;
}

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isEscape(text, i)) {
            decoded += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return isValidUTF8(decoded) ? decoded : validUTF8(decoded);
}

} // namespace platform
