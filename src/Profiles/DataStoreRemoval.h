#pragma once

#include "Platform/RunLoop.h"
#include "Platform/WebEngine.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarn {

// Removes a deleted profile's website data. The platform refuses while a view of it is still alive, and the views of a
// profile that was just left end only after the window has taken up the next one: so it is tried again, a second apart.
class DataStoreRemoval {
public:
    static constexpr int attempts = 3;
    static constexpr std::chrono::seconds pause { 1 };

    // Gets the last error, or nothing; called once, and not at all when this ends before.
    using Completion = std::function<void(std::optional<std::string>)>;

    static void start(platform::WebEngine&, platform::RunLoop&, Uuid const&, Completion);
};

}
