#include "Platform/Gtk/NotificationReplies.h"

namespace tarn::gtk::NotificationReplies {

Capabilities capabilities(GVariant* reply)
{
    Capabilities found;
    GVariantIter* names = nullptr;
    g_variant_get(reply, "(as)", &names);
    char const* name = nullptr;
    while (g_variant_iter_next(names, "&s", &name)) {
        found.actions |= std::string_view(name) == "actions";
        found.bodyMarkup |= std::string_view(name) == "body-markup";
    }
    g_variant_iter_free(names);
    return found;
}

Signal signal(std::string_view name, GVariant* parameters)
{
    auto const has = [&](char const* type) { return g_variant_is_of_type(parameters, G_VARIANT_TYPE(type)); };
    std::uint32_t id = 0;
    if (name == "ActionInvoked" && has("(us)")) {
        g_variant_get_child(parameters, 0, "u", &id);
        return Action { id };
    }
    if (name == "NotificationClosed" && has("(uu)")) {
        g_variant_get_child(parameters, 0, "u", &id);
        return Closed { id };
    }
    if (name == "ActivationToken" && has("(us)")) {
        char const* token = nullptr;
        g_variant_get(parameters, "(u&s)", &id, &token);
        return ActivationToken { id, token };
    }
    return {};
}

}
