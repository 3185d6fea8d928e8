#include "Web/RealNotificationDaemon.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tarn::test {

namespace {

std::string outputOf(std::string const& command)
{
    auto* const pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 256> buffer {};
    while (pipe && std::fgets(buffer.data(), buffer.size(), pipe))
        output += buffer.data();
    if (pipe)
        pclose(pipe);
    return output;
}

std::string windowOf(char const* name)
{
    auto const found = outputOf(std::string("xdotool search --onlyvisible --class ") + name + " 2>/dev/null");
    return found.substr(0, found.find('\n'));
}

}

std::vector<RealNotificationDaemon::Kind> const& RealNotificationDaemon::kinds()
{
    static std::vector<Kind> const all {
        { "dunst", { "/usr/bin/dunst", "-conf" }, 50, 160 },
        { "notification-daemon", { "/usr/lib/notification-daemon/notification-daemon" }, 50, 200 },
        // The popup has a button.
        { "xfce4-notifyd", { "/usr/lib/x86_64-linux-gnu/xfce4/notifyd/xfce4-notifyd" }, 68, 40 },
    };
    return all;
}

RealNotificationDaemon::RealNotificationDaemon(Kind const& kind)
    : m_kind(kind)
{
    auto command = kind.command;
    auto const configuration = (m_folder / "dunstrc").string();
    if (std::string(command.back()) == "-conf") {
        // As it comes, its left button only puts away.
        std::ofstream(configuration) << "[global]\nmouse_left_click = do_action, close_current\n";
        command.push_back(configuration.c_str());
    }
    command.push_back(nullptr);
    GError* error = nullptr;
    m_process = gtk::adopt(g_subprocess_newv(command.data(),
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_SILENCE), &error));
    if (!m_process)
        throw std::runtime_error(error->message);
}

RealNotificationDaemon::~RealNotificationDaemon()
{
    g_subprocess_force_exit(m_process.get());
    g_subprocess_wait(m_process.get(), nullptr, nullptr);
}

bool RealNotificationDaemon::isRunning() const
{
    return g_subprocess_get_identifier(m_process.get()) != nullptr;
}

bool RealNotificationDaemon::shows() const
{
    return !windowOf(m_kind.name).empty();
}

void RealNotificationDaemon::click() const
{
    auto const window = windowOf(m_kind.name);
    int width = 0;
    int height = 0;
    std::istringstream geometry(outputOf("xdotool getwindowgeometry --shell " + window));
    for (std::string line; std::getline(geometry, line);) {
        std::sscanf(line.c_str(), "WIDTH=%d", &width);
        std::sscanf(line.c_str(), "HEIGHT=%d", &height);
    }
    outputOf("xdotool mousemove --window " + window + " " + std::to_string(width - m_kind.clickFromRight) + " "
        + std::to_string(height * m_kind.clickHeight / 100) + " click 1");
}

}
