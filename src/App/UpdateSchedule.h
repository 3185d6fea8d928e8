#pragma once

#include "Platform/RunLoop.h"
#include "Platform/UserDefaults.h"
#include "Support/Timestamp.h"

#include <functional>
#include <memory>

namespace tarn {

// When Tarn looks for a newer release by itself: once a day, also over restarts.
class UpdateSchedule {
public:
    static constexpr std::chrono::hours interval { 24 };

    UpdateSchedule(platform::RunLoop&, platform::UserDefaults&, std::function<Timestamp()> now);

    // Calls on later turns, from the next time that is due on.
    void start(std::function<void()> check);

private:
    void wait();

    platform::RunLoop& m_runLoop;
    platform::UserDefaults& m_defaults;
    std::function<Timestamp()> m_now;
    std::function<void()> m_check;
    std::unique_ptr<platform::Timer> m_timer;
};

}
