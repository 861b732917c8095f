#pragma once

#include <string_view>

namespace platform {

// How much a host's last label says about whether a text means an address.
enum class DomainKind : unsigned char {
    unknown, // no domain that people write without a scheme
    ambiguous, // a domain that is also a word or the ending of a file's name
    plain,
    common, // com, net and org: whatever their letters' case
};

// `label`: UTF-8, in any case. All countries' domains and the general ones that shops and people use.
DomainKind domainKind(std::string_view label);

} // namespace platform
