#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarn::gtk {

// The sandbox in which the engine runs each page. It needs namespaces, which some containers and hardened systems deny;
// the engine then only reports that the page's process is gone, again and again.
class Sandbox {
public:
    // A page's process has done something: the sandbox works, and nothing needs to be tried.
    void didWork() { m_works = true; }
    bool works() const { return m_works; }

    // Starts the sandbox once around an empty program. The completion gets what is missing and how to allow it, or
    // nothing when it starts. Asynchronous.
    static void probe(std::function<void(std::optional<std::string>)> completion);

private:
    bool m_works { false };
};

}
