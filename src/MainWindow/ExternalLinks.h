#pragma once

#include "MainWindow/ProfileOfView.h"
#include "Platform/Panels.h"
#include "Platform/Workspace.h"
#include "Profiles/SiteDecisions.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

namespace tarn {

// Hands what a page leads to over to the rest of the system, as far as a page may: no program is started behind the
// user's back, and which programs a site may start at all is for the user to say.
class ExternalLinks {
public:
    ExternalLinks(platform::Workspace&, platform::Panels&, SiteDecisions&, ProfileOfView, Log);

    void open(platform::WebView& from, Url const&, platform::NavigationAction const&);

private:
    void ask(platform::WebView& from, Url const&);

    platform::Workspace& m_workspace;
    platform::Panels& m_panels;
    SiteDecisions& m_decisions;
    ProfileOfView m_profileOf;
    Log m_log;
    bool m_isAsking { false };
    Lifetime m_lifetime;
};

}
