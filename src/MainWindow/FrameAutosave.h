#pragma once

#include "Platform/RunLoop.h"
#include "Platform/UserDefaults.h"
#include "Platform/Window.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

// Keeps a window's size and maximised state in the user defaults, under a name.
class FrameAutosave {
public:
    // Saved once the frame has been still for this long: a resize by hand is hundreds of changes.
    static constexpr std::chrono::milliseconds settleTime { 500 };

    FrameAutosave(platform::UserDefaults&, platform::RunLoop&, std::string name);

    // The saved frame, not smaller than the fallback's minimum; the fallback when nothing usable was saved.
    platform::WindowFrame restore(platform::WindowFrame const& fallback, int minimumWidth, int minimumHeight) const;
    void frameDidChange(platform::WindowFrame const&);
    // Saves what is still waiting.
    void flush();

    static std::string encode(platform::WindowFrame const&);
    static std::optional<platform::WindowFrame> decode(std::string_view);

private:
    platform::UserDefaults& m_defaults;
    platform::RunLoop& m_runLoop;
    std::string m_name;
    std::optional<platform::WindowFrame> m_waiting;
    std::unique_ptr<platform::Timer> m_timer;
};

}
