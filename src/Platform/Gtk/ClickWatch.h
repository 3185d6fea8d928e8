#pragma once

#include "Platform/Gtk/MessageChannel.h"
#include "Platform/NavigationDelegate.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarn::gtk {

// Knows, for one view, in which frame a link was activated last.
class ClickWatch {
public:
    static std::string_view script();

    void receive(MessageChannel::Message const&);
    // The frame that the navigation of an activated link is for. One activation answers one question.
    platform::TargetFrame takeTargetFrame(WebKitNavigationAction*);

private:
    struct Click {
        std::int64_t sequence { 0 };
        bool inSubFrame { false };
        bool parentIsTop { false };
        std::string target;
    };
    std::optional<Click> m_last;
};

}
