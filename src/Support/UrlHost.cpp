#include "Support/UrlHost.h"

#include "Support/Ascii.h"
#include "Support/IpAddress.h"
#include "Support/PercentEncoding.h"

#include <unicode/uidna.h>

#include <algorithm>
#include <array>

namespace tarn {

namespace {

// Both limits are for domains that need IDNA. The engine refuses longer results too. The input is limited, to what can
// lead to such a result, because punycode takes more than linear time.
constexpr std::size_t maximumDomainLength { 2048 };
constexpr std::size_t maximumIdnaInput { 4 * maximumDomainLength };

bool isForbiddenInHost(char character)
{
    using namespace std::string_view_literals;
    return "\0\t\n\r #/:<>?@[\\]^|"sv.find(character) != std::string_view::npos;
}

bool isForbiddenInDomain(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == 0x7F || character == '%'
        || isForbiddenInHost(character);
}

// In lower-case ASCII.
bool hasPunycodeLabel(std::string_view domain)
{
    return domain.starts_with("xn--") || domain.find(".xn--") != domain.npos;
}

UIDNA const* idna()
{
    static auto const* const instance = [] {
        auto status = U_ZERO_ERROR;
        return uidna_openUTS46(
            UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII | UIDNA_NONTRANSITIONAL_TO_UNICODE,
            &status);
    }();
    return instance;
}

// UTS 46 without the checks of hyphens and of DNS lengths.
std::optional<std::string> idnaToAscii(std::string_view domain)
{
    constexpr std::uint32_t tolerated = UIDNA_ERROR_EMPTY_LABEL | UIDNA_ERROR_LABEL_TOO_LONG
        | UIDNA_ERROR_DOMAIN_NAME_TOO_LONG | UIDNA_ERROR_LEADING_HYPHEN | UIDNA_ERROR_TRAILING_HYPHEN
        | UIDNA_ERROR_HYPHEN_3_4;
    if (domain.size() > maximumIdnaInput || !idna())
        return std::nullopt;
    std::array<char, maximumDomainLength> ascii;
    UIDNAInfo info = UIDNA_INFO_INITIALIZER;
    auto status = U_ZERO_ERROR;
    auto const length = uidna_nameToASCII_UTF8(
        idna(), domain.data(), static_cast<int32_t>(domain.size()), ascii.data(), ascii.size(), &info, &status);
    if (U_FAILURE(status) || (info.errors & ~tolerated) != 0)
        return std::nullopt;
    return std::string(ascii.data(), length);
}

std::optional<std::string> parseDomain(std::string_view text)
{
    auto domain = toAsciiLower(percentDecodeLeniently(text));
    if (!isAscii(domain) || hasPunycodeLabel(domain)) {
        auto ascii = idnaToAscii(domain);
        if (!ascii)
            return std::nullopt;
        domain = *std::move(ascii);
    }
    if (domain.empty() || std::ranges::any_of(domain, isForbiddenInDomain))
        return std::nullopt;
    return endsInNumber(domain) ? canonicalIpv4(domain) : std::move(domain);
}

std::optional<std::string> parseOpaqueHost(std::string_view text)
{
    if (std::ranges::any_of(text, isForbiddenInHost))
        return std::nullopt;
    std::string host;
    appendPercentEncoded(host, text, c0ControlSet);
    return host;
}

}

std::optional<std::string> parseHost(std::string_view text, HostKind kind)
{
    if (text.starts_with('[')) {
        if (!text.ends_with(']'))
            return std::nullopt;
        auto const address = canonicalIpv6(text.substr(1, text.size() - 2));
        return address ? std::optional('[' + *address + ']') : std::nullopt;
    }
    return kind == HostKind::domain ? parseDomain(text) : parseOpaqueHost(text);
}

}
