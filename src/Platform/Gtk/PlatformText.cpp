#include "Platform/Gtk/PlatformText.h"

#include <array>

namespace tarn::gtk {

std::string platformText(std::string_view text)
{
    struct Row {
        std::string_view from;
        std::string_view to;
    };
    constexpr std::array table {
        Row { "macOS notifications", "desktop notifications" },
        Row { "this Mac", "this computer" },
        Row { "System Settings", "Settings" },
    };
    std::string result(text);
    for (auto const& [from, to] : table) {
        for (auto at = result.find(from); at != std::string::npos; at = result.find(from, at + to.size()))
            result.replace(at, from.size(), to);
    }
    return result;
}

}
