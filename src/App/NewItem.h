#pragma once

#include "Support/Url.h"

#include <optional>
#include <string_view>

// The pages that begin something new, by the names that launchers and the command line use.
namespace tarn::NewItem {

// "email", "event", "task", "appointment", "contact", "doc", "sheet" and "slide", in that order.
inline constexpr std::string_view names[] { "email", "event", "task", "appointment", "contact", "doc", "sheet",
    "slide" };

// Nothing for any other name.
std::optional<Url> address(std::string_view name);

}
