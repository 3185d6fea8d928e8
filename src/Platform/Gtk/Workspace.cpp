#include "Platform/Gtk/Workspace.h"

#include "Platform/Gtk/Ref.h"
#include "Platform/Gtk/Renderers.h"

#include <gdk/gdk.h>
#include <gio/gio.h>

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

}
