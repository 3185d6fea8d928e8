#include "MainWindow/ExternalLinks.h"

#include <algorithm>
#include <array>

namespace tarn {

using platform::ButtonRole;

namespace {

bool contains(auto const& schemes, std::string_view scheme)
{
    return std::ranges::find(schemes, scheme) != schemes.end();
}

}

ExternalLinks::ExternalLinks(platform::Workspace& workspace, platform::Panels& panels, SiteDecisions& decisions,
    ProfileOfView profileOf, Log log)
    : m_workspace(workspace)
    , m_panels(panels)
    , m_decisions(decisions)
    , m_profileOf(std::move(profileOf))
    , m_log(std::move(log))
{
}

void ExternalLinks::open(platform::WebView& from, Url const& url, platform::NavigationAction const& action)
{
    using namespace std::string_view_literals;
    // Outside the page that they stand in, these are a program, a file of the user's, or nothing.
    static constexpr std::array notForOthers { "about"sv, "blob"sv, "data"sv, "file"sv, "javascript"sv,
        "view-source"sv };
    static constexpr std::array harmless { "mailto"sv, "tel"sv };
    auto const scheme = url.scheme();
    bool const isWeb = scheme == "https" || scheme == "http";
    if (contains(notForOthers, scheme))
        m_log("[Navigation] refused to hand over a \"" + std::string(scheme) + "\" address");
    else if (!isWeb && !action.userGesture)
        m_log("[Navigation] refused a \"" + std::string(scheme) + "\" address that no one clicked");
    else if (isWeb || contains(harmless, scheme))
        m_workspace.open(url);
    else
        ask(from, url);
}

void ExternalLinks::ask(platform::WebView& from, Url const& url)
{
    auto const page = from.url();
    auto const site = page ? std::string(page->host()) : std::string();
    auto const scheme = std::string(url.scheme());
    auto const key = "scheme:" + scheme;
    auto const profile = m_profileOf(from);
    if (!site.empty() && m_decisions.find(profile, site, key) == true) {
        m_workspace.open(url);
        return;
    }
    if (m_isAsking) {
        m_log("[Navigation] refused a \"" + scheme + "\" address while another one is asked about");
        return;
    }
    m_isAsking = true;
    platform::Alert alert {
        .message = "Open a “" + scheme + "” link in another application?",
        .informativeText = (site.empty() ? "A page" : site) + " wants to open:\n" + url.string(),
        // Return must not start a program: the page chooses the moment.
        .buttons = { { .title = "Cancel", .role = ButtonRole::cancel }, { .title = "Open" } },
    };
    if (!site.empty())
        alert.checkBox = "Always open “" + scheme + "” links of " + site;
    m_panels.showAlert(alert, &from,
        Reply<platform::AlertResponse>(
            m_lifetime.guard([this, url, site, key, profile](platform::AlertResponse const& answer) {
                m_isAsking = false;
                if (answer.button != 1)
                    return;
                if (answer.checked)
                    m_decisions.remember(profile, site, key, true);
                m_workspace.open(url);
            }),
            {}));
}

}
