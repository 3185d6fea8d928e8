#include "MainWindow/FrameAutosave.h"

#include <algorithm>
#include <charconv>

namespace tarn {

namespace {

constexpr std::string_view maximizedWord = " maximized";
// No screen is larger; a damaged file must not ask for more memory than there is.
constexpr int maximumExtent = 16384;

}

FrameAutosave::FrameAutosave(platform::UserDefaults& defaults, platform::RunLoop& runLoop, std::string name)
    : m_defaults(defaults)
    , m_runLoop(runLoop)
    , m_name(std::move(name))
{
}

platform::WindowFrame FrameAutosave::restore(
    platform::WindowFrame const& fallback, int minimumWidth, int minimumHeight) const
{
    auto const saved = m_defaults.string(m_name);
    auto frame = saved ? decode(*saved).value_or(fallback) : fallback;
    frame.width = std::clamp(frame.width, minimumWidth, maximumExtent);
    frame.height = std::clamp(frame.height, minimumHeight, maximumExtent);
    return frame;
}

void FrameAutosave::frameDidChange(platform::WindowFrame const& frame)
{
    m_waiting = frame;
    m_timer = m_runLoop.after(settleTime, [this] { flush(); });
}

void FrameAutosave::flush()
{
    m_timer.reset();
    if (!m_waiting)
        return;
    auto const text = encode(*m_waiting);
    m_waiting.reset();
    if (m_defaults.string(m_name) != text)
        m_defaults.setString(m_name, text);
}

std::string FrameAutosave::encode(platform::WindowFrame const& frame)
{
    auto text = std::to_string(frame.width) + "x" + std::to_string(frame.height);
    if (frame.maximized)
        text += maximizedWord;
    return text;
}

std::optional<platform::WindowFrame> FrameAutosave::decode(std::string_view text)
{
    platform::WindowFrame frame;
    if (text.ends_with(maximizedWord)) {
        frame.maximized = true;
        text.remove_suffix(maximizedWord.size());
    }
    auto const* const end = text.data() + text.size();
    auto const width = std::from_chars(text.data(), end, frame.width);
    if (width.ec != std::errc {} || width.ptr == end || *width.ptr != 'x')
        return std::nullopt;
    auto const height = std::from_chars(width.ptr + 1, end, frame.height);
    if (height.ec != std::errc {} || height.ptr != end)
        return std::nullopt;
    return frame;
}

}
