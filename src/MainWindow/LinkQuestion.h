#pragma once

#include "Platform/Panels.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"
#include "Support/Url.h"

#include <functional>

namespace tarn {

// "Where would you like to open this link?" One at a time: a page that goes on asking is not heard.
class LinkQuestion {
public:
    LinkQuestion(platform::Panels&, Log);

    std::function<void(Url const&)> onNewWindow;
    std::function<void(Url const&)> onDefaultBrowser;

    // The URL is shown in full, its host in ASCII, so that no other host looks like it.
    void ask(Url const&, platform::SheetParent);

private:
    platform::Panels& m_panels;
    Log m_log;
    bool m_isOpen { false };
    Lifetime m_lifetime;
};

}
