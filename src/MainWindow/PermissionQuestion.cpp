#include "MainWindow/PermissionQuestion.h"

namespace tarn {

using platform::Permission;
using platform::PermissionState;

namespace {

// As it is remembered, on disk too.
std::string key(Permission permission)
{
    switch (permission) {
    case Permission::camera:
        return "camera";
    case Permission::microphone:
        return "microphone";
    case Permission::screen:
        return "screen";
    case Permission::location:
        return "location";
    case Permission::clipboard:
        return "clipboard";
    case Permission::pointerLock:
        return "pointer-lock";
    }
    return {};
}

std::string words(Permission permission)
{
    switch (permission) {
    case Permission::camera:
        return "use the camera";
    case Permission::microphone:
        return "use the microphone";
    case Permission::screen:
        return "see the screen";
    case Permission::location:
        return "know where you are";
    case Permission::clipboard:
        return "read the clipboard";
    case Permission::pointerLock:
        return "take the mouse pointer";
    }
    return {};
}

// Only a connection that cannot be tampered with says for certain which site it is.
std::string siteOf(platform::WebView const& view)
{
    auto const url = view.url();
    return url && url->scheme() == "https" ? std::string(url->host()) : std::string();
}

}

PermissionQuestion::PermissionQuestion(
    platform::Panels& panels, SiteDecisions& decisions, ProfileOfView profileOf, Log log)
    : m_panels(panels)
    , m_decisions(decisions)
    , m_profileOf(std::move(profileOf))
    , m_log(std::move(log))
{
}

void PermissionQuestion::ask(platform::WebView& view, platform::PermissionRequest const& request, Reply<bool> reply)
{
    Question question { view.weak(), siteOf(view), m_profileOf(view), request, std::move(reply) };
    if (question.site.empty()) {
        m_log("[Permissions] refused what a page without a secure address asked for");
        return;
    }
    if (m_waiting.size() >= mostWaiting) {
        m_log("[Permissions] refused one of too many requests of " + question.site);
        return;
    }
    m_waiting.push_back(std::move(question));
    askNext();
}

std::optional<bool> PermissionQuestion::known(Question const& question)
{
    bool unknown = false;
    for (auto const permission : question.request.permissions) {
        auto const answer = m_decisions.find(question.profile, question.site, key(permission));
        if (answer == false)
            return false;
        unknown = unknown || !answer;
    }
    return unknown ? std::nullopt : std::optional(true);
}

void PermissionQuestion::askNext()
{
    while (!m_isOpen && !m_waiting.empty()) {
        auto question = std::move(m_waiting.front());
        m_waiting.pop_front();
        auto* const view = question.view.lock().get();
        if (!view || siteOf(*view) != question.site)
            continue;
        if (auto const answer = known(question))
            std::move(question.reply)(*answer);
        else
            show(*view, std::move(question));
    }
}

void PermissionQuestion::show(platform::WebView& view, Question question)
{
    m_isOpen = true;
    std::string uses;
    for (auto const permission : question.request.permissions)
        uses += (uses.empty() ? "" : " and ") + words(permission);
    auto const site = question.site;
    auto const asked = std::make_shared<Question>(std::move(question));
    m_panels.showAlert(
        {
            .message = "Let " + site + " " + uses + "?",
            .informativeText = "Tarn remembers your answer for this site in this profile.",
            .buttons = { { .title = "Don’t Allow" }, { .title = "Allow" } },
        },
        &view,
        Reply<platform::AlertResponse>(m_lifetime.guard([this, asked](platform::AlertResponse const& answer) {
            m_isOpen = false;
            bool const allowed = answer.button == 1;
            if (answer.button) {
                for (auto const permission : asked->request.permissions)
                    m_decisions.remember(asked->profile, asked->site, key(permission), allowed);
            }
            std::move(asked->reply)(allowed);
            askNext();
        }),
            {}));
}

PermissionState PermissionQuestion::state(platform::WebView const& view, Permission permission)
{
    auto const site = siteOf(view);
    if (site.empty())
        return PermissionState::denied;
    auto const answer = m_decisions.find(m_profileOf(view), site, key(permission));
    if (!answer)
        return PermissionState::ask;
    return *answer ? PermissionState::granted : PermissionState::denied;
}

}
