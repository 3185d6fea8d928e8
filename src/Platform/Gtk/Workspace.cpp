#include "Platform/Gtk/Workspace.h"

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Renderers.h"

#include <gdk/gdk.h>
#include <gio/gio.h>

#include <array>
#include <memory>

namespace tarn::gtk {

void Workspace::open(Url const& url)
{
    auto const context = adopt(G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gdk_display_get_default())));
    for (auto const* const name : chosenRendererVariables())
        g_app_launch_context_unsetenv(context.get(), name);

    struct Request {
        Log log;
        std::string scheme;
    };
    g_app_info_launch_default_for_uri_async(
        url.string().c_str(), context.get(), nullptr,
        [](GObject*, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Request> const request(static_cast<Request*>(data));
            GError* error = nullptr;
            if (!g_app_info_launch_default_for_uri_finish(result, &error)) {
                request->log("[Links] could not open a \"" + request->scheme + "\" address: " + error->message);
                g_error_free(error);
            }
        },
        new Request { m_log, std::string(url.scheme()) });
}

void Workspace::reveal(std::filesystem::path const& file)
{
    auto* const application = g_application_get_default();
    auto* const bus = application ? g_application_get_dbus_connection(application) : nullptr;
    auto* const uri = g_filename_to_uri(file.c_str(), nullptr, nullptr);
    if (!bus || !uri) {
        m_log("[Files] there is no file manager to ask");
        g_free(uri);
        return;
    }
    std::array<char const*, 2> const uris { uri, nullptr };
    g_dbus_connection_call(
        bus, "org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1",
        "ShowItems", g_variant_new("(^ass)", uris.data(), ""), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        [](GObject* connection, GAsyncResult* result, gpointer data) {
            std::unique_ptr<Log> const log(static_cast<Log*>(data));
            GError* error = nullptr;
            if (auto* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error)) {
                g_variant_unref(answer);
            } else {
                (*log)(std::string("[Files] could not show a file: ") + error->message);
                g_error_free(error);
            }
        },
        new Log(m_log));
    g_free(uri);
}

}
