#pragma once

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

#include <string>

namespace tarn::test {

// The stand-in services in a process of their own, where what they keep would be counted as the application's. Ends
// with this.
class StageProcess {
public:
    // Returns when it listens. Throws std::runtime_error.
    StageProcess();
    StageProcess(StageProcess const&) = delete;
    StageProcess& operator=(StageProcess const&) = delete;
    ~StageProcess();

    std::string const& proxyUri() const { return m_proxyUri; }

private:
    gtk::Ref<GSubprocess> m_process;
    std::string m_proxyUri;
};

}
