#include "Platform/Gtk/DockTile.h"

#include <giomm/dbuswatchname.h>

#include <cmath>
#include <map>
#include <vector>

namespace tarn::gtk {

DockTile::DockTile(Glib::RefPtr<Gio::DBus::Connection> bus, std::string applicationId)
    : m_bus(std::move(bus))
    , m_applicationId(std::move(applicationId))
{
    if (!m_bus)
        return;
    // Docks of all makers take this name.
    m_watch = Gio::DBus::watch_name(
        m_bus, "com.canonical.Unity", [this](auto const&, auto const&, auto const&) { dockChanged(true); },
        [this](auto const&, auto const&) { dockChanged(false); });
}

DockTile::~DockTile()
{
    if (m_watch)
        Gio::DBus::unwatch_name(m_watch);
}

void DockTile::dockChanged(bool isThere)
{
    m_isShown = isThere;
    // A dock that starts later, or again, knows nothing yet.
    if (isThere)
        send();
    if (m_onShownChange)
        m_onShownChange();
}

void DockTile::setBadge(std::optional<std::int64_t> badge)
{
    if (badge == m_badge)
        return;
    m_badge = badge;
    send();
}

void DockTile::setProgress(std::optional<platform::DockProgressBar> bar)
{
    // The protocol has no word for a bar without a measure: such a one is empty.
    auto const progress
        = bar ? std::optional(static_cast<int>(std::lround(bar->fraction.value_or(0) * 100))) : std::nullopt;
    if (progress == m_progress)
        return;
    m_progress = progress;
    send();
}

void DockTile::send() const
{
    if (!m_bus)
        return;
    std::map<Glib::ustring, Glib::VariantBase> const state {
        { "count", Glib::Variant<gint64>::create(m_badge.value_or(0)) },
        { "count-visible", Glib::Variant<bool>::create(m_badge.has_value()) },
        { "progress", Glib::Variant<double>::create(m_progress.value_or(0) / 100.0) },
        { "progress-visible", Glib::Variant<bool>::create(m_progress.has_value()) },
    };
    auto const entry = Glib::Variant<Glib::ustring>::create("application://" + m_applicationId + ".desktop");
    std::vector<Glib::VariantBase> const parameters {
        entry,
        Glib::Variant<std::map<Glib::ustring, Glib::VariantBase>>::create(state),
    };
    try {
        m_bus->emit_signal("/com/canonical/unity/launcherentry/1", "com.canonical.Unity.LauncherEntry", "Update", {},
            Glib::VariantContainerBase::create_tuple(parameters));
    } catch (Glib::Error const&) {
        // The session bus is gone: there is no dock to tell.
    }
}

}
