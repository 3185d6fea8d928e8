#include "MainWindow/JavaScriptDialogs.h"

namespace tarn {

using platform::Alert;
using platform::AlertResponse;

namespace {

std::vector<platform::AlertButton> okAndCancel()
{
    return { { .title = "OK" }, { .title = "Cancel", .role = platform::ButtonRole::cancel } };
}

// Holds the reply: letting go of the alert's answers the page.
template <typename Answer, typename Translate> Reply<AlertResponse> translated(Reply<Answer> reply, Translate translate)
{
    auto const shared = std::make_shared<Reply<Answer>>(std::move(reply));
    return { [shared, translate](AlertResponse response) { std::move (*shared)(translate(std::move(response))); }, {} };
}

bool isFirstButton(AlertResponse const& response)
{
    return response.button == 0U;
}

}

void JavaScriptDialogs::alert(std::string const& message, platform::WebView& view, Reply<std::monostate> reply)
{
    present({ .message = message, .buttons = { { .title = "OK" } } }, view,
        translated(std::move(reply), [](AlertResponse const&) { return std::monostate(); }));
}

void JavaScriptDialogs::confirm(std::string const& message, platform::WebView& view, Reply<bool> reply)
{
    present({ .message = message, .buttons = okAndCancel() }, view, translated(std::move(reply), isFirstButton));
}

void JavaScriptDialogs::prompt(std::string const& text, std::optional<std::string> const& defaultText,
    platform::WebView& view, Reply<std::optional<std::string>> reply)
{
    present({ .message = text, .buttons = okAndCancel(), .textField = defaultText.value_or("") }, view,
        translated(std::move(reply), [](AlertResponse response) {
            return isFirstButton(response) ? std::optional(std::move(response.text)) : std::nullopt;
        }));
}

void JavaScriptDialogs::confirmLeaving(platform::WebView& view, Reply<bool> reply)
{
    m_panels.showAlert(
        { .message = "Leave this page?",
            .informativeText = "What you have changed on it may not be saved.",
            .buttons = { { .title = "Leave" }, { .title = "Stay", .role = platform::ButtonRole::cancel } } },
        &view, translated(std::move(reply), isFirstButton));
}

void JavaScriptDialogs::pageEnded(platform::WebView& view)
{
    m_pages.erase(&view);
    m_panels.dismiss(&view);
}

void JavaScriptDialogs::present(Alert alert, platform::WebView& view, Reply<AlertResponse> reply)
{
    std::erase_if(m_pages, [](auto const& entry) { return entry.second->view.expired(); });
    auto& page = m_pages[&view];
    if (!page)
        page = std::make_shared<Page>(Page { .view = view.weak() });
    if (!page->mayAsk)
        return;
    if (++page->asked > 1)
        alert.checkBox = stopAsking;
    auto const shared = std::make_shared<Reply<AlertResponse>>(std::move(reply));
    m_panels.showAlert(alert, &view,
        { [page, shared](AlertResponse response) {
             if (response.checked)
                 page->mayAsk = false;
             std::move (*shared)(std::move(response));
         },
            {} });
}

}
