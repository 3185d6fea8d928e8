#include "Platform/Gtk/PowerMonitor.h"

namespace tarn::gtk {

PowerMonitor::PowerMonitor()
    : m_cancellable(adopt(g_cancellable_new()))
{
    g_bus_get(
        G_BUS_TYPE_SYSTEM, m_cancellable.get(),
        [](GObject*, GAsyncResult* result, gpointer data) {
            GError* error = nullptr;
            auto const bus = adopt(g_bus_get_finish(result, &error));
            bool const cancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
            g_clear_error(&error);
            if (!bus || cancelled)
                return;
            // A restart of the system bus is no reason to end.
            g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
            auto* const self = static_cast<PowerMonitor*>(data);
            self->m_prepareForSleep = BusSignal(bus.get(),
                {
                    .service = "org.freedesktop.login1",
                    .path = "/org/freedesktop/login1",
                    .interface = "org.freedesktop.login1.Manager",
                    .name = "PrepareForSleep",
                    .type = "(b)",
                },
                [self](GVariant* parameters) {
                    gboolean goesToSleep = FALSE;
                    g_variant_get(parameters, "(b)", &goesToSleep);
                    if (!goesToSleep && self->m_onResume)
                        self->m_onResume();
                });
        },
        this);
}

PowerMonitor::~PowerMonitor()
{
    g_cancellable_cancel(m_cancellable.get());
}

}
