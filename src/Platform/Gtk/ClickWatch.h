#pragma once

#include "Platform/Gtk/MessageChannel.h"
#include "Platform/NavigationDelegate.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarn::gtk {

// Knows, for one view, how a link was activated last, and in which frame.
class ClickWatch {
public:
    static std::string_view script();

    void receive(MessageChannel::Message const&);
    // Completes what is known of the navigation of an activated link. One activation answers one question.
    void complete(platform::NavigationAction&);

private:
    struct Click {
        std::int64_t sequence { 0 };
        bool inSubFrame { false };
        bool parentIsTop { false };
        // The link has the attribute of that name, and it counts.
        bool download { false };
        std::string target;
    };
    std::optional<Click> m_last;
};

}
