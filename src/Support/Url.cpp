#include "Support/Url.h"

#include "Support/PercentEncoding.h"
#include "Support/Unicode.h"

namespace tarn {

namespace {

// Of a name or a value: all that may stay as it is in a query, but for the separators and for the plus sign, which form
// decoders take for a space.
constexpr PercentEncodeSet queryItemSet { specialQuerySet, "%&+=[\\]^`{|}" };

struct RawQueryItem {
    std::string_view name;
    std::optional<std::string_view> value;
};

RawQueryItem takeQueryItem(std::string_view& query)
{
    auto const end = query.find('&');
    auto const item = query.substr(0, end);
    query.remove_prefix(end == query.npos ? query.size() : end + 1);
    auto const equals = item.find('=');
    if (equals == item.npos)
        return { item, std::nullopt };
    return { item.substr(0, equals), item.substr(equals + 1) };
}

std::string decodedOrAsItIs(std::string_view text)
{
    auto decoded = percentDecode(text);
    return decoded ? *std::move(decoded) : std::string(text);
}

}

std::string Url::decodedPath() const
{
    return decodedOrAsItIs(path());
}

std::optional<std::string_view> Url::query() const
{
    if (m_queryEnd == m_pathEnd)
        return std::nullopt;
    return part(m_pathEnd + 1, m_queryEnd);
}

std::optional<std::string_view> Url::fragment() const
{
    if (m_string.size() == m_queryEnd)
        return std::nullopt;
    return std::string_view(m_string).substr(m_queryEnd + 1);
}

std::vector<Url::QueryItem> Url::queryItems() const
{
    std::vector<QueryItem> items;
    for (auto rest = query().value_or(""); !rest.empty();) {
        auto const [name, value] = takeQueryItem(rest);
        items.emplace_back(decodedOrAsItIs(name), value ? std::optional(decodedOrAsItIs(*value)) : std::nullopt);
    }
    return items;
}

std::optional<std::string> Url::firstQueryValue(std::string_view name) const
{
    for (auto rest = query().value_or(""); !rest.empty();) {
        auto const item = takeQueryItem(rest);
        auto const isEscaped = item.name.find('%') != item.name.npos;
        if (isEscaped ? decodedOrAsItIs(item.name) == name : item.name == name)
            return item.value ? std::optional(decodedOrAsItIs(*item.value)) : std::nullopt;
    }
    return std::nullopt;
}

Url Url::withQueryItems(std::vector<std::pair<std::string, std::string>> const& items) const
{
    Url result { *this };
    result.m_string.resize(m_pathEnd);
    char separator = '?';
    for (auto const& [name, value] : items) {
        result.m_string += std::exchange(separator, '&');
        appendPercentEncoded(result.m_string, name, queryItemSet);
        result.m_string += '=';
        appendPercentEncoded(result.m_string, value, queryItemSet);
    }
    result.m_queryEnd = static_cast<std::uint32_t>(result.m_string.size());
    result.m_string.append(m_string, m_queryEnd);
    return result;
}

std::optional<std::string> percentDecode(std::string_view text)
{
    if (hasBrokenEscape(text))
        return std::nullopt;
    auto bytes = percentDecodeLeniently(text);
    return isUtf8(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

}
