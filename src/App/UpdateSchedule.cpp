#include "App/UpdateSchedule.h"

#include <algorithm>

namespace tarn {

namespace {

constexpr char const* lastCheckKey = "LastUpdateCheck";

}

UpdateSchedule::UpdateSchedule(
    platform::RunLoop& runLoop, platform::UserDefaults& defaults, std::function<Timestamp()> now)
    : m_runLoop(runLoop)
    , m_defaults(defaults)
    , m_now(std::move(now))
{
}

void UpdateSchedule::start(std::function<void()> check)
{
    m_check = std::move(check);
    wait();
}

void UpdateSchedule::wait()
{
    auto const last = fromIso8601(m_defaults.string(lastCheckKey).value_or(""));
    auto const now = m_now();
    // A clock that was wrong must not put it off for years.
    auto const elapsed = last && *last <= now ? now - *last : Timestamp::duration(interval);
    auto const rest = std::max(Timestamp::duration(interval) - elapsed, Timestamp::duration::zero());
    m_timer = m_runLoop.after(std::chrono::ceil<std::chrono::milliseconds>(rest), [this] {
        m_defaults.setString(lastCheckKey, toIso8601(m_now()));
        m_check();
        wait();
    });
}

}
