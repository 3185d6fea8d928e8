#pragma once

#include <glib.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

// What a notification daemon says, read from its messages. Any program can be the daemon, and send anything.
namespace tarn::gtk::NotificationReplies {

struct Capabilities {
    bool actions { false };
    // The body is read as markup, so plain text has to be escaped.
    bool bodyMarkup { false };
};

struct Action {
    std::uint32_t id { 0 };
};
struct Closed {
    std::uint32_t id { 0 };
};
struct ActivationToken {
    std::uint32_t id { 0 };
    std::string token;
};
// The empty one is none of the others, or has not their parameters.
using Signal = std::variant<std::monostate, Action, Closed, ActivationToken>;

// The reply, of type (as), to GetCapabilities.
Capabilities capabilities(GVariant* reply);
Signal signal(std::string_view name, GVariant* parameters);

}
