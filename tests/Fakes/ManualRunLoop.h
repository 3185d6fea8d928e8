#pragma once

#include "Platform/RunLoop.h"

#include <algorithm>
#include <list>

namespace tarn::test {

// A run loop whose clock is turned by hand.
class ManualRunLoop final : public platform::RunLoop {
public:
    void post(std::function<void()> function) override { m_calls.push_back({ m_now, std::move(function), {} }); }

    std::unique_ptr<platform::Timer> after(std::chrono::milliseconds delay, std::function<void()> function) override
    {
        auto const pending = std::make_shared<bool>(true);
        m_calls.push_back({ m_now + delay, std::move(function), pending });
        return std::make_unique<ManualTimer>(pending);
    }

    std::chrono::steady_clock::time_point now() const override { return m_now; }

    // Runs all that is due on the way, in the order of its time.
    void advance(std::chrono::milliseconds by)
    {
        auto const target = m_now + by;
        while (true) {
            auto const next = std::ranges::min_element(m_calls, {}, &Call::due);
            if (next == m_calls.end() || next->due > target)
                break;
            auto const call = *next;
            m_calls.erase(next);
            m_now = std::max(m_now, call.due);
            if (!call.pending || *call.pending) {
                ++calls;
                call.function();
            }
        }
        m_now = target;
    }

    // Made so far.
    int calls { 0 };

private:
    struct Call {
        std::chrono::steady_clock::time_point due;
        std::function<void()> function;
        std::shared_ptr<bool> pending;
    };
    class ManualTimer final : public platform::Timer {
    public:
        explicit ManualTimer(std::shared_ptr<bool> pending)
            : m_pending(std::move(pending))
        {
        }
        ~ManualTimer() override { *m_pending = false; }

    private:
        std::shared_ptr<bool> m_pending;
    };

    std::chrono::steady_clock::time_point m_now {};
    std::list<Call> m_calls;
};

}
