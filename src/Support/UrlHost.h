#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// A special scheme (http, https, ws, wss, ftp, file) has a domain or an IP address, any other an opaque host.
enum class HostKind { domain, opaque };

// Parsed and serialised by the URL standard: domains in lower-case ASCII, IPv6 addresses in brackets, opaque hosts as
// they were written, percent-encoded. Nothing when the host is refused, as an empty domain is.
std::optional<std::string> parseHost(std::string_view, HostKind);

}
