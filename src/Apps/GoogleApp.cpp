#include "Apps/GoogleApp.h"

#include <algorithm>

namespace tarn {

namespace {

struct Entry {
    std::string_view rawValue;
    std::string_view title;
    std::string_view address;
    std::string_view iconName;
};

constexpr std::array<Entry, GoogleApp::allCases.size()> catalogue { {
    { "mail", "Mail", "https://mail.google.com", "tarn-mail-symbolic" },
    { "calendar", "Calendar", "https://calendar.google.com", "tarn-calendar-symbolic" },
    { "drive", "Drive", "https://drive.google.com", "tarn-drive-symbolic" },
    { "gemini", "Gemini", "https://gemini.google.com", "tarn-gemini-symbolic" },
    { "keep", "Keep", "https://keep.google.com", "tarn-keep-symbolic" },
    { "tasks", "Tasks", "https://tasks.google.com", "tarn-tasks-symbolic" },
    { "contacts", "Contacts", "https://contacts.google.com", "tarn-contacts-symbolic" },
} };

template <std::size_t... positions>
std::array<Url, sizeof...(positions)> parseAddresses(std::index_sequence<positions...>)
{
    return { Url::parse(catalogue[positions].address).value()... };
}

}

std::optional<GoogleApp> GoogleApp::fromRawValue(std::string_view rawValue)
{
    auto const* const entry = std::ranges::find(catalogue, rawValue, &Entry::rawValue);
    return entry == catalogue.end() ? std::nullopt : std::optional(allCases[entry - catalogue.begin()]);
}

std::string_view GoogleApp::rawValue() const
{
    return catalogue[position()].rawValue;
}

std::string_view GoogleApp::title() const
{
    return catalogue[position()].title;
}

Url const& GoogleApp::url() const
{
    static auto const urls = parseAddresses(std::make_index_sequence<catalogue.size()> {});
    return urls[position()];
}

std::string_view GoogleApp::iconName() const
{
    return catalogue[position()].iconName;
}

}
