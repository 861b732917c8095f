#include "Platform/Foundation/LinkDetector.h"

#include "Platform/Foundation/IcuModule.h"
#include "Platform/Foundation/ModuleLoader.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TopLevelDomains.h"
#include "Platform/Foundation/URL.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace platform {

namespace {

constexpr std::size_t longestHost = 253, longestLabel = 63; // bytes, of the domain name system
constexpr std::size_t longestIPv6 = 48; // bytes, brackets included
constexpr std::size_t longestPort = 5; // digits

bool isASCII(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool isLower(char c) { return c >= 'a' && c <= 'z'; }
bool isASCIILetter(char c) { return isUpper(c) || isLower(c); }

bool equalsIgnoringCase(std::string_view text, std::string_view lower)
{
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(),
        [](char a, char b) { return (isUpper(a) ? char(a + 32) : a) == b; });
}

bool isWordCharacter(char32_t c)
{
    if (c < 0x80)
        return isASCIILetter(char(c)) || isDigit(char(c));
    return g_unichar_isalnum(c) || g_unichar_ismark(c) || c == 0x200c || c == 0x200d; // the joiners shape letters
}

// Of scripts that put no spaces between words, so that an address may stand right beside them.
bool isUnspaced(char32_t c)
{
    return (c >= 0x0e00 && c <= 0x0eff) || (c >= 0x1000 && c <= 0x109f) || (c >= 0x1780 && c <= 0x17ff)
        || (c >= 0x3005 && c <= 0x30ff) || (c >= 0x3400 && c <= 0x9fff) || (c >= 0xac00 && c <= 0xd7a3)
        || (c >= 0xf900 && c <= 0xfaff) || (c >= 0x20000 && c <= 0x3ffff);
}

struct Host {
    std::size_t start, end;
};

class Detector {
public:
    explicit Detector(std::string_view whole)
        : text(whole)
    {
    }

    std::vector<DetectedLink> detect()
    {
        while (at < text.size()) {
            if (const CodePoint c = codePointAt(text, at); isWordCharacter(c.value))
                readName();
            else
                at += c.length;
        }
        return std::move(found);
    }

private:
    char byteAt(std::size_t place) const { return place < text.size() ? text[place] : '\0'; }
    std::string_view part(std::size_t start, std::size_t end) const { return text.substr(start, end - start); }

    // Where labels with single dots between them end: letters, digits, '-' and '_'.
    std::size_t nameEnd(std::size_t start) const
    {
        std::size_t end = start;
        for (std::size_t i = start; i < text.size();) {
            const CodePoint c = codePointAt(text, i);
            const bool inLabel = isWordCharacter(c.value) || c.value == '-' || c.value == '_';
            if (!inLabel && (c.value != '.' || i == start || text[i - 1] == '.'))
                break;
            i += c.length;
            if (inLabel)
                end = i;
        }
        while (end > start && (text[end - 1] == '-' || text[end - 1] == '_'))
            --end;
        return end;
    }

    // What may follow a host in an address. Emoji and the punctuation of other scripts end it.
    bool isAddressCharacter(char32_t c, bool inPath) const
    {
        if (c >= 0x80)
            return isWordCharacter(c);
        if (c <= ' ' || c == 0x7f)
            return false;
        constexpr std::string_view never = "\"<>\\^`{|}", neverInPath = "[]";
        return never.find(char(c)) == std::string_view::npos && !(inPath && neverInPath.find(char(c)) != std::string_view::npos);
    }

    std::size_t tokenEnd(std::size_t start) const
    {
        while (start < text.size()) {
            const CodePoint c = codePointAt(text, start);
            if (!isAddressCharacter(c.value, false))
                break;
            start += c.length;
        }
        return start;
    }

    // The first of the signs that divide an address, from its host on, or its end.
    std::size_t authorityMark(std::size_t start) const
    {
        while (start < text.size() && std::string_view("/?#@").find(text[start]) == std::string_view::npos) {
            const CodePoint c = codePointAt(text, start);
            if (!isAddressCharacter(c.value, false))
                break;
            start += c.length;
        }
        return start;
    }

    void readName()
    {
        const std::size_t start = at;
        at = nameEnd(start);
        if (byteAt(at) == '@') { // an e-mail address
            at = std::max(nameEnd(at + 1), at + 1);
            return;
        }
        if (text.substr(at).starts_with("://"))
            return readSchemed(start);
        const char before = start > 0 ? text[start - 1] : ' ';
        if (std::string_view("/\\@#$%&=+~").find(before) == std::string_view::npos)
            readBare({ start, at });
    }

    // `at` is at the colon after a name that may be a scheme.
    void readSchemed(std::size_t nameStart)
    {
        std::size_t scheme = at;
        while (scheme > nameStart && isASCIILetter(text[scheme - 1]))
            --scheme;
        const auto name = part(scheme, at);
        const std::size_t hostStart = at + 3;
        if (!equalsIgnoringCase(name, "http") && !equalsIgnoringCase(name, "https")) {
            at = tokenEnd(at);
            return;
        }
        // A user's name before the host makes an address look like another one's.
        if (const std::size_t user = authorityMark(hostStart); byteAt(user) == '@') {
            at = tokenEnd(user);
            return;
        }
        at = hostStart;
        const auto host = byteAt(hostStart) == '[' ? bracketed(hostStart) : named(hostStart);
        if (host)
            finish(scheme, *host, "");
    }

    std::optional<Host> bracketed(std::size_t start) const
    {
        const std::size_t end = text.substr(start, longestIPv6).find(']');
        return end == std::string_view::npos ? std::nullopt : std::optional(Host { start, start + end + 1 });
    }

    std::optional<Host> named(std::size_t start) const
    {
        if (start >= text.size() || !isWordCharacter(codePointAt(text, start).value))
            return std::nullopt;
        const Host host = withoutNeighbours({ start, nameEnd(start) });
        const auto name = part(host.start, host.end);
        return host.start == start && hasGoodLabels(name) && (!isNumeric(name) || isIPv4(name)) ? std::optional(host)
                                                                                                : std::nullopt;
    }

    void readBare(Host host)
    {
        host = withoutNeighbours(host);
        const auto name = part(host.start, host.end);
        const std::size_t dot = name.rfind('.');
        if (dot == std::string_view::npos || !hasGoodLabels(name))
            return;
        const auto domain = name.substr(dot + 1);
        const bool isWorldWideWeb = name.size() > 4 && equalsIgnoringCase(name.substr(0, 4), "www.") && dot > 3;
        const bool isAddress = isIPv4(name);
        const DomainKind kind = domainKind(domain);
        if (!isAddress && kind == DomainKind::unknown && !(isWorldWideWeb && isWord(domain)))
            return;
        // "Lovely.Shop" is a sentence that ends without a space after it, "5.kg" a weight.
        const bool isPlain = kind == DomainKind::plain && !isNumeric(name.substr(0, dot));
        const bool isLong = kind == DomainKind::ambiguous && name.find('.') != dot;
        const bool isClear = isWorldWideWeb || kind == DomainKind::common || ((isPlain || isLong) && !isCapitalised(domain));
        if (isClear || hasPortOrPath(host.end))
            finish(host.start, host, "http://");
    }

    // Words of unspaced scripts right before and after a host of ASCII are not its own.
    Host withoutNeighbours(Host host) const
    {
        const auto name = part(host.start, host.end);
        std::size_t first = 0;
        while (first < name.size()) {
            const CodePoint c = codePointAt(name, first);
            if (!isUnspaced(c.value))
                break;
            first += c.length;
        }
        const bool beginsMixed = first < name.size() && isASCIILetter(name[first]);
        std::size_t last = name.rfind('.') == std::string_view::npos ? first : name.rfind('.') + 1;
        const std::size_t label = last;
        while (last < name.size() && isASCII(name[last]))
            ++last;
        const bool endsMixed = last > label && last < name.size() && isUnspaced(codePointAt(name, last).value);
        return { beginsMixed ? host.start + first : host.start, endsMixed ? host.start + last : host.end };
    }

    static bool isWord(std::string_view label)
    {
        return label.size() >= 2 && std::none_of(label.begin(), label.end(), [](char c) { return isDigit(c) || c == '_'; });
    }

    static bool isCapitalised(std::string_view label)
    {
        return isUpper(label.front()) && std::any_of(label.begin(), label.end(), isLower);
    }

    static bool hasGoodLabels(std::string_view host)
    {
        if (host.size() > longestHost)
            return false;
        while (!host.empty()) {
            const auto label = host.substr(0, host.find('.'));
            if (label.empty() || label.size() > longestLabel || label.front() == '-' || label.back() == '-')
                return false;
            host.remove_prefix(std::min(label.size() + 1, host.size()));
        }
        return true;
    }

    static bool isNumeric(std::string_view host)
    {
        return std::all_of(host.begin(), host.end(), [](char c) { return isDigit(c) || c == '.'; });
    }

    static bool isIPv4(std::string_view host)
    {
        int parts = 0;
        for (; !host.empty(); ++parts) {
            const auto number = host.substr(0, host.find('.'));
            int value = -1;
            const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
            if (error != std::errc() || end != number.data() + number.size() || number.size() > 3 || value > 255)
                return false;
            host.remove_prefix(std::min(number.size() + 1, host.size()));
        }
        return parts == 4;
    }

    // The end of ":8080" after a host; the same place where there is none.
    std::size_t portEnd(std::size_t place) const
    {
        if (byteAt(place) != ':')
            return place;
        std::size_t end = place + 1;
        while (end - place - 1 <= longestPort && isDigit(byteAt(end)))
            ++end;
        unsigned number = 0;
        std::from_chars(text.data() + place + 1, text.data() + end, number);
        const bool goesOn = end < text.size() && isWordCharacter(codePointAt(text, end).value);
        return number > 0 && number <= 65535 && !goesOn ? end : place;
    }

    bool hasPortOrPath(std::size_t hostEnd) const { return portEnd(hostEnd) > hostEnd || byteAt(hostEnd) == '/'; }

    void finish(std::size_t start, const Host& host, std::string_view scheme)
    {
        const std::size_t end = addressEnd(portEnd(host.end));
        at = std::max(at, end);
        const auto name = part(host.start, host.end);
        std::string address(scheme);
        address += part(start, host.start);
        const auto ascii = inASCII(name);
        if (!ascii)
            return;
        address += *ascii;
        address += part(host.end, end);
        if (const auto url = URL::parse(address))
            found.push_back({ start, end - start, url->absoluteString() });
    }

    // Path, query and fragment, without the punctuation and the brackets that belong to the sentence around them.
    std::size_t addressEnd(std::size_t start) const
    {
        if (const char c = byteAt(start); c != '/' && c != '?' && c != '#')
            return start;
        std::size_t end = start;
        bool inPath = true;
        Brackets brackets;
        while (end < text.size()) {
            const CodePoint c = codePointAt(text, end);
            inPath = inPath && c.value != '?' && c.value != '#';
            if (!isAddressCharacter(c.value, inPath) || ((c.value == ',' || c.value == ';') && isNextAddress(end + 1)))
                break;
            brackets.count(c.value, 1);
            end += c.length;
        }
        while (end > start) {
            const char last = text[end - 1];
            const bool closesNothing = (last == ')' && brackets.round < 0) || (last == ']' && brackets.square < 0);
            if (!closesNothing && std::string_view(".,;:!?'*([").find(last) == std::string_view::npos)
                break;
            brackets.count(char32_t(last), -1);
            --end;
        }
        return end;
    }

    struct Brackets {
        std::ptrdiff_t round = 0, square = 0; // opened and not closed; negative for what was closed only
        void count(char32_t c, int by)
        {
            round += c == '(' ? by : c == ')' ? -by : 0;
            square += c == '[' ? by : c == ']' ? -by : 0;
        }
    };

    bool isNextAddress(std::size_t place) const
    {
        return equalsIgnoringCase(text.substr(place, 7), "http://") || equalsIgnoringCase(text.substr(place, 8), "https://");
    }

    // As the domain name system knows it; nothing for what is no name there. Without ICU the address is percent-encoded instead,
    // which browsers understand as well.
    static std::optional<std::string> inASCII(std::string_view host)
    {
        if (std::all_of(host.begin(), host.end(), isASCII))
            return std::string(host);
        const auto* icu = loadModule<IcuModule>("icu");
        return icu ? icu->asciiHost(std::string(host)) : std::string(host);
    }

    std::string_view text;
    std::size_t at = 0; // everything before is done
    std::vector<DetectedLink> found;
};

} // namespace

std::vector<DetectedLink> detectLinks(std::string_view text)
{
    // Most chat lines hold neither.
    if (text.find('.') == std::string_view::npos && text.find("://") == std::string_view::npos)
        return {};
    return Detector(text).detect();
}

} // namespace platform
