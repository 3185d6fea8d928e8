#pragma once

#include "MainWindow/ProfileOfView.h"
#include "Platform/Panels.h"
#include "Platform/Permission.h"
#include "Profiles/SiteDecisions.h"
#include "Support/Lifetime.h"
#include "Support/Log.h"

#include <deque>
#include <optional>
#include <string>

namespace tarn {

// Asks the user whether a site may use the camera and its like, one question at a time, and remembers the answers. The
// site is that of the page itself, also for its frames.
class PermissionQuestion {
public:
    // A page that asks for more than this at a time is refused.
    static constexpr std::size_t mostWaiting = 8;

    PermissionQuestion(platform::Panels&, SiteDecisions&, ProfileOfView, Log);

    // A question that ends without an answer is a no that is not remembered.
    void ask(platform::WebView&, platform::PermissionRequest const&, Reply<bool>);
    platform::PermissionState state(platform::WebView const&, platform::Permission);

private:
    struct Question {
        std::weak_ptr<platform::WebView> view;
        std::string site;
        Uuid profile;
        platform::PermissionRequest request;
        Reply<bool> reply;
    };

    // What is already known of it; nothing when the user is to be asked.
    std::optional<bool> known(Question const&);
    void askNext();
    void show(platform::WebView&, Question);

    platform::Panels& m_panels;
    SiteDecisions& m_decisions;
    ProfileOfView m_profileOf;
    Log m_log;
    std::deque<Question> m_waiting;
    bool m_isOpen { false };
    Lifetime m_lifetime;
};

}
