#pragma once

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

#include <functional>
#include <utility>

namespace tarn::gtk {

// A subscription to one signal of one object of a service on the bus, that ends with its scope.
class BusSignal {
public:
    struct Source {
        char const* service;
        char const* path;
        char const* interface;
        char const* name;
        // Of the parameters, as D-Bus writes types; signals with others are dropped.
        char const* type;
    };
    using Handler = std::function<void(GVariant* parameters)>;

    BusSignal() = default;
    BusSignal(GDBusConnection*, Source const&, Handler);
    BusSignal(BusSignal&& other) noexcept
        : m_bus(std::move(other.m_bus))
        , m_id(std::exchange(other.m_id, 0))
    {
    }
    BusSignal& operator=(BusSignal&& other) noexcept
    {
        BusSignal moved(std::move(other));
        std::swap(m_bus, moved.m_bus);
        std::swap(m_id, moved.m_id);
        return *this;
    }
    ~BusSignal();

private:
    Ref<GDBusConnection> m_bus;
    guint m_id { 0 };
};

}
