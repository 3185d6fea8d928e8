// The least that shows pages in this engine: what the comparison measures from.
//   floor PROXY FOLDER ADDRESS...
// One view per address, made when first shown; Ctrl+1 to Ctrl+9 show them, Ctrl+W hides the window.

#include <gtk/gtk.h>
#include <webkit/webkit.h>

#include <cstddef>
#include <map>
#include <string>

namespace {

struct Floor {
    char** arguments;
    int count;
    GtkWindow* window { nullptr };
    GtkStack* stack { nullptr };
    WebKitNetworkSession* session { nullptr };
    std::map<int, GtkWidget*> views {};

    void show(int number)
    {
        if (number < 1 || number + 2 >= count)
            return;
        auto*& view = views[number];
        if (!view) {
            view = GTK_WIDGET(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, nullptr));
            gtk_stack_add_child(stack, view);
            webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), arguments[number + 2]);
        }
        gtk_stack_set_visible_child(stack, view);
        gtk_widget_grab_focus(view);
    }

    void start(GtkApplication* application)
    {
        auto const folder = std::string(arguments[2]);
        session = webkit_network_session_new((folder + "/data").c_str(), (folder + "/cache").c_str());
        webkit_cookie_manager_set_persistent_storage(webkit_network_session_get_cookie_manager(session),
            (folder + "/cookies").c_str(), WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
        auto* const proxy = webkit_network_proxy_settings_new(arguments[1], nullptr);
        webkit_network_session_set_proxy_settings(session, WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
        webkit_network_session_set_tls_errors_policy(session, WEBKIT_TLS_ERRORS_POLICY_IGNORE);

        window = GTK_WINDOW(gtk_application_window_new(application));
        gtk_window_set_default_size(window, 1300, 900);
        stack = GTK_STACK(gtk_stack_new());
        gtk_window_set_child(window, GTK_WIDGET(stack));
        auto* const keys = gtk_event_controller_key_new();
        gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
        g_signal_connect(keys, "key-pressed",
            G_CALLBACK(+[](GtkEventControllerKey*, guint key, guint, GdkModifierType state, Floor* floor) -> gboolean {
                if ((state & GDK_CONTROL_MASK) == 0)
                    return FALSE;
                if (key == GDK_KEY_w)
                    gtk_widget_set_visible(GTK_WIDGET(floor->window), FALSE);
                floor->show(static_cast<int>(key) - GDK_KEY_0);
                return TRUE;
            }),
            this);
        gtk_widget_add_controller(GTK_WIDGET(window), keys);
        show(1);
        gtk_window_present(window);
    }
};

}

int main(int argc, char* argv[])
{
    if (argc < 4)
        return 2;
    Floor floor { argv, argc };
    auto* const application = gtk_application_new("io.github.tarn.Floor", G_APPLICATION_NON_UNIQUE);
    g_application_hold(G_APPLICATION(application));
    g_signal_connect(application, "activate",
        G_CALLBACK(+[](GtkApplication* started, Floor* self) { self->start(started); }), &floor);
    return g_application_run(G_APPLICATION(application), 1, argv);
}
