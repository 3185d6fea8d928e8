#include "Bridge/BridgeScripts.h"

#include "scripts/notificationRoadsScript.h"
#include "scripts/notificationsScript.h"
#include "scripts/promoDismissalScript.h"

#include <nlohmann/json.hpp>

namespace tarn::BridgeScripts {

std::string jsString(std::string_view text)
{
    constexpr bool ascii = true;
    auto const quoted = nlohmann::json(text).dump(-1, ' ', ascii, nlohmann::json::error_handler_t::replace);
    std::string literal;
    literal.reserve(quoted.size());
    for (auto const character : quoted) {
        // So that no text can end a script element.
        if (character == '/')
            literal += '\\';
        literal += character;
    }
    return literal;
}

std::string guardedCall(std::string_view function, std::string_view argument)
{
    auto const name = "window." + std::string(function);
    return name + " && " + name + "(" + jsString(argument) + ")";
}

std::string notifications(std::string_view initialPermission)
{
    std::string const pieces[] { "(", notificationsScript, ")(", jsString(initialPermission), ", ",
        jsString(notifyHandler), ", ", jsString(notifyPermissionHandler), ");" };
    std::size_t size = 0;
    for (auto const& piece : pieces)
        size += piece.size();
    std::string source;
    source.reserve(size);
    for (auto const& piece : pieces)
        source += piece;
    return source;
}

std::string notificationRoads()
{
    return "(" + std::string(notificationRoadsScript) + ")(" + jsString(notifyStateHandler) + ");";
}

std::string_view promoDismissal()
{
    return promoDismissalScript;
}

}
