#pragma once

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

#include <functional>
#include <string>
#include <vector>

namespace tarn::test {

// A program on the session bus, with a connection of its own, as a test needs it. It ends with its scope.
class BusService {
public:
    // The parameters; what it returns is the answer, nothing (a null) an error.
    using Answer = std::function<GVariant*(std::string const& method, GVariant*)>;
    // Answers the call itself, when it likes.
    using Handler = std::function<void(std::string const& method, GVariant*, GDBusMethodInvocation*)>;

    explicit BusService(char const* name);
    ~BusService();
    BusService(BusService const&) = delete;
    BusService& operator=(BusService const&) = delete;

    // The description is the XML of one interface's content.
    void serve(char const* path, std::string const& interface, std::string const& description, Answer);
    void handle(char const* path, std::string const& interface, std::string const& description, Handler);
    // Also to who has not asked; the parameters are consumed.
    void emit(std::string const& path, char const* interface, char const* signal, GVariant*) const;
    GDBusConnection* bus() const { return m_bus.get(); }

private:
    gtk::Ref<GDBusConnection> m_bus;
};

}
