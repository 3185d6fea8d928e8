#pragma once

#include "Platform/Gtk/BusSignal.h"

#include <string>

namespace tarn::gtk {

// This application as a member of the desktop's session (org.gnome.SessionManager, which several desktops have): it
// hears that the session ends while there is time to save, and the session waits until it has gone. Nothing waits for
// the session manager; without one nothing happens.
class SessionClient {
public:
    // The bus may be none. The callback may come more than once.
    SessionClient(GDBusConnection*, std::string const& applicationId, std::function<void()> onEnd);
    ~SessionClient();
    SessionClient(SessionClient const&) = delete;
    SessionClient& operator=(SessionClient const&) = delete;

private:
    void registered(GDBusConnection*, std::string const& path);

    std::function<void()> m_onEnd;
    Ref<GCancellable> m_cancellable;
    BusSignal m_question;
    BusSignal m_end;
    BusSignal m_stop;
};

}
