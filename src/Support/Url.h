#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {

// An absolute URL as the engine sees it: parsed and serialised by the WHATWG URL standard, so that a string names the
// same host here and in a web view, however it was written (case, user info, backslashes, tabs, IDNA, IPv4 shorthand).
class Url {
public:
    using QueryItem = std::pair<std::string, std::optional<std::string>>;

    // From UTF-8; ill-formed parts become U+FFFD. Nothing for a relative reference, for whatever the standard refuses
    // and for more than 32 MiB.
    static std::optional<Url> parse(std::string_view);

    // Serialised, ASCII only.
    std::string const& string() const { return m_string; }

    // Lower-case, without the colon. Never empty.
    std::string_view scheme() const { return part(0, m_schemeEnd); }
    // ASCII, without the port; empty when there is none. Of the schemes http, https, ws, wss, ftp and file in lower
    // case (punycode; IPv6 in brackets); any other scheme's host is opaque and keeps its case.
    std::string_view host() const { return part(m_hostStart, m_hostEnd); }
    bool hasHost() const { return m_hostEnd > m_hostStart; }
    // As serialised, percent-encoded.
    std::string_view path() const { return part(m_pathStart, m_pathEnd); }
    // Percent-decoded; as serialised when the escapes are broken or are not UTF-8.
    std::string decodedPath() const;
    // Without the question mark; absent and empty are different.
    std::optional<std::string_view> query() const;
    // Without the number sign.
    std::optional<std::string_view> fragment() const;

    // The query's items in order, names and values percent-decoded. A plus sign stays a plus sign. An item without an
    // equals sign has no value. Text with broken escapes stays as it is.
    std::vector<QueryItem> queryItems() const;
    // The value of the first item of that name; nothing when there is no such item or it has no value.
    std::optional<std::string> firstQueryValue(std::string_view name) const;

    // This URL with its query replaced by the items, percent-encoded (also "+", which form decoders take for a space).
    // No items, no query.
    Url withQueryItems(std::vector<std::pair<std::string, std::string>> const&) const;

    friend bool operator==(Url const& a, Url const& b) { return a.m_string == b.m_string; }

private:
    friend class UrlParser;

    Url() = default;
    std::string_view part(std::uint32_t from, std::uint32_t to) const
    {
        return std::string_view(m_string).substr(from, to - from);
    }

    std::string m_string;
    // Offsets into m_string.
    std::uint32_t m_schemeEnd { 0 };
    std::uint32_t m_hostStart { 0 };
    std::uint32_t m_hostEnd { 0 };
    std::uint32_t m_pathStart { 0 };
    std::uint32_t m_pathEnd { 0 };
    std::uint32_t m_queryEnd { 0 }; // m_pathEnd when there is no query
};

// Nothing when an escape is broken or the result is not UTF-8.
std::optional<std::string> percentDecode(std::string_view);

}
