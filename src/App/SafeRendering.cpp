#include "App/SafeRendering.h"

#include "MainWindow/WebProcessRecovery.h"

#include <utility>

namespace tarn {

namespace {

constexpr char const* key = "SafeRendering";
constexpr char const* yes = "true";
// After as many, nobody may have seen the offer.
constexpr std::size_t blankStartsToBegin { 2 };

}

SafeRendering::Plan SafeRendering::plan(Facts facts)
{
    if (facts.isAskedFor || facts.isKept)
        return { .rendering = Rendering::safe };
    if (facts.blankStarts >= blankStartsToBegin)
        return { .rendering = Rendering::safe, .remark = Remark::begun };
    return { .remark = facts.blankStarts > 0 ? Remark::offer : Remark::none };
}

bool SafeRendering::isKept(platform::UserDefaults const& defaults)
{
    return defaults.string(key) == yes;
}

SafeRendering::SafeRendering(Start start, platform::UserDefaults& defaults, platform::Panels& panels)
    : m_start(std::move(start))
    , m_defaults(defaults)
    , m_panels(panels)
{
}

void SafeRendering::setKept(bool kept)
{
    if (kept != isKept())
        m_defaults.setString(key, kept ? yes : "false");
}

void SafeRendering::keepAndRestart()
{
    setKept(true);
    if (m_start.restart)
        m_start.restart();
}

void SafeRendering::remark(platform::SheetParent parent)
{
    switch (std::exchange(m_start.plan.remark, Remark::none)) {
    case Remark::none:
        break;
    case Remark::offer:
        ask(
            {
                .message = "The last start showed no page",
                .informativeText
                = "Tarn ended before. If that happens again, or the window stays blank, the graphics driver may be at "
                  "fault. With safe rendering Tarn draws everything in software: slower, but without the driver.",
                .buttons = { { .title = std::string(WebProcessRecovery::restartTitle) },
                    { .title = "Not Now", .role = platform::ButtonRole::cancel } },
            },
            parent, &SafeRendering::keepAndRestart);
        break;
    case Remark::begun:
        ask(
            {
                .message = "Safe rendering is on",
                .informativeText
                = "Tarn ended several times before it had shown a page. The graphics driver may be at "
                  "fault, so everything is now drawn in software, which is slower. You can switch it off "
                  "in the settings.",
                .buttons = { { .title = "Keep Safe Rendering" },
                    { .title = "Only This Time", .role = platform::ButtonRole::cancel } },
            },
            parent, &SafeRendering::keep);
        break;
    }
}

void SafeRendering::offerRestart(platform::SheetParent parent)
{
    if (isOn())
        return;
    ask(
        {
            .message = "Safe rendering takes effect at the next start",
            .informativeText = "Tarn is running already, and how it draws is chosen when it starts.",
            .buttons = { { .title = std::string(WebProcessRecovery::restartTitle) },
                { .title = "Not Now", .role = platform::ButtonRole::cancel } },
        },
        parent, &SafeRendering::keepAndRestart);
}

void SafeRendering::ask(platform::Alert alert, platform::SheetParent parent, void (SafeRendering::*onFirstButton)())
{
    m_panels.showAlert(alert, parent,
        { m_lifetime.guard([this, onFirstButton](platform::AlertResponse const& response) {
             if (response.button == 0U)
                 (this->*onFirstButton)();
         }),
            {} });
}

}
