#include "Platform/Gtk/SessionClient.h"

namespace tarn::gtk {

namespace {

constexpr char const* service = "org.gnome.SessionManager";
constexpr char const* clientInterface = "org.gnome.SessionManager.ClientPrivate";

}

SessionClient::SessionClient(GDBusConnection* bus, std::string const& applicationId, std::function<void()> onEnd)
    : m_onEnd(std::move(onEnd))
    , m_cancellable(adopt(g_cancellable_new()))
{
    if (!bus)
        return;
    // How the session knows again what it has started itself.
    auto const* const startup = g_getenv("DESKTOP_AUTOSTART_ID");
    g_dbus_connection_call(
        bus, service, "/org/gnome/SessionManager", service, "RegisterClient",
        g_variant_new("(ss)", applicationId.c_str(), startup ? startup : ""), G_VARIANT_TYPE("(o)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, m_cancellable.get(),
        [](GObject* connection, GAsyncResult* result, gpointer self) {
            auto* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr);
            if (!answer)
                return;
            char const* path = nullptr;
            g_variant_get(answer, "(&o)", &path);
            static_cast<SessionClient*>(self)->registered(G_DBUS_CONNECTION(connection), path);
            g_variant_unref(answer);
        },
        this);
}

SessionClient::~SessionClient()
{
    g_cancellable_cancel(m_cancellable.get());
}

void SessionClient::registered(GDBusConnection* bus, std::string const& path)
{
    auto const subscribe = [&](char const* name, char const* type, std::function<void()> callback) {
        return BusSignal(bus,
            { .service = service, .path = path.c_str(), .interface = clientInterface, .name = name, .type = type },
            [callback = std::move(callback)](GVariant*) { callback(); });
    };
    m_question = subscribe("QueryEndSession", "(u)", [bus = share(bus), path] {
        g_dbus_connection_call(bus.get(), service, path.c_str(), clientInterface, "EndSessionResponse",
            g_variant_new("(bs)", TRUE, ""), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
    });
    m_end = subscribe("EndSession", "(u)", m_onEnd);
    m_stop = subscribe("Stop", "()", m_onEnd);
}

}
