#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tarn::platform {

// A pending call; destroying it cancels the call.
class Timer {
public:
    virtual ~Timer() = default;
};

// The main thread's loop. Everything of the core runs on it.
class RunLoop {
public:
    virtual ~RunLoop() = default;

    // Runs the function on a later turn of the loop.
    virtual void post(std::function<void()>) = 0;
    // Runs the function once, not before the delay has passed.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay, std::function<void()>) = 0;
    // Monotonic: setting the wall clock does not move it.
    virtual std::chrono::steady_clock::time_point now() const = 0;
};

}
