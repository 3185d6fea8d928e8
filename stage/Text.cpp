#include "Text.h"

#include <glib.h>

#include <algorithm>
#include <memory>

namespace tarn::stage {

namespace {

struct Free {
    void operator()(char* text) const { g_free(text); }
};
using Chars = std::unique_ptr<char, Free>;

std::string_view trimmed(std::string_view text)
{
    auto const start = text.find_first_not_of(' ');
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

std::optional<std::string> formDecoded(std::string_view value)
{
    std::string spaced(value);
    for (char& character : spaced) {
        if (character == '+')
            character = ' ';
    }
    return percentDecoded(spaced);
}

// The text after "name=" of the first such item between separators.
std::optional<std::string_view> item(std::string_view list, char separator, std::string_view name)
{
    while (!list.empty()) {
        auto const end = list.find(separator);
        auto const entry = trimmed(list.substr(0, end));
        if (entry.size() > name.size() && entry.starts_with(name) && entry[name.size()] == '=')
            return entry.substr(name.size() + 1);
        list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
    }
    return std::nullopt;
}

}

bool isPrintableAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char character) { return character > ' ' && character <= '~'; });
}

std::string escapeHtml(std::string_view text)
{
    std::string escaped;
    for (char const character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string escapeQueryValue(std::string_view text)
{
    return Chars(g_uri_escape_bytes(reinterpret_cast<guint8 const*>(text.data()), text.size(), nullptr)).get();
}

std::optional<std::string> percentDecoded(std::string_view text, char const* refused)
{
    Chars const decoded(g_uri_unescape_segment(text.data(), text.data() + text.size(), refused));
    return decoded && g_utf8_validate(decoded.get(), -1, nullptr) ? std::optional<std::string>(decoded.get())
                                                                  : std::nullopt;
}

std::optional<std::string> formValue(std::string_view form, std::string_view name)
{
    auto const value = item(form, '&', name);
    return value ? formDecoded(*value) : std::nullopt;
}

std::optional<std::string> cookieValue(std::string_view cookies, std::string_view name)
{
    auto const value = item(cookies, ';', name);
    return value ? std::optional<std::string>(*value) : std::nullopt;
}

}
