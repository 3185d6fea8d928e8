#include "App/NewItem.h"

#include "Apps/Mailto.h"

#include <algorithm>
#include <iterator>

namespace tarn::NewItem {

std::optional<Url> address(std::string_view name)
{
    static constexpr std::string_view addresses[] {
        {}, // the compose page has one home
        "https://calendar.google.com/calendar/u/0/r/eventedit",
        "https://calendar.google.com/calendar/u/0/r/tasks",
        "https://calendar.google.com/calendar/u/0/r/appointment",
        "https://contacts.google.com/new",
        "https://docs.google.com/document/create",
        "https://docs.google.com/spreadsheets/create",
        "https://docs.google.com/presentation/create",
    };
    static_assert(std::size(names) == std::size(addresses));
    auto const* const found = std::ranges::find(names, name);
    if (found == std::end(names))
        return std::nullopt;
    return found == std::begin(names) ? Mailto::newEmail() : Url::parse(addresses[found - std::begin(names)]);
}

}
