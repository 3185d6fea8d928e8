#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarn::UnreadCount {

// Gmail writes the number of unread conversations into its page title, in parentheses: "Inbox (1,234) - ...". The first
// such number, its commas and full stops ignored; 0 when there is none or when it does not fit.
// The title is UTF-8 from the page: any length, not necessarily well-formed.
std::int64_t parse(std::optional<std::string_view> title);

}
