#pragma once

#include <glib-object.h>

#include <exception>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tarn::gtk {

template <typename Signature> class Signal;

// A connection to a GObject signal that ends with its scope. The arguments are the signal's, without the emitter; a
// boolean signal is Signal<gboolean(...)>. Declare it after the Ref of the emitter, so that it ends first.
template <typename Result, typename... Arguments> class Signal<Result(Arguments...)> {
public:
    using Handler = std::function<Result(Arguments...)>;

    Signal() = default;
    // The emitter is not kept alive.
    Signal(gpointer emitter, char const* name, Handler handler)
        : m_emitter(G_OBJECT(emitter))
    {
        g_object_add_weak_pointer(m_emitter, reinterpret_cast<gpointer*>(&m_emitter));
        m_id = g_signal_connect_data(
            emitter, name, G_CALLBACK(&call), new Handler(std::move(handler)),
            [](gpointer data, GClosure*) { delete static_cast<Handler*>(data); }, GConnectFlags(0));
    }
    Signal(Signal const&) = delete;
    Signal& operator=(Signal const&) = delete;
    ~Signal()
    {
        if (!m_emitter)
            return;
        g_signal_handler_disconnect(m_emitter, m_id);
        g_object_remove_weak_pointer(m_emitter, reinterpret_cast<gpointer*>(&m_emitter));
    }

private:
    static Result call(gpointer, Arguments... arguments, gpointer data)
    {
        // C frames lie above: an exception must not pass them.
        try {
            return (*static_cast<Handler*>(data))(arguments...);
        } catch (std::exception const& error) {
            g_error("exception in a signal handler: %s", error.what());
        }
    }

    GObject* m_emitter { nullptr };
    gulong m_id { 0 };
};

}
