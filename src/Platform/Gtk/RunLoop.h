#pragma once

#include "Platform/RunLoop.h"

namespace tarn::gtk {

// GLib's main context.
class RunLoop final : public platform::RunLoop {
public:
    void post(std::function<void()>) override;
    std::unique_ptr<platform::Timer> after(std::chrono::milliseconds, std::function<void()>) override;
    std::chrono::steady_clock::time_point now() const override { return std::chrono::steady_clock::now(); }
};

}
