#include "Platform/Gtk/BusSignal.h"

#include <memory>
#include <string>

namespace tarn::gtk {

namespace {

struct Subscription {
    std::string type;
    BusSignal::Handler handler;
};

}

BusSignal::BusSignal(GDBusConnection* bus, Source const& source, Handler handler)
    : m_bus(share(bus))
    , m_id(g_dbus_connection_signal_subscribe(
          bus, source.service, source.interface, source.name, source.path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
          [](GDBusConnection*, char const*, char const*, char const*, char const*, GVariant* parameters,
              gpointer data) {
              // A share of it: the handler may end the subscription.
              auto const subscription = *static_cast<std::shared_ptr<Subscription>*>(data);
              if (subscription->type == g_variant_get_type_string(parameters))
                  subscription->handler(parameters);
          },
          new auto(std::make_shared<Subscription>(Subscription { source.type, std::move(handler) })),
          [](gpointer data) { delete static_cast<std::shared_ptr<Subscription>*>(data); }))
{
}

BusSignal::~BusSignal()
{
    if (m_id)
        g_dbus_connection_signal_unsubscribe(m_bus.get(), m_id);
}

}
