#pragma once

#include <cstdint>
#include <optional>

namespace tarn::platform {

// The application's entry in the dock or task bar.
class DockTile {
public:
    virtual ~DockTile() = default;

    // The number on the entry, greater than 0; nothing removes it.
    virtual void setBadge(std::optional<std::int64_t>) = 0;
};

}
