#pragma once

#include <functional>
#include <utility>

namespace tarn {

// Whether the application has shown anything since it was started.
class FirstPage {
public:
    // Set by the owner: called once, when a page or a notice in its place has come.
    std::function<void()> onShown;

    // A page was loaded, or could not be loaded, which takes a process that works.
    void pageCame()
    {
        m_pageHasCome = true;
        shown();
    }
    void noticeCame() { shown(); }
    // A notice alone does not say that pages can be drawn.
    bool pageHasCome() const { return m_pageHasCome; }

private:
    void shown()
    {
        if (auto const first = std::exchange(onShown, nullptr))
            first();
    }

    bool m_pageHasCome { false };
};

}
