#include "MainWindow/LinkQuestion.h"

namespace tarn {

using platform::ButtonRole;

LinkQuestion::LinkQuestion(platform::Panels& panels, Log log)
    : m_panels(panels)
    , m_log(std::move(log))
{
}

void LinkQuestion::ask(Url const& url, platform::SheetParent parent)
{
    if (m_isOpen) {
        m_log("[Links] a page asked for another window before the last question was answered");
        return;
    }
    m_isOpen = true;
    m_panels.showAlert(
        {
            .message = "Where would you like to open this link?",
            .informativeText = url.string(),
            .buttons = { { .title = "New Window" }, { .title = "Default Browser" },
                { .title = "Cancel", .role = ButtonRole::cancel } },
        },
        parent,
        Reply<platform::AlertResponse>(m_lifetime.guard([this, url](platform::AlertResponse const& answer) {
            m_isOpen = false;
            if (answer.button == 0)
                onNewWindow(url);
            else if (answer.button == 1)
                onDefaultBrowser(url);
        }),
            {}));
}

}
