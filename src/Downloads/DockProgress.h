#pragma once

#include "Platform/DockTile.h"

#include <optional>

namespace tarn {

// The one bar of all downloads on the application's dock entry.
class DockProgress {
public:
    // The tile outlives it.
    explicit DockProgress(platform::DockTile&);
    ~DockProgress();
    DockProgress(DockProgress const&) = delete;
    DockProgress& operator=(DockProgress const&) = delete;

    // From 0 to 1; nothing means indeterminate.
    void show(std::optional<double> fraction);
    void hide();

private:
    platform::DockTile& m_tile;
    std::optional<platform::DockProgressBar> m_shown;
};

}
