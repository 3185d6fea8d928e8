#include "Platform/Gtk/NetworkProcessWatch.h"

#include <glib-unix.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace tarn::gtk {

namespace {

// The kernel cuts names.
constexpr char const* processName = "WebKitNetworkPr";

// A descriptor that can be read when the process has ended; -1 where there is none. The engine starts it as a child.
int openNetworkProcess()
{
    std::error_code error;
    for (auto const& thread : std::filesystem::directory_iterator("/proc/self/task", error)) {
        std::ifstream children(thread.path() / "children");
        for (pid_t child = 0; children >> child;) {
            // Opened first: nobody else can have its number then.
            auto const descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
            std::string name;
            std::getline(std::ifstream("/proc/" + std::to_string(child) + "/comm"), name);
            if (name == processName)
                return descriptor;
            if (descriptor >= 0)
                close(descriptor);
        }
    }
    return -1;
}

}

NetworkProcessWatch::NetworkProcessWatch(std::function<void()> onEnd)
    : m_onEnd(std::move(onEnd))
    , m_descriptor(openNetworkProcess())
{
    if (m_descriptor < 0)
        return;
    m_source = g_unix_fd_add(
        m_descriptor, G_IO_IN,
        [](int, GIOCondition, gpointer data) -> gboolean {
            auto* const self = static_cast<NetworkProcessWatch*>(data);
            self->m_source = 0;
            auto const tell = std::exchange(self->m_onEnd, nullptr);
            tell();
            return G_SOURCE_REMOVE;
        },
        this);
}

NetworkProcessWatch::~NetworkProcessWatch()
{
    if (m_source)
        g_source_remove(m_source);
    if (m_descriptor >= 0)
        close(m_descriptor);
}

}
