#include "Platform/Gtk/RunLoop.h"

#include <glibmm/main.h>

#include <algorithm>
#include <limits>

namespace tarn::gtk {

namespace {

class Timer final : public platform::Timer {
public:
    Timer(std::chrono::milliseconds delay, std::function<void()> function)
    {
        auto const limit = std::chrono::milliseconds(std::numeric_limits<int>::max());
        m_connection = Glib::signal_timeout().connect(
            [function = std::move(function)] {
                // The function may destroy this timer, and with it the slot that holds it.
                auto const copy = function;
                copy();
                return false;
            },
            static_cast<unsigned>(std::clamp(delay, std::chrono::milliseconds(0), limit).count()));
    }
    ~Timer() override { m_connection.disconnect(); }

private:
    sigc::connection m_connection;
};

}

void RunLoop::post(std::function<void()> function)
{
    Glib::signal_idle().connect_once(std::move(function), Glib::PRIORITY_DEFAULT);
}

std::unique_ptr<platform::Timer> RunLoop::after(std::chrono::milliseconds delay, std::function<void()> function)
{
    return std::make_unique<Timer>(delay, std::move(function));
}

}
