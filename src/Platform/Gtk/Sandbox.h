#pragma once

#include "Platform/Gtk/Ref.h"

#include <gio/gio.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarn::gtk {

// The sandbox in which the engine runs each page. It needs namespaces, which some containers and hardened systems deny.
// The engine ends the whole program when it cannot start one: so it is tried first, around an empty program, beside the
// rest of the start.
class Sandbox {
public:
    // What is missing and how to allow it; nothing when the sandbox starts.
    using Problem = std::optional<std::string>;

    // Starts to try.
    Sandbox();
    ~Sandbox();
    Sandbox(Sandbox const&) = delete;
    Sandbox& operator=(Sandbox const&) = delete;

    // At once when the sandbox is known to work, without a turn of the main loop; otherwise when it has been tried
    // (again).
    void whenKnown(std::function<void(Problem const&)>);
    // Tells those who wait, if it is known by now to work: for when the main loop's next turn is far.
    void lookEarly();

private:
    void start();
    bool hasJustWorked() const;
    void finish(Problem);

    enum class State { trying, works, fails };
    State m_state { State::trying };
    Ref<GCancellable> m_cancellable;
    Ref<GSubprocess> m_trial;
    std::vector<std::function<void(Problem const&)>> m_waiting;
};

}
