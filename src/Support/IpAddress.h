#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// The addresses of the URL standard's hosts. What is parsed has no percent escapes left; nothing when it is refused.

// Whether a host can only be an IPv4 address: its last label is a number in some notation.
bool endsInNumber(std::string_view host);

// From any notation (short, hexadecimal, octal) to four decimal numbers.
std::optional<std::string> canonicalIpv4(std::string_view);

// From any notation to the compressed one; without the brackets, before and after.
std::optional<std::string> canonicalIpv6(std::string_view);

}
