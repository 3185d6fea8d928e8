#include "Web/BusService.h"

#include <stdexcept>

namespace tarn::test {

BusService::BusService(char const* name)
{
    auto* const address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    m_bus = gtk::adopt(g_dbus_connection_new_for_address_sync(address,
        static_cast<GDBusConnectionFlags>(
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    g_free(address);
    auto* const answer = m_bus ? g_dbus_connection_call_sync(m_bus.get(), "org.freedesktop.DBus",
                             "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                             g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr)
                               : nullptr;
    if (!answer)
        throw std::runtime_error("no name on the session bus");
    g_variant_unref(answer);
}

BusService::~BusService()
{
    g_dbus_connection_close_sync(m_bus.get(), nullptr, nullptr);
}

void BusService::serve(char const* path, std::string const& interface, std::string const& description, Answer answer)
{
    handle(path, interface, description,
        [answer = std::move(answer)](std::string const& method, GVariant* parameters, GDBusMethodInvocation* call) {
            if (auto* const result = answer(method, parameters))
                g_dbus_method_invocation_return_value(call, result);
            else
                g_dbus_method_invocation_return_dbus_error(call, "org.example.Refused", "refused");
        });
}

void BusService::handle(char const* path, std::string const& interface, std::string const& description, Handler handler)
{
    auto const xml = "<node><interface name='" + interface + "'>" + description + "</interface></node>";
    auto* const node = g_dbus_node_info_new_for_xml(xml.c_str(), nullptr);
    static GDBusInterfaceVTable const table { .method_call
        = [](GDBusConnection*, char const*, char const*, char const*, char const* method, GVariant* parameters,
              GDBusMethodInvocation* call, gpointer data) { (*static_cast<Handler*>(data))(method, parameters, call); },
        .get_property = nullptr,
        .set_property = nullptr,
        .padding = {} };
    g_dbus_connection_register_object(
        m_bus.get(), path, node->interfaces[0], &table, new Handler(std::move(handler)),
        [](gpointer data) { delete static_cast<Handler*>(data); }, nullptr);
    g_dbus_node_info_unref(node);
}

void BusService::emit(std::string const& path, char const* interface, char const* signal, GVariant* parameters) const
{
    g_dbus_connection_emit_signal(m_bus.get(), nullptr, path.c_str(), interface, signal, parameters, nullptr);
}

}
