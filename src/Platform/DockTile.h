#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace tarn::platform {

// A bar over the application's entry.
struct DockProgressBar {
    // From 0 to 1; nothing means that nobody knows.
    std::optional<double> fraction;

    friend bool operator==(DockProgressBar const&, DockProgressBar const&) = default;
};

// The application's entry in the dock or task bar.
class DockTile {
public:
    virtual ~DockTile() = default;

    // Whether there is a dock that shows what it is told here.
    virtual bool isShown() const = 0;
    virtual void setOnShownChange(std::function<void()>) = 0;

    // The number on the entry, greater than 0; nothing removes it.
    virtual void setBadge(std::optional<std::int64_t>) = 0;
    // Nothing removes it.
    virtual void setProgress(std::optional<DockProgressBar>) = 0;
};

}
