#include "Downloads/DockProgress.h"

namespace tarn {

DockProgress::DockProgress(platform::DockTile& tile)
    : m_tile(tile)
{
}

DockProgress::~DockProgress()
{
    hide();
}

void DockProgress::show(std::optional<double> fraction)
{
    platform::DockProgressBar const bar { .fraction = fraction };
    if (m_shown == bar)
        return;
    m_shown = bar;
    m_tile.setProgress(bar);
}

void DockProgress::hide()
{
    if (!m_shown)
        return;
    m_shown.reset();
    m_tile.setProgress(std::nullopt);
}

}
